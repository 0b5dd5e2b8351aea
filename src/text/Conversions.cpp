// Number and text conversions: integer text in radix 10, 16 or 8, fixed-point
// text of a double, German number notation, and the one-line escaping of
// control characters.
#include "KZStringFunctions.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace {

// Longest text any accepted radix produces for a 64-bit value, plus NUL:
// 22 octal digits.
constexpr std::size_t kMaxDigitsText = 24;

// Unsigned digits of magnitude in base 8, 10 or 16, written backwards from
// the end of out; returns the first character written.
char* writeDigits(std::uint64_t magnitude, unsigned base, char* end)
{
    static const char kDigits[] = "0123456789abcdef";
    char* p = end;
    do {
        *--p = kDigits[magnitude % base];
        magnitude /= base;
    } while (magnitude != 0);
    return p;
}

unsigned baseForRadix(int radix)
{
    return radix == 16 ? 16u : radix == 8 ? 8u : 10u;
}

// The text of a value given as sign and magnitude for decimal, and as the
// two's complement bit pattern for hexadecimal and octal.
std::string integerText(std::int64_t value, std::uint64_t bitPattern, int radix)
{
    char text[kMaxDigitsText];
    char* const end = text + sizeof text;
    const unsigned base = baseForRadix(radix);
    if (base != 10)
        return std::string(writeDigits(bitPattern, base, end), end);
    // The magnitude of the most negative value does not fit the signed type.
    const std::uint64_t magnitude =
        value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    char* first = writeDigits(magnitude, 10, end);
    if (value < 0)
        *--first = '-';
    return std::string(first, end);
}

std::string intText(int value, int radix)
{
    return integerText(value, static_cast<std::uint32_t>(value), radix);
}

std::string longText(long value, int radix)
{
    if (value >= INT_MIN && value <= INT_MAX)
        return intText(static_cast<int>(value), radix);
    return integerText(value, static_cast<unsigned long>(value), radix);
}

char* copyOut(const std::string& text, char* buffer)
{
    if (!buffer)
        return nullptr;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return buffer;
}

int copyOutBounded(const std::string& text, char* buffer, std::size_t size)
{
    if (!buffer || size == 0)
        return EINVAL;
    if (text.size() + 1 > size) {
        buffer[0] = '\0';
        return ERANGE;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return 0;
}

bool isAsciiDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string printFixed(double value, unsigned short precision)
{
    const int length = std::snprintf(nullptr, 0, "%.*f", static_cast<int>(precision), value);
    if (length <= 0)
        return std::string();
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    std::snprintf(text.data(), text.size(), "%.*f", static_cast<int>(precision), value);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

} // namespace

char* itoa(int value, char* buffer, int radix)
{
    return copyOut(intText(value, radix), buffer);
}

char* ltoa(long value, char* buffer, int radix)
{
    return copyOut(longText(value, radix), buffer);
}

int itoa_s(int value, char* buffer, std::size_t size, int radix)
{
    return copyOutBounded(intText(value, radix), buffer, size);
}

int ltoa_s(long value, char* buffer, std::size_t size, int radix)
{
    return copyOutBounded(longText(value, radix), buffer, size);
}

std::string lTohex(long value, bool withPrefix)
{
    char text[kMaxDigitsText];
    ltoa(value, text, 16);
    return withPrefix ? "0x" + std::string(text) : std::string(text);
}

std::string formatDoubleToString(double value, unsigned short precision, unsigned short width, char decimalChar,
                                 char thousandsChar)
{
    if (value == 0.0)
        value = 0.0; // also turns -0.0 into +0.0
    std::string text = printFixed(value, precision);

    if (decimalChar != '\0') {
        const std::size_t point = text.find('.');
        if (point != std::string::npos)
            text[point] = decimalChar;
    }

    if (thousandsChar != '\0') {
        const std::size_t decimal = decimalChar != '\0' ? text.rfind(decimalChar) : std::string::npos;
        const std::size_t p = decimal != std::string::npos ? decimal : text.size() + 1;
        if (p >= 4) {
            const std::size_t insertions = (p - 4) / 3 + 1;
            for (std::size_t i = 1; i <= insertions; ++i)
                text.insert(p - 3 * i, 1, thousandsChar);
        }
    }

    if (width > text.size()) {
        // Padding was always requested with the negative length difference
        // taken as a size; it can never be satisfied.
        throw std::length_error("formatDoubleToString: padding to a width is not possible");
    }
    return text;
}

std::string reformatNumString(const std::string& text, bool group)
{
    std::string result = text;
    const std::size_t point = result.rfind('.');
    if (point != std::string::npos)
        result[point] = ',';
    if (!group)
        return result;

    std::size_t p = result.rfind(',');
    if (p == std::string::npos) {
        std::size_t i = result.size() > 0 ? result.size() - 1 : 0;
        while (i >= 1 && !isAsciiDigit(result[i]))
            --i;
        if (i < 1)
            return result;
        p = i + 1;
    }
    if (p < 4)
        return result;

    const std::size_t insertions = (p - 4) / 3 + 1;
    std::size_t current = p;
    for (std::size_t done = 0; done < insertions && isAsciiDigit(result[current - 4]); ++done) {
        current -= 3;
        result.insert(current, 1, '.');
        if (current < 4)
            break;
    }
    return result;
}

std::string c2txt(const char* text)
{
    std::string result;
    if (!text)
        return result;
    for (const char* p = text; *p; ++p) {
        switch (*p) {
        case '\r': result += "\\r"; break;
        case '\n': result += "\\n"; break;
        case '\\': result += "\\\\"; break;
        default: result += *p; break;
        }
    }
    return result;
}

std::string txt2c(const std::string& text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const char escaped = text[++i];
        switch (escaped) {
        case 'r': result += '\r'; break;
        case 't': result += '\t'; break;
        case 'n': result += '\n'; break;
        default: result += escaped; break;
        }
    }
    return result;
}
