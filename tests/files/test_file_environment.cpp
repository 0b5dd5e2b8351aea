// Directory symbols: expansion, the symbol file and the printed table.
#include "KZFileEnvironment.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

class Symbols : public ::testing::Test {
protected:
    void SetUp() override { env() = KZFileEnvironment(); }
    void TearDown() override { env() = KZFileEnvironment(); }
    static KZFileEnvironment& env() { return KZFileName::getGlobalFileEnvironment(); }
    static bool read(const std::string& text)
    {
        std::istringstream in(text);
        return env().readSymbolsFromFile(in);
    }
};

TEST_F(Symbols, OneGlobalEnvironment)
{
    EXPECT_EQ(&KZFileName::getGlobalFileEnv(), &KZFileName::GlobalFileEnvironment);
    EXPECT_EQ(&KZFileName::getGlobalFileEnvironment(), &KZFileName::GlobalFileEnvironment);
}

TEST_F(Symbols, Expansion)
{
    read("ROOT=C:/Prog DATA=<ROOT>/Data A=1 B=2 lower=l");
    const std::pair<const char*, const char*> cases[] = {
        {"<DATA>/x.dat", "C:/Prog/Data/x.dat"},
        {"<NOPE>/x", "/x"},
        {"a<b", "a<b"},
        {"x<A", "x<A"},
        {"<A><B>", "12"},
        {"<A>>", "1>"},
        {"<<A>>", ">"},
        {"<>", ""},
        {"<LOWER><lower>", "l"},
        {"plain", "plain"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(env().expandString(c.first), c.second) << c.first;
    read("=empty");
    EXPECT_EQ(env().expandString("<>"), "empty");
}

TEST_F(Symbols, CyclicSymbolsStopInsteadOfHanging)
{
    read("SELF=<SELF>x PING=<PONG> PONG=<PING> WIDE=<WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE>");
    const std::string self = env().expandString("<SELF>");
    EXPECT_EQ(self, "<SELF>" + std::string(KZFileEnvironment::kMaxExpansions, 'x'));
    const std::string pingPong = env().expandString("a<PING>b");
    EXPECT_TRUE(pingPong == "a<PING>b" || pingPong == "a<PONG>b") << pingPong;
    EXPECT_LE(env().expandString("<WIDE>").size(), KZFileEnvironment::kMaxGrowth + 100);
    EXPECT_EQ(KZFileName("<PING>/x").getName(), "x");
}

TEST_F(Symbols, SymbolFileTokens)
{
    read("SYS_BASEDIR=C:\\Prog DATA=<SYS_BASEDIR>Data\nPLAIN =x N= K=a=b DATA=<SYS_BASEDIR>Data2\t");
    EXPECT_EQ(env().getBaseDir().compose(), "C:/Prog/");
    EXPECT_EQ(env().getSymbol("SYS_BASEDIR"), "C:\\Prog") << "stored as written";
    EXPECT_EQ(env().expandString("<DATA>/x"), "C:\\ProgData2/x") << "pasted as text, later wins";
    EXPECT_EQ(env().getSymbol("PLAIN"), "PLAIN");
    EXPECT_EQ(env().getSymbol(""), "x");
    EXPECT_EQ(env().getSymbol("N"), "");
    EXPECT_EQ(env().getSymbol("K"), "a=b");
    EXPECT_EQ(env().getSymbols().size(), 6u);
    read("OTHER=1");
    EXPECT_EQ(env().getSymbol("K"), "a=b") << "entries not in the file stay";
}

TEST_F(Symbols, SymbolFileResultTellsHowTheStreamEnded)
{
    const std::pair<const char*, bool> cases[] = {
        {"A=1 B=2", true}, {"A=1 B=2\n", false}, {"A=1 B=2  \t", false}, {"", false}, {"  \n ", false},
    };
    for (const auto& c : cases) {
        env() = KZFileEnvironment();
        EXPECT_EQ(read(c.first), c.second) << '"' << c.first << '"';
        EXPECT_EQ(env().getSymbol("B"), std::string(c.first).find("B=2") != std::string::npos ? "2" : "");
    }
}

TEST_F(Symbols, SymbolFileOnDisk)
{
    kzbs_test::TempFolder tmp;
    tmp.makeFile("DirectorySymbols.dat", "DATA=<SYS_BASEDIR>data\r\nM\xC3\xBC=1");
    tmp.makeFile("other.sym", "OTHER=2");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName())) << "no base directory yet";
    EXPECT_TRUE(env().setBaseDir(tmp.path()));
    EXPECT_TRUE(env().readSymbolsFromFile(KZFileName()));
    EXPECT_EQ(env().expandString("<DATA>"), tmp.path() + "/data");
    EXPECT_EQ(env().getSymbol("M\xC3\xBC"), "1") << "the file's bytes are taken as they are";
    EXPECT_TRUE(env().readSymbolsFromFile(KZFileName(tmp.path() + "/other.sym")));
    EXPECT_EQ(env().getSymbol("OTHER"), "2");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName(tmp.path() + "/missing.sym")));
    EXPECT_FALSE(env().setBaseDir("relative"));
}

TEST_F(Symbols, PrintedTable)
{
    EXPECT_EQ(env().symbolsAsString(), "");
    env().setBaseDir("C:\\Prog");
    read("ROOT=C:/Prog DATA=<ROOT>\\Data");
    EXPECT_EQ(env().symbolsAsString(),
              "DATA = <ROOT>\\Data (C:/Prog/Data)\r\n"
              "ROOT = C:/Prog (C:/Prog)\r\n"
              "SYS_BASEDIR = C:/Prog/ (C:/Prog/)\r\n");
    std::ostringstream out;
    env().printSymbols(out, "  ");
    EXPECT_EQ(out.str(),
              "  DATA = <ROOT>\\Data (C:/Prog/Data)\n"
              "  ROOT = C:/Prog (C:/Prog)\n"
              "  SYS_BASEDIR = C:/Prog/ (C:/Prog/)\n");
}

} // namespace
