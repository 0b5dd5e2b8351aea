// The file header: its bytes, type check, damaged files and German messages.
#include "KZFileHeader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

const std::string kWrongType = "Falscher Dateityp.";
const std::string kDamaged = "Zerst\xF6" "rte Datei.";

class Header : public KZFileHeader {
public:
    explicit Header(std::string type, unsigned short v1 = 0, unsigned short v2 = 0, unsigned char flag = 0)
        : m_type(std::move(type))
    {
        m_version1 = v1;
        m_version2 = v2;
        m_flag = flag;
    }
    std::string getFileType() const override { return m_type; }

private:
    std::string m_type;
};

std::string written(const KZFileHeader& header)
{
    std::ostringstream out;
    EXPECT_TRUE(header.write(out));
    return out.str();
}

const std::string kAbcBytes("ABC\0\xCD\0\x64\0\x01", 9);

TEST(FileHeader, StartsZeroed)
{
    const Header h("T");
    EXPECT_EQ(h.getVersion1(), 0);
    EXPECT_EQ(h.getVersion2(), 0);
    EXPECT_EQ(h.getFlag(), 0);
    EXPECT_EQ(h.getErrorMsg(), "");
}

TEST(FileHeader, WritesIdentifierNulWordsAndFlag)
{
    const Header abc("ABC", 205, 100, 1);
    EXPECT_EQ(written(abc), kAbcBytes);
    EXPECT_EQ(abc.getBinaryStoreSize(), 9u);
    EXPECT_EQ(written(Header("", 0x1234, 0xFFFF, 0xFE)), std::string("\0\x34\x12\xFF\xFF\xFE", 6));
}

TEST(FileHeader, WriteReportsAFailedStream)
{
    std::ostringstream out;
    out.setstate(std::ios::failbit);
    Header h("ABC");
    EXPECT_FALSE(h.write(out));
    EXPECT_EQ(h.getErrorMsg(), "");
}

TEST(FileHeader, ReadRestoresTheFields)
{
    std::istringstream in(kAbcBytes + "rest");
    Header h("ABC");
    ASSERT_TRUE(h.read(in));
    EXPECT_EQ(h.getVersion1(), 205);
    EXPECT_EQ(h.getVersion2(), 100);
    EXPECT_EQ(h.getFlag(), 1);
    EXPECT_EQ(h.getErrorMsg(), "");
    std::string rest;
    in >> rest;
    EXPECT_EQ(rest, "rest");
}

TEST(FileHeader, LongestIdentifierFits)
{
    const std::string type(127, 'T');
    std::istringstream in(written(Header(type, 1, 2, 3)));
    Header h(type);
    EXPECT_TRUE(h.read(in));
    EXPECT_EQ(h.getFlag(), 3);
}

TEST(FileHeader, WrongTypeReplacesTheMessageAndReadsNoFurther)
{
    const std::pair<const char*, std::string> cases[] = {
        {"other identifier", kAbcBytes},
        {"empty stream", ""},
        {"prefix of the identifier", std::string("AB\0\1\0\1\0\1", 8)},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.second);
        Header h("ABD", 7, 8, 9);
        h.setWrongVersionErrorMsg("x", 1, 2);
        EXPECT_FALSE(h.read(in)) << c.first;
        EXPECT_EQ(h.getErrorMsg(), kWrongType) << c.first;
        EXPECT_EQ(h.getVersion1(), 7) << c.first;
    }
    std::istringstream tooLong(std::string(200, 'T') + '\0' + "12345");
    Header h(std::string(200, 'T'));
    EXPECT_FALSE(h.read(tooLong));
    EXPECT_EQ(h.getErrorMsg(), kWrongType);
}

TEST(FileHeader, DamagedFileAppendsTheMessage)
{
    Header h("ABC");
    h.setWrongVersionErrorMsg("Vorher. ", 1, 2);
    const std::string before = h.getErrorMsg();
    std::istringstream cut(kAbcBytes.substr(0, 5));
    EXPECT_FALSE(h.read(cut));
    EXPECT_EQ(h.getErrorMsg(), before + kDamaged);
    std::istringstream again(kAbcBytes.substr(0, 8));
    EXPECT_FALSE(h.read(again));
    EXPECT_EQ(h.getErrorMsg(), before + kDamaged + kDamaged);
    std::istringstream noNul("ABC");
    EXPECT_FALSE(h.read(noNul)) << "the identifier matches, the words are missing";
    EXPECT_EQ(h.getErrorMsg(), before + kDamaged + kDamaged + kDamaged);
    EXPECT_EQ(h.getVersion1(), 205) << "complete fields are read before the stream ends";
    EXPECT_EQ(h.getVersion2(), 100);
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
