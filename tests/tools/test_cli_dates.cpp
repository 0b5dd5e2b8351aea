// kzbs holidays, is-holiday, easter, run as a user runs them: the law's
// holidays by default, the library's fixed table with --classic.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

using kzbs_test::runKzbs;

static long countLines(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

TEST(CliHolidays, ClassicYearInOneStateWithUtf8Names)
{
    const auto r = runKzbs({"holidays", "2024", "--state", "Bayern", "--classic"});
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
    EXPECT_EQ(csv.out,
              "date,weekday,name,states\n"
              "2010-12-25,Samstag,1. Weihnachtstag,alle\n"
              "2010-12-26,Sonntag,2. Weihnachtstag,alle\n"
              "2011-01-01,Samstag,Neujahrstag,alle\n"
              "2011-01-06,Donnerstag,Heilige Drei K\xC3\xB6nige,BW BY ST\n");
    EXPECT_EQ(runKzbs({"holidays", "2010-10-03", "2010-10-03", "--format=json"}).out,
              "[\n  {\"date\": \"2010-10-03\", \"weekday\": \"Sonntag\", \"name\": \"Tag der Deutschen "
              "Einheit\", \"states\": [\"BW\", \"BY\", \"BE\", \"BB\", \"HB\", \"HH\", \"HE\", \"MV\", \"NI\", "
              "\"NW\", \"RP\", \"SL\", \"SN\", \"ST\", \"SH\", \"TH\"]}\n]\n");
    EXPECT_EQ(runKzbs({"holidays", "2010-10-04", "2010-10-05", "--format", "json"}).out, "[]\n");
    EXPECT_EQ(countLines(runKzbs({"holidays", "2010", "2011", "--state", "HB"}).out), 18); // up to 31.12.2011
}

// "This year" is whatever year kzbs finds; the test reads it from the output.
TEST(CliHolidays, NoArgumentsListsThisYearByLaw)
{
    const auto r = runKzbs({});
    ASSERT_EQ(r.status, 0) << r.err;
    std::smatch first;
    ASSERT_TRUE(std::regex_search(r.out, first, std::regex(R"(^(\d{4})-01-01  \S+ +Neujahrstag +alle\n)"))) << r.out;
    EXPECT_EQ(runKzbs({"holidays"}).out, r.out);
    EXPECT_EQ(runKzbs({"holidays", first[1].str()}).out, r.out);
    EXPECT_EQ(countLines(runKzbs({"holidays", "--classic"}).out), 15);
}

TEST(CliDates, BadInputIsOneLineOnStderr)
{
    const std::vector<std::vector<std::string>> cases = {
        {"holidays", "137"}, // would mean 2037
        {"holidays", "2023-02-29", "2023-03-01"},
        {"holidays", "2024-03-01", "2024-02-01"},
        {"holidays", "2024", "--state", "XY"},
        {"holidays", "2024", "--state", "Alle"},
        {"holidays", "2024", "--format", "xml"},
        {"holidays", "1.2.3.4"},
        {"holidays", "2024", "2025", "2026"},
        {"holidays", "--state"},
        {"is-holiday", "99-01-01"},
        {"is-holiday"},
        {"easter", "4100"},
        {"easter", "2024", "x"},
        {"holidays", "1582", "--classic"},
        {"holidays", "2024", "--format"},
        {"is-holiday", "2024-01-01", "x"},
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
    const struct {
        std::vector<std::string> args;
        int status;
        const char* text;
    } cases[] = {
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
    // Without a year, this year's, as kzbs holidays reads "this year".
    const std::string thisYear = runKzbs({"holidays"}).out.substr(0, 4);
    EXPECT_EQ(runKzbs({"easter"}).out, runKzbs({"easter", thisYear}).out);
    for (const char* command : {"holidays", "is-holiday", "easter"}) {
        const auto help = runKzbs({command, "--help"});
        EXPECT_TRUE(help.status == 0 && help.out.rfind(std::string("usage: kzbs ") + command, 0) == 0) << command;
    }
}

// --classic lists exactly what kzbs listed before it followed the law.
TEST(CliHolidays, ClassicKeepsTheFixedTable)
{
    const struct {
        std::vector<std::string> args;
        std::string out;
    } cases[] = {
        {{"holidays", "2024", "--state", "ST", "--classic", "--format", "csv"},
         "date,weekday,name,states\n"
         "2024-01-01,Montag,Neujahrstag,alle\n"
         "2024-01-06,Samstag,Heilige Drei K\xC3\xB6nige,BW BY ST\n"
         "2024-03-29,Freitag,Karfreitag,alle\n"
         "2024-04-01,Montag,Ostermontag,alle\n"
         "2024-05-01,Mittwoch,Tag der Arbeit,alle\n"
         "2024-05-09,Donnerstag,Christi Himmelfahrt,alle\n"
         "2024-05-20,Montag,Pfingstmontag,alle\n"
         "2024-05-30,Donnerstag,Fronleichnam,BW BY NW RP SL ST\n" // ST, not HE: the fixed table
         "2024-10-03,Donnerstag,Tag der Deutschen Einheit,alle\n"
         "2024-10-31,Donnerstag,Reformationstag,BB MV SN ST TH\n"
         "2024-12-25,Mittwoch,1. Weihnachtstag,alle\n"
         "2024-12-26,Donnerstag,2. Weihnachtstag,alle\n"},
        {{"holidays", "1989-11-20", "1989-11-30", "--classic"},
         "1989-11-22  Mittwoch    Bu\xC3\x9F- und Bettag            SN\n"},
        {{"is-holiday", "2019-03-08", "--state", "BE", "--classic"}, "2019-03-08 Freitag: no public holiday\n"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.out, c.out) << c.args[1];
    }
}

// What the issue's first reader missed, and the regions, as kzbs shows them.
TEST(CliHolidays, LawByStateYearAndRegion)
{
    const struct {
        std::vector<std::string> args;
        const char* line;
        bool listed;
    } cases[] = {
        {{"holidays", "2024", "--state", "HE"}, "2024-05-30  Donnerstag  Fronleichnam ", true},
        {{"holidays", "2019", "--state", "BE"}, "2019-03-08  Freitag     Internationaler Frauentag  BE\n", true},
        {{"holidays", "2018", "--state", "HB"}, "Reformationstag            BB HB HH MV NI SN ST SH TH\n", true},
        {{"holidays", "2017", "--state", "BY"}, "2017-10-31  Dienstag    Reformationstag            alle\n", true},
        {{"holidays", "2020-05-08", "2020-05-08"}, "Tag der Befreiung          BE\n", true},
        {{"holidays", "2024"}, "Fronleichnam                   BW BY HE NW RP SL, SN-BZ, TH-EIC TH-UH TH-WAK\n", true},
        {{"holidays", "2024"}, "Mari\xC3\xA4 Himmelfahrt              SL, BY-A BY-KATH\n", true},
        {{"holidays", "2024", "--state", "BY"}, "Augsburger", false},
        {{"holidays", "2024", "--state", "BY", "--region", "A"},
         "2024-08-08  Donnerstag  Augsburger Hohes Friedensfest  BY-A\n",
         true},
        {{"holidays", "2024", "--state", "SN", "--region", "bz"}, "Fronleichnam", true},
        {{"holidays", "2024", "--state", "SN"}, "Fronleichnam", false},
        {{"holidays", "2024", "--state", "SN", "--region", "BZ", "--format", "json"},
         "\"name\": \"Fronleichnam\", \"states\": [\"BW\", \"BY\", \"HE\", \"NW\", \"RP\", \"SL\", \"SN-BZ\", \"TH-EIC\", "
         "\"TH-UH\", \"TH-WAK\"]}",
         true},
        {{"holidays", "2024", "--format", "json"},
         "\"states\": [\"BW\", \"BY\", \"ST\"], \"state_names\": {\"BW\": \"Erscheinungsfest\"}}",
         true},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out.find(c.line) != std::string::npos, c.listed) << c.args[1] << " " << c.line << "\n" << r.out;
    }
}

TEST(CliHolidays, IcsIsACalendarWithCrlfLines)
{
    for (const std::vector<std::string>& args : {std::vector<std::string>{"holidays", "2024", "--format", "ics"},
                                                 {"holidays", "1900", "--format", "ics", "--classic"}}) {
        const auto r = runKzbs(args);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out.rfind("BEGIN:VCALENDAR\r\n", 0), 0u) << r.out.substr(0, 40);
        EXPECT_EQ(r.out.size() - r.out.rfind("END:VCALENDAR\r\n"), 15u);
        // every line ends in CRLF, and there are no others
        EXPECT_EQ(std::regex_replace(r.out, std::regex("\r\n"), "").find_first_of("\r\n"), std::string::npos);
        EXPECT_EQ(r.out.find("\r\n\r\n"), std::string::npos);
    }
    const std::string ics = runKzbs({"holidays", "2024", "--state", "BY", "--format", "ics"}).out;
    EXPECT_NE(ics.find("DTSTART;VALUE=DATE:20240530\r\n"), std::string::npos); // Fronleichnam
    EXPECT_EQ(ics.find("DTSTART;VALUE=DATE:20240815\r\n"), std::string::npos); // only in regions of BY
}

TEST(CliHolidays, LawMistakesAreOneLineNamingTheWayOut)
{
    const struct {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{"holidays", "1989"}, "--classic"},
        // the law's years, unless --classic asks the fixed table
        {{"holidays", "0"}, "year 0 is outside 1990..4099"},
        {{"holidays", "0", "--classic"}, "year 0 is outside 1583..4099"},
        {{"is-holiday", "4100-01-01"}, "outside 1990..4099"},
        {{"holidays", "1989-12-24", "1990-01-10", "--state", "BY"}, "--classic"},
        {{"is-holiday", "1989-10-03"}, "--classic"},
        {{"holidays", "2024", "--region", "A"}, "--region requires --state"},
        {{"holidays", "2024", "--state", "BY", "--region", "X"}, "unknown region 'X' of BY (known: A, KATH)"},
        {{"holidays", "2024", "--state", "TH", "--region", "BZ"}, "(known: EIC, UH, WAK)"},
        {{"holidays", "2024", "--state", "HB", "--region", "A"}, "HB has no regions"},
        {{"is-holiday", "2024-08-08", "--state", "BY", "--region", "A", "--classic"}, "classic table has no regions"},
        {{"holidays", "2024", "--format", "xml"}, "--format"},
    };
    for (const auto& c : cases)
        kzbs_test::expectRefusal(runKzbs(c.args), c.message);
    EXPECT_EQ(runKzbs({"holidays", "1989", "--classic"}).status, 0);
}

