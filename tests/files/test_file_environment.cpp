// Names in their environment: directory symbols, the base directory and the file system.
#include "KZFileEnvironment.h"
#include "KZFileName.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

using kzbs_test::TempFolder;

struct Symbols : ::testing::Test {
    void SetUp() override { env() = KZFileEnvironment(); }
    static KZFileEnvironment& env() { return KZFileName::getGlobalFileEnvironment(); }
    static bool read(const std::string& text)
    {
        std::istringstream in(text);
        return env().readSymbolsFromFile(in);
    }
};
using Paths = Symbols;
using FileSystem = Symbols;

TEST_F(Symbols, Expansion)
{
    read("ROOT=C:\\Prog DATA=<ROOT>/Data A=1 B=2 lower=l =empty");
    const std::pair<const char*, const char*> cases[] = {{"<DATA>/x.dat", "C:\\Prog/Data/x.dat"},
                                                         {"<NOPE>/x", "/x"},
                                                         {"a<b", "a<b"},
                                                         {"<A><B>", "12"},
                                                         {"<A>>", "1>"},
                                                         {"<<A>>", ">"},
                                                         {"<>", "empty"},
                                                         {"<LOWER><lower>", "l"}};
    for (const auto& c : cases)
        EXPECT_EQ(env().expandString(c.first), c.second) << c.first;
    EXPECT_EQ(KZFileName("<DATA>/x.dat").compose(), "C:/Prog/Data/x.dat") << "names expand before parsing";
    read("LONG=<A>" + std::string(200, 'y'));
    EXPECT_EQ(env().expandString("<LONG><LONG>b"), "1" + std::string(200, 'y') + "1" + std::string(200, 'y') + "b")
        << "values longer than the room kept in front of the text";
}

TEST_F(Symbols, CyclicSymbolsStopInsteadOfHanging)
{
    read("SELF=<SELF>x PING=<PONG> PONG=<PING> WIDE=<WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE>");
    EXPECT_EQ(env().expandString("<SELF>"), "<SELF>" + std::string(KZFileEnvironment::kMaxExpansions, 'x'));
    EXPECT_EQ(env().expandString("a<PING>b"), "a<PING>b") << "an even number of steps";
    EXPECT_LE(env().expandString("<WIDE>").size(), KZFileEnvironment::kMaxGrowth + 100);
    EXPECT_EQ(KZFileName("<PING>/x").getName(), "x");
}

TEST_F(Symbols, ALoweredGrowthBoundHoldsAndCannotBeRaised)
{
    read("WIDE=<WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE>");
    KZFileEnvironment lowered = env();
    lowered.setMaxGrowth(256);
    EXPECT_LE(lowered.expandString("<WIDE>").size(), 256u + 100);
    EXPECT_GT(env().expandString("<WIDE>").size(), 60000u) << "the default stays for everybody else";
    lowered.setMaxGrowth(1u << 30);
    EXPECT_EQ(lowered.maxGrowth(), KZFileEnvironment::kMaxGrowth);
}

TEST_F(Symbols, SymbolFileTokens)
{
    read("SYS_BASEDIR=C:\\Prog DATA=<SYS_BASEDIR>Data\nPLAIN =x N= K=a=b DATA=<SYS_BASEDIR>Data2\t");
    EXPECT_EQ(env().getBaseDir().compose(), "C:/Prog/");
    EXPECT_EQ(env().getSymbol("SYS_BASEDIR"), "C:\\Prog") << "stored as written";
    EXPECT_EQ(env().expandString("<DATA>/x"), "C:\\ProgData2/x") << "pasted as text, later wins";
    EXPECT_EQ(
        env().getSymbol("PLAIN") + '|' + env().getSymbol("") + '|' + env().getSymbol("N") + '|' + env().getSymbol("K"),
        "PLAIN|x||a=b");
    read("OTHER=1");
    EXPECT_EQ(env().getSymbols().size(), 7u) << "entries not in the file stay";
}

