// kzbs grep and kzbs number, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

using kzbs_test::runKzbs;

TEST(CliGrep, PrintsMatchingLinesWithOptions)
{
    struct Case { std::vector<std::string> args; std::string out; int status; } const cases[] = {
        {{"grep", "-n", "^ba"}, "3:bar baz\n", 0},
        {{"grep", "-o", "^."}, "h\nf\nb\nl\n", 0},       // an anchored pattern matches once per line
        {{"grep", "t$"}, "last\n", 0},                    // '$' also ends an unterminated last line
        {{"grep", "[0-9]"}, "", 1},
        {{"grep", "-n", "-o", "l+"}, "1:ll\n1:l\n4:l\n", 0},
    };
    for (const Case& c : cases) {
        const auto r = runKzbs(c.args, "hello world\nfoo\nbar baz\nlast");
        EXPECT_EQ(r.out, c.out) << c.args.back();
        EXPECT_EQ(r.status, c.status) << c.args.back();
        EXPECT_EQ(r.err, "") << c.args.back();
    }
    // 'M\xE4rz' in Windows-1252 input; the pattern and output are UTF-8
    EXPECT_EQ(runKzbs({"grep", "\xC3\xA4"}, "M\xE4rz\nApril\n").out, "M\xC3\xA4rz\n");
    EXPECT_EQ(runKzbs({"grep", "--raw", "\xC3\xB6"}, "K\xC3\xB6ln\nBonn\n").out, "K\xC3\xB6ln\n");
}

TEST(CliGrep, SeveralFilesArePrefixedAndMissingOnesReported)
{
    const std::string a = "/tmp/kzbs-cli-text-" + std::to_string(::getpid());
    std::ofstream(a) << "alpha\nbeta\n";
    auto r = runKzbs({"grep", "a$", a, a});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, a + ":alpha\n" + a + ":beta\n" + a + ":alpha\n" + a + ":beta\n");
    r = runKzbs({"grep", "eta", "/nonexistent/kzbs-file", a});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, a + ":beta\n");   // the other files are still searched
    EXPECT_EQ(r.err.rfind("kzbs: /nonexistent/kzbs-file: no such file", 0), 0u) << r.err;
    r = runKzbs({"grep", "a", "/tmp"});   // a folder is an error, not "no match"
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "kzbs: /tmp: is a directory\n");
    std::remove(a.c_str());
}

// Input far larger than one read, with a line longer than one and a last
// line without its newline: lines and their numbers come out whole across
// the seams, as reading line by line gives them.
TEST(CliGrep, LargeInputKeepsLinesAndNumbersAcrossReads)
{
    std::string input, expected, expectedRaw;
    for (int i = 1; i <= 60000; ++i) {
        std::string line = "line " + std::to_string(i) + (i % 7000 == 0 ? " needle" : "");
        if (i == 30000)
            line += std::string(700000, 'x') + " needle";
        input += line + (i < 60000 ? "\n" : "");
        if (line.find("needle") != std::string::npos)
            expected += std::to_string(i) + ":" + line + "\n";
    }
    input += " needle"; // the unterminated last line
    expected += "60000:line 60000 needle\n";
    const auto r = runKzbs({"grep", "-n", "--raw", "needle"}, input);
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.out == expected) << r.out.size() << " bytes instead of " << expected.size();
    EXPECT_EQ(runKzbs({"grep", "-n", "^line 6000"}, input).out, "6000:line 6000\n60000:line 60000 needle\n");
}

TEST(CliText, ErrorsExitTwoWithOneLineNamingTheReason)
{
    const std::vector<std::string> cases[] = {
        {"grep", "*a", "illegal pattern"}, {"grep", "a**", "too long"}, {"grep", "^?", "closure on an anchor"},
        {"grep", "--frobnicate", "unknown option --frobnicate"},
        {"number", "--frobnicate", "unknown option --frobnicate"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs({c[0], c[1]}, "a\n");
        EXPECT_EQ(r.status, 2) << c[1];
        EXPECT_EQ(r.out, "") << c[1];
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << r.err;
        EXPECT_NE(r.err.find(c[2]), std::string::npos) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
}

// Bytes Windows-1252 leaves undefined and NULs in a file reach the terminal
// as C1 controls and NULs, without a word from the library's converter.
TEST(CliGrep, AnyByteInAFileIsPrinted)
{
    const auto r = runKzbs({"grep", "b"}, std::string("a\x81" "b\0c\x9D\n", 7));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, std::string("a\xC2\x81" "b\0c\xC2\x9D\n", 9));
    EXPECT_EQ(r.err, "");
}

TEST(CliNumber, RefusesWhatIsNoNumber)
{
    const struct { std::vector<std::string> args; std::string input, message; } cases[] = {
        {{"number", "12.5", "abc"}, "", "'abc' is not a number"},
        {{"number", "1.2.3"}, "", "'1.2.3' is not a number"},
        {{"number", "12abc"}, "", "'12abc' is not a number"},
        {{"number"}, "12.5\ncaf\xE9 12.5\n", "line 2 of standard input: 'caf\\xE9 12.5' is not valid UTF-8"},
        {{"number"}, "12.5\n\n", "line 2 of standard input: '' is not a number"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args, c.input);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.err.rfind("kzbs: " + c.message, 0), 0u) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
}

TEST(CliNumber, GermanNotationFromArgumentsOrInput)
{
    auto r = runKzbs({"number", "1234567.89", "-123.45", "1234 EUR", "12"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "1.234.567,89\n-123,45\n1.234 EUR\n12\n");
    EXPECT_EQ(runKzbs({"number"}, "9876.5\n1000000\n").out, "9.876,5\n1.000.000\n");
}
