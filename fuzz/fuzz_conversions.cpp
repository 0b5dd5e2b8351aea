// The number and text conversions and the string functions on arbitrary
// bytes. Properties:
//  - c2txt and txt2c: decoding the encoded text gives the text back;
//  - itoa, ltoa, lTohex: the text reads back as the number, the bounded
//    forms write exactly when the text fits;
//  - formatDoubleToString: without separators it is printf's "%.*f", and
//    the grouped text without its group characters is the ungrouped one;
//  - reformatNumString: grouping only inserts '.' into the ungrouped text;
//  - case folding and stripping do what they say on every byte.
#include "FuzzSupport.h"
#include "KZStringFunctions.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::string without(std::string s, char c)
{
    s.erase(std::remove(s.begin(), s.end(), c), s.end());
    return s;
}

void checkEscapes(const std::string& bytes)
{
    const std::string cText = bytes.c_str(); // up to the first NUL
    FUZZ_CHECK(txt2c(c2txt(cText.c_str())) == cText);
    FUZZ_CHECK(txt2c(bytes).size() <= bytes.size());
}

void checkIntegers(FuzzInput& input)
{
    const int value = static_cast<int>(input.u32());
    const long wide = static_cast<long>(std::uint64_t(input.u32()) << 32 | input.u32());
    const std::size_t room = input.byte() % 26;
    for (int radix : {10, 16, 8, 2}) {
        char text[32];
        itoa(value, text, radix);
        if (radix == 16 || radix == 8)
            FUZZ_CHECK(static_cast<std::uint32_t>(std::strtoul(text, nullptr, radix))
                       == static_cast<std::uint32_t>(value));
        else
            FUZZ_CHECK(std::strtol(text, nullptr, 10) == value);
        char bounded[32];
        const int status = itoa_s(value, bounded, room, radix);
        FUZZ_CHECK(status == (room == 0 ? EINVAL : std::strlen(text) < room ? 0 : ERANGE));
        FUZZ_CHECK(status != 0 || std::strcmp(bounded, text) == 0);

        char longText[32];
        ltoa(wide, longText, radix);
        FUZZ_CHECK(std::strlen(longText) < 24);
        const int longStatus = ltoa_s(wide, bounded, room, radix);
        FUZZ_CHECK(longStatus == (room == 0 ? EINVAL : std::strlen(longText) < room ? 0 : ERANGE));
        FUZZ_CHECK(longStatus != 0 || std::strcmp(bounded, longText) == 0);
        if (radix == 16)
            FUZZ_CHECK(lTohex(wide, true) == "0x" + std::string(longText));
    }
}

void checkDouble(FuzzInput& input)
{
    double value;
    const std::string raw = input.bytes(sizeof value) + std::string(sizeof value, '\0');
    std::memcpy(&value, raw.data(), sizeof value);
    const unsigned short precision = input.byte() % 40;
    const char decimal = static_cast<char>(input.byte());
    const char thousands = static_cast<char>(input.byte());

    std::vector<char> printed(400);
    std::snprintf(printed.data(), printed.size(), "%.*f", precision, value == 0.0 ? 0.0 : value);
    FUZZ_CHECK(formatDoubleToString(value, precision, 0, '\0', '\0') == printed.data());
    const std::string grouped = formatDoubleToString(value, precision, 0, ',', '\'');
    std::string ungrouped = without(grouped, '\'');
    const std::size_t comma = ungrouped.find(',');
    if (comma != std::string::npos)
        ungrouped[comma] = '.';
    FUZZ_CHECK(ungrouped == printed.data());
    formatDoubleToString(value, precision, 0, decimal, thousands);
    try {
        formatDoubleToString(value, precision, static_cast<unsigned short>(grouped.size() + 1), ',', '\'');
        FUZZ_CHECK(false); // padding is never honoured
    } catch (const std::length_error&) {
    }
}

void checkNumberText(const std::string& bytes)
{
    std::string expected = bytes;
    const std::size_t point = expected.rfind('.');
    if (point != std::string::npos)
        expected[point] = ',';
    const std::string plain = reformatNumString(bytes, false);
    FUZZ_CHECK(plain == expected);
    const std::string grouped = reformatNumString(bytes, true);
    FUZZ_CHECK(without(grouped, '.') == without(plain, '.'));
    FUZZ_CHECK(grouped.size() <= plain.size() + plain.size() / 3 + 1);
}

void checkStringFunctions(const std::string& bytes, char c)
{
    FUZZ_CHECK(KZStringFunctions::lower(KZStringFunctions::upper(bytes)) == KZStringFunctions::lower(bytes));
    const std::string stripped = KZStringFunctions::strip(bytes, KZStringFunctions::StripBoth, c);
    FUZZ_CHECK(stripped.empty() || (stripped.front() != c && stripped.back() != c));
    FUZZ_CHECK(bytes.find(stripped) != std::string::npos);
    const std::string needle = bytes.substr(bytes.size() / 2, 3);
    const int at = KZStringFunctions::findNoCase(bytes, needle);
    FUZZ_CHECK(at >= 0 || bytes.empty());
    FUZZ_CHECK(at < 0
               || KZStringFunctions::lower(bytes.substr(static_cast<std::size_t>(at), needle.size()))
                      == KZStringFunctions::lower(needle));
    FUZZ_CHECK(KZStringFunctions::containsNoCase(bytes, needle) == (at >= 0));

    try {
        const std::string expanded = KZStringFunctions::expand(bytes, static_cast<unsigned char>(c), c);
        (void)expanded;
    } catch (const std::length_error&) {
        FUZZ_CHECK(static_cast<signed char>(c) < 0);
    }
    std::string s = bytes;
    if (bytes.size() > 2)
        KZStringFunctions::replaceAll(s, bytes.substr(0, 1 + bytes[0] % 2),
                                      bytes.substr(1, static_cast<unsigned char>(bytes[1]) % 3));
    KZStringFunctions::translateSpecialCharsToXml(bytes);

    std::istringstream in(bytes);
    std::string text;
    const int count = KZStringFunctions::readFromFile(in, text);
    FUZZ_CHECK(count == static_cast<int>(text.size()) && text == without(bytes, '\0'));
    std::istringstream lines(bytes);
    std::string line;
    while (KZStringFunctions::readLine(lines, line))
        FUZZ_CHECK(line.size() <= 511);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    checkEscapes(bytes);
    checkNumberText(bytes);
    checkStringFunctions(bytes, size ? static_cast<char>(data[0]) : ' ');
    FuzzInput input(data, size);
    checkIntegers(input);
    checkDouble(input);
    return 0;
}
