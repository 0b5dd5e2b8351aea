// The arithmetic and encoding shims.
#include "CrossPlatformApi.h"

#include <gtest/gtest.h>

namespace cpa = CrossPlatformApi;

TEST(Arithmetic, MulDivTruncatesAfterA64BitProductAndRotlWraps)
{
    struct Case {
        int number, numerator, denominator, expected;
    };
    const Case cases[] = {{-7, 1, 2, -3},
                          {2147483647, 2, 2, 2147483647},
                          {5, 5, 0, -1},
                          {-2147483647 - 1, -1, 1, -2147483647 - 1}}; // 2^31 keeps its low 32 bits
    for (const Case& c : cases)
        EXPECT_EQ(cpa::MulDiv(c.number, c.numerator, c.denominator), c.expected) << c.number << " * " << c.numerator;
    struct Rotation {
        unsigned int value, shift, expected;
    }; // the shift counts modulo 32
    for (const Rotation& c : {Rotation{0x80000001u, 1, 3u}, Rotation{0x12345678u, 0, 0x12345678u},
                              Rotation{0x12345678u, 32, 0x12345678u}, Rotation{0x12345678u, 36, 0x23456781u}})
        EXPECT_EQ(cpa::rotl(c.value, c.shift), c.expected) << c.shift;
}

TEST(Encoding, ConvertsBetweenWindows1252AndUtf8AndReportsBadInput)
{
    struct Case {
        std::string cp1252, utf8;
    };
    for (const Case& c : {Case{"", ""}, Case{"M\xE4rz \xDF", "M\xC3\xA4rz \xC3\x9F"}, Case{"\x80", "\xE2\x82\xAC"}}) {
        EXPECT_EQ(cpa::fileSystemEncoding(c.cp1252), c.utf8);
        EXPECT_EQ(cpa::internalEncoding(c.utf8), c.cp1252);
    }
    EXPECT_EQ(cpa::internalEncoding("a\xC5\x91z"), "a?z");       // o with double acute: not in Windows-1252
    EXPECT_EQ(cpa::internalEncoding("\xF0\x9F\x99\x82!"), "?!"); // outside the BMP
    // Bad input (UTF-8 cut off inside a character, 0x81 undefined in Windows-1252) is reported and kept.
    struct Bad {
        std::string (*convert)(const std::string&);
        std::string input, report;
    };
    for (const Bad& c : {Bad{cpa::internalEncoding, "\xC3", "Fehler in internalEncoding:\xC3"},
                         Bad{cpa::fileSystemEncoding, "x\x81", "Fehler in fileSystemEncoding:x\x81"}}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(c.convert(c.input), c.input);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.report);
    }
}
