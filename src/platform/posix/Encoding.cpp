// The steps of the Windows-1252 / UTF-8 conversions, done by iconv (POSIX):
// decode to code points, encode from them.
#include "../NativeEncoding.h"

#include <cerrno>
#include <iconv.h>

namespace KZBasicServices {
namespace native {
namespace {

class Iconv {
public:
    Iconv(const char* to, const char* from) : m_cd(::iconv_open(to, from)) {}
    ~Iconv()
    {
        if (ok())
            ::iconv_close(m_cd);
    }
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

const char* iconvName(TextEncoding encoding)
{
    return encoding == TextEncoding::Utf8 ? "UTF-8" : "CP1252";
}

} // namespace

bool decode(TextEncoding encoding, const std::string& text, std::wstring& characters)
{
    return decode(iconvName(encoding), text, characters);
}

std::string encode(TextEncoding encoding, const std::wstring& characters)
{
    return encode(iconvName(encoding), characters);
}

} // namespace native
} // namespace KZBasicServices
