// The dispatcher: help, unknown commands.
#include "RunKzbs.h"

#include <gtest/gtest.h>

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
    const struct { std::vector<std::string> args; std::string input, out; } cases[] = {
        {{"grep", "--", "-x"}, "a\nb-x\n", "b-x\n"},
        {{"grep", "easter"}, "easter\nholidays\n", "easter\n"},
        {{"number", "-1234.5"}, "", "-1.234,5\n"},
        {{"holidays", "2010-10-03", "--state", "HB", "2010-10-03", "--state=BY", "--format", "csv"}, "",
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
}

TEST(CliMain, ParseErrorsAreOneLineWithExitTwo)
{
    const struct { std::vector<std::string> args; const char* message; } cases[] = {
        {{"--frob"}, "kzbs: unknown option --frob"},
        {{"easter", "--frob", "2024"}, "kzbs: unknown option --frob"},
        {{"holidays", "--format"}, "kzbs: --format needs a value"},
        {{"encrypt", "--bits", "100", "a", "b"}, "kzbs: --bits"},
        {{"folders", "--", "x"}, "kzbs: folders takes no arguments"},
        {{"help", "frob"}, "kzbs: unknown command 'frob'"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.out, "") << c.message;
        EXPECT_EQ(r.err.rfind(c.message, 0), 0u) << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    }
}
