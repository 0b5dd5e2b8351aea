// INI files: real files in a temporary folder, written by the library and by hand.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QTextCodec>

#include <algorithm>
#include <iterator>

namespace cpa = CrossPlatformApi;
using kzbs_test::TempFolder;
using Strings = std::vector<std::string>;

namespace {
Strings sorted(Strings list)
{
    std::sort(list.begin(), list.end());
    return list;
}
} // namespace

TEST(IniFiles, WrittenValuesReadBack)
{
    TempFolder dir;
    const std::string file = dir / "app.ini";
    struct Case { const char* section; const char* key; const char* value; };
    const Case cases[] = {
        {"Main", "Name", "replaced below"}, {"Main", "Name", "Planer"}, {"Main", "Empty", ""},
        {"Main", "List", "a, b, c"},        {"Main", "Equals", "x=y;z"},
        {"Other", "Umlauts", "K\xF6ln \xDF"}, {"Other", "Path", "C:\\Daten\\x.dat"},
    };
    for (const Case& c : cases)
        cpa::writeIniString(c.section, c.key, c.value, file.c_str());
    for (size_t i = 1; i < std::size(cases); ++i) // the first value was replaced by the second
        EXPECT_EQ(cpa::getIniString(cases[i].section, cases[i].key, "-", file.c_str()), cases[i].value)
            << cases[i].key;
    EXPECT_EQ(sorted(cpa::getIniSections(file.c_str())), (Strings{"Main", "Other"}));
    EXPECT_NE(kzbs_test::readFile(file).find("[Main]\nEmpty=\n"), std::string::npos);
}

TEST(IniFiles, HandWrittenFileIsRead)
{
    TempFolder dir;
    const std::string file = dir / "hand.ini";
    kzbs_test::writeFile(file, "; planner\n[Database]\nhost = db.example\nport=5432\nname=\n\n"
                               "[N]\nword=abc\nnegative=-7\ntitle=\"Planer, Version 2\"\nlist=a, b\n");
    EXPECT_EQ(cpa::getIniString("Database", "host", "", file.c_str()), "db.example");
    EXPECT_EQ(cpa::getIniString("N", "title", "", file.c_str()), "Planer, Version 2");
    EXPECT_EQ(cpa::getIniString("N", "list", "-", file.c_str()), ""); // unquoted commas: a list
    EXPECT_EQ(cpa::getIniInt("Database", "port", 0, file.c_str()), 5432);
    EXPECT_EQ(cpa::getIniInt("N", "negative", 0, file.c_str()), -7);
    EXPECT_EQ(cpa::getIniInt("N", "word", 99, file.c_str()), 0);  // no number: 0, not the default
    EXPECT_EQ(cpa::getIniInt("N", "missing", 99, file.c_str()), 99);
    EXPECT_EQ(sorted(cpa::getIniSections(file.c_str())), (Strings{"Database", "N"}));
    EXPECT_EQ(sorted(cpa::getIniSectionEntries("Database", file.c_str())),
              (Strings{"host=db.example", "name=", "port=5432"}));
    EXPECT_EQ(cpa::getIniString("database", "host", "case", file.c_str()), "case");
    EXPECT_TRUE(cpa::getIniSectionEntries("Nowhere", file.c_str()).empty());
}

TEST(IniFiles, AMissingFileReadsAsEmptyAndIsNotCreated)
{
    TempFolder dir;
    const std::string missing = dir / "missing.ini";
    EXPECT_EQ(cpa::getIniString("S", "k", "fallback", missing.c_str()), "fallback");
    EXPECT_EQ(cpa::getIniString("S", "k", "", missing.c_str()), "");
    EXPECT_EQ(cpa::getIniInt("S", "k", 17, missing.c_str()), 17);
    EXPECT_TRUE(cpa::getIniSections(missing.c_str()).empty());
    EXPECT_TRUE(cpa::getIniSectionEntries("S", missing.c_str()).empty());
    EXPECT_FALSE(kzbs_test::exists(missing));
}

// The entries call reads its section in the local 8-bit encoding, the others
// in Latin-1: with UTF-8 as the local encoding only the UTF-8 spelling lists it.
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
