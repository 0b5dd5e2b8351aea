// KZStringFunctions and the no-case comparators, quirks included.
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

using SF = KZStringFunctions;

TEST(Strip, EachModeAndTheInvalidType)
{
    struct Case {
        const char* in;
        int type;
        const char* out;
    } const cases[] = {
        {"xxabcxx", SF::StripBoth, "abc"},
        {"xxabcxx", SF::StripLeading, "abcxx"},
        {"xxabcxx", SF::StripTrailing, "xxabc"},
        {"xxabcxx", 3, ""},
        {"xxxx", SF::StripBoth, ""},
        {"x", SF::StripTrailing, ""},
        {"xax", SF::StripBoth, "a"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SF::strip(c.in, static_cast<SF::StripType>(c.type), 'x'), c.out) << c.in << ' ' << c.type;
    const std::string s = "xxabcxx", all = "xxxx"; // the backward scan stops at the given start
    EXPECT_EQ(SF::findLastDifferent(s, 'x', s.begin() + 5) - s.begin(), 5);
    EXPECT_TRUE(SF::findLastDifferent(s, 'y', s.begin()) == s.end());
    EXPECT_TRUE(SF::findLastDifferent(all, 'x', all.begin() + 1) == all.begin() + 1);
}

TEST(Expand, CutsOrPadsWithTheRolesExchanged)
{
    EXPECT_EQ(SF::expand("abcdef", 3, ' '), "abc");
    EXPECT_EQ(SF::expand("abc", 5, 'A'), "abc" + std::string(65, '\x02'));
    EXPECT_EQ(SF::expand("abc", 10, ' '), "abc" + std::string(32, '\x07'));
    EXPECT_EQ(SF::expand("", 259, '\x03'), std::string(3, '\x03')); // (259 - 0) mod 256
    EXPECT_EQ(SF::expand("ab", 9, '\0'), "ab");
    EXPECT_THROW(SF::expand("abc", 5, '\x80'), std::length_error);
}

TEST(Hash, RotateAndXorSignExtended)
{
    EXPECT_EQ(SF::hash(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(SF::hash(std::string("AB")), 0x20C2);
    EXPECT_EQ(SF::hash("\xE4"), static_cast<int>(0xFFFFFFE4u));
    EXPECT_EQ(SF::hash("A\x01\x01\x01\x01"), 0x10204085); // bit 30 rotates round to bit 2
    EXPECT_EQ(SF::hash(std::string("ab\0cd", 5)), SF::hash("ab"));
}

TEST(NoCase, FoldingIsAsciiOnly)
{
    std::string s =
        "\xE4"
        "b\xC4z1";
    SF::toUpper(s);
    EXPECT_EQ(s,
              "\xE4"
              "B\xC4Z1");
    SF::toLower(s);
    EXPECT_EQ(s,
              "\xE4"
              "b\xC4z1");
    EXPECT_EQ(SF::upper("Stra\xDF"
                        "e"),
              "STRA\xDF"
              "E");
    EXPECT_TRUE(SF::nocase_compare('a', 'A'));
    EXPECT_FALSE(SF::nocase_compare('\xE4', '\xC4'));
    EXPECT_FALSE(SF::nocase_compare('@', '`'));
}

TEST(NoCase, FindAndCompare)
{
    struct Case {
        const char* haystack;
        const char* needle;
        int at;
    } const cases[] = {
        {"Hello", "LL", 2}, {"abc", "", 0},          {"", "", -1}, {"abc", "abcd", -1}, {"aaab", "AAB", 1},
        {"tail", "IL", 2},  {"M\xC4rz", "\xE4", -1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SF::findNoCase(c.haystack, c.needle), c.at) << c.haystack << '/' << c.needle;
        EXPECT_EQ(SF::containsNoCase(c.haystack, c.needle), c.at != -1);
    }
    EXPECT_TRUE(SF::equalsNoCase(std::string("abc"), std::string("aBc")));
    EXPECT_LT(SF::compareNoCase("a", "B"), 0);
    std::set<std::string, KZStringLessNoCase> ascending{"beta", "Alpha", "ALPHA", "gamma"};
    EXPECT_EQ(std::vector<std::string>(ascending.begin(), ascending.end()),
              (std::vector<std::string>{"Alpha", "beta", "gamma"}));
    EXPECT_TRUE(KZStringGreaterNoCase()("b", "A"));
}

TEST(Compare, FromAnOffset)
{
    struct Case {
        const char *a, *b;
        std::size_t pos, n;
        int sign;
    } const cases[] = {
        {"abc", "abd", 5, 3, 0}, {"abc", "abd", 0, 2, 0}, {"abc", "abd", 0, 3, -1},
        {"xbc", "ybc", 1, 9, 0}, {"abc", "ab", 2, 1, 1},  {"ab", "abc", 2, 1, -1},
    };
    for (const Case& c : cases) {
        const int r = SF::compare(c.a, c.b, c.pos, c.n);
        EXPECT_EQ((r > 0) - (r < 0), c.sign) << c.a << ' ' << c.b << ' ' << c.pos;
    }
    EXPECT_EQ(SF::compare(std::string("a\0x", 3), std::string("a\0y", 3), 0, 3), 0);
}

TEST(IntText, StringToIntAndBack)
{
    struct Case {
        const char* text;
        int value;
    } const cases[] = {
        {"  -17x", -17}, {"+8", 8}, {"abc", 0}, {"", 0}, {"99999999999", INT_MAX}, {"-99999999999", INT_MIN},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SF::stringToInt(c.text), c.value) << c.text;
    EXPECT_EQ(SF::intToString(-2147483647 - 1), "-2147483648");
    EXPECT_EQ(SF::intToString(0), "0");
}

TEST(Replace, FirstOrAllWithoutSearchingReplacedTextAndXmlSpecials)
{
    struct Case {
        const char *in, *search, *replacement, *out;
        bool result;
    } const cases[] = {
        {"aaa", "a", "aa", "aaaaaa", true}, {"aaa", "a", "a", "aaa", false},
        {"abab", "ab", "b", "bb", true},    {"aab", "ab", "a", "aa", true}, // the result's "aa" is not rescanned
        {"abc", "", "x", "abc", false},                                     // an empty search matches nowhere
        {"a.b.c", ".", "", "abc", true},
    };
    for (const Case& c : cases) {
        std::string s = c.in;
        EXPECT_EQ(SF::replaceAll(s, c.search, c.replacement), c.result) << c.in;
        EXPECT_EQ(s, c.out) << c.in;
    }
    std::string s = "a-b-c";
    EXPECT_TRUE(SF::replace(s, "-", "+"));
    EXPECT_EQ(s, "a+b-c");
    EXPECT_EQ(SF::translateSpecialCharsToXml("a<b>&\"c'\x01\xE4"), "a&lt;b&gt;&amp;&quot;c&apos;\x01\xE4");
}

TEST(ReadLine, KeepsCarriageReturnLosesUnterminatedLast)
{
    std::istringstream in(std::string("ab\0cd\none\r\n", 11) + std::string(511, 'a') + "\ntwo");
    std::string line = "old";
    for (const std::string& want : {std::string("ab"), std::string("one\r"), std::string(511, 'a')}) {
        EXPECT_TRUE(SF::readLine(in, line));
        EXPECT_EQ(line, want);
    }
    EXPECT_FALSE(SF::readLine(in, line));
    EXPECT_EQ(line.size(), 511u);
    std::istringstream overlong(std::string(512, 'b') + "\n");
    EXPECT_FALSE(SF::readLine(overlong, line));
}

TEST(ReadFromFile, WholeStream)
{
    struct Case {
        std::string in, text;
    } const cases[] = {
        {"", ""},
        {"abc\ndef\n", "abc\ndef\n"},
        {std::string(5000, 'z'), std::string(5000, 'z')},
        {std::string(1023, 'q'), std::string(1023, 'q')},
        {std::string("a\0b\0\0c", 6), "abc"}, // NUL bytes are skipped
    };
    for (const Case& c : cases) {
        std::istringstream in(c.in);
        std::string text = "junk";
        EXPECT_EQ(SF::readFromFile(in, text), static_cast<int>(c.text.size()));
        EXPECT_EQ(text, c.text);
    }
    std::istringstream spent("x");
    spent.setstate(std::ios::failbit);
    std::string text = "junk";
    EXPECT_EQ(SF::readFromFile(spent, text), -1);
    EXPECT_EQ(text, "");
}
