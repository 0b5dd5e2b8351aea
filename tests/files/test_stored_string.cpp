// Stored strings and version words: exact bytes on disk, damaged streams.
#include "KZFileHeader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

std::string bytes(std::initializer_list<int> values)
{
    std::string text;
    for (int v : values)
        text += static_cast<char>(v);
    return text;
}

std::string stored(const std::string& s)
{
    std::ostringstream out;
    EXPECT_TRUE(writeString(s, out));
    return out.str();
}

TEST(StoredString, WritesLittleEndianLengthCharactersAndNul)
{
    EXPECT_EQ(stored(""), bytes({1, 0, 0, 0, 0}));
    EXPECT_EQ(stored("ab"), bytes({3, 0, 0, 0, 'a', 'b', 0}));
    EXPECT_EQ(stored(std::string(300, 'x')).substr(0, 4), bytes({0x2D, 0x01, 0, 0}));
    EXPECT_EQ(stored(std::string("a\0b", 3)), bytes({4, 0, 0, 0, 'a', 0, 'b', 0}));
}

TEST(StoredString, WriteReportsAFailedStream)
{
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(writeString("x", out));
}

TEST(StoredString, RoundTripsAnyBytes)
{
    std::string all;
    for (int c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    for (const std::string& s : {std::string(), std::string("K\xF6ln"), all, std::string(5000, '\0')}) {
        std::istringstream in(stored(s));
        std::string back = "old";
        EXPECT_TRUE(readString(back, in));
        EXPECT_EQ(back, s);
        std::istringstream again(stored(s));
        std::string bounded;
        EXPECT_EQ(readStringFromStream(again, bounded, 100000), static_cast<int>(s.size() + 1));
        EXPECT_EQ(bounded, s);
    }
}

struct ReadCase {
    const char* what;
    std::string input;
    bool ok;
    std::string result; // "old" when the target must stay unchanged
};

TEST(StoredString, ReadStringResults)
{
    const ReadCase cases[] = {
        {"empty string", bytes({1, 0, 0, 0, 0}), true, ""},
        {"last byte is dropped whatever it is", bytes({3, 0, 0, 0, 'a', 'b', 'c'}), true, "ab"},
        {"zero length", bytes({0, 0, 0, 0}), false, "old"},
        {"negative length", bytes({0xFF, 0xFF, 0xFF, 0xFF}), false, "old"},
        {"length cut short", bytes({5, 0}), false, "old"},
        {"no stream at all", "", false, "old"},
        {"data cut short is padded", bytes({5, 0, 0, 0, 'a', 'b'}), false, std::string("ab\0\0", 4)},
        {"data missing", bytes({3, 0, 0, 0}), false, std::string("\0\0", 2)},
    };
    for (const ReadCase& c : cases) {
        std::istringstream in(c.input);
        std::string s = "old";
        EXPECT_EQ(readString(s, in), c.ok) << c.what;
        EXPECT_EQ(s, c.result) << c.what;
    }
}

TEST(StoredString, DamagedLengthOnAShortStreamPadsWithoutReadingPastTheData)
{
    // 3 MiB declared, 3 bytes present: read in pieces, then padded.
    std::istringstream in(bytes({0x01, 0x00, 0x30, 0x00, 'x', 'y', 'z'}));
    std::string s;
    EXPECT_FALSE(readString(s, in));
    ASSERT_EQ(s.size(), 0x300000u);
    EXPECT_EQ(s.substr(0, 4), std::string("xyz\0", 4));
    EXPECT_EQ(s.find_first_not_of('\0', 3), std::string::npos);
}

TEST(StoredString, ReadStringFromStreamTakesAtMostMaxLen)
{
    const std::string hello = bytes({6, 0, 0, 0, 'h', 'e', 'l', 'l', 'o', 0});
    std::istringstream in(hello + "!");
    std::string s = "old";
    EXPECT_EQ(readStringFromStream(in, s, 3), 6);
    EXPECT_EQ(s, "he");
    std::string rest;
    std::getline(in, rest, '!');
    EXPECT_EQ(rest, std::string("lo\0", 3)) << "exactly maxLen bytes are taken";
}

TEST(StoredString, ReadStringFromStreamZeroResults)
{
    struct Case {
        const char* what;
        std::string input;
        unsigned maxLen;
    } cases[] = {
        {"maxLen 0", bytes({3, 0, 0, 0, 'a', 'b', 0}), 0},
        {"stored length 0", bytes({0, 0, 0, 0, 'a'}), 10},
        {"length cut short", bytes({3, 0}), 10},
        {"size beyond the int range", bytes({0, 0, 0, 0x80, 'a'}), 0x80000000u},
    };
    for (const Case& c : cases) {
        std::istringstream in(c.input);
        std::string s = "old";
        EXPECT_EQ(readStringFromStream(in, s, c.maxLen), 0) << c.what;
        EXPECT_EQ(s, "old") << c.what;
    }
    std::istringstream in(bytes({3, 0, 0, 0, 'a', 'b', 0}));
    std::string s;
    readStringFromStream(in, s, 0);
    EXPECT_EQ(in.tellg(), 4) << "the length is consumed even when nothing is taken";
}

TEST(StoredString, ReadStringFromStreamReportsTheStoredLengthOfShortData)
{
    std::istringstream in(bytes({9, 0, 0, 0, 'a', 'b'}));
    std::string s;
    EXPECT_EQ(readStringFromStream(in, s, 5), 9);
    EXPECT_EQ(s, std::string("ab\0\0", 4));
}

TEST(StoredString, BinaryStoreSizeIsATruthValue)
{
    EXPECT_EQ(getBinaryStoreSize(""), 1u);
    EXPECT_EQ(getBinaryStoreSize(std::string(1000, 'a')), 1u);
}

TEST(VersionWord, FormatsMajorAndTwoDigitMinor)
{
    const std::pair<unsigned short, const char*> cases[] = {
        {205, "2.05"}, {110, "1.10"}, {7, "0.07"}, {0, "0.00"}, {1000, "10.00"}, {65535, "655.35"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wordToVersionString(c.first), c.second) << c.first;
}

TEST(VersionWord, ParsesTheMinorPartAsWritten)
{
    const std::pair<const char*, unsigned short> cases[] = {
        {"2.05", 205}, {"1.05", 105}, {"2.5", 205}, {"2.50", 250}, {"1.123", 223},
        {"3", 300}, {"", 0}, {"abc", 0}, {" 4.07", 407}, {"4.x", 400}, {".7", 7},
        {"-1", 65436}, {"655.36", 0}, {"700", 4464}, {"99999999999999999999.1", 65437},
    };
    for (const auto& c : cases)
        EXPECT_EQ(versionStringToWord(c.first), c.second) << '"' << c.first << '"';
}

TEST(VersionWord, RoundTripsNormalVersions)
{
    for (const char* text : {"4.07", "0.00", "12.34", "655.35"})
        EXPECT_EQ(wordToVersionString(versionStringToWord(text)), text);
}

} // namespace
