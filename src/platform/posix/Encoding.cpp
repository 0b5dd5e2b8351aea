// The two text conversions between the applications' Windows-1252 and the
// file system's UTF-8, done by iconv (POSIX) in two steps: decode to code points (which
// tells bad input apart), then encode (where an unrepresentable character
// becomes '?', so callers keep working with a readable name).
#include "CrossPlatformApi.h"

#include <cerrno>
#include <iconv.h>

namespace CrossPlatformApi {
namespace {

class Iconv {
public:
    Iconv(const char* to, const char* from) : m_cd(::iconv_open(to, from)) {}
    ~Iconv() { if (ok()) ::iconv_close(m_cd); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    size_t operator()(char** in, size_t* inLeft, char** out, size_t* outLeft)
    {
        return ::iconv(m_cd, in, inLeft, out, outLeft);
    }

private:
    iconv_t m_cd;
};

// Decodes `text` from `encoding` into code points; false if it is not valid there.
bool decode(const char* encoding, const std::string& text, std::wstring& codePoints)
{
    Iconv cd("WCHAR_T", encoding);
    if (!cd.ok())
        return false;
    codePoints.assign(text.size(), L'\0'); // one code point per byte at most
    char* in = const_cast<char*>(text.data());
    size_t inLeft = text.size();
    char* out = reinterpret_cast<char*>(&codePoints[0]);
    size_t outLeft = codePoints.size() * sizeof(wchar_t);
    if (cd(&in, &inLeft, &out, &outLeft) == static_cast<size_t>(-1))
        return false;
    codePoints.resize(codePoints.size() - outLeft / sizeof(wchar_t));
    return true;
}

// Encodes code points into `encoding`; each one it cannot hold becomes '?'.
std::string encode(const char* encoding, const std::wstring& codePoints)
{
    Iconv cd(encoding, "WCHAR_T");
    std::string result(codePoints.size() * 4, '\0'); // UTF-8 needs 4 bytes at most
    char* in = reinterpret_cast<char*>(const_cast<wchar_t*>(codePoints.data()));
    size_t inLeft = codePoints.size() * sizeof(wchar_t);
    char* out = &result[0];
    size_t outLeft = result.size();
    while (cd.ok() && inLeft > 0 && cd(&in, &inLeft, &out, &outLeft) == static_cast<size_t>(-1)) {
        if (errno != EILSEQ || outLeft == 0)
            break;
        *out++ = '?';
        --outLeft;
        in += sizeof(wchar_t);
        inLeft -= sizeof(wchar_t);
    }
    result.resize(result.size() - outLeft);
    return result;
}

std::string convert(const char* caller, const char* from, const char* to, const std::string& text)
{
    const std::string cText = text.c_str(); // the text ends at its first NUL
    std::wstring codePoints;
    if (!decode(from, cText, codePoints)) {
        outputDebugString(caller);
        outputDebugString(cText.c_str());
        return text;
    }
    return encode(to, codePoints);
}

} // namespace

std::string internalEncoding(const std::string& utf8Text)
{
    return convert("Fehler in internalEncoding:", "UTF-8", "CP1252", utf8Text);
}

std::string fileSystemEncoding(const std::string& cp1252Text)
{
    return convert("Fehler in fileSystemEncoding:", "CP1252", "UTF-8", cp1252Text);
}

} // namespace CrossPlatformApi
