// Stored strings, version words and the file header: exact bytes, damaged streams, German messages.
#include "KZFileHeader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Bytes = std::string;
const std::string kOld = "old"; // a target that must stay unchanged
const std::string kWrongType = "Falscher Dateityp.";
const std::string kDamaged =
    "Zerst\xF6"
    "rte Datei.";
const std::string kAbc("ABC\0\xCD\0\x64\0\x01", 9); // "ABC", versions 205 and 100, flag 1

std::string stored(const std::string& s)
{
    std::ostringstream out;
    return writeString(s, out) ? out.str() : "write failed";
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
    for (const std::string& s : {Bytes(), Bytes("a\0\xFF\n\x80", 5), Bytes(3 << 20, '\0')}) {
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
    const struct {
        const char* what;
        Bytes input;
        bool ok;
        std::string result;
    } cases[] = {
        {"last byte dropped whatever it is", Bytes("\3\0\0\0abc", 7), true, "ab"},
        {"zero length", Bytes("\0\0\0\0", 4), false, kOld},
        {"negative length", "\xFF\xFF\xFF\xFF", false, kOld},
        {"length cut short", Bytes("\5\0", 2), false, kOld},
        {"data cut short is padded", Bytes("\5\0\0\0ab", 6), false, Bytes("ab\0\0", 4)},
        {"3 MiB declared, 3 bytes there", Bytes("\1\0\x30\0xyz", 7), false, "xyz" + Bytes(0x300000 - 3, '\0')}};
    for (const auto& c : cases) {
        std::istringstream in(c.input);
        std::string s = kOld;
        EXPECT_EQ(readString(s, in), c.ok) << c.what;
        EXPECT_TRUE(s == c.result) << c.what;
    }
}

TEST(StoredString, ReadStringFromStreamTakesAtMostMaxLen)
{
    const struct {
        const char* what;
        Bytes input;
        unsigned maxLen;
        int result;
        std::string s, left;
    } cases[] = {{"longer than maxLen", Bytes("\6\0\0\0hello\0!", 11), 3, 6, "he", Bytes("lo\0!", 4)},
                 {"data cut short", Bytes("\x09\0\0\0ab", 6), 5, 9, Bytes("ab\0\0", 4), ""},
                 {"maxLen 0 still eats the length", Bytes("\3\0\0\0ab\0", 7), 0, 0, kOld, Bytes("ab\0", 3)},
                 {"length cut short", Bytes("\3\0", 2), 10, 0, kOld, ""},
                 {"size beyond the int range", Bytes("\0\0\0\x80z", 5), 0x80000000u, 0, kOld, "z"}};
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
    for (const auto& w : {std::make_pair(7, "0.07"), std::make_pair(1000, "10.00"), std::make_pair(65535, "655.35")})
        EXPECT_EQ(wordToVersionString(static_cast<unsigned short>(w.first)), w.second) << w.first;
    // The minor part is taken as written, atoi-style, and the sum wraps at 16 bits.
    const std::pair<const char*, unsigned short> cases[] = {
        {"2.5", 205},  {"1.123", 223}, {"3", 300},
        {"abc", 0},    {"4.x", 400},   {".7", 7},
        {"-1", 65436}, {"700", 4464},  {"99999999999999999999.1", 65437},
        {"4.07", 407}};
    for (const auto& c : cases)
        EXPECT_EQ(versionStringToWord(c.first), c.second) << '"' << c.first << '"';
}

struct Header : KZFileHeader {
    std::string type;
    explicit Header(std::string t, unsigned short v1 = 0, unsigned short v2 = 0, unsigned char flag = 0)
        : type(std::move(t))
    {
        m_version1 = v1;
        m_version2 = v2;
        m_flag = flag;
    }
    std::string getFileType() const override { return type; }
    bool readFrom(const std::string& bytes)
    {
        std::istringstream in(bytes);
        return read(in);
    }
};

TEST(FileHeader, WritesIdentifierNulWordsAndFlagAndReadsThemBack)
{
    std::ostringstream out, tiny, failed;
    EXPECT_TRUE(Header("ABC", 205, 100, 1).write(out));
    EXPECT_EQ(out.str(), kAbc);
    EXPECT_EQ(Header("ABC").getBinaryStoreSize(), 9u);
    EXPECT_TRUE(Header("", 0x1234, 0xFFFF, 0xFE).write(tiny));
    EXPECT_EQ(tiny.str(), std::string("\0\x34\x12\xFF\xFF\xFE", 6));
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(Header("ABC").write(failed));
    Header h("ABC"), longest(std::string(127, 'T'));
    ASSERT_TRUE(h.readFrom(kAbc + "rest"));
    EXPECT_EQ(h.getVersion1() * 1000 + h.getVersion2() * 10 + h.getFlag(), 206001);
    EXPECT_EQ(h.getErrorMsg(), "");
    EXPECT_TRUE(longest.readFrom(std::string(127, 'T') + std::string(6, '\0'))) << "the longest identifier";
}

TEST(FileHeader, WrongTypeReplacesTheMessageDamagedFileAppendsIt)
{
    const std::string longType(128, 'T'); // one more than the identifier buffer holds
    const struct {
        std::string type;
        Bytes bytes;
        bool wrongType;
        unsigned short version2;
    } cases[] = {{"ABD", kAbc, true, 0},
                 {"ABD", "", true, 0},
                 {"ABD", Bytes("AB\0\1\0\1\0\1", 8), true, 0},
                 {longType, longType + '\0' + "12345", true, 0},
                 {"ABC", kAbc.substr(0, 5), false, 0},
                 {"ABC", kAbc.substr(0, 8), false, 100}, // complete fields are read before the stream ends
                 {"ABC", "ABC", false, 0}};
    for (const auto& c : cases) {
        Header h(c.type);
        h.setWrongVersionErrorMsg("Vorher. ", 1, 2);
        const std::string before = h.getErrorMsg();
        EXPECT_FALSE(h.readFrom(c.bytes)) << c.bytes;
        EXPECT_EQ(h.getErrorMsg(), c.wrongType ? kWrongType : before + kDamaged) << c.bytes;
        EXPECT_EQ(h.getVersion2(), c.version2) << c.bytes;
    }
}

TEST(FileHeader, VersionMessage)
{
    const Header h("X");
    h.setWrongVersionErrorMsg("Kalender: ", 205, 130);
    EXPECT_EQ(h.getErrorMsg(), "Kalender: Erwartete Version:2.05  aktuelle Version:1.30");
    h.setWrongVersionErrorMsg(nullptr, 7, 1000);
    EXPECT_EQ(h.getErrorMsg(), "Erwartete Version:0.07  aktuelle Version:10.00");
}

} // namespace
