// KZTime: daylight saving with a pinned zone and clock, time_t, comparison, text.
#include "KZTime.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

using namespace kzbs_test;

constexpr std::uint32_t kTo1970 = 2177452800u;

// Seconds since 1901 of a UTC clock reading, computed with the C library.
static std::uint32_t utc(int year, int month, int day, int hour, int minute = 0)
{
    std::tm t{};
    t.tm_year = year - 1900, t.tm_mon = month - 1, t.tm_mday = day, t.tm_hour = hour, t.tm_min = minute;
#ifdef _WIN32
    return static_cast<std::uint32_t>(::_mkgmtime(&t)) + kTo1970;
#else
    return static_cast<std::uint32_t>(::timegm(&t)) + kTo1970;
#endif
}

static KZTime fromTimeT(long t)
{
    KZTime time(KZDate(0, 1, 1), 0, 0, 0);
    time.set_time_t(t);
    return time;
}

TEST(TimeDaylightSaving, RulesAndClockTimesFollowTheZoneOffsetOfNow)
{
    ScopedZone zone(kBerlin);
    {
        ScopedNow now(kWinter2010);
        EXPECT_EQ(KZTime::BeginDST(2010), utc(2010, 3, 28, 1));
        EXPECT_EQ(KZTime::EndDST(2010), utc(2010, 10, 31, 0));
        EXPECT_EQ(KZTime::BeginDST(2012), utc(2012, 3, 25, 1)); // 31 March 2012 is a Saturday
        EXPECT_EQ(KZTime::BeginDST(2013), utc(2013, 3, 31, 1)); // 31 March 2013 is a Sunday
        for (const std::uint32_t edge : {KZTime::BeginDST(2010), KZTime::EndDST(2010)})
            EXPECT_NE(fromTimeT(edge - kTo1970 - 1).IsDST(), fromTimeT(edge - kTo1970).IsDST()) << edge;
    }
    {
        ScopedNow now(kSummer2010);
        EXPECT_EQ(KZTime::EndDST(2010), utc(2010, 10, 30, 23));
    }
    // Clock readings are converted with the zone offset in force "now", so the
    // same reading lands an hour earlier when now is summer time.
    const struct {
        std::time_t now;
        unsigned day, month, hour, minute;
        std::uint32_t expected;
    } cases[] = {
        {kWinter2010, 28, 3, 2, 30, 0} /* skipped hour */,      {kWinter2010, 28, 3, 3, 30, utc(2010, 3, 28, 1, 30)},
        {kWinter2010, 31, 10, 1, 30, utc(2010, 10, 31, 0, 30)}, // from 01:00 standard time
        {kWinter2010, 31, 10, 2, 30, utc(2010, 10, 31, 1, 30)}, // the repeated hour: standard time
        {kWinter2010, 15, 1, 12, 0, utc(2010, 1, 15, 11)},      {kSummer2010, 15, 1, 12, 0, utc(2010, 1, 15, 10)},
        {kSummer2010, 1, 7, 12, 0, utc(2010, 7, 1, 9)},
    };
    for (const auto& c : cases) {
        ScopedNow now(c.now);
        EXPECT_EQ(KZTime(KZDate(c.day, c.month, 2010), c.hour, c.minute, 0).Hash(), c.expected)
            << c.day << "." << c.month << " " << c.hour << ":" << c.minute << " now " << c.now;
    }
    ScopedNow now(kWinter2010);
    EXPECT_EQ(KZTime(KZDate(1, 1, 1901), 1, 0, 0).Hash(), 3600u); // count 0 skips the zone offset
    EXPECT_EQ(KZTime(KZDate(0, 1, 2010), 12, 0, 0).Hash(), 0u);   // null date
    const KZTime noon(KZDate(1, 7, 2010), 12, 0, 0);
    EXPECT_EQ(noon.Hour() * 100 + noon.HourGMT(), 1210u);
}

