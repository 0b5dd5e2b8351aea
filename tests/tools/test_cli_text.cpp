// kzbs grep and kzbs number, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>

using kzbs_test::runKzbs;

TEST(CliGrep, PrintsMatchingLinesWithOptions)
{
    struct Case {
        std::vector<std::string> args;
        std::string out;
        int status;
    } const cases[] = {
        {{"grep", "-n", "^ba"}, "3:bar baz\n", 0},
        {{"grep", "-o", "^."}, "h\nf\nb\nl\n", 0}, // an anchored pattern matches once per line
        {{"grep", "t$"}, "last\n", 0},             // '$' also ends an unterminated last line
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
    EXPECT_EQ(r.out, a + ":beta\n"); // the other files are still searched
    EXPECT_EQ(r.err.rfind("kzbs: /nonexistent/kzbs-file: no such file", 0), 0u) << r.err;
    r = runKzbs({"grep", "a", "/tmp"}); // a folder is an error, not "no match"
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
        {"grep", "*a", "illegal pattern"},
        {"grep", "a**", "too long"},
        {"grep", "^?", "closure on an anchor"},
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
    const auto r = runKzbs({"grep", "b"}, std::string("a\x81"
                                                      "b\0c\x9D\n",
                                                      7));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, std::string("a\xC2\x81"
                                 "b\0c\xC2\x9D\n",
                                 9));
    EXPECT_EQ(r.err, "");
}

namespace {

// kzbs with `input` on a pipe, the way `cat FILE | kzbs grep` reads it,
// where runKzbs hands it a regular file.
kzbs_test::CliResult runPiped(const std::vector<std::string>& args, const std::string& input)
{
    const kzbs_test::TempFolder dir;
    kzbs_test::writeFile(dir.path + "/in", input);
    std::string command = "cat " + dir.path + "/in | " + kzbs_test::shellQuote(KZBS_EXE);
    for (const std::string& a : args)
        command += " " + kzbs_test::shellQuote(a);
    command += " >" + dir.path + "/out 2>" + dir.path + "/err";
    const int raw = std::system(command.c_str());
    kzbs_test::CliResult result;
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    result.out = kzbs_test::readFile(dir.path + "/out");
    result.err = kzbs_test::readFile(dir.path + "/err");
    return result;
}

// UTF-8 text (a-umlaut, o-umlaut, u-umlaut, sharp s, euro sign), its last
// line without a newline.
const std::string kUtf8Text =
    "Gr\xC3\xBC\xC3\x9F"
    "e aus M\xC3\xBCnchen\nhallo Welt\nM\xC3\x9CNCHEN liegt\n"
    "Stra\xC3\x9F"
    "e\n\xE2\x82\xAC 5\nlast";

struct GrepCase {
    std::vector<std::string> args;
    std::string input;
    std::string out;
    int status;
};

void expectGrep(const GrepCase& c, bool piped)
{
    const auto r = piped ? runPiped(c.args, c.input) : runKzbs(c.args, c.input);
    const std::string what = (piped ? "piped: " : "") + c.args.back();
    EXPECT_EQ(r.out, c.out) << what;
    EXPECT_EQ(r.status, c.status) << what << ": " << r.err;
    EXPECT_EQ(r.err, "") << what;
}

} // namespace

// Options as GNU grep has them, on a file and on a pipe (read whole to decide
// its encoding).
TEST(CliGrep, OptionsSelectCountAndPrintAsGrepDoes)
{
    const GrepCase cases[] = {
        {{"grep", "M\xC3\xBCnchen"},
         kUtf8Text,
         "Gr\xC3\xBC\xC3\x9F"
         "e aus M\xC3\xBCnchen\n",
         0},
        {{"grep", "-i", "m\xC3\xBCNCHEN"},
         kUtf8Text,
         "Gr\xC3\xBC\xC3\x9F"
         "e aus M\xC3\xBCnchen\nM\xC3\x9CNCHEN liegt\n",
         0},
        {{"grep", "-i", "-i", "-o", "\xC3\x9Cn"}, kUtf8Text, "\xC3\xBCn\n\xC3\x9CN\n", 0}, // a flag twice is harmless
        {{"grep", "-i", "STRASSE"}, kUtf8Text, "", 1},                                     // sharp s stays itself
        {{"grep", "-i",
          "STRA\xC3\x9F"
          "E"},
         kUtf8Text,
         "Stra\xC3\x9F"
         "e\n",
         0},
        {{"grep", "-v", "-n", "a"}, kUtf8Text, "3:M\xC3\x9CNCHEN liegt\n5:\xE2\x82\xAC 5\n", 0},
        {{"grep", "-c", "-v", "a"}, kUtf8Text, "2\n", 0},
        {{"grep", "-c", "-o", "l"}, kUtf8Text, "3\n", 0}, // lines, not matches
        {{"grep", "-ic", "zzz"}, kUtf8Text, "0\n", 1},
        {{"grep", "-o", "-v", "a"}, kUtf8Text, "", 0},
        {{"grep", "-q", "a"}, kUtf8Text, "", 0},
        {{"grep", "-q", "zzz"}, kUtf8Text, "", 1},
        {{"grep", "-l", "a"}, kUtf8Text, "(standard input)\n", 0},
        {{"grep", "-l", "-v", "."}, "a\n\nb\n", "(standard input)\n", 0},
        {{"grep", "-v", "a"}, std::string("a\0b\nc\nba", 9), "c\n", 0},
        {{"grep", "-n", "t$"}, kUtf8Text, "2:hallo Welt\n3:M\xC3\x9CNCHEN liegt\n6:last\n", 0},
        // -o prints the original characters of a match
        {{"grep", "-o", "\xC3\xBC.e"},
         kUtf8Text,
         "\xC3\xBC\xC3\x9F"
         "e\n",
         0},
        {{"grep", "-o", "^."}, "\xCE\xB1\xCE\xB2\nab\n", "\xCE\xB1\na\n", 0}, // alpha: no Windows-1252 byte
        {{"grep", "\xE2\x82\xAC"}, kUtf8Text, "\xE2\x82\xAC 5\n", 0},
        // classes compare the low seven bits: a-umlaut is a d, superscript two a 2
        {{"grep", "-o", "B[a-z]r"}, "B\xC3\xA4r\nBor\n", "B\xC3\xA4r\nBor\n", 0},
        {{"grep", "x[0-9]"}, "x\xC2\xB2\nx\n", "x\xC2\xB2\n", 0},
    };
    for (const GrepCase& c : cases) {
        expectGrep(c, false);
        expectGrep(c, true);
    }
}

