// The two text conversions between the applications' Windows-1252 and the
// file system's UTF-8: decode (which tells bad input apart), then encode
// (where an unrepresentable character becomes '?', so callers keep working
// with a readable name).
#include "CrossPlatformApi.h"
#include "NativeEncoding.h"

namespace CrossPlatformApi {
namespace {

using KZBasicServices::native::TextEncoding;

std::string convert(const char* caller, TextEncoding from, TextEncoding to, const std::string& text)
{
    const std::string cText = text.c_str(); // the text ends at its first NUL
    std::wstring characters;
    if (!KZBasicServices::native::decode(from, cText, characters)) {
        outputDebugString(caller);
        outputDebugString(cText.c_str());
        return text;
    }
    return KZBasicServices::native::encode(to, characters);
}

} // namespace

std::string internalEncoding(const std::string& utf8Text)
{
    return convert("Fehler in internalEncoding:", TextEncoding::Utf8, TextEncoding::Cp1252, utf8Text);
}

std::string fileSystemEncoding(const std::string& cp1252Text)
{
    return convert("Fehler in fileSystemEncoding:", TextEncoding::Cp1252, TextEncoding::Utf8, cp1252Text);
}

} // namespace CrossPlatformApi
