// Stored strings and version words: exact bytes on disk, damaged streams.
#include "KZFileHeader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Bytes = std::string;
const std::string kOld = "old"; // a target that must stay unchanged

std::string stored(const std::string& s)
{
    std::ostringstream out;
    EXPECT_TRUE(writeString(s, out));
    return out.str();
}

TEST(StoredString, WritesLittleEndianLengthCharactersAndNul)
{
    EXPECT_EQ(stored(""), Bytes("\1\0\0\0\0", 5));
    EXPECT_EQ(stored("ab"), Bytes("\3\0\0\0ab\0", 7));
    EXPECT_EQ(stored(std::string(300, 'x')).substr(0, 4), Bytes("\x2D\x01\0\0", 4));
    std::ostringstream bad;
    bad.setstate(std::ios::badbit);
    EXPECT_FALSE(writeString("x", bad));
    EXPECT_EQ(getBinaryStoreSize("ab"), 1u) << "a truth value, not the stored size";
}

TEST(StoredString, BothReadersRoundTripAnyBytes)
{
    std::string all;
    for (int c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    for (const std::string& s : {std::string(), all, std::string(3 << 20, '\0')}) {
        std::istringstream in(stored(s)), again(stored(s));
        std::string back = kOld, bounded;
        EXPECT_TRUE(readString(back, in));
        EXPECT_EQ(back, s);
        EXPECT_EQ(readStringFromStream(again, bounded, 1u << 30), static_cast<int>(s.size() + 1));
        EXPECT_EQ(bounded, s);
    }
}

TEST(StoredString, ReadStringOnDamagedStreams)
{
    const struct { const char* what; Bytes input; bool ok; std::string result; } cases[] = {
        {"last byte dropped whatever it is", Bytes("\3\0\0\0abc", 7), true, "ab"},
        {"zero length", Bytes("\0\0\0\0", 4), false, kOld},
        {"negative length", "\xFF\xFF\xFF\xFF", false, kOld},
        {"length cut short", Bytes("\5\0", 2), false, kOld},
        {"empty stream", "", false, kOld},
        {"data cut short is padded", Bytes("\5\0\0\0ab", 6), false, Bytes("ab\0\0", 4)},
        {"3 MiB declared, 3 bytes there", Bytes("\1\0\x30\0xyz", 7), false, "xyz" + Bytes(0x300000 - 3, '\0')},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.input);
        std::string s = kOld;
        EXPECT_EQ(readString(s, in), c.ok) << c.what;
        EXPECT_TRUE(s == c.result) << c.what;
    }
}

TEST(StoredString, ReadStringFromStreamTakesAtMostMaxLen)
{
    const struct { const char* what; Bytes input; unsigned maxLen; int result; std::string s; std::string left; } cases[] = {
        {"longer than maxLen", Bytes("\6\0\0\0hello\0!", 11), 3, 6, "he", Bytes("lo\0!", 4)},
        {"data cut short", Bytes("\x09\0\0\0ab", 6), 5, 9, Bytes("ab\0\0", 4), ""},
        {"maxLen 0 still eats the length", Bytes("\3\0\0\0ab\0", 7), 0, 0, kOld, Bytes("ab\0", 3)},
        {"stored length 0", Bytes("\0\0\0\0a", 5), 10, 0, kOld, "a"},
        {"length cut short", Bytes("\3\0", 2), 10, 0, kOld, ""},
        {"size beyond the int range", Bytes("\0\0\0\x80z", 5), 0x80000000u, 0, kOld, "z"},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.input);
        std::string s = kOld;
        EXPECT_EQ(readStringFromStream(in, s, c.maxLen), c.result) << c.what;
        EXPECT_EQ(s, c.s) << c.what;
        in.clear();
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), c.left) << c.what;
    }
}

TEST(VersionWord, FormatsAndParsesMajorAndTwoDigitMinor)
{
    const std::pair<unsigned short, const char*> words[] = {
        {205, "2.05"}, {110, "1.10"}, {7, "0.07"}, {0, "0.00"}, {1000, "10.00"}, {65535, "655.35"}};
    for (const auto& w : words)
        EXPECT_EQ(wordToVersionString(w.first), w.second) << w.first;
    // The minor part is taken as written, atoi-style.
    const std::pair<const char*, unsigned short> cases[] = {
        {"2.05", 205}, {"2.5", 205}, {"2.50", 250}, {"1.123", 223}, {"3", 300}, {"", 0}, {"abc", 0},
        {" 4.07", 407}, {"4.x", 400}, {".7", 7}, {"-1", 65436}, {"655.36", 0}, {"700", 4464},
        {"99999999999999999999.1", 65437}};
    for (const auto& c : cases)
        EXPECT_EQ(versionStringToWord(c.first), c.second) << '"' << c.first << '"';
    EXPECT_EQ(wordToVersionString(versionStringToWord("4.07")), "4.07");
}

} // namespace
