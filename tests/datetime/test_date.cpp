// KZDate: day numbers, two-digit years, parts, weekdays, names and "today".
#include "KZDate.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

struct Ymd {
    unsigned day, month, year;
};

Ymd partsOf(const KZDate& date)
{
    Ymd p{};
    date.Mdy(p.month, p.day, p.year);
    return p;
}

// Days since 1970-01-01 for a proleptic Gregorian date, written independently
// of the library (shifted-year-from-March form).
std::int64_t referenceDays(std::int64_t y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

} // namespace

TEST(DateNumbers, ReferenceDaysAndTwoDigitYears)
{
    const struct {
        unsigned day, month, year;
        std::uint32_t expected;
    } cases[] = {
        {1, 1, 1901, 2415386}, {1, 1, 1970, 2440588}, {1, 1, 2000, 2451545},
        {1, 1, 0, 2415021},     // two-digit: 1900
        {1, 1, 100, 2451545},   // 2000
        {29, 2, 100, 2451604}, {29, 2, 2000, 2451604},
        {29, 2, 1900, 0}, {29, 2, 0, 0}, {31, 4, 2010, 0}, {0, 5, 2010, 0}, {1, 13, 2010, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KZDate(c.day, c.month, c.year).Hash(), c.expected) << c.day << "." << c.month << "." << c.year;
    EXPECT_EQ(KZDate(1, 1, 137).Year(), 2037u);
    EXPECT_EQ(KZDate(1, 1, 138).Year(), 138u);
    EXPECT_EQ(KZDate(1, 1, 138).Hash(), static_cast<std::uint32_t>(referenceDays(138, 1, 1) + 2440588));
}

TEST(DateNumbers, DayOfYearAndDayCountConstructors)
{
    EXPECT_EQ(KZDate(366, 2009).Hash(), KZDate(1, 1, 2010).Hash());
    EXPECT_EQ(KZDate(60, 2004).Hash(), KZDate(29, 2, 2004).Hash());
    EXPECT_EQ(KZDate(0, 0).Hash(), 2415386u);
    EXPECT_EQ(KZDate(1, 1).Hash(), 2415386u);   // year 1 -> 1901, counted from 31.12.1900
    EXPECT_EQ(KZDate(1, 100).Hash(), 2451545u); // 1 January 2000
    EXPECT_EQ(KZDate(1, 1, 2004).Day(), 1u);
    EXPECT_EQ(KZDate(1, 3, 2004).Day(), 61u);
    EXPECT_EQ(KZDate(31, 12, 2005).Day(), 365u);
}

TEST(DateNumbers, MdyRoundTripsAndMatchesAnIndependentCalendar)
{
    const std::uint32_t first = KZDate(1, 1, 138).Hash();
    const std::uint32_t last = KZDate(31, 12, 20000).Hash();
    std::uint32_t failures = 0;
    for (std::uint32_t n = first; n <= last && failures < 5; ++n) {
        KZDate date(n - 2415386u, 0);
        const Ymd p = partsOf(date);
        if (KZDate::Jday(p.month, p.day, p.year) != n ||
            referenceDays(p.year, p.month, p.day) + 2440588 != static_cast<std::int64_t>(n)) {
            ++failures;
            ADD_FAILURE() << "day number " << n << " -> " << p.day << "." << p.month << "." << p.year;
        }
    }
    for (unsigned year : {100000u, 1000000u, 2900000u}) {
        const Ymd p = partsOf(KZDate(28, 2, year));
        EXPECT_TRUE(p.day == 28 && p.month == 2 && p.year == year) << year;
    }
}

TEST(DateNumbers, NullDateReadsAsWrappedValueAndSortsFirst)
{
    const Ymd p = partsOf(KZDate(0, 2, 3));
    EXPECT_EQ(p.month, 2u);
    EXPECT_EQ(p.day, 28u);
    EXPECT_EQ(p.year, 2935093u);
    EXPECT_EQ(KZDate(0, 2, 3).CompareTo(KZDate(1, 1, 138)), -1);
}

TEST(DateNumbers, LeapYearsAndMonthLengths)
{
    const struct { unsigned year, leap; } years[] = {{1900, 0}, {2000, 1}, {2004, 1}, {2100, 0}, {2001, 0}, {4, 1}};
    for (const auto& y : years) {
        EXPECT_EQ(KZDate::LeapYear(y.year), y.leap) << y.year;
        EXPECT_EQ(KZDate::DaysInYear(y.year), 365 + y.leap) << y.year;
    }
    const KZDate feb2004(10, 2, 2004), jun2005(10, 6, 2005);
    EXPECT_EQ(feb2004.DaysInMonth(0), 29u);
    EXPECT_EQ(jun2005.DaysInMonth(0), 30u);
    EXPECT_EQ(jun2005.DaysInMonth(2), 28u);
    EXPECT_EQ(jun2005.DaysInMonth(13), 0u);
    EXPECT_EQ(feb2004.FirstDayOfMonth(3), 61u);
    EXPECT_EQ(jun2005.FirstDayOfMonth(3), 60u);
    EXPECT_EQ(feb2004.FirstDayOfMonth(2), 32u);
    EXPECT_EQ(feb2004.FirstDayOfMonth(0), 0u);
    EXPECT_FALSE(KZDate::DayWithinMonth(2, 29, 1900));
    EXPECT_TRUE(KZDate::DayWithinMonth(2, 29, 2000));
}

TEST(DateWeekdays, WeekDayAndPrevious)
{
    const KZDate y2k(1, 1, 2000); // a Saturday
    EXPECT_EQ(y2k.WeekDay(0), 6u);
    EXPECT_EQ(KZDate(26, 12, 1999).WeekDay(0), 7u);
    // WeekDay(n): the date with month n whose day is this date's month.
    EXPECT_EQ(KZDate(3, 2, 2010).WeekDay(5), 7u);  // 2 May 2010, a Sunday
    EXPECT_EQ(KZDate(3, 2, 2010).WeekDay(13), 1u); // impossible date
    const struct { unsigned weekday; std::uint32_t back; } cases[] = {
        {6, 0}, {7, 6}, {1, 5}, {5, 1}, {0, 13}, {8, 5}};
    for (const auto& c : cases)
        EXPECT_EQ(y2k.Previous(c.weekday).Hash(), y2k.Hash() - c.back) << c.weekday;
    EXPECT_EQ(y2k.Previous("mo").Hash(), KZDate(27, 12, 1999).Hash());
    EXPECT_EQ(y2k.Previous("nix").Hash(), y2k.Hash() - 13);
}

TEST(DateArithmetic, OperatorsCompareAndWrap)
{
    const KZDate d(31, 12, 2010);
    EXPECT_EQ((d + 1).Hash(), KZDate(1, 1, 2011).Hash());
    EXPECT_EQ((1 + d).Hash(), KZDate(1, 1, 2011).Hash());
    EXPECT_EQ((d - 365).Hash(), KZDate(31, 12, 2009).Hash());
    EXPECT_EQ((d + -1).Hash(), KZDate(30, 12, 2010).Hash());
    EXPECT_EQ((KZDate(0, 1, 1) - 1).Hash(), 0xFFFFFFFFu);
    EXPECT_EQ((KZDate(0, 1, 1) - 1 + 1).Hash(), 0u);
    const KZDate later = d + 5;
    EXPECT_EQ(d.CompareTo(later), -1);
    EXPECT_EQ(later.CompareTo(d), 1);
    EXPECT_EQ(d.CompareTo(d), 0);
    EXPECT_EQ(d.Max(later), later.Hash());
    EXPECT_EQ(d.Min(later), d.Hash());
}

class DateNames : public ::testing::Test {
protected:
    // Keep the current tables so every test can change them freely.
    void SetUp() override
    {
        for (int kind = 0; kind < 4; ++kind)
            for (int i = 0; i < 12; ++i)
                m_saved[kind][i] = KZDate::GetIntlName(static_cast<KZDateType>(kind), i);
    }
    void TearDown() override
    {
        for (int kind = 0; kind < 4; ++kind)
            KZDate::SetIntlNames(static_cast<KZDateType>(kind), m_saved[kind]);
    }
    const char* m_saved[4][12] = {};
};

TEST_F(DateNames, BuiltInNames)
{
    EXPECT_STREQ(KZDate::MonthName(3), "M\xE4" "rz");
    EXPECT_STREQ(KZDate::MonthName(12), "Dezember");
    EXPECT_STREQ(KZDate::DayName(1), "Montag");
    EXPECT_STREQ(KZDate::DayName(7), "Sonntag");
    EXPECT_EQ(KZDate::MonthName(0), nullptr);
    EXPECT_EQ(KZDate::MonthName(13), nullptr);
    EXPECT_EQ(KZDate::DayName(8), nullptr);
    EXPECT_STREQ(KZDate::GetIntlName(UpperMonthNames, 2), "M\xC4" "RZ");
    EXPECT_EQ(KZDate::GetIntlName(DayNames, 7), nullptr);
    EXPECT_EQ(KZDate::GetIntlName(MonthNames, -1), nullptr);
    EXPECT_EQ(KZDate::GetIntlName(static_cast<KZDateType>(9), 0), nullptr);
}

TEST_F(DateNames, PrefixMatchingPrefersLaterNames)
{
    const struct { const char* input; unsigned month; } months[] = {
        {"", 12}, {"jan", 1}, {"Januar", 1}, {"Januarx", 0}, {"Ju", 7}, {"jun", 6}, {"M", 5}, {"ma", 5},
        {"M\xC4R", 3}, {"m\xE4r", 0}, {"DEZEMBER", 12}, {"Xyz", 0}, {nullptr, 0}};
    for (const auto& c : months)
        EXPECT_EQ(KZDate::IndexOfMonth(c.input), c.month) << (c.input ? c.input : "(null)");
    const struct { const char* input; unsigned day; } days[] = {
        {"", 7}, {"mo", 1}, {"D", 4}, {"di", 2}, {"s", 7}, {"sa", 6}, {"Freitagx", 0}, {nullptr, 0}};
    for (const auto& c : days)
        EXPECT_EQ(KZDate::DayOfWeek(c.input), c.day) << (c.input ? c.input : "(null)");
    EXPECT_EQ(KZDate(15, "Feb", 2010).Hash(), KZDate(15, 2, 2010).Hash());
    EXPECT_EQ(KZDate(15, "Foo", 2010).Hash(), 0u);
}

TEST_F(DateNames, ReplacedAndUnusableTables)
{
    const char* english[12] = {"January", "February", "March", "April", "May", "June",
                               "July", "August", "September", "October", "November", "December"};
    KZDate::SetIntlNames(MonthNames, english);
    EXPECT_STREQ(KZDate::MonthName(1), "January");
    EXPECT_EQ(KZDate::IndexOfMonth("Apr"), 4u); // matching still uses the upper-case table

    KZDate::SetIntlNames(MonthNames, nullptr);
    KZDate::SetIntlNames(UpperDayNames, nullptr);
    EXPECT_EQ(KZDate::MonthName(1), nullptr);
    EXPECT_EQ(KZDate::GetIntlName(MonthNames, 0), nullptr);
    EXPECT_EQ(KZDate::DayOfWeek("Mo"), 0u);
    EXPECT_STREQ(KZDate::DayName(1), "Montag"); // other slots untouched
}

TEST(DateToday, ReadsThePinnedClockInLocalTime)
{
    kzbs_test::ScopedZone zone(kzbs_test::kBerlin);
    {
        kzbs_test::ScopedNow now(kzbs_test::kWinter2010);
        EXPECT_EQ(KZDate().Hash(), KZDate(15, 1, 2010).Hash());
    }
    kzbs_test::ScopedNow lateEvening(1278804600); // 2010-07-10 23:30 UTC, 01:30 in Berlin
    EXPECT_EQ(KZDate().Hash(), KZDate(11, 7, 2010).Hash());
}
