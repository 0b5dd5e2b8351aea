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
};

TEST_F(Paths, MakeRelPathAgainstTheBaseDirectory)
{
    env().setBaseDir("C:/Prog/Data/");
    const struct { const char *name, *result; bool relative; } cases[] = {
        {"C:/Prog/Out/x.txt", "../Out/x.txt", true}, {"C:/Prog/Data/sub/y", "sub/y", true},
        {"C:/Prog/Data/f.txt", "f.txt", true}, {"C:/x.txt", "../../x.txt", true},
        {"c:\\prog\\DATA\\f.txt", "f.txt", true},        // case and separator style ignored
        {"C:/Prog/DataOld/x", "../DataOld/x", true}, {"rel/x", "rel/x", true},
        {"D:/Prog/Data/x", "D:/Prog/Data/x", false},     // another drive
        {"/Prog/Data/x", "/Prog/Data/x", false}};        // no drive against a drive
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
        {"sub/f.txt", "C:/Prog/Data/sub/f.txt"}, {"../x", "C:/Prog/x"}, {"D:/y", "D:/y"}, {"", "C:/Prog/Data/"}};
    for (const auto& c : cases) {
        KZFileName n(c.first);
        EXPECT_TRUE(n.makeAbsPath(true)) << c.first;
        EXPECT_EQ(n.compose(), c.second) << c.first;
    }
}

TEST_F(Paths, MakeAbsPathAsksTheFileSystem)
{
    const kzbs_test::TempFolder tmp;
    std::filesystem::create_directory(tmp / "M\xC3\xBCll");
    std::filesystem::create_directory_symlink(tmp / "M\xC3\xBCll", tmp / "link");
    const std::string root = std::filesystem::canonical(tmp.path()).string(); // ASCII
    const std::pair<std::string, std::string> cases[] = {
        {root + "/M\xFCll/../M\xFCll/./", root + "/M\xFCll"}, {root + "/link/.", root + "/M\xFCll"},
        {"no/such/file", "no/such/file"}};
    for (const auto& c : cases) {
        KZFileName n(c.first);
        EXPECT_EQ(n.makeAbsPath(false), c.first[0] == '/') << c.first;
        EXPECT_EQ(n.compose(), c.second) << c.first;
    }
}

TEST_F(Paths, AddAppendsRelativeNamesBelowADirectory)
{
    KZFileName dir, up;
    dir.setFullPath("C:/a/");
    EXPECT_TRUE(dir.add(KZFileName("sub/f.txt")));
    EXPECT_EQ(dir.compose(), "C:/a/sub/f.txt");
    EXPECT_FALSE(dir.add(KZFileName("g"))) << "the name part is set now";
    up.setFullPath("C:/a/b/");
    EXPECT_TRUE(up.add(KZFileName("../g")));
    EXPECT_EQ(up.compose(), "C:/a/g");
    for (const char* absolute : {"/x", "C:x"}) {
        KZFileName target;
        target.setFullPath("C:/a/");
        EXPECT_FALSE(target.add(KZFileName(absolute))) << absolute;
        EXPECT_EQ(target.compose(), "C:/a/") << absolute;
    }
}

TEST_F(Paths, ParameterisedForm)
{
    std::istringstream symbols("ROOT=C:/Prog DATA=<ROOT>/Data EMPTY= REL=C:/Prog/Rel");
    env().readSymbolsFromFile(symbols);
    const struct { const char *name, *symbol, *result; } cases[] = {
        {"c:\\prog\\data\\x.dat", "DATA", "<DATA>/x.dat"}, {"C:/Prog/Data/", "DATA", "<DATA>/"},
        {"C:/Other/x.dat", "DATA", "C:/Other/x.dat"},
        {"C:/Prog/DataOld/x", "DATA", "C:/Prog/DataOld/x"},   // the trailing separator is part of the prefix
        {"C:/Prog/Data/x", "NOPE", "C:/Prog/Data/x"}, {"C:/Prog/Data/x", "EMPTY", "C:/Prog/Data/x"},
        {"C:/Prog/Data/x", "data", "C:/Prog/Data/x"}};        // symbol names are case-sensitive
    for (const auto& c : cases)
        EXPECT_EQ(KZFileName(c.name).asParmeterisedString(c.symbol), c.result) << c.name << ' ' << c.symbol;
    env().setBaseDir("C:/Prog");
    EXPECT_EQ(KZFileName("Rel/x.dat").asParmeterisedString("REL"), "<REL>/x.dat") << "relative names too";
}

} // namespace