TEST(TimeNow, DatesAndTimesReadThePinnedClockInLocalTime)
{
    ScopedZone zone(kBerlin);
    {
        ScopedNow now(kWinter2010);
        EXPECT_EQ(KZTime().get_time_t(), kWinter2010);
        EXPECT_EQ(KZTime(8, 0, 0).Hash(), utc(2010, 1, 15, 7));
        EXPECT_EQ(KZDate().Hash(), KZDate(15, 1, 2010).Hash());
    }
    ScopedNow now(1278804600); // 2010-07-10 23:30 UTC, 01:30 in Berlin
    const KZTime current;
    EXPECT_EQ(current.Hour() * 100 + current.Minute(), 130u);
    EXPECT_EQ(KZDate(current).Hash(), KZDate(11, 7, 2010).Hash());
    EXPECT_EQ(KZDate().Hash(), KZDate(11, 7, 2010).Hash());
}

TEST(TimeConversions, TimeTRangeAndCompare)
{
    ScopedZone zone(kBerlin);
    ScopedNow now(kWinter2010);
    const KZTime noon(KZDate(15, 1, 2010), 13, 0, 0);
    EXPECT_EQ(noon.Hash(), utc(2010, 1, 15, 12));
    EXPECT_EQ(noon.LocalSecs(), noon.Hash() + 3600);
    const struct {
        long in;
        std::uint32_t stored;
        long out;
    } cases[] = {{0, kTo1970, 0}, {2117514495, 0xFFFFFFFFu, 2117514495}, {2117514496, 0, 0}, {-1, 0, 0}};
    for (const auto& c : cases) {
        const KZTime t = fromTimeT(c.in);
        EXPECT_EQ(t.Hash(), c.stored) << c.in;
        EXPECT_EQ(t.get_time_t(), c.out) << c.in;
    }
    const KZTime t = fromTimeT(1263556800 + 7 * 60 + 9); // 2010-01-15 12:07:09 UTC
    EXPECT_EQ(t.HourGMT() * 10000 + t.MinuteGMT() * 100 + t.Second(), 120709u);
    EXPECT_TRUE(KZTime::AssertDate(KZDate(5, 2, 2037)) && KZTime::AssertDate(KZDate(1, 1, 1901)));
    EXPECT_FALSE(KZTime::AssertDate(KZDate(6, 2, 2037)) || KZTime::AssertDate(KZDate(31, 12, 1900)));

    const KZTime early(KZDate(1, 1, 1901), 2, 0, 0), y1970 = fromTimeT(0), y1971 = fromTimeT(365 * 86400);
    EXPECT_EQ(y1970.CompareTo(y1971), -1);
    EXPECT_EQ(y1971.CompareTo(y1970), 1);
    EXPECT_EQ(early.CompareTo(y1970), 1); // more than 2^31 seconds apart
    EXPECT_EQ(early.Min(y1970), 3600u);   // Min and Max ignore the wrap
}

TEST(TimeText, TwelveHourClockAndFormats)
{
    ScopedZone zone(kBerlin);
    ScopedNow now(kWinter2010);
    const int oldFlag = KZTime::PrintDate(1);
    const KZDate day(5, 1, 2010);
    const struct {
        int option;
        unsigned hour, minute;
        const char* text;
    } cases[] = {{0, 15, 7, "Januar 5, 2010 3:07:09 pm"},
                 {0, 0, 30, "Januar 5, 2010 0:30:09 am"},
                 {0, 12, 0, "Januar 5, 2010 12:00:09 pm"},
                 {7, 15, 7, " 3:07:09 pm"}};
    for (const auto& c : cases) {
        KZDate::PrintOption = c.option;
        EXPECT_EQ(KZTime(day, c.hour, c.minute, 9).asString(), c.text);
    }
    KZDate::PrintOption = 0;
    EXPECT_EQ(KZTime::PrintDate(0), 1);
    EXPECT_EQ(KZTime(day, 23, 5, 0).asString(), "11:05:00 pm");

    const KZTime t(day, 14, 5, 9);
    EXPECT_EQ(t.asFormatString(""), "14:05:09");
    EXPECT_EQ(t.asFormatString("%d.%m.%Y"), "05.01.2010");
    EXPECT_EQ(KZTime(KZDate(1, 6, 1960), 12, 0, 0).asFormatString("%d.%m.%Y"), "01.01.1970");
    EXPECT_EQ(t.asFormatString(std::string(70, 'x')), "");
    EXPECT_EQ(t.asFormatString(std::string(62, 'x')), std::string(62, 'x'));
    KZTime::PrintDate(oldFlag);
}
