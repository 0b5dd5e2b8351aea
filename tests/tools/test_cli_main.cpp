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
