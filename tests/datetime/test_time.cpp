// KZTime: daylight saving with a pinned zone and clock, time_t, comparison, text.
#include "KZTime.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

using kzbs_test::kBerlin;
using kzbs_test::kSummer2010;
using kzbs_test::kWinter2010;
using kzbs_test::ScopedNow;
using kzbs_test::ScopedZone;

namespace {

constexpr std::uint32_t kTo1970 = 2177452800u;

// Seconds since 1901 of a UTC clock reading, computed with the C library.
std::uint32_t utc(int year, int month, int day, int hour, int minute = 0)
{
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    return static_cast<std::uint32_t>(::timegm(&t)) + kTo1970;
}

KZTime fromTimeT(long t)
{
    KZTime time(KZDate(0, 1, 1), 0, 0, 0);
    time.set_time_t(t);
    return time;
}

struct ClockCase {
    unsigned day, month, year, hour, minute;
    std::uint32_t expected; // 0: the null time
};

void expectConversions(const ClockCase* cases, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const ClockCase& c = cases[i];
        EXPECT_EQ(KZTime(KZDate(c.day, c.month, c.year), c.hour, c.minute, 0).Hash(), c.expected)
            << c.day << "." << c.month << "." << c.year << " " << c.hour << ":" << c.minute;
    }
}

} // namespace

TEST(TimeDaylightSaving, RuleBoundariesFollowTheZoneOffsetOfTheMoment)
{
    ScopedZone zone(kBerlin);
    {
        ScopedNow now(kWinter2010);
        EXPECT_EQ(KZTime::BeginDST(2010), utc(2010, 3, 28, 1));
        EXPECT_EQ(KZTime::EndDST(2010), utc(2010, 10, 31, 0));
        EXPECT_EQ(KZTime::BeginDST(2012), utc(2012, 3, 25, 1)); // 31 March 2012 is a Saturday
        EXPECT_EQ(KZTime::BeginDST(2013), utc(2013, 3, 31, 1)); // 31 March 2013 is a Sunday
    }
    ScopedNow now(kSummer2010);
    EXPECT_EQ(KZTime::BeginDST(2010), utc(2010, 3, 28, 0));
    EXPECT_EQ(KZTime::EndDST(2010), utc(2010, 10, 30, 23));
}

TEST(TimeDaylightSaving, ClockTimesConvertedOnStandardTime)
{
    ScopedZone zone(kBerlin);
    ScopedNow now(kWinter2010);
    const ClockCase cases[] = {
        {28, 3, 2010, 2, 30, 0},                       // skipped hour
        {28, 3, 2010, 1, 59, utc(2010, 3, 28, 0, 59)},
        {28, 3, 2010, 3, 30, utc(2010, 3, 28, 1, 30)},
        {31, 10, 2010, 0, 30, utc(2010, 10, 30, 22, 30)},
        {31, 10, 2010, 1, 30, utc(2010, 10, 31, 0, 30)}, // from 01:00 standard time
        {31, 10, 2010, 2, 30, utc(2010, 10, 31, 1, 30)}, // the repeated hour: standard time
        {1, 7, 2010, 12, 0, utc(2010, 7, 1, 10)},
        {15, 1, 2010, 12, 0, utc(2010, 1, 15, 11)},
        {1, 1, 1901, 1, 0, 3600},                       // count 0 skips the zone offset
        {0, 1, 2010, 12, 0, 0},                         // null date
    };
    expectConversions(cases, sizeof cases / sizeof cases[0]);
    const KZTime noon(KZDate(1, 7, 2010), 12, 0, 0);
    EXPECT_EQ(noon.Hour(), 12u);
    EXPECT_EQ(noon.HourGMT(), 10u);
    EXPECT_TRUE(noon.IsDST());
    EXPECT_FALSE(KZTime(KZDate(15, 1, 2010), 12, 0, 0).IsDST());
}

TEST(TimeDaylightSaving, ClockTimesConvertedOnSummerTimeAreAnHourEarlier)
{
    ScopedZone zone(kBerlin);
    ScopedNow now(kSummer2010);
    const ClockCase cases[] = {
        {28, 3, 2010, 2, 30, 0},
        {28, 3, 2010, 3, 30, utc(2010, 3, 28, 0, 30)},
        {31, 10, 2010, 0, 30, utc(2010, 10, 30, 21, 30)},
        {1, 7, 2010, 12, 0, utc(2010, 7, 1, 9)},
        {15, 1, 2010, 12, 0, utc(2010, 1, 15, 10)},
    };
    expectConversions(cases, sizeof cases / sizeof cases[0]);
    const KZTime noon(KZDate(1, 7, 2010), 12, 0, 0);
    EXPECT_EQ(noon.Hour(), 12u); // local readings still round-trip
    EXPECT_EQ(noon.HourGMT(), 9u);
}