TEST_F(Symbols, SymbolFileResultTellsHowTheStreamEnded)
{
    const std::pair<const char*, bool> cases[] = {{"A=1", true}, {"A=1\n", false}, {"A=1 \t", false}, {"", false}};
    for (const auto& c : cases) {
        env() = KZFileEnvironment();
        EXPECT_EQ(read(c.first), c.second) << '"' << c.first << '"';
        EXPECT_EQ(env().getSymbols().size(), c.first[0] ? 1u : 0u) << '"' << c.first << '"';
    }
}

TEST_F(Symbols, SymbolFileOnDisk)
{
    const TempFolder tmp;
    kzbs_test::writeFile(tmp / "DirectorySymbols.dat", "DATA=<SYS_BASEDIR>data\r\n");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName())) << "no base directory yet";
    EXPECT_TRUE(env().setBaseDir(tmp.path));
    env().readSymbolsFromFile(KZFileName());
    EXPECT_EQ(env().expandString("<DATA>"), tmp / "data");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName(tmp / "missing.sym")));
    EXPECT_FALSE(env().setBaseDir("relative"));
}

TEST_F(Symbols, PrintedTable)
{
    env().setBaseDir("C:\\Prog");
    read("ROOT=C:/Prog DATA=<ROOT>\\Data");
    const std::string lines[] = {"DATA = <ROOT>\\Data (C:/Prog/Data)", "ROOT = C:/Prog (C:/Prog)",
                                 "SYS_BASEDIR = C:/Prog/ (C:/Prog/)"};
    EXPECT_EQ(env().symbolsAsString(), lines[0] + "\r\n" + lines[1] + "\r\n" + lines[2] + "\r\n");
    std::ostringstream out;
    env().printSymbols(out, "  ");
    EXPECT_EQ(out.str(), "  " + lines[0] + "\n  " + lines[1] + "\n  " + lines[2] + "\n");
}

TEST_F(Paths, RelativeAndAbsoluteAgainstTheBaseDirectory)
{
    KZFileName noBase("sub/f.txt");
    EXPECT_FALSE(noBase.makeAbsPath(true));
    EXPECT_EQ(noBase.compose(), "sub/f.txt");
    env().setBaseDir("C:\\Prog\\Data");
    // A name, its relative form (null: none) and the absolute form of that again.
    const struct {
        const char *name, *rel, *abs;
    } cases[] = {{"C:/Prog/Out/x.txt", "../Out/x.txt", "C:/Prog/Out/x.txt"},
                 {"C:/x.txt", "../../x.txt", "C:/x.txt"},
                 {"c:\\prog\\DATA\\sub\\f.txt", "sub/f.txt", "C:/Prog/Data/sub/f.txt"},
                 {"C:/Prog/Data/", "", "C:/Prog/Data/"},
                 {"C:/Prog/DataOld/x", "../DataOld/x", "C:/Prog/DataOld/x"},
                 {"../x", "../x", "C:/Prog/x"},
                 {"D:/Prog/Data/x", nullptr, "D:/Prog/Data/x"},
                 {"/Prog/Data/x", nullptr, "/Prog/Data/x"}};
    for (const auto& c : cases) {
        KZFileName n(c.name);
        EXPECT_EQ(n.makeRelPath(), c.rel != nullptr) << c.name;
        EXPECT_EQ(n.compose(), c.rel ? c.rel : c.name) << c.name;
        EXPECT_EQ(KZFileName(c.name).asRelPathString(), n.compose()) << c.name;
        EXPECT_TRUE(n.makeAbsPath(true)) << c.name;
        EXPECT_EQ(n.compose(), c.abs) << c.name;
    }
}

TEST_F(Paths, MakeAbsPathAsksTheFileSystem)
{
    const TempFolder tmp;
    std::filesystem::create_directory(kzbs_test::fsPath(tmp / "M\xC3\xBCll"));
    const std::string root = std::filesystem::canonical(kzbs_test::fsPath(tmp.path)).generic_u8string();
    struct Case {
        std::string name, resolved;
        bool absolute;
    };
    std::vector<Case> cases = {{root + "/M\xFCll/../M\xFCll/./", root + "/M\xFCll", true},
                               {"no/such/file", "no/such/file", false}};
#ifndef _WIN32 // symbolic links are POSIX's
    std::filesystem::create_directory_symlink(tmp / "M\xC3\xBCll", tmp / "link");
    cases.push_back({root + "/link/.", root + "/M\xFCll", true});
#endif
    for (const auto& c : cases) {
        KZFileName n(c.name);
        EXPECT_EQ(n.makeAbsPath(false), c.absolute) << c.name;
        EXPECT_EQ(n.compose(), c.resolved) << c.name;
    }
}

