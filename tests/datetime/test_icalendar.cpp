// The iCalendar export: folding, TEXT escaping and the events, checked here
// line by line and then read back by a real parser (Python's icalendar).
#include "KZICalendar.h"

#include "Pinned.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> physicalLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t pos = 0;
    for (std::size_t end; (end = text.find("\r\n", pos)) != std::string::npos; pos = end + 2)
        lines.push_back(text.substr(pos, end - pos));
    EXPECT_EQ(pos, text.size()) << "text after the last CRLF";
    return lines;
}

std::string unfold(const std::string& text)
{
    std::string out = text;
    for (std::size_t pos; (pos = out.find("\r\n ")) != std::string::npos;)
        out.erase(pos, 3);
    return out;
}

// Whether `s` is a sequence of whole UTF-8 characters.
bool wholeUtf8(const std::string& s)
{
    for (std::size_t i = 0; i < s.size();) {
        const auto lead = static_cast<unsigned char>(s[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
        if (length == 0 || i + length > s.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

TEST(ICalendarFold, KeepsEveryPhysicalLineWithin75OctetsAndWholeCharacters)
{
    const char* const pieces[] = {"a", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x8E\x84"}; // 1 to 4 octets
    for (const char* piece : pieces)
        for (int prefix = 0; prefix < 5; ++prefix) {
            std::string line = "SUMMARY:" + std::string(static_cast<std::size_t>(prefix), 'x');
            while (line.size() < 240)
                line += piece;
            const std::string folded = KZICalendar::foldLine(line);
            const std::vector<std::string> lines = physicalLines(folded);
            ASSERT_GT(lines.size(), 3u);
            for (std::size_t i = 0; i < lines.size(); ++i) {
                EXPECT_LE(lines[i].size(), 75u);
                EXPECT_EQ(lines[i][0] == ' ', i > 0);
                EXPECT_TRUE(wholeUtf8(lines[i])) << "piece of " << std::string(piece).size() << " octets, line " << i;
            }
            EXPECT_EQ(unfold(folded), line + "\r\n");
        }
}

TEST(ICalendarFold, LeavesShortLinesAloneAndDropsLineBreaks)
{
    struct Case {
        std::string line, folded;
    } const cases[] = {
        {"", "\r\n"},
        {"VERSION:2.0", "VERSION:2.0\r\n"},
        {std::string(75, 'a'), std::string(75, 'a') + "\r\n"},
        {std::string(76, 'a'), std::string(75, 'a') + "\r\n a\r\n"},
        {std::string(149, 'a'), std::string(75, 'a') + "\r\n " + std::string(74, 'a') + "\r\n"},
        {"A:b\r\nc\nd\re", "A:bcde\r\n"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(KZICalendar::foldLine(c.line), c.folded);
}

TEST(ICalendarText, EscapesWhatTextValuesReserve)
{
    struct Case {
        std::string in, out;
    } const cases[] = {
        {"Tag der Arbeit", "Tag der Arbeit"},
        {"a,b;c\\d", "a\\,b\\;c\\\\d"},
        {"eins\nzwei\r\ndrei\rvier", "eins\\nzwei\\ndrei\\nvier"},
        {std::string("tab\there\x01\x1F\x7F", 12), "tab\there"},
        {"Mari\xC3\xA4", "Mari\xC3\xA4"},
        {"\\n", "\\\\n"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(KZICalendar::escapeText(c.in), c.out);
}

DatedHoliday holiday(const KZDate& date, const std::string& name, int states = KZBasicServices::Alle)
{
    return DatedHoliday{date, name, states, {}};
}

ICalendarOptions stampedAt(std::time_t stamp)
{
    ICalendarOptions options;
    options.stamp = stamp;
    return options;
}

TEST(ICalendarWrite, FramesOneAllDayEventPerHoliday)
{
    const std::string ics =
        KZICalendar::write({holiday(KZDate(31, 12, 2024), "Silvester, Test")}, stampedAt(kzbs_test::kWinter2010));
    const std::vector<std::string> expected = {
        "BEGIN:VCALENDAR",
        "VERSION:2.0",
        "PRODID:-//KzBasicServices//kzbs//DE",
        "CALSCALE:GREGORIAN",
        "BEGIN:VEVENT",
        "UID:20241231-" + physicalLines(ics)[5].substr(13, 16) + "@kzbasicservices.invalid",
        "DTSTAMP:20100115T120000Z",
        "DTSTART;VALUE=DATE:20241231",
        "DTEND;VALUE=DATE:20250101",
        "SUMMARY:Silvester\\, Test",
        "DESCRIPTION:Gesetzlicher Feiertag in allen Bundesl\xC3\xA4ndern",
        "TRANSP:TRANSPARENT",
        "END:VEVENT",
        "END:VCALENDAR",
    };
    EXPECT_EQ(physicalLines(ics), expected);
}

TEST(ICalendarWrite, TakesTheStampFromTheClockWhenNoneIsGiven)
{
    kzbs_test::ScopedNow now(kzbs_test::kSummer2010);
    const std::string ics = KZICalendar::write({holiday(KZDate(3, 10, 2010), "Tag der Deutschen Einheit")});
    EXPECT_NE(ics.find("\r\nDTSTAMP:20100711T120000Z\r\n"), std::string::npos);
}

TEST(ICalendarWrite, UidDependsOnDateAndNameOnly)
{
    auto uidOf = [](const DatedHoliday& h, std::time_t stamp) {
        const std::string ics = KZICalendar::write({h}, stampedAt(stamp));
        const std::size_t at = ics.find("UID:");
        return ics.substr(at, ics.find("\r\n", at) - at);
    };
    const DatedHoliday a = holiday(KZDate(30, 5, 2024), "Fronleichnam", KZBasicServices::BW);
    const DatedHoliday sameElsewhere = holiday(KZDate(30, 5, 2024), "Fronleichnam", KZBasicServices::HE);
    EXPECT_EQ(uidOf(a, 1), uidOf(a, 2000000000));
    EXPECT_EQ(uidOf(a, 1), uidOf(sameElsewhere, 1));
    EXPECT_NE(uidOf(a, 1), uidOf(holiday(KZDate(30, 5, 2024), "Fronleichnan"), 1));
    EXPECT_NE(uidOf(a, 1), uidOf(holiday(KZDate(19, 6, 2025), "Fronleichnam"), 1));
}

TEST(ICalendarWrite, DescribesStatesAndRegionsAndSkipsUnwritableDates)
{
    std::vector<DatedHoliday> list;
    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(8, 8, 2024), KZDate(8, 8, 2024), KZBasicServices::BY, "A", list),
              KZHolidayLaw::Ok);
    list.push_back(holiday(KZDate(0u, 0u, 0u), "null"));
    const std::string ics = unfold(KZICalendar::write(list, stampedAt(1)));
    EXPECT_NE(ics.find("DESCRIPTION:Gesetzlicher Feiertag in Bayern (Stadt Augsburg)\r\n"), std::string::npos) << ics;
    EXPECT_EQ(ics.find("null"), std::string::npos);
    EXPECT_EQ(ics.find("DTSTAMP:19700101T000001Z"), ics.find("DTSTAMP:"));
}

TEST(ICalendarWrite, StampIsUtcHeldWithinYears1To9999)
{
    const struct {
        std::time_t stamp;
        const char* text;
    } cases[] = {{1, "19700101T000001Z"},
                 {-1, "19691231T235959Z"},
                 {951782400, "20000229T000000Z"},
                 {-62135596801, "00010101T000000Z"},
                 {253402300800, "99991231T235959Z"},
                 {std::numeric_limits<std::time_t>::min(), "00010101T000000Z"},
                 {std::numeric_limits<std::time_t>::max(), "99991231T235959Z"}};
    for (const auto& c : cases) {
        const std::string ics = KZICalendar::write({holiday(KZDate(1, 1, 2024), "x")}, stampedAt(c.stamp));
        EXPECT_NE(ics.find(std::string("\r\nDTSTAMP:") + c.text + "\r\n"), std::string::npos) << c.stamp;
    }
}

// Latin-1 to UTF-8, enough for the names used here.
std::string utf8(const std::string& latin1)
{
    std::string out;
    for (const char c : latin1) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0 | (b >> 6));
            out += static_cast<char>(0x80 | (b & 0x3F));
        }
    }
    return out;
}

std::string dayText(const KZDate& d)
{
    char text[16];
    std::snprintf(text, sizeof text, "%04u%02u%02u", d.Year(), d.Month(), d.DayOfMonth());
    return text;
}

TEST(ICalendarParser, ReadsBackEveryEventOfSeveralStatesAndYears)
{
    std::vector<DatedHoliday> holidays;
    struct Query {
        KZBasicServices::BundesLand land;
        const char* region;
        int year;
    } const queries[] = {{KZBasicServices::BY, "A", 2017},
                         {KZBasicServices::SN, "BZ", 2018},
                         {KZBasicServices::XX, "", 2024},
                         {KZBasicServices::Alle, "", 1994}};
    for (const Query& q : queries) {
        std::vector<DatedHoliday> year;
        ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, static_cast<unsigned>(q.year)),
                                                 KZDate(31, 12, static_cast<unsigned>(q.year)), q.land, q.region, year),
                  KZHolidayLaw::Ok);
        holidays.insert(holidays.end(), year.begin(), year.end());
    }
    // Names that need escaping and folding, and Windows-1252 beyond Latin-1.
    const std::string longName =
        "Tag, der; Probe\\ mit \xE4\xF6\xFC\xDF und einem sehr langen Namen, der gefaltet "
        "werden muss, weil er l\xE4nger als f\xFC"
        "nfundsiebzig Oktette ist";
    holidays.push_back(holiday(KZDate(1, 4, 2030), longName));
    holidays.push_back(holiday(KZDate(1, 4, 2030), "\x80uro \x93Zitat\x94"));

    std::ostringstream expected;
    for (std::size_t i = 0; i + 1 < holidays.size(); ++i)
        expected << dayText(holidays[i].date) << "\t" << utf8(holidays[i].name) << "\n";
    expected << "20300401\t\xE2\x82\xACuro \xE2\x80\x9CZitat\xE2\x80\x9D\n";

    kzbs_test::TempFolder folder;
    kzbs_test::writeFile(folder / "first.ics", KZICalendar::write(holidays, stampedAt(kzbs_test::kWinter2010)));
    kzbs_test::writeFile(folder / "second.ics", KZICalendar::write(holidays, stampedAt(kzbs_test::kSummer2010)));
    kzbs_test::writeFile(folder / "expected.tsv", expected.str());
#ifdef _WIN32
    GTEST_SKIP() << "the checker is a Python program of the build host";
#endif
    const std::string command = std::string(KZBS_ICAL_PYTHON) + " " + KZBS_CHECK_ICS + " " + (folder / "first.ics")
                                + " " + (folder / "second.ics") + " " + (folder / "expected.tsv");
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

} // namespace
