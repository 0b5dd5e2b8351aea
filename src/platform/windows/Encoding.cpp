// The steps of the Windows-1252 / UTF-8 conversions on Windows: decode to
// UTF-16, encode from it. The answers are those of the POSIX build: the five bytes that Windows-1252
// leaves unassigned are bad input, although Windows reads them as the C1
// controls of the same number, and a character outside the Basic Multilingual
// Plane is one '?', not one for each half of its surrogate pair.
#include "../NativeEncoding.h"

#include <windows.h>

namespace KZBasicServices {
namespace native {
namespace {

constexpr UINT kCp1252 = 1252;

bool unassignedIn1252(unsigned c)
{
    return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
}

bool decodeFrom(UINT codePage, const std::string& text, std::wstring& units)
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

std::string encodeTo(UINT codePage, std::wstring units)
{
    if (codePage == kCp1252) {
        std::wstring held;
        for (size_t i = 0; i < units.size(); ++i) {
            const unsigned unit = units[i];
            const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00
                              && units[i + 1] < 0xE000;
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

UINT codePage(TextEncoding encoding)
{
    return encoding == TextEncoding::Utf8 ? CP_UTF8 : kCp1252;
}

} // namespace

bool decode(TextEncoding encoding, const std::string& text, std::wstring& characters)
{
    return decodeFrom(codePage(encoding), text, characters);
}

std::string encode(TextEncoding encoding, const std::wstring& characters)
{
    return encodeTo(codePage(encoding), characters);
}

} // namespace native
} // namespace KZBasicServices
