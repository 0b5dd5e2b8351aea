// The dispatcher: help, unknown commands.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

using kzbs_test::runKzbs;

TEST(CliMain, HelpListsTheCommands)
{
    const auto r = runKzbs({"--help"});
    EXPECT_EQ(r.status, 0);
    for (const char* command : {"holidays", "is-holiday", "easter", "grep", "encrypt", "path", "ini"})
        EXPECT_NE(r.out.find(command), std::string::npos) << command;
}

TEST(CliMain, UnknownCommandIsAnErrorOnStderr)
{
    const auto r = runKzbs({"frobnicate"});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.out.empty());
    EXPECT_NE(r.err.find("kzbs: unknown command 'frobnicate'"), std::string::npos);
}

// How words reach the commands: options anywhere, the last of a repeated
// option wins, "--" ends the options, a word that names another command or
// looks like a negative number is an ordinary argument.
TEST(CliMain, WordsReachTheCommandAsTyped)
{
    const struct {
        std::vector<std::string> args;
        std::string input, out;
    } cases[] = {
        {{"grep", "--", "-x"}, "a\nb-x\n", "b-x\n"},
        {{"grep", "easter"}, "easter\nholidays\n", "easter\n"},
        {{"number", "-1234.5"}, "", "-1.234,5\n"},
        {{"holidays", "2010-10-03", "--state", "HB", "2010-10-03", "--format", "csv"},
         "",
         "date,weekday,name,states\n2010-10-03,Sonntag,Tag der Deutschen Einheit,alle\n"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args, c.input);
        EXPECT_EQ(r.status, 0) << c.args[1] << r.err;
        EXPECT_EQ(r.out, c.out) << c.args[1];
    }
}

TEST(CliMain, HelpAnswersInEveryForm)
{
    const std::string easter = runKzbs({"easter", "--help"}).out;
    ASSERT_EQ(easter.rfind("usage: kzbs easter", 0), 0u) << easter;
    EXPECT_EQ(runKzbs({"easter", "-h"}).out, easter);
    EXPECT_EQ(runKzbs({"help", "easter"}).out, easter);
    EXPECT_EQ(runKzbs({"--help", "easter"}).out, easter);
    EXPECT_EQ(runKzbs({"help"}).out, runKzbs({"-h"}).out);
    const std::string help = runKzbs({"help", "help"}).out;
    EXPECT_EQ(help.rfind("usage: kzbs help [COMMAND]\n", 0), 0u) << help;
    EXPECT_NE(runKzbs({"help"}).out.find("\n  help "), std::string::npos);
}

// Each command's help ends by showing how it is called.
TEST(CliMain, HelpEndsWithExamples)
{
    for (const char* command : {"holidays", "is-holiday", "easter", "cal", "next", "workdays", "workday", "encrypt",
                                "decrypt", "path", "symbols", "ini", "folders", "help"}) {
        const std::string help = runKzbs({"help", command}).out;
        const size_t examples = help.rfind("\nexample");
        ASSERT_NE(examples, std::string::npos) << command;
        const std::string lastLine = help.substr(help.rfind('\n', help.size() - 2) + 1);
        EXPECT_NE(lastLine.find(std::string("kzbs ") + command), std::string::npos) << command << ": " << lastLine;
    }
}

TEST(CliMain, ParseErrorsAreOneLineWithExitTwo)
{
    const struct {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{"--frob"}, "kzbs: unknown option --frob"},
        {{"easter", "--frob", "2024"}, "kzbs: unknown option --frob"},
        {{"holidays", "--format"}, "kzbs: --format needs a value"},
        {{"encrypt", "--bits", "100", "a", "b"}, "kzbs: --bits"},
        {{"folders", "--", "x"}, "kzbs: folders takes no arguments"},
        {{"help", "frob"}, "kzbs: unknown command 'frob'"},
        {{"help", "easter", "holidays"}, "kzbs: help takes one command"},
        // an option with one value, given twice: which one was meant?
        {{"holidays", "--state", "BY", "--state", "BE"}, "kzbs: --state given more than once (BY, BE)"},
        {{"workday", "2024-01-01", "1", "--week=5", "--week", "6"}, "kzbs: --week given more than once (5, 6)"},
        {{"holidays", "--format", "csv", "2024", "--format=csv"}, "kzbs: --format given more than once"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.out, "") << c.message;
        EXPECT_EQ(r.err.rfind(c.message, 0), 0u) << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    }
}

