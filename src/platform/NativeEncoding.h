// The two steps of the text conversions between Windows-1252 and UTF-8, one
// implementation per operating system (posix/, windows/); Encoding.cpp joins
// them into CrossPlatformApi::internalEncoding and fileSystemEncoding.
#ifndef KZ_PLATFORM_NATIVE_ENCODING_H
#define KZ_PLATFORM_NATIVE_ENCODING_H

#include <string>

namespace KZBasicServices {
namespace native {

enum class TextEncoding { Utf8, Cp1252 };

// The characters of `text` in `encoding` (code points, or UTF-16 units where
// wchar_t has 16 bits); false if the text is not valid there, or holds one
// of the five bytes Windows-1252 leaves unassigned.
bool decode(TextEncoding encoding, const std::string& text, std::wstring& characters);

// The characters in `encoding`; each one it cannot hold becomes one '?'.
std::string encode(TextEncoding encoding, const std::wstring& characters);

} // namespace native
} // namespace KZBasicServices

#endif // KZ_PLATFORM_NATIVE_ENCODING_H
