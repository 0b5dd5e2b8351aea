// kzbs cal and next, and the calendar name of kzbs holidays' iCalendar
// output, run as a user runs them. Dates are checked against a printed
// calendar; no test depends on today's date.
#include "RunKzbs.h"

#include <gtest/gtest.h>

using kzbs_test::runKzbs;

TEST(CliCal, MonthGridWithIsoWeeksAndTheHolidaysNamed)
{
    const auto r = runKzbs({"cal", "2026-08", "--state", "BY", "--color", "never"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "         August 2026\n"
              "KW Mo  Di  Mi  Do  Fr  Sa  So\n"
              "31                      1   2\n"
              "32  3   4   5   6   7   8+  9\n"
              "33 10  11  12  13  14  15+ 16\n"
              "34 17  18  19  20  21  22  23\n"
              "35 24  25  26  27  28  29  30\n"
              "36 31\n"
              "  8+ Augsburger Hohes Friedensfest (BY-A)\n"
              " 15+ Mari\xC3\xA4 Himmelfahrt (SL, BY-A BY-KATH)\n");
}

TEST(CliCal, MarksWeeksAndColours)
{
    const struct {
        std::vector<std::string> args;
        std::string text;
        bool shown;
    } cases[] = {
        {{"cal", "2020-12"}, "53 28  29  30  31\n", true},                   // 2020 has 53 ISO weeks
        {{"cal", "2021-01"}, "53                  1*  2   3\n 1  4 ", true}, // its last week reaches into 2021
        {{"cal", "2026-05"}, "21 18  19  20  21  22  23  24+\n", true},      // Pfingstsonntag: BB only
        {{"cal", "2026-05"}, " 25* Pfingstmontag (alle)\n", true},
        {{"cal", "2026-05", "--state", "BE"}, "Pfingstsonntag", false}, // another state's day
        {{"cal", "2024-08", "--state", "BY", "--region", "A"}, "  8* Augsburger", true},
        {{"cal", "2024-05", "--state", "ST", "--classic"}, " 30* Fronleichnam", true},
        {{"cal", "1989-10", "--classic"}, "  3* Tag der Deutschen Einheit", true},
        {{"cal", "2026-12", "--color", "always"}, "\x1b[1;31m25\x1b[0m", true},
        {{"cal", "2026-12", "--state", "BY", "--region", "A", "--color", "always"}, "25*", false},
        {{"cal", "2026-12"}, "\x1b", false}, // not a terminal
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        ASSERT_EQ(r.status, 0) << c.args[1] << r.err;
        EXPECT_EQ(r.out.find(c.text) != std::string::npos, c.shown) << c.args[1] << ": " << c.text << "\n" << r.out;
    }
    const std::string year = runKzbs({"cal", "2026", "--state", "NW"}).out;
    size_t months = 0;
    for (size_t at = year.find("KW Mo"); at != std::string::npos; at = year.find("KW Mo", at + 1))
        ++months;
    EXPECT_EQ(months, 12u);
    EXPECT_NE(year.find("\n          M\xC3\xA4rz 2026\n"), std::string::npos);
}

TEST(CliNext, ListsTheComingHolidaysOfThePlace)
{
    const struct {
        std::vector<std::string> args;
        std::string out;
    } cases[] = {
        {{"next", "--from", "2026-12-26"}, "2026-12-26  Samstag     2. Weihnachtstag           alle\n"},
        {{"next", "3", "--from", "2026-08-01", "--state", "BY"},
         "2026-10-03  Samstag     Tag der Deutschen Einheit  alle\n"
         "2026-11-01  Sonntag     Allerheiligen              BW BY NW RP SL\n"
         "2026-12-25  Freitag     1. Weihnachtstag           alle\n"},
        {{"next", "2", "--from", "15.08.2026", "--state", "BY", "--region", "KATH", "--format", "csv"},
         "date,weekday,name,states\n"
         "2026-08-15,Samstag,Mari\xC3\xA4 Himmelfahrt,\"SL, BY-A BY-KATH\"\n"
         "2026-10-03,Samstag,Tag der Deutschen Einheit,alle\n"},
        {{"next", "1", "--from", "1989-11-01", "--state", "SN", "--classic"},
         "1989-11-22  Mittwoch    Bu\xC3\x9F- und Bettag            SN\n"},
    };
    for (const auto& c : cases)
        kzbs_test::expectAnswer(runKzbs(c.args), c.out, c.args[1]);
}

TEST(CliCal, MistakesAreOneLineWithExitTwo)
{
    const struct {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{"cal", "1989"}, "--classic"},
        {{"cal", "2026-13"}, "not a month: '2026-13'"},
        {{"cal", "2026-8"}, "not a month"},
        {{"cal", "0-01"}, "year 0 is outside 1990..4099"},
        {{"cal", "2026", "2027"}, "one YEAR or YEAR-MM"},
        {{"cal", "--color", "yes"}, "--color"},
        {{"next", "0"}, "N must be a whole number from 1 to 1000, not '0'"},
        {{"next", "1001"}, "not '1001'"},
        {{"next", "2", "3"}, "one number N"},
        {{"next", "--from", "1989-12-01"}, "--classic"},
        {{"next", "--from", "2026-02-30"}, "no such date"},
        {{"next", "--from", "2026-01-01", "--from", "2027-01-01"}, "--from given more than once"},
        {{"holidays", "2026", "--calendar-name", "x"}, "--calendar-name goes with --format ics"},
    };
    for (const auto& c : cases)
        kzbs_test::expectRefusal(runKzbs(c.args), c.message);
}

TEST(CliHolidays, IcsCalendarNameIsAnEscapedFoldedLine)
{
    const auto r = runKzbs({"holidays", "2026-01-01", "2026-01-01", "--format", "ics", "--calendar-name",
                            "Feiertage, M\xC3\xBCnchen; ein Name, so lang, dass die Zeile gefaltet werden muss"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::string unfolded = r.out;
    for (size_t at = unfolded.find("\r\n "); at != std::string::npos; at = unfolded.find("\r\n ", at))
        unfolded.erase(at, 3);
    EXPECT_LT(unfolded.size(), r.out.size());
    EXPECT_NE(unfolded.find("\r\nX-WR-CALNAME:Feiertage\\, M\xC3\xBCnchen\\; ein Name\\, so lang\\, dass die Zeile "
                            "gefaltet werden muss\r\nBEGIN:VEVENT\r\n"),
              std::string::npos)
        << r.out;
}
