// kzbs holidays, is-holiday, easter, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

using kzbs_test::runKzbs;

static long countLines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

TEST(CliHolidays, YearInOneStateWithUtf8Names)
{
    const auto r = runKzbs({"holidays", "2024", "--state", "Bayern"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(countLines(r.out), 13);
    EXPECT_NE(r.out.find("2024-01-06  Samstag     Heilige Drei K\xC3\xB6nige        BW BY ST\n"), std::string::npos);
    EXPECT_EQ(r.out.find("Reformationstag"), std::string::npos);
}

TEST(CliHolidays, StateSpellingsAreEquivalent)
{
    const std::string reference = runKzbs({"holidays", "2024", "--state", "TH"}).out;
    ASSERT_NE(reference.find("Reformationstag"), std::string::npos);
    for (const char* spelling : {"th", "TH\xC3\x9CRINGEN", "thueringen"})
        EXPECT_EQ(runKzbs({"holidays", "2024", "--state", spelling}).out, reference) << spelling;
    EXPECT_EQ(runKzbs({"holidays", "2024", "--state=Baden-W\xC3\xBCrttemberg"}).out,
              runKzbs({"holidays", "2024", "--state", "bw"}).out);
}

TEST(CliHolidays, PeriodsAndFormats)
{
    const auto csv = runKzbs({"holidays", "20.12.2010", "2011-01-10", "--state", "BY", "--format", "csv"});
    ASSERT_EQ(csv.status, 0) << csv.err;
    EXPECT_EQ(csv.out, "date,weekday,name,states\n"
                       "2010-12-25,Samstag,1. Weihnachtstag,alle\n"
                       "2010-12-26,Sonntag,2. Weihnachtstag,alle\n"
                       "2011-01-01,Samstag,Neujahrstag,alle\n"
                       "2011-01-06,Donnerstag,Heilige Drei K\xC3\xB6nige,BW BY ST\n");
    EXPECT_EQ(runKzbs({"holidays", "2010-10-03", "2010-10-03", "--format=json"}).out,
              "[\n  {\"date\": \"2010-10-03\", \"weekday\": \"Sonntag\", \"name\": \"Tag der Deutschen "
              "Einheit\", \"states\": [\"alle\"]}\n]\n");
    EXPECT_EQ(runKzbs({"holidays", "2010-10-04", "2010-10-05", "--format", "json"}).out, "[]\n");
    EXPECT_EQ(countLines(runKzbs({"holidays", "2010", "2011", "--state", "HB"}).out), 18); // up to 31.12.2011
}

TEST(CliHolidays, NoArgumentsListsThisYear)
{
    const auto r = runKzbs({});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(countLines(r.out), 15);
    EXPECT_TRUE(std::regex_search(r.out, std::regex(R"(^\d{4}-01-01  \S+ +Neujahrstag +alle\n)"))) << r.out;
    EXPECT_EQ(runKzbs({"holidays"}).out, r.out);
}

TEST(CliDates, BadInputIsOneLineOnStderr)
{
    const std::vector<std::vector<std::string>> cases = {
        {"holidays", "137"}, // would mean 2037
        {"holidays", "2023-02-29", "2023-03-01"}, {"holidays", "2024-03-01", "2024-02-01"},
        {"holidays", "2024", "--state", "XY"}, {"holidays", "2024", "--state", "Alle"},
        {"holidays", "2024", "--format", "xml"}, {"holidays", "1.2.3.4"}, {"holidays", "2024", "2025", "2026"},
        {"holidays", "--state"}, {"is-holiday", "99-01-01"}, {"is-holiday"}, {"easter", "4100"}, {"easter"},
    };
    for (const auto& args : cases) {
        const auto r = runKzbs(args);
        const std::string what = args.back() + " (" + args.front() + ")";
        EXPECT_EQ(r.status, 2) << what;
        EXPECT_TRUE(r.out.empty()) << what << r.out;
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << what << r.err;
        EXPECT_EQ(countLines(r.err), 1) << what << r.err;
    }
}

TEST(CliIsHoliday, ExitStatusFollowsTheState)
{
    const struct { std::vector<std::string> args; int status; const char* text; } cases[] = {
        {{"is-holiday", "2010-11-01", "--state", "BY"}, 0, "Allerheiligen (BW BY NW RP SL)"},
        {{"is-holiday", "01.11.2010", "--state", "HB"}, 1, "not a public holiday in HB"},
        {{"is-holiday", "2010-11-02"}, 1, "no public holiday"},
        {{"is-holiday", "2008-05-01"}, 0, "Tag der Arbeit (alle)\n2008-05-01 Donnerstag: Christi Himmelfahrt"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, c.status) << c.args[1];
        EXPECT_NE(r.out.find(c.text), std::string::npos) << r.out;
    }
}

TEST(CliEaster, YearsAndHelp)
{
    const auto r = runKzbs({"easter", "2000", "2024", "2285"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "2000-04-23\n2024-03-31\n2285-03-22\n");
    for (const char* command : {"holidays", "is-holiday", "easter"}) {
        const auto help = runKzbs({command, "--help"});
        EXPECT_TRUE(help.status == 0 && help.out.rfind(std::string("usage: kzbs ") + command, 0) == 0) << command;
    }
}