// A file's encoding is decided by all of it, even when the byte that is not
// UTF-8 comes after the first megabytes: "a-umlaut" in UTF-8 then reads as
// the two Windows-1252 characters A-tilde and the currency sign.
TEST(CliGrep, EncodingsDecideHowLinesAreMatchedAndPrinted)
{
    std::string late;
    for (int i = 0; i < 200000; ++i)
        late += "\xC3\xA4\n";
    late += "\xFC\n";
    const GrepCase cases[] = {
        {{"grep", "-c", "\xC3\x83"}, late, "200000\n", 0},
        {{"grep", "\xC3\xBC"}, late, "\xC3\xBC\n", 0},
        {{"grep", "M\xC3\xBCnchen"}, "M\xFCnchen\n", "M\xC3\xBCnchen\n", 0},
        {{"grep", "--encoding", "utf-8", "a.b"},
         "a\xFC"
         "b\n",
         "a\xFC"
         "b\n",
         0},
        {{"grep", "--encoding", "cp1252", "\xC3\x83\xC2\xBC"}, "Gr\xC3\xBC\n", "Gr\xC3\x83\xC2\xBC\n", 0},
        {{"grep", "--encoding", "raw", "\xC3\xBC"}, "Gr\xC3\xBC\nGr\xFC\n", "Gr\xC3\xBC\n", 0},
        {{"grep", "--raw", "\xFC"}, "Gr\xC3\xBC\nGr\xFC\n", "Gr\xFC\n", 0},
        {{"grep", "--encoding", "auto", "-c", "a"}, "", "0\n", 1},
    };
    for (const GrepCase& c : cases) {
        expectGrep(c, false);
        expectGrep(c, true);
    }
}

TEST(CliGrep, RefusesPatternsAndEncodingsItCannotHonour)
{
    const struct {
        std::vector<std::string> args;
        std::string message;
    } cases[] = {
        {{"grep", "a\xC2\xAB"},
         "pattern character '\xC2\xAB' is byte 0xAB in Windows-1252, which the matcher reads as its token '+'"},
        {{"grep", "\xC3\x9B"}, "token '['"},
        {{"grep", "\xCE\xB1"}, "pattern character '\xCE\xB1' is not in Windows-1252"},
        {{"grep", "--encoding", "latin1", "a"}, "unknown encoding 'latin1'"},
        {{"grep", "--raw", "--encoding", "utf-8", "a"}, "--raw reads files as bytes"},
        {{"grep", "--encoding", "raw", "--encoding", "utf-8", "a"}, "--encoding given more than once"},
    };
    for (const auto& c : cases)
        kzbs_test::expectRefusal(runKzbs(c.args, "a\n"), c.message);
}

// Exit status 2 for a file that cannot be read even when another matched;
// -q answers 0 at its first match whatever follows.
TEST(CliGrep, ExitStatusAcrossSeveralInputs)
{
    const kzbs_test::TempFolder dir;
    const std::string a = dir.path + "/a", b = dir.path + "/b", missing = dir.path + "/missing";
    kzbs_test::writeFile(a, "alpha\nbeta\n");
    kzbs_test::writeFile(b, "gamma\n");
    const struct {
        std::vector<std::string> args;
        std::string out;
        int status;
    } cases[] = {
        {{"grep", "-c", "a", a, "-", b}, a + ":2\n(standard input):1\n" + b + ":1\n", 0},
        {{"grep", "-l", "et", a, b, "-"}, a + "\n", 0},
        {{"grep", "-n", "mm", a, b}, b + ":1:gamma\n", 0},
        {{"grep", "-q", "a", a, missing}, "", 0},
        {{"grep", "-q", "a", missing, a}, "", 0},
        {{"grep", "a", missing, a}, a + ":alpha\n" + a + ":beta\n", 2},
        {{"grep", "zzz", a, missing}, "", 2},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args, "stdin a\n");
        EXPECT_EQ(r.out, c.out) << c.args[2];
        EXPECT_EQ(r.status, c.status) << c.args[2];
    }
}

TEST(CliNumber, RefusesWhatIsNoNumber)
{
    const struct {
        std::vector<std::string> args;
        std::string input, message;
    } cases[] = {
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
