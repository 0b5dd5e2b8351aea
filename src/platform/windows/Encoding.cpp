// The two text conversions between the applications' Windows-1252 and the
// file system's UTF-8, on Windows: decode to UTF-16 (which tells bad input
// apart), then encode (where a character the target cannot hold becomes '?').
// The answers are those of the POSIX build: the five bytes that Windows-1252
// leaves unassigned are bad input, although Windows reads them as the C1
// controls of the same number, and a character outside the Basic Multilingual
// Plane is one '?', not one for each half of its surrogate pair.
#include "CrossPlatformApi.h"

#include <windows.h>

namespace CrossPlatformApi {
namespace {

constexpr UINT kCp1252 = 1252;

bool unassignedIn1252(unsigned c) { return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D; }

// Decodes `text` from `codePage` into UTF-16; false if it is not valid there.
bool decode(UINT codePage, const std::string& text, std::wstring& units)
{
    units.clear();
    if (text.empty())
        return true;
    if (codePage == kCp1252)
        for (const char c : text)
            if (unassignedIn1252(static_cast<unsigned char>(c)))
                return false;
    const int size = static_cast<int>(text.size()); // below 2 GiB: a file name or a line
    const int length = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (length <= 0)
        return false;
    units.resize(static_cast<size_t>(length));
    return ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), size, &units[0], length) == length;
}

// Encodes UTF-16 into `codePage`; each character it cannot hold becomes '?'.
std::string encode(UINT codePage, std::wstring units)
{
    if (codePage == kCp1252) {
        std::wstring held;
        for (size_t i = 0; i < units.size(); ++i) {
            const unsigned unit = units[i];
            const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size()
                && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
            held += pair || unassignedIn1252(unit) ? L'?' : units[i];
            i += pair;
        }
        units.swap(held);
    }
    if (units.empty())
        return std::string();
    const DWORD flags = codePage == kCp1252 ? WC_NO_BEST_FIT_CHARS : 0;
    const char* fallback = codePage == kCp1252 ? "?" : nullptr;
    const int size = static_cast<int>(units.size());
    const int length = ::WideCharToMultiByte(codePage, flags, units.data(), size, nullptr, 0, fallback, nullptr);
    if (length <= 0)
        return std::string();
    std::string result(static_cast<size_t>(length), '\0');
    ::WideCharToMultiByte(codePage, flags, units.data(), size, &result[0], length, fallback, nullptr);
    return result;
}

std::string convert(const char* caller, UINT from, UINT to, const std::string& text)
{
    const std::string cText = text.c_str(); // the text ends at its first NUL
    std::wstring units;
    if (!decode(from, cText, units)) {
        outputDebugString(caller);
        outputDebugString(cText.c_str());
        return text;
    }
    return encode(to, std::move(units));
}

} // namespace

std::string internalEncoding(const std::string& utf8Text)
{
    return convert("Fehler in internalEncoding:", CP_UTF8, kCp1252, utf8Text);
}

std::string fileSystemEncoding(const std::string& cp1252Text)
{
    return convert("Fehler in fileSystemEncoding:", kCp1252, CP_UTF8, cp1252Text);
}

} // namespace CrossPlatformApi