TEST_F(Paths, AddAppendsRelativeNamesBelowADirectory)
{
    const struct {
        const char *base, *added;
        bool ok;
        const char* result;
    } cases[] = {{"C:/a/", "sub/f.txt", true, "C:/a/sub/f.txt"},
                 {"C:/a/b/", "../g", true, "C:/a/g"},
                 {"C:/a/f", "g", false, "C:/a/f"},
                 {"C:/a/", "/x", false, "C:/a/"},
                 {"C:/a/", "C:x", false, "C:/a/"}};
    for (const auto& c : cases) {
        KZFileName n(c.base);
        EXPECT_EQ(n.add(KZFileName(c.added)), c.ok) << c.base << ' ' << c.added;
        EXPECT_EQ(n.compose(), c.result) << c.base << ' ' << c.added;
    }
}

TEST_F(Paths, ParameterisedForm)
{
    read("ROOT=C:/Prog DATA=<ROOT>/Data EMPTY= REL=C:/Prog/Rel");
    const struct {
        const char *name, *symbol, *result;
    } cases[] = {{"c:\\prog\\data\\x.dat", "DATA", "<DATA>/x.dat"},  {"C:/Prog/Data/", "DATA", "<DATA>/"},
                 {"C:/Prog/DataOld/x", "DATA", "C:/Prog/DataOld/x"}, {"C:/Prog/Data/x", "NOPE", "C:/Prog/Data/x"},
                 {"C:/Prog/Data/x", "EMPTY", "C:/Prog/Data/x"},      {"C:/Prog/Data/x", "data", "C:/Prog/Data/x"}};
    for (const auto& c : cases)
        EXPECT_EQ(KZFileName(c.name).asParmeterisedString(c.symbol), c.result) << c.name << ' ' << c.symbol;
    env().setBaseDir("C:/Prog");
    EXPECT_EQ(KZFileName("Rel/x.dat").asParmeterisedString("REL"), "<REL>/x.dat") << "relative names too";
}

TEST_F(FileSystem, ExistsIsWritableAndModificationTime)
{
    const TempFolder tmp;
    for (const char* name : {"plain.txt", "readonly.txt", "M\xC3\xBCller.txt"}) // the umlaut in UTF-8 on disk
        kzbs_test::writeFile(tmp / name, "x");
    kzbs_test::writeFile(tmp / "readonly.txt", "x", 0444);
    std::filesystem::create_directory(tmp / "folder");
#ifdef _WIN32
    const bool superUser = false;
#else
    const bool superUser = ::geteuid() == 0; // root writes anyway
#endif
    const struct {
        const char* name;
        bool exists, writable;
    } cases[] = {{"plain.txt", true, true},     {"readonly.txt", true, superUser},
                 {"M\xFCller.txt", true, true}, {"M\xC3\xBCller.txt", false, false}, // Windows-1252 names only
                 {"missing.txt", false, false}, {".txt", true, false},               // no base name: the folder
                 {"folder/", true, false},      {"missing/", false, false}};
    for (const auto& c : cases) {
        const KZFileName n(tmp / c.name);
        EXPECT_EQ(n.exists(), c.exists) << c.name;
        EXPECT_EQ(n.isWritable(), c.writable) << c.name;
    }
    EXPECT_FALSE(KZFileName("").exists());
    const std::time_t stamp = 1700000000;
    ASSERT_TRUE(kzbs_test::setModificationTime(tmp / "M\xC3\xBCller.txt", stamp));
    EXPECT_EQ(KZFileName(tmp / "M\xFCller.txt").getFileTime().get_time_t(), stamp);
    EXPECT_EQ(KZFileName(tmp / "missing.txt").getFileTime().Hash(), 0u) << "the null time";
}

} // namespace
