// Relative, absolute and parameterised forms against the global base directory.
#include "KZFileName.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

class Paths : public ::testing::Test {
protected:
    void SetUp() override { env() = KZFileEnvironment(); }
    void TearDown() override { env() = KZFileEnvironment(); }
    static KZFileEnvironment& env() { return KZFileName::getGlobalFileEnv(); }
    static void symbols(const char* text)
    {
        std::istringstream in(text);
        env().readSymbolsFromFile(in);
    }
};

TEST_F(Paths, MakeRelPathAgainstTheBaseDirectory)
{
    env().setBaseDir("C:/Prog/Data/");
    const struct {
        const char* name;
        const char* result;
        bool relative;
    } cases[] = {
        {"C:/Prog/Out/x.txt", "../Out/x.txt", true},
        {"C:/Prog/Data/sub/y", "sub/y", true},
        {"C:/Prog/Data/f.txt", "f.txt", true},
        {"C:/x.txt", "../../x.txt", true},
        {"c:\\prog\\DATA\\f.txt", "f.txt", true},   // case and separator style ignored
        {"C:/Prog/DataOld/x", "../DataOld/x", true},
        {"D:/Prog/Data/x", "D:/Prog/Data/x", false},  // another drive
        {"/Prog/Data/x", "/Prog/Data/x", false},     // no drive against a drive
        {"rel/x", "rel/x", true},                     // already relative
    };
    for (const auto& c : cases) {
        KZFileName n(c.name);
        EXPECT_EQ(n.makeRelPath(), c.relative) << c.name;
        EXPECT_EQ(n.compose(), c.result) << c.name;
        EXPECT_EQ(KZFileName(c.name).asRelPathString(), c.result) << c.name;
    }
}

TEST_F(Paths, MakeAbsPathWithTheBaseDirectory)
{
    KZFileName noBase("sub/f.txt");
    EXPECT_FALSE(noBase.makeAbsPath(true));
    EXPECT_EQ(noBase.compose(), "sub/f.txt");

    env().setBaseDir("C:\\Prog\\Data");
    const std::pair<const char*, const char*> cases[] = {
        {"sub/f.txt", "C:/Prog/Data/sub/f.txt"},
        {"../x", "C:/Prog/x"},
        {"D:/y", "D:/y"},
        {"", "C:/Prog/Data/"},
    };
    for (const auto& c : cases) {
        KZFileName n(c.first);
        EXPECT_TRUE(n.makeAbsPath(true)) << c.first;
        EXPECT_EQ(n.compose(), c.second) << c.first;
    }
}

TEST_F(Paths, MakeAbsPathAsksTheFileSystem)
{
    kzbs_test::TempFolder tmp;
    tmp.makeDir("M\xC3\xBCll");
    tmp.makeFile("M\xC3\xBCll/f.txt");
    tmp.makeLink("M\xC3\xBCll", "link");
    const std::string root = tmp.realPath();   // in Windows-1252 is the same: ASCII

    KZFileName dotted(root + "/M\xFCll/../M\xFCll/./f.txt");
    EXPECT_TRUE(dotted.makeAbsPath(false));
    EXPECT_EQ(dotted.compose(), root + "/M\xFCll/f.txt");

    KZFileName linked(root + "/link/f.txt");
    EXPECT_TRUE(linked.makeAbsPath(false));
    EXPECT_EQ(linked.compose(), root + "/M\xFCll/f.txt");

    KZFileName missing("no/such/file");
    EXPECT_FALSE(missing.makeAbsPath(false));
    EXPECT_EQ(missing.compose(), "no/such/file");
}

TEST_F(Paths, AddAppendsRelativeNamesBelowADirectory)
{
    KZFileName dir;
    dir.setFullPath("C:/a/");
    EXPECT_TRUE(dir.add(KZFileName("sub/f.txt")));
    EXPECT_EQ(dir.compose(), "C:/a/sub/f.txt");
    EXPECT_FALSE(dir.add(KZFileName("g"))) << "the name part is set now";
    EXPECT_EQ(dir.compose(), "C:/a/sub/f.txt");

    KZFileName up;
    up.setFullPath("C:/a/b/");
    EXPECT_TRUE(up.add(KZFileName("../g")));
    EXPECT_EQ(up.compose(), "C:/a/g");

    for (const char* absolute : {"/x", "C:x", "\\\\srv\\x"}) {
        KZFileName target;
        target.setFullPath("C:/a/");
        EXPECT_FALSE(target.add(KZFileName(absolute))) << absolute;
        EXPECT_EQ(target.compose(), "C:/a/") << absolute;
    }
}

TEST_F(Paths, ParameterisedForm)
{
    symbols("ROOT=C:/Prog DATA=<ROOT>/Data EMPTY=");
    const std::pair<const char*, const char*> cases[] = {
        {"c:\\prog\\data\\x.dat", "<DATA>/x.dat"},
        {"C:/Prog/Data/", "<DATA>/"},
        {"C:/Other/x.dat", "C:/Other/x.dat"},
        {"C:/Prog/DataOld/x", "C:/Prog/DataOld/x"},  // the trailing separator is part of the prefix
    };
    for (const auto& c : cases)
        EXPECT_EQ(KZFileName(c.first).asParmeterisedString("DATA"), c.second) << c.first;
    EXPECT_EQ(KZFileName("C:/Prog/Data/x").asParmeterisedString("NOPE"), "C:/Prog/Data/x");
    EXPECT_EQ(KZFileName("C:/Prog/Data/x").asParmeterisedString("EMPTY"), "C:/Prog/Data/x");
    EXPECT_EQ(KZFileName("C:/Prog/Data/x").asParmeterisedString("data"), "C:/Prog/Data/x")
        << "symbol names are case-sensitive";
}

TEST_F(Paths, ParameterisedFormOfARelativeName)
{
    env().setBaseDir("C:/Prog");
    symbols("DATA=C:/Prog/Data");
    EXPECT_EQ(KZFileName("Data/x.dat").asParmeterisedString("DATA"), "<DATA>/x.dat");
}

} // namespace
