// INI files: real files in a temporary folder, written by the library and by hand.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QTextCodec>

#include <algorithm>

namespace cpa = CrossPlatformApi;
using kzbs_test::TempFolder;
using kzbs_test::readFile;
using kzbs_test::writeFile;
using Strings = std::vector<std::string>;

namespace {

Strings sorted(Strings list)
{
    std::sort(list.begin(), list.end());
    return list;
}

const char* const kHandWritten =
    "; settings of the planner\n"
    "[Database]\n"
    "host = db.example\n"
    "port=5432\n"
    "name=\n"
    "\n"
    "[Window]\n"
    "width=800\n"
    "title=\"Planer, Version 2\"\n";

} // namespace

TEST(IniFiles, WrittenValuesReadBackAndSurviveOtherWrites)
{
    TempFolder dir;
    const std::string file = dir / "app.ini";
    struct Case { const char* section; const char* key; const char* value; };
    const Case cases[] = {
        {"Main", "Name", "Planer"},
        {"Main", "Empty", ""},
        {"Main", "Spaces", "  two  words  "},
        {"Main", "List", "a, b, c"},
        {"Main", "Equals", "x=y;z"},
        {"Other", "Umlauts", "K\xF6ln \xDF \xE9"},
        {"Other", "Path", "C:\\Daten\\x.dat"},
        {"Other", "Name", "replaced below"},
        {"Other", "Name", "second value"},
    };
    for (const Case& c : cases)
        cpa::writeIniString(c.section, c.key, c.value, file.c_str());

    for (const Case& c : cases) {
        if (std::string(c.value) == "replaced below")
            continue;
        EXPECT_EQ(cpa::getIniString(c.section, c.key, "default", file.c_str()), c.value)
            << c.section << "/" << c.key;
    }
    EXPECT_EQ(sorted(cpa::getIniSections(file.c_str())), (Strings{"Main", "Other"}));
}

TEST(IniFiles, WritingCreatesTheFileWithItsSection)
{
    TempFolder dir;
    const std::string file = dir / "new.ini";
    ASSERT_FALSE(kzbs_test::exists(file));
    cpa::writeIniString("Fenster", "Breite", "640", file.c_str());
    const std::string text = readFile(file);
    EXPECT_NE(text.find("[Fenster]"), std::string::npos) << text;
    EXPECT_NE(text.find("Breite=640"), std::string::npos) << text;
    EXPECT_EQ(cpa::getIniInt("Fenster", "Breite", -1, file.c_str()), 640);
}

TEST(IniFiles, HandWrittenFileIsRead)
{
    TempFolder dir;
    const std::string file = dir / "hand.ini";
    writeFile(file, kHandWritten);

    EXPECT_EQ(cpa::getIniString("Database", "host", "", file.c_str()), "db.example");
    EXPECT_EQ(cpa::getIniString("Window", "title", "", file.c_str()), "Planer, Version 2");
    EXPECT_EQ(cpa::getIniInt("Database", "port", 0, file.c_str()), 5432);
    EXPECT_EQ(sorted(cpa::getIniSections(file.c_str())), (Strings{"Database", "Window"}));
    EXPECT_EQ(sorted(cpa::getIniSectionEntries("Database", file.c_str())),
              (Strings{"host=db.example", "name=", "port=5432"}));
}

TEST(IniFiles, MissingFileSectionOrKeyGiveTheDefaults)
{
    TempFolder dir;
    const std::string missing = dir / "missing.ini";
    const std::string file = dir / "hand.ini";
    writeFile(file, kHandWritten);

    struct Case { std::string file; const char* section; const char* key; };
    const Case cases[] = {
        {missing, "Database", "host"},
        {file, "Nowhere", "host"},
        {file, "Database", "nokey"},
        {file, "database", "host"}, // sections are case-sensitive
    };
    for (const Case& c : cases) {
        EXPECT_EQ(cpa::getIniString(c.section, c.key, "fallback", c.file.c_str()), "fallback");
        EXPECT_EQ(cpa::getIniString(c.section, c.key, "", c.file.c_str()), "");
        EXPECT_EQ(cpa::getIniInt(c.section, c.key, 17, c.file.c_str()), 17);
    }
    EXPECT_TRUE(cpa::getIniSections(missing.c_str()).empty());
    EXPECT_TRUE(cpa::getIniSectionEntries("Database", missing.c_str()).empty());
    EXPECT_TRUE(cpa::getIniSectionEntries("Nowhere", file.c_str()).empty());
    EXPECT_FALSE(kzbs_test::exists(missing)) << "reading must not create the file";
}

TEST(IniFiles, IntegersAreTheStoredTextConverted)
{
    TempFolder dir;
    const std::string file = dir / "numbers.ini";
    writeFile(file, "[N]\nplain=42\nnegative=-7\nword=abc\nempty=\nfraction=3.5\n");
    struct Case { const char* key; int expected; };
    const Case cases[] = {
        {"plain", 42},
        {"negative", -7},
        {"word", 0},     // a text that is no number gives 0, not the default
        {"empty", 0},
        {"fraction", 0},
        {"missing", 99}, // only a missing key gives the default
    };
    for (const Case& c : cases)
        EXPECT_EQ(cpa::getIniInt("N", c.key, 99, file.c_str()), c.expected) << c.key;
}

TEST(IniFiles, EntriesAreKeyEqualsValue)
{
    TempFolder dir;
    const std::string file = dir / "entries.ini";
    cpa::writeIniString("S", "x", "1", file.c_str());
    cpa::writeIniString("S", "y", "two", file.c_str());
    cpa::writeIniString("S", "blank", "", file.c_str());
    cpa::writeIniString("T", "z", "3", file.c_str());
    EXPECT_EQ(sorted(cpa::getIniSectionEntries("S", file.c_str())),
              (Strings{"blank=", "x=1", "y=two"}));
}

// The entries call reads its section name in the local 8-bit encoding, the
// others in Latin-1. With a UTF-8 locale a non-ASCII section written by
// writeIniString is listed only under its UTF-8 spelling.
TEST(IniFiles, EntriesDecodeTheSectionAsLocal8Bit)
{
    QTextCodec* const previous = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    TempFolder dir;
    const std::string file = dir / "koeln.ini";
    cpa::writeIniString("K\xF6ln", "Dom", "ja", file.c_str());

    EXPECT_EQ(cpa::getIniString("K\xF6ln", "Dom", "", file.c_str()), "ja");
    EXPECT_EQ(cpa::getIniSections(file.c_str()), (Strings{"K\xF6ln"}));
    EXPECT_EQ(cpa::getIniSectionEntries("K\xC3\xB6ln", file.c_str()), (Strings{"Dom=ja"}));
    EXPECT_TRUE(cpa::getIniSectionEntries("K\xF6ln", file.c_str()).empty());
    QTextCodec::setCodecForLocale(previous);
}
