// Number text in the three radixes, fixed-point and German notation, and the
// one-line escaping of control characters.
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <stdexcept>
#include <string>

TEST(Itoa, EachRadixLowerCaseWithoutPrefix)
{
    struct Case {
        long value;
        int radix;
        const char* text;
    } const cases[] = {
        {255, 16, "ff"},           {255, 8, "377"}, {255, 2, "255"}, {-28, 16, "ffffffe4"},
        {-1, 8, "37777777777"},    {-28, 0, "-28"}, {0, 16, "0"},    {INT_MIN, 10, "-2147483648"},
        {INT_MIN, 16, "80000000"},
    };
    for (const Case& c : cases) {
        char buffer[12], longBuffer[24];
        EXPECT_EQ(itoa(static_cast<int>(c.value), buffer, c.radix), buffer);
        EXPECT_STREQ(buffer, c.text) << c.value << " radix " << c.radix;
        EXPECT_STREQ(ltoa(c.value, longBuffer, c.radix), c.text) << c.value << " radix " << c.radix;
    }
    char buffer[24];
#ifdef _WIN32 // long has 32 bits: its extremes are int's, and so are the texts
    EXPECT_STREQ(ltoa(LONG_MIN, buffer, 8), "20000000000");
    EXPECT_EQ(lTohex(LONG_MAX, false), "7fffffff");
    EXPECT_EQ(lTohex(LONG_MIN, true), "0x80000000");
#else
    EXPECT_STREQ(ltoa(-4294967296L, buffer, 16), "ffffffff00000000");
    EXPECT_STREQ(ltoa(LONG_MIN, buffer, 8), "1000000000000000000000");
    EXPECT_EQ(lTohex(LONG_MAX, false), "7fffffffffffffff");
    EXPECT_EQ(lTohex(LONG_MIN, true), "0x8000000000000000");
#endif
    EXPECT_EQ(itoa(1, nullptr, 10), nullptr);
    EXPECT_EQ(itoa_s(255, buffer, 4, 10), 0);
    EXPECT_STREQ(buffer, "255");
    EXPECT_EQ(itoa_s(1000, buffer, 4, 10), ERANGE);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(itoa_s(1, buffer, 0, 10), EINVAL);
    EXPECT_EQ(ltoa_s(-1, buffer, 8, 16), ERANGE);
    EXPECT_EQ(lTohex(-1, true), "0xffffffff");
    EXPECT_EQ(lTohex(255, false), "ff");
}

TEST(FormatDouble, DecimalAndGroupingCharacters)
{
    struct Case {
        double value;
        unsigned short precision;
        char decimal, thousands;
        const char* text;
    } const cases[] = {
        {1234.5, 2, ',', '.', "1.234,50"},
        {-0.0, 1, 0, 0, "0.0"},
        {1234567, 0, ',', '.', "12.345.67"}, // groups count from one right of the end
        {-123.5, 1, ',', '.', "-.123,5"},    // the sign counts as a digit
        {123.25, 2, ',', '.', "123,25"},
        {1234.5, 1, 0, '\'', "1'234'.5"}, // no decimal character: counted from the end
    };
    for (const Case& c : cases)
        EXPECT_EQ(formatDoubleToString(c.value, c.precision, 0, c.decimal, c.thousands), c.text) << c.text;
    EXPECT_EQ(formatDoubleToString(1.5, 2, 4, 0, 0), "1.50"); // a width up to the length is ignored
    EXPECT_THROW(formatDoubleToString(1.5, 2, 10, 0, 0), std::length_error);
}

TEST(ReformatNumString, GermanNotation)
{
    struct Case {
        const char* in;
        bool group;
        const char* out;
    } const cases[] = {
        {"1234567.89", true, "1.234.567,89"},
        {"-1234567", true, "-1.234.567"},
        {"123", true, "123"},
        {"1234 EUR", true, "1.234 EUR"},
        {"1234.5", false, "1234,5"},
        {"1.2.3", false, "1.2,3"},
        {"x12345678,5", true, "x12.345.678,5"},
        {"", true, ""},
        {"\xB2"
         "234",
         true,
         "\xB2"
         "234"}, // a byte above 0x7F is no digit
    };
    for (const Case& c : cases)
        EXPECT_EQ(reformatNumString(c.in, c.group), c.out) << c.in;
}

TEST(TextEscapes, RoundTripAndLenientReading)
{
    EXPECT_EQ(c2txt("a\r\nb\\c\t"), "a\\r\\nb\\\\c\t");
    EXPECT_EQ(c2txt(nullptr), "");
    for (const char* text : {"", "\r\n\\\r", "\\\\n", "mixed\\ \n end\\"})
        EXPECT_EQ(txt2c(c2txt(text)), text) << text;
    struct Case {
        std::string in, out;
    } const cases[] = {
        {"\\t", "\t"},    // decoded although never produced
        {"\\q\\x", "qx"}, // unknown escapes drop the backslash
        {"a\\", "a\\"},   // a lone final backslash is kept
        {std::string("\\\0z", 3), std::string("\0z", 2)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(txt2c(c.in), c.out) << c.in;
}
