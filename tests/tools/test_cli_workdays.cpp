// kzbs workdays and workday, run as a user runs them. The expected figures
// are counted by hand from the calendar.
#include "RunKzbs.h"

#include <gtest/gtest.h>

using kzbs_test::runKzbs;

namespace {

// The first word of the output.
std::string firstWord(const std::string& text)
{
    return text.substr(0, text.find_first_of(" \n"));
}

std::vector<std::string> with(std::vector<std::string> args, const std::vector<std::string>& more)
{
    args.insert(args.end(), more.begin(), more.end());
    return args;
}

} // namespace

TEST(CliWorkdays, CountsByStateWeekAndRuleSet)
{
    const struct {
        std::vector<std::string> args;
        const char* count;
    } cases[] = {
        // 2024: 262 weekdays; 9 nationwide holidays fall on them
        {{"2024", "2024"}, "253"},
        {{"2024-01-01", "2024-12-31", "--state", "BY"}, "251"},  // + Fronleichnam, Allerheiligen
        {{"2024", "2024", "--state", "BY", "--classic"}, "250"}, // + Mariae Himmelfahrt
        {{"2024", "2024", "--state", "BY", "--region", "A", "--week", "6", "--eves-off"}, "298"},
        {{"2024-12-23", "2024-12-31", "--state", "BE"}, "5"},
        {{"2024-12-23", "2024-12-31", "--state", "BE", "--eves-off"}, "3"},
        {{"2024-12-23", "2024-12-31", "--state", "BE", "--week", "6"}, "6"},
        {{"2024-05-30", "2024-05-30", "--state", "ST"}, "1"},
        {{"2024-05-30", "2024-05-30", "--state", "ST", "--classic"}, "0"},
        {{"1989-10-03", "1989-10-03", "--classic"}, "0"}, // the classic table's every year
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(with({"workdays"}, c.args));
        ASSERT_EQ(r.status, 0) << c.args[0] << r.err;
        EXPECT_EQ(firstWord(r.out), c.count) << c.args[0] << ' ' << c.args[1] << ": " << r.out;
    }
}

// The line names what was counted: one day or several, and which holidays.
TEST(CliWorkdays, TheLineSaysWhatWasCounted)
{
    const struct {
        std::vector<std::string> args;
        const char* line;
    } cases[] = {
        {{"workdays", "2024-05-30", "2024-05-30"},
         "1 working day from 2024-05-30 to 2024-05-30 (Monday-Friday, nationwide holidays by law)\n"},
        {{"workdays", "2024-05-30", "2024-05-30", "--state", "BY"},
         "0 working days from 2024-05-30 to 2024-05-30 (Monday-Friday, holidays of BY by law)\n"},
        {{"workdays", "2024-12-23", "2024-12-24", "--week", "6", "--eves-off", "--classic"},
         "1 working day from 2024-12-23 to 2024-12-24 (Monday-Saturday, nationwide holidays in the classic "
         "table, 24/31 December off)\n"},
        {{"workday", "2024-08-07", "1", "--state", "BY", "--region", "A"},
         "2024-08-09 Freitag (Monday-Friday, holidays of BY-A by law)\n"},
    };
    for (const auto& c : cases)
        kzbs_test::expectAnswer(runKzbs(c.args), c.line, c.args[1]);
}

TEST(CliWorkday, StepsForwardAndBack)
{
    const struct {
        std::vector<std::string> args;
        const char* date;
    } cases[] = {
        {{"2024-12-23", "1"}, "2024-12-24"},
        {{"2024-12-23", "1", "--eves-off"}, "2024-12-27"},
        {{"2024-01-02", "-3", "--state", "BY"}, "2023-12-27"},
        {{"2024-01-06", "0", "--state", "BY"}, "2024-01-08"},
        {{"2024-01-08", "0"}, "2024-01-08"},
        {{"2024-05-29", "+1", "--state", "ST"}, "2024-05-30"},
        {{"2024-12-27", "1", "--week", "6"}, "2024-12-28"},
        {{"2024-08-09", "-1", "--state", "BY", "--region", "A"}, "2024-08-07"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(with({"workday"}, c.args));
        ASSERT_EQ(r.status, 0) << c.args[0] << r.err;
        EXPECT_EQ(firstWord(r.out), c.date) << c.args[0] << ' ' << c.args[1] << ": " << r.out;
    }
}

TEST(CliWorkdays, MistakesAreOneLineWithExitTwo)
{
    const struct {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{"workdays", "2024"}, "FROM TO"},
        {{"workdays", "2024-02-01", "2024-01-01"}, "ends before it begins"},
        {{"workdays", "1989", "1990"}, "--classic"},
        {{"workday", "1990-01-03", "-5"}, "--classic"},
        {{"workdays", "2024", "2024", "--week", "7"}, "--week"},
        {{"workday", "2024-01-01", "3", "--week", "x"}, "--week"},
        {{"workday", "2024-01-01", "x"}, "whole number"},
        {{"workday", "2024-01-01", "1.5"}, "whole number"},
        {{"workday", "2024-01-01", "--", "-"}, "whole number"},
        {{"workday", "2024-01-01", "10000000"}, "N must lie within -9999999..9999999"},
        {{"workday", "2024-01-01", "-123456789"}, "N must lie within -9999999..9999999"},
        {{"workday", "4099-12-30", "5"}, "outside 1990..4099"},
        {{"workday", "4099-12-30", "5", "--classic"}, "outside 1583..4099"},
        {{"workdays", "0", "2024"}, "year 0 is outside 1990..4099"},
        {{"workday", "2024-13-01", "1"}, "no such date"},
        {{"workday", "2024-01-01"}, "DATE and a number N"},
        {{"workday", "2024-01-01", "1", "--region", "A"}, "--region requires --state"},
        {{"workdays", "2024", "2024", "--state", "BY", "--region", "BZ"}, "known: A, KATH"},
    };
    for (const auto& c : cases)
        kzbs_test::expectRefusal(runKzbs(c.args), c.message);
    for (const char* command : {"workdays", "workday"}) {
        const auto help = runKzbs({command, "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.out.rfind(std::string("usage: kzbs ") + command + " ", 0), 0u) << help.out;
    }
}
