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

TEST_F(Symbols, Expansion)
{
    EXPECT_EQ(&KZFileName::getGlobalFileEnv(), &KZFileName::GlobalFileEnvironment);
    read("ROOT=C:/Prog DATA=<ROOT>/Data A=1 B=2 lower=l =empty");
    const std::pair<const char*, const char*> cases[] = {
        {"<DATA>/x.dat", "C:/Prog/Data/x.dat"}, {"<NOPE>/x", "/x"}, {"a<b", "a<b"}, {"x<A", "x<A"},
        {"<A><B>", "12"}, {"<A>>", "1>"}, {"<<A>>", ">"}, {"<>", "empty"}, {"<LOWER><lower>", "l"}};
    for (const auto& c : cases)
        EXPECT_EQ(env().expandString(c.first), c.second) << c.first;
}

TEST_F(Symbols, CyclicSymbolsStopInsteadOfHanging)
{
    read("SELF=<SELF>x PING=<PONG> PONG=<PING> WIDE=<WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE><WIDE>");
    EXPECT_EQ(env().expandString("<SELF>"), "<SELF>" + std::string(KZFileEnvironment::kMaxExpansions, 'x'));
    EXPECT_EQ(env().expandString("a<PING>b"), "a<PING>b") << "an even number of steps";
    EXPECT_LE(env().expandString("<WIDE>").size(), KZFileEnvironment::kMaxGrowth + 100);
    EXPECT_EQ(KZFileName("<PING>/x").getName(), "x");
}

TEST_F(Symbols, SymbolFileTokens)
{
    read("SYS_BASEDIR=C:\\Prog DATA=<SYS_BASEDIR>Data\nPLAIN =x N= K=a=b DATA=<SYS_BASEDIR>Data2\t");
    EXPECT_EQ(env().getBaseDir().compose(), "C:/Prog/");
    EXPECT_EQ(env().getSymbol("SYS_BASEDIR"), "C:\\Prog") << "stored as written";
    EXPECT_EQ(env().expandString("<DATA>/x"), "C:\\ProgData2/x") << "pasted as text, later wins";
    EXPECT_EQ(env().getSymbol("PLAIN") + '|' + env().getSymbol("") + '|' + env().getSymbol("N") + '|' +
                  env().getSymbol("K"), "PLAIN|x||a=b");
    read("OTHER=1");
    EXPECT_EQ(env().getSymbols().size(), 7u) << "entries not in the file stay";
}

TEST_F(Symbols, SymbolFileResultTellsHowTheStreamEnded)
{
    const std::pair<const char*, bool> cases[] = {
        {"A=1 B=2", true}, {"A=1 B=2\n", false}, {"A=1 B=2 \t", false}, {"", false}, {"  \n ", false}};
    for (const auto& c : cases) {
        env() = KZFileEnvironment();
        EXPECT_EQ(read(c.first), c.second) << '"' << c.first << '"';
        EXPECT_EQ(env().getSymbols().size(), c.first[0] == 'A' ? 2u : 0u) << '"' << c.first << '"';
    }
}

TEST_F(Symbols, SymbolFileOnDisk)
{
    const kzbs_test::TempFolder tmp;
    tmp.makeFile("DirectorySymbols.dat", "DATA=<SYS_BASEDIR>data\r\n");
    tmp.makeFile("other.sym", "OTHER=2");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName())) << "no base directory yet";
    EXPECT_TRUE(env().setBaseDir(tmp.path()));
    env().readSymbolsFromFile(KZFileName());
    EXPECT_EQ(env().expandString("<DATA>"), tmp / "data");
    EXPECT_TRUE(env().readSymbolsFromFile(KZFileName(tmp / "other.sym")));
    EXPECT_EQ(env().getSymbol("OTHER"), "2");
    EXPECT_FALSE(env().readSymbolsFromFile(KZFileName(tmp / "missing.sym")));
    EXPECT_FALSE(env().setBaseDir("relative"));
}

TEST_F(Symbols, PrintedTable)
{
    EXPECT_EQ(env().symbolsAsString(), "");
    env().setBaseDir("C:\\Prog");
    read("ROOT=C:/Prog DATA=<ROOT>\\Data");
    const std::string lines[] = {"DATA = <ROOT>\\Data (C:/Prog/Data)", "ROOT = C:/Prog (C:/Prog)",
                                 "SYS_BASEDIR = C:/Prog/ (C:/Prog/)"};
    EXPECT_EQ(env().symbolsAsString(), lines[0] + "\r\n" + lines[1] + "\r\n" + lines[2] + "\r\n");
    std::ostringstream out;
    env().printSymbols(out, "  ");
    EXPECT_EQ(out.str(), "  " + lines[0] + "\n  " + lines[1] + "\n  " + lines[2] + "\n");
}

} // namespace
