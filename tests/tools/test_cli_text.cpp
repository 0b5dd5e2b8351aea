// kzbs grep and kzbs number, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

using kzbs_test::runKzbs;

namespace {

std::string writeFile(const std::string& name, const std::string& content)
{
    const std::string path = "/tmp/kzbs-cli-text-" + std::to_string(::getpid()) + "-" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

} // namespace

TEST(CliGrep, PrintsMatchingLinesWithOptions)
{
    const std::string input = "hello world\nfoo\nbar baz\nlast";
    struct Case {
        std::vector<std::string> args;
        std::string out;
        int status;
    } const cases[] = {
        {{"grep", "o"}, "hello world\nfoo\n", 0},
        {{"grep", "-n", "^ba"}, "3:bar baz\n", 0},
        {{"grep", "-o", "ba."}, "bar\nbaz\n", 0},
        {{"grep", "-o", "^."}, "h\nf\nb\nl\n", 0},       // an anchored pattern matches once per line
        {{"grep", "t$"}, "last\n", 0},                    // '$' also ends an unterminated last line
        {{"grep", "[0-9]"}, "", 1},
        {{"grep", "-n", "-o", "l+"}, "1:ll\n1:l\n4:l\n", 0},
    };
    for (const Case& c : cases) {
        const auto r = runKzbs(c.args, input);
        EXPECT_EQ(r.out, c.out) << c.args.back();
        EXPECT_EQ(r.status, c.status) << c.args.back();
        EXPECT_EQ(r.err, "") << c.args.back();
    }
}

TEST(CliGrep, SeveralFilesArePrefixedAndMissingOnesReported)
{
    const std::string a = writeFile("a", "alpha\nbeta\n"), b = writeFile("b", "gamma\n");
    auto r = runKzbs({"grep", "a$", a, b});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, a + ":alpha\n" + a + ":beta\n" + b + ":gamma\n");

    r = runKzbs({"grep", "eta", "/nonexistent/kzbs-file", a});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, a + ":beta\n");   // the other files are still searched
    EXPECT_NE(r.err.find("kzbs: /nonexistent/kzbs-file: No such file"), std::string::npos);
    std::remove(a.c_str());
    std::remove(b.c_str());
}

TEST(CliGrep, BadPatternsNameTheReason)
{
    struct Case {
        const char* pattern;
        const char* reason;
    } const cases[] = {{"*a", "illegal pattern"}, {"", "illegal pattern"},
                       {"a**", "too long"}, {"^?", "closure on an anchor"}};
    for (const Case& c : cases) {
        const auto r = runKzbs({"grep", c.pattern}, "a\n");
        EXPECT_EQ(r.status, 2) << c.pattern;
        EXPECT_EQ(r.out, "") << c.pattern;
        EXPECT_NE(r.err.find(c.reason), std::string::npos) << r.err;
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << r.err;
    }
    EXPECT_EQ(runKzbs({"grep"}).status, 2);
}

TEST(CliGrep, TerminalTextIsConvertedUnlessRaw)
{
    // 'M\xE4rz' in Windows-1252 input; the pattern and output are UTF-8
    auto r = runKzbs({"grep", "\xC3\xA4"}, "M\xE4rz\nApril\n");
    EXPECT_EQ(r.out, "M\xC3\xA4rz\n");
    // raw bytes: '\xC3\xB6' is UTF-8 o-umlaut and holds no token byte
    r = runKzbs({"grep", "--raw", "\xC3\xB6"}, "K\xC3\xB6ln\nBonn\n");
    EXPECT_EQ(r.out, "K\xC3\xB6ln\n");
}

TEST(CliNumber, GermanNotation)
{
    auto r = runKzbs({"number", "1234567.89", "-123.45", "1234 EUR", "12"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "1.234.567,89\n-123,45\n1.234 EUR\n12\n");
    r = runKzbs({"number"}, "9876.5\n1000000\n");
    EXPECT_EQ(r.out, "9.876,5\n1.000.000\n");
}

TEST(CliText, HelpAndUnknownOptions)
{
    for (const char* command : {"grep", "number"}) {
        EXPECT_EQ(runKzbs({command, "--help"}).status, 0);
        const auto bad = runKzbs({command, "--frobnicate", "x"});
        EXPECT_EQ(bad.status, 2);
        EXPECT_NE(bad.err.find("unknown option --frobnicate"), std::string::npos);
    }
}