TEST(TimeDaylightSaving, ZoneWithoutDaylightSaving)
{
    ScopedZone zone("UTC0");
    ScopedNow now(kSummer2010);
    const KZTime noon(KZDate(1, 7, 2010), 12, 0, 0);
    EXPECT_EQ(noon.Hash(), utc(2010, 7, 1, 12));
    EXPECT_FALSE(noon.IsDST());
    EXPECT_EQ(noon.LocalSecs(), noon.Hash());
}

TEST(TimeNow, ReadsThePinnedClock)
{
    ScopedZone zone(kBerlin);
    {
        ScopedNow now(kWinter2010);
        EXPECT_EQ(KZTime().get_time_t(), kWinter2010);
        EXPECT_EQ(KZTime(8, 0, 0).Hash(), utc(2010, 1, 15, 7));
    }
    ScopedNow now(kSummer2010); // 14:00 in Berlin
    const KZTime current;
    EXPECT_EQ(current.Hour(), 14u);
    EXPECT_EQ(current.Minute(), 0u);
    EXPECT_EQ(KZDate(current).Hash(), KZDate(11, 7, 2010).Hash());
}

TEST(TimeConversions, TimeTAndRange)
{
    const struct { long in; std::uint32_t stored; long out; } cases[] = {
        {0, kTo1970, 0}, {1, kTo1970 + 1, 1}, {1263556800, kTo1970 + 1263556800u, 1263556800},
        {2117514495, 0xFFFFFFFFu, 2117514495}, {2117514496, 0, 0}, {-1, 0, 0}};
    for (const auto& c : cases) {
        const KZTime t = fromTimeT(c.in);
        EXPECT_EQ(t.Hash(), c.stored) << c.in;
        EXPECT_EQ(t.get_time_t(), c.out) << c.in;
    }
    const KZTime t = fromTimeT(1263556800 + 7 * 60 + 9); // 2010-01-15 12:07:09 UTC
    EXPECT_EQ(t.HourGMT(), 12u);
    EXPECT_EQ(t.MinuteGMT(), 7u);
    EXPECT_EQ(t.Second(), 9u);
    EXPECT_TRUE(KZTime::AssertDate(KZDate(5, 2, 2037)));
    EXPECT_FALSE(KZTime::AssertDate(KZDate(6, 2, 2037)));
    EXPECT_FALSE(KZTime::AssertDate(KZDate(31, 12, 1900)));
    EXPECT_TRUE(KZTime::AssertDate(KZDate(1, 1, 1901)));
}

TEST(TimeConversions, CompareWrapsBeyondHalfTheRange)
{
    ScopedZone zone("UTC0");
    ScopedNow now(kWinter2010);
    const KZTime early(KZDate(1, 1, 1901), 1, 0, 0); // 3600 seconds
    const KZTime y1970 = fromTimeT(0);
    const KZTime y1971 = fromTimeT(365 * 86400);
    EXPECT_EQ(y1970.CompareTo(y1971), -1);
    EXPECT_EQ(y1971.CompareTo(y1970), 1);
    EXPECT_EQ(y1970.CompareTo(y1970), 0);
    EXPECT_EQ(early.CompareTo(y1970), 1); // more than 2^31 seconds apart
    EXPECT_EQ(early.Max(y1970), y1970.Hash());
    EXPECT_EQ(early.Min(y1970), 3600u);
}

TEST(TimeText, TwelveHourClockAndFormats)
{
    ScopedZone zone(kBerlin);
    ScopedNow now(kWinter2010);
    const int oldFlag = KZTime::PrintDate(1);
    KZDate::PrintOption = 0;
    const KZDate day(5, 1, 2010);
    EXPECT_EQ(KZTime(day, 15, 7, 9).asString(), "Januar 5, 2010 3:07:09 pm");
    EXPECT_EQ(KZTime(day, 0, 30, 0).asString(), "Januar 5, 2010 0:30:00 am");
    EXPECT_EQ(KZTime(day, 12, 0, 0).asString(), "Januar 5, 2010 12:00:00 pm");
    EXPECT_EQ(KZTime(day, 11, 59, 59).asString(), "Januar 5, 2010 11:59:59 am");
    KZDate::PrintOption = 7;
    EXPECT_EQ(KZTime(day, 15, 7, 9).asString(), " 3:07:09 pm");
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
