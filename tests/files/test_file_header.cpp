// The file header: its bytes, type check, damaged files and German messages.
#include "KZFileHeader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

const std::string kWrongType = "Falscher Dateityp.";
const std::string kDamaged = "Zerst\xF6" "rte Datei.";
const std::string kAbc("ABC\0\xCD\0\x64\0\x01", 9); // "ABC", versions 205 and 100, flag 1

class Header : public KZFileHeader {
public:
    explicit Header(std::string type, unsigned short v1 = 0, unsigned short v2 = 0, unsigned char flag = 0)
        : m_type(std::move(type)) { m_version1 = v1; m_version2 = v2; m_flag = flag; }
    std::string getFileType() const override { return m_type; }
    bool readFrom(const std::string& bytes) { std::istringstream in(bytes); return read(in); }

private:
    std::string m_type;
};

TEST(FileHeader, WritesIdentifierNulWordsAndFlag)
{
    std::ostringstream out, tiny, failed;
    EXPECT_TRUE(Header("ABC", 205, 100, 1).write(out));
    EXPECT_EQ(out.str(), kAbc);
    EXPECT_EQ(Header("ABC").getBinaryStoreSize(), 9u);
    EXPECT_TRUE(Header("", 0x1234, 0xFFFF, 0xFE).write(tiny));
    EXPECT_EQ(tiny.str(), std::string("\0\x34\x12\xFF\xFF\xFE", 6));
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(Header("ABC").write(failed));
}

TEST(FileHeader, ReadRestoresTheFieldsOfTheRightType)
{
    Header h("ABC");
    EXPECT_EQ(h.getVersion1() + h.getVersion2() + h.getFlag(), 0);
    ASSERT_TRUE(h.readFrom(kAbc + "rest"));
    EXPECT_EQ(h.getVersion1(), 205);
    EXPECT_EQ(h.getVersion2(), 100);
    EXPECT_EQ(h.getFlag(), 1);
    EXPECT_EQ(h.getErrorMsg(), "");
    std::ostringstream longest;
    Header(std::string(127, 'T'), 1, 2, 3).write(longest);
    EXPECT_TRUE(Header(std::string(127, 'T')).readFrom(longest.str()));
}

TEST(FileHeader, WrongTypeReplacesTheMessageAndReadsNoFurther)
{
    for (const std::string& bytes : {kAbc, std::string(), std::string("AB\0\1\0\1\0\1", 8)}) {
        Header h("ABD", 7);
        h.setWrongVersionErrorMsg("x", 1, 2);
        EXPECT_FALSE(h.readFrom(bytes));
        EXPECT_EQ(h.getErrorMsg(), kWrongType);
        EXPECT_EQ(h.getVersion1(), 7);
    }
    Header tooLong(std::string(200, 'T'));
    EXPECT_FALSE(tooLong.readFrom(std::string(200, 'T') + '\0' + "12345"));
    EXPECT_EQ(tooLong.getErrorMsg(), kWrongType);
}

TEST(FileHeader, DamagedFileAppendsTheMessage)
{
    Header h("ABC");
    h.setWrongVersionErrorMsg("Vorher. ", 1, 2);
    const std::string before = h.getErrorMsg();
    EXPECT_FALSE(h.readFrom(kAbc.substr(0, 5)));
    EXPECT_EQ(h.getErrorMsg(), before + kDamaged);
    EXPECT_FALSE(h.readFrom(kAbc.substr(0, 8)));
    EXPECT_EQ(h.getVersion2(), 100) << "complete fields are read before the stream ends";
    EXPECT_FALSE(h.readFrom("ABC")) << "identifier without NUL, words missing";
    EXPECT_EQ(h.getErrorMsg(), before + kDamaged + kDamaged + kDamaged);
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
