// INI files: real files in a temporary folder, written by the library and by hand.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QtGlobal>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <iterator>

namespace cpa = CrossPlatformApi;
using Strings = std::vector<std::string>;

// The local 8-bit encoding is UTF-8 here: Qt 6 always takes it so on Linux, Qt 5 is told.
TEST(IniFiles, WrittenValuesReadBack)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec* const previous = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    kzbs_test::TempFolder dir;
    const std::string file = dir / "app.ini";
    struct Case {
        const char* section;
        const char* key;
        const char* value;
    };
    const Case cases[] = {
        {"Main", "Name", "old"},
        {"Main", "Name", "Planer"},
        {"Main", "Empty", ""},
        {"Main", "List", "a, b, c"},
        {"Main", "Equals", "x=y;z"},
        {"K\xF6ln", "Umlauts", "K\xF6ln \xDF"},
        {"K\xF6ln", "Path", "C:\\Daten\\x.dat"},
    };
    for (const Case& c : cases)
        cpa::writeIniString(c.section, c.key, c.value, file.c_str());
    for (size_t i = 1; i < std::size(cases); ++i) // the first value was replaced by the second
        EXPECT_EQ(cpa::getIniString(cases[i].section, cases[i].key, "-", file.c_str()), cases[i].value) << cases[i].key;
    EXPECT_EQ(cpa::getIniSections(file.c_str()), (Strings{"K\xF6ln", "Main"}));
    EXPECT_NE(kzbs_test::readFile(file).find("[Main]\nEmpty=\n"), std::string::npos);
    // The entries call alone reads its section in the local 8-bit encoding (UTF-8 here), not in Latin-1.
    EXPECT_EQ(cpa::getIniSectionEntries("K\xC3\xB6ln", file.c_str()),
              (Strings{"Path=C:\\Daten\\x.dat", "Umlauts=K\xF6ln \xDF"}));
    EXPECT_TRUE(cpa::getIniSectionEntries("K\xF6ln", file.c_str()).empty());
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(previous);
#endif
}

TEST(IniFiles, HandWrittenFileIsRead)
{
    kzbs_test::TempFolder dir;
    const std::string file = dir / "hand.ini", missing = dir / "missing.ini";
    kzbs_test::writeFile(file,
                         "; planner\n[Database]\nhost = db.example\nport=5432\nname=\n\n"
                         "[N]\nword=abc\ntitle=\"Planer, Version 2\"\nlist=a, b\n");
    EXPECT_EQ(cpa::getIniString("Database", "host", "", file.c_str()), "db.example");
    EXPECT_EQ(cpa::getIniString("N", "title", "", file.c_str()), "Planer, Version 2");
    EXPECT_EQ(cpa::getIniString("N", "list", "-", file.c_str()), ""); // unquoted commas: a list
    EXPECT_EQ(cpa::getIniString("database", "host", "case", file.c_str()), "case");
    EXPECT_EQ(cpa::getIniInt("Database", "port", 0, file.c_str()), 5432);
    EXPECT_EQ(cpa::getIniInt("N", "word", 99, file.c_str()), 0); // no number: 0, not the default
    EXPECT_EQ(cpa::getIniInt("N", "missing", 99, file.c_str()), 99);
    EXPECT_EQ(cpa::getIniSectionEntries("Database", file.c_str()), (Strings{"host=db.example", "name=", "port=5432"}));
    EXPECT_EQ(cpa::getIniString("S", "k", "fallback", missing.c_str()), "fallback");
    EXPECT_FALSE(kzbs_test::exists(missing)) << "reading creates no file";
}