// Words that CLI11 would read as lists or markers ("[a,b]", "{}") or that
// look like options reach every command unchanged, bare or after "--". Each
// case shows the word back: in an answer or in the error naming it.
TEST(CliMain, EveryCommandReceivesEachWordAsTyped)
{
    kzbs_test::TempFolder dir;
    const std::string ini = dir / "words.ini";
    kzbs_test::writeFile(ini, "[S]\n");
    const std::vector<std::string> words = {"[0-9]", "[a,b]", "a,b", "{}", "-", "--", ""};
    // W stands for the word. A positional word is also tried after "--"; an
    // option's value cannot be "--". `skip` lists words with another meaning
    // there ("-" for standard input, "" for the default symbol file).
    const struct {
        std::vector<std::string> args;
        std::string shows;
        bool positional;
        std::vector<std::string> skip;
    } cases[] = {
        {{"easter", "W"}, "not a year: 'W'", true, {}},
        {{"holidays", "W"}, "not a year: 'W'", true, {}},
        {{"is-holiday", "W"}, "not a date: 'W'", true, {}},
        {{"workdays", "2024", "W"}, "not a date: 'W'", true, {}},
        {{"workday", "2024-01-01", "W"}, "not 'W'", true, {}},
        {{"number", "W"}, "'W' is not a number", true, {}},
        {{"grep", "x", "W"}, "W: no such file", true, {"-", ""}},
        {{"path", "parse", "W"}, "name:        W\n", true, {}},
        {{"symbols", "W"}, "symbol file W: no such file", true, {""}},
        {{"ini", "get", ini, "S", "K", "W"}, "W\n", true, {}},
        {{"ini", "sections", "W"}, "W: no such file", true, {"-", ""}},
        {{"holidays", "--state", "W"}, "unknown federal state 'W'", false, {}},
        {{"holidays", "--state", "BY", "--region", "W"}, "unknown region 'W'", false, {}},
        {{"path", "param", "x", "--base", "/", "--symbol", "W"}, "symbol <W> is not defined", false, {}},
        {{"decrypt", "--key-env", "W", "a", "b"}, "variable W is not set", false, {}},
        {{"encrypt", "--key-file", "W", "a", "b"}, "W: no such file", false, {"-", ""}},
    };
    for (const auto& c : cases)
        for (const std::string& word : words) {
            if (std::find(c.skip.begin(), c.skip.end(), word) != c.skip.end() || (!c.positional && word == "--"))
                continue;
            const auto replace = [&](std::string text) {
                const std::size_t at = text.find('W');
                return at == std::string::npos ? text : text.replace(at, 1, word);
            };
            std::vector<std::string> bare, marked;
            for (const std::string& arg : c.args) {
                if (arg == "W" && c.positional)
                    marked.push_back("--");
                bare.push_back(arg == "W" ? word : arg);
                marked.push_back(arg == "W" ? word : arg);
            }
            std::vector<std::vector<std::string>> forms = {marked};
            if (c.positional && word.rfind("-", 0) != 0)
                forms.push_back(bare);
            for (const auto& args : forms) {
                const auto r = runKzbs(args);
                EXPECT_NE((r.out + r.err).find(replace(c.shows)), std::string::npos)
                    << args[0] << " '" << word << "': " << r.out << r.err;
            }
        }
    for (const std::string& word : words) {
        ASSERT_EQ(runKzbs({"ini", "set", ini, "S", "K", "--", word}).status, 0) << word;
        EXPECT_EQ(runKzbs({"ini", "get", ini, "S", "K"}).out, word + "\n");
    }
}

// The words that went wrong before: a class with a comma and a file named
// in brackets.
TEST(CliMain, BracketsKeepTheirMeaning)
{
    const struct {
        std::string pattern, input, out;
    } patterns[] = {{"[0-9]", "ab\nz7\n", "z7\n"}, {"[a,b]", "x,y\nz\nb\n", "x,y\nb\n"}, {"a,b", "a,b\nab\n", "a,b\n"}};
    for (const auto& p : patterns)
        EXPECT_EQ(runKzbs({"grep", p.pattern}, p.input).out, p.out) << p.pattern;

    kzbs_test::TempFolder dir;
    kzbs_test::writeFile(dir / "plain", "text");
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(dir.path);
    const auto r = runKzbs({"encrypt", "--key-env", "K", "plain", "[out]"}, "", {"K=key"});
    std::filesystem::current_path(here);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(kzbs_test::exists(dir / "[out]"));
    EXPECT_FALSE(kzbs_test::exists(dir / "out"));
}

TEST(CliMain, VersionAndArgumentsThatAreNotUtf8)
{
    const auto version = runKzbs({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.rfind("kzbs ", 0), 0u) << version.out;
    EXPECT_EQ(std::count(version.out.begin(), version.out.end(), '\n'), 1);
    kzbs_test::expectRefusal(runKzbs({"path", "parse", "caf\xE9"}), "'caf\\xE9' is not valid UTF-8");
    // A character Windows-1252 has not would become '?', a closure in a pattern.
    kzbs_test::expectRefusal(runKzbs({"grep", "a\xE2\x86\x92"}, "a\n"), "Windows-1252");
    EXPECT_EQ(runKzbs({"grep", "--raw", "\xE9"}, "caf\xE9\n").out, "caf\xE9\n"); // --raw takes bytes
}

// Output that does not arrive is an error; a reader that goes away is not.
TEST(CliMain, OutputThatCannotBeWrittenIsAnError)
{
    kzbs_test::TempFolder dir;
    const std::string full = dir / "full";
    if (::getuid() != 0 || ::mknod(full.c_str(), S_IFCHR | 0666, ::makedev(1, 7)) != 0)
        GTEST_SKIP() << "making a device node needs root";
    const std::vector<std::string> commands[] = {{"holidays", "2026", "--format", "ics"},
                                                 {"holidays", "2026"},
                                                 {"easter", "2024"},
                                                 {"grep", "a"},
                                                 {"number", "12.5"},
                                                 {"encrypt", "--key-env", "K", "-", "-"},
                                                 {"ini", "sections", dir / "x.ini"}};
    kzbs_test::writeFile(dir / "x.ini", "[S]\nK=1\n");
    for (const auto& args : commands) {
        const auto r = runKzbs(args, "a\n", {"K=key"}, "", full);
        EXPECT_EQ(r.status, 2) << args[0];
        EXPECT_EQ(r.err, "kzbs: cannot write to standard output: No space left on device\n") << args[0];
    }
}

TEST(CliMain, ClosedPipeEndsQuietly)
{
    kzbs_test::TempFolder dir;
    const std::string command = "trap '' PIPE; " + kzbs_test::shellQuote(KZBS_EXE)
                                + " holidays 1990 2099 --format ics 2>" + (dir / "err") + " | head -c 1 >"
                                + (dir / "out");
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(kzbs_test::readFile(dir / "err"), "");
}