TEST(CliIsHoliday, LawRegionsAndYears)
{
    const struct {
        std::vector<std::string> args;
        int status;
        const char* text;
    } cases[] = {
        {{"is-holiday", "2024-08-08", "--state", "BY", "--region", "A"}, 0, "a public holiday in BY-A\n"},
        {{"is-holiday", "2024-08-08", "--state", "BY"},
         1,
         "Augsburger Hohes Friedensfest (BY-A)\n"
         "not a public holiday in all of BY; it is one in parts of it: "
         "--region A (Stadt Augsburg)\n"},
        {{"is-holiday", "2026-08-15", "--state", "BY"},
         1,
         "in parts of it: --region A (Stadt Augsburg), --region KATH "
         "(Gemeinden mit \xC3\xBC"
         "berwiegend katholischer "
         "Bev\xC3\xB6lkerung)\n"},
        {{"is-holiday", "2024-05-30", "--state", "SN"},
         1,
         "not a public holiday in all of SN; it is one in parts of "
         "it: --region BZ (Die von der s\xC3\xA4"
         "chsischen"},
        {{"is-holiday", "2024-05-30", "--state", "TH"}, 1, "--region EIC (Landkreis Eichsfeld"},
        {{"is-holiday", "2024-05-30", "--state", "TH", "--region", "UH"}, 0, "a public holiday in TH-UH\n"},
        {{"is-holiday", "2026-08-15", "--state", "HB"}, 1, "not a public holiday in HB\n"},
        {{"is-holiday", "2024-08-08"}, 0, "Friedensfest"}, // without a state: anywhere
        {{"is-holiday", "2019-03-08", "--state", "BE"}, 0, "Internationaler Frauentag (BE)"},
        {{"is-holiday", "2024-05-30", "--state", "ST"}, 1, "not a public holiday in ST"},
        {{"is-holiday", "2024-05-30", "--state", "ST", "--classic"}, 0, "a public holiday in ST"},
        {{"is-holiday", "3.10.1989", "--state", "BY", "--classic"}, 0, "Tag der Deutschen Einheit (alle)"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, c.status) << c.args[1] << r.err;
        EXPECT_NE(r.out.find(c.text), std::string::npos) << r.out;
    }
}
