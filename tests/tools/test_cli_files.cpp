// kzbs path and kzbs symbols, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

using kzbs_test::runKzbs;

TEST(CliFiles, ParseShowsThePartsAndForms)
{
    const auto r = runKzbs({"path", "parse", "C:\\Prog\\M\xC3\xBCll\\x.tar.gz", "\\\\srv\\share\\f"});
    EXPECT_EQ(r.status, 0) << r.err;
    for (const char* line :
         {"base name:   x.tar\n", "windows:     C:\\Prog\\M\xC3\xBCll\\x.tar.gz\n", "normalised:  //srv/share/f\n"})
        EXPECT_NE(r.out.find(line), std::string::npos) << line << r.out;
}

TEST(CliFiles, RelAbsParamAndSymbols)
{
    const std::string file = "/tmp/kzbs-cli-files-" + std::to_string(::getpid()) + ".dat";
    std::ofstream(file, std::ios::binary) << "DATA=<SYS_BASEDIR>Data/\n\xDC"
                                             "BER=/\xFC"
                                             "ber\n";
    const struct {
        std::vector<std::string> args;
        int status;
        std::string out;
    } cases[] = {{{"path", "rel", "C:/Prog/Out/x.txt", "--base", "C:\\Prog\\Data"}, 0, "../Out/x.txt\n"},
                 {{"path", "rel", "D:/x", "--base", "C:/Prog"}, 1, "D:/x\n"},
                 {{"path", "abs", "/tmp/../tmp/./"}, 0, "/tmp\n"},
                 {{"path", "abs",
                   "<\xC3\x9C"
                   "BER>/f",
                   "--base", "/", "--symbols", file},
                  0,
                  "/\xC3\xBC"
                  "ber/f\n"},
                 {{"path", "param", "/b/Data/x", "/c/y", "--symbol", "DATA", "--base", "/b", "--symbols", file},
                  1,
                  "<DATA>/x\n/c/y\n"},
                 {{"symbols", file, "--base", "/b"},
                  0,
                  "DATA = <SYS_BASEDIR>Data/ (/b/Data/)\nSYS_BASEDIR = /b/ (/b/)\n\xC3\x9C"
                  "BER = /\xC3\xBC"
                  "ber (/\xC3\xBC"
                  "ber)\n"}};
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, c.status) << c.args[1] << ' ' << c.args[2] << r.err;
        EXPECT_EQ(r.out, c.out) << c.args[1] << ' ' << c.args[2];
    }
    std::remove(file.c_str());
}

// Symbol files the library would expand without end or print as garbage.
TEST(CliFiles, SymbolFilesMustBeTextWithoutCycles)
{
    kzbs_test::TempFolder dir;
    const std::string file = dir / "symbols.dat";
    const struct {
        std::string text, message;
    } cases[] = {
        {"L=<L>x\n", "defines symbols in a cycle, <L> -> <L>,"},
        {"A=<B>/x B=<C>\nC=<A>y D=<A>\n", "<A> -> <B> -> <C> -> <A>"},
        {"SYS_BASEDIR=<DATA> DATA=<SYS_BASEDIR>/d\n", "<DATA> -> <SYS_BASEDIR> -> <DATA>"},
        {std::string("A=x\0y\n", 6), "is not text: byte 0x00 in line 1"},
        {"A=/x\nB=\x1B[31m\n", "is not text: byte 0x1B in line 2"},
        {"A=\x81\n", "is not text: byte 0x81 in line 1"},
    };
    for (const auto& c : cases) {
        kzbs_test::writeFile(file, c.text);
        kzbs_test::expectRefusal(runKzbs({"symbols", file}), c.message);
        kzbs_test::expectRefusal(runKzbs({"path", "parse", "x", "--symbols", file}), c.message);
    }
    kzbs_test::writeFile(file, "A=/a\tB=<A>/b<NOPE>\r\nC=<A><A>\n");
    const auto r = runKzbs({"symbols", file});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "A = /a (/a)\nB = <A>/b<NOPE> (/a/b)\nC = <A><A> (/a/a)\n");
}

TEST(CliFiles, BadInputIsOneLineOnStderr)
{
    const std::vector<std::string> cases[] = {{"path"},
                                              {"path", "frob", "x"},
                                              {"path", "rel", "/x"},
                                              {"path", "param", "x", "--symbol", "NOPE"},
                                              {"path", "parse", "x", "--symbols", "/no/such/file"},
                                              {"symbols"},
                                              {"path", "parse", "x", "--frob"}};
    for (const auto& args : cases) {
        const auto r = runKzbs(args);
        EXPECT_EQ(r.status, 2) << args.back();
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << args.back() << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << args.back() << r.err;
    }
    for (const char* command : {"path", "symbols"})
        EXPECT_EQ(runKzbs({command, "--help"}).status, 0) << command;
}
