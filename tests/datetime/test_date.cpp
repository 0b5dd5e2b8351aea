// KZDate: day numbers, two-digit years, parts, weekdays, names and text.
#include "KZDate.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <iomanip>
#include <sstream>

// Days since 1970-01-01 for a proleptic Gregorian date, written independently
// of the library (shifted-year-from-March form).
static std::int64_t referenceDays(std::int64_t y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

// Restores the process-wide names and print settings. The library keeps the
// table pointer it is given, so the saved tables must outlive every test.
class DateText : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int k = 0; k < 4 * 12; ++k)
            s_saved[k / 12][k % 12] = KZDate::GetIntlName(static_cast<KZDateType>(k / 12), k % 12);
        std::memcpy(m_fmt, KZDate::ShortDateFmt, sizeof m_fmt);
    }
    void TearDown() override
    {
        for (int kind = 0; kind < 4; ++kind)
            KZDate::SetIntlNames(static_cast<KZDateType>(kind), s_saved[kind]);
        KZDate::PrintOption = 0;
        std::memcpy(KZDate::ShortDateFmt, m_fmt, sizeof m_fmt);
    }
    static inline const char* s_saved[4][12] = {};
    char m_fmt[12] = {};
};
using DateNames = DateText;

static std::uint32_t parsePattern(const char* text, const char* pattern)
{
    KZDate date(1, 1, 2000);
    date.ParseFrom(text, pattern);
    return date.Hash();
}

TEST(DateNumbers, ReferenceDaysAndTwoDigitYears)
{
    const struct {
        unsigned day, month, year;
        std::uint32_t expected;
    } cases[] = {{1, 1, 1901, 2415386},
                 {1, 1, 1970, 2440588},
                 {1, 1, 0, 2415021} /* 1900 */,
                 {29, 2, 100, 2451604} /* 2000 */,
                 {29, 2, 0, 0},
                 {31, 4, 2010, 0},
                 {0, 5, 2010, 0},
                 {1, 13, 2010, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(KZDate(c.day, c.month, c.year).Hash(), c.expected) << c.day << "." << c.month << "." << c.year;
    EXPECT_TRUE(KZDate(1, 1, 137).Year() == 2037 && KZDate(1, 1, 138).Year() == 138); // two-digit years end at 137
    // Day of year, or a day count from 31.12.1900 when the year is 0.
    EXPECT_EQ(KZDate(366, 2009).Hash(), KZDate(1, 1, 2010).Hash());
    EXPECT_EQ(KZDate(60, 2004).Hash(), KZDate(29, 2, 2004).Hash());
    EXPECT_TRUE(KZDate(0, 0).Hash() == 2415386u && KZDate(1, 1).Hash() == 2415386u); // both 1.1.1901
    EXPECT_EQ(KZDate(1, 100).Hash(), 2451545u);                                      // 1 January 2000
    for (unsigned year : {1900u, 2100u})
        EXPECT_TRUE(!KZDate::LeapYear(year) && KZDate::DaysInYear(year) == 365) << year;
    for (unsigned year : {2000u, 2004u})
        EXPECT_TRUE(KZDate::LeapYear(year) && KZDate::DaysInYear(year) == 366) << year;
}

TEST(DateNumbers, MdyRoundTripsAndMatchesAnIndependentCalendar)
{
    const std::uint32_t first = KZDate(1, 1, 138).Hash();
    const std::uint32_t last = KZDate(31, 12, 20000).Hash();
    unsigned day, month, year;
    for (std::uint32_t n = first; n <= last; ++n) {
        KZDate(n - 2415386u, 0).Mdy(month, day, year);
        if (KZDate::Jday(month, day, year) != n || referenceDays(year, month, day) + 2440588 != std::int64_t{n})
            FAIL() << "day number " << n << " -> " << day << "." << month << "." << year;
    }
}

// Day numbers are unsigned 32-bit and their parts are computed modulo 2^30
// days counted from 1 March of year 0 (day number 1721120): every number
// reads as the date of its representative in that cycle, which ends in June
// 2939805, and day numbers round-trip within it.
TEST(DateNumbers, EveryDayNumberReadsAsItsDateInTheCycle)
{
    constexpr std::uint32_t kCycleStart = 1721120, kCycle = std::uint32_t{1} << 30;
    unsigned day, month, year;
    std::uint32_t n = 0;
    do {
        const std::uint32_t inCycle = kCycleStart + (n - kCycleStart) % kCycle;
        KZDate(n - 2415386u, 0).Mdy(month, day, year);
        if (referenceDays(year, month, day) + 2440588 != std::int64_t{inCycle}
            || (year > 137 && KZDate::Jday(month, day, year) != inCycle))
            FAIL() << "day number " << n << " -> " << day << "." << month << "." << year;
        n += 1021;
    } while (n >= 1021);
}

TEST(DateNumbers, WrapAroundEdgesKeepTheirAnswers)
{
    const struct {
        std::uint32_t number;
        unsigned day, month, year, weekday;
    } parts[] = {{0, 28, 2, 2935093, 1} /* the null date */,
                 {1721119, 5, 6, 2939805, 2} /* the cycle's last day */,
                 {1721120, 1, 3, 0, 3},
                 {1721120 + (1u << 30), 1, 3, 0, 4},
                 {0xFFFFFFFEu, 26, 2, 2935093, 3},
                 {0xFFFFFFFFu, 27, 2, 2935093, 7} /* the weekday counts from n + 1 in 32 bits */};
    for (const auto& c : parts) {
        const KZDate date(c.number - 2415386u, 0);
        EXPECT_TRUE(date.DayOfMonth() == c.day && date.Month() == c.month && date.Year() == c.year
                    && date.WeekDay() == c.weekday)
            << c.number;
    }
    // From year 2939900 on the century count times 146097 wraps in 32 bits.
    const struct {
        unsigned day, month, year;
        std::uint32_t number;
    } numbers[] = {{28, 2, 2935093, 1u << 30},
                   {31, 12, 2939899, 1075497485},
                   {1, 1, 2939900, 1075497486},
                   {1, 3, 2939900, 1755721},
                   {31, 12, 4294967295u, 1043250629}};
    for (const auto& c : numbers)
        EXPECT_EQ(KZDate::Jday(c.month, c.day, c.year), c.number) << c.day << "." << c.month << "." << c.year;
}

TEST(DateNumbers, MonthLengthsOfTheDatesYear)
{
    const KZDate feb2004(10, 2, 2004), jun2005(10, 6, 2005);
    EXPECT_EQ(feb2004.DaysInMonth(0), 29u); // month 0: the date's own month
    EXPECT_EQ(jun2005.DaysInMonth(2), 28u);
    EXPECT_EQ(jun2005.DaysInMonth(13), 0u);
    const struct {
        KZDate date;
        unsigned month, first;
    } firsts[] = {{feb2004, 3, 61}, {jun2005, 3, 60}, {feb2004, 12, 336}, {jun2005, 1, 1}, {KZDate(1, 1, 2100), 3, 60}};
    for (const auto& c : firsts)
        EXPECT_EQ(c.date.FirstDayOfMonth(c.month), c.first) << c.date.Year() << "/" << c.month;
    EXPECT_EQ(feb2004.FirstDayOfMonth(0), 0u); // but not here
}

TEST(DateWeekdays, WeekDayAndPrevious)
{
    const KZDate y2k(1, 1, 2000); // a Saturday
    EXPECT_EQ(y2k.WeekDay(0), 6u);
    EXPECT_EQ(KZDate(3, 2, 2010).WeekDay(5), 7u);  // month 5, day = this month: 2 May 2010, a Sunday
    EXPECT_EQ(KZDate(3, 2, 2010).WeekDay(13), 1u); // impossible date
    const struct {
        unsigned weekday;
        std::uint32_t back;
    } cases[] = {{6, 0}, {7, 6}, {0, 13}, {8, 5}};
    for (const auto& c : cases)
        EXPECT_EQ(y2k.Previous(c.weekday).Hash(), y2k.Hash() - c.back) << c.weekday;
    EXPECT_EQ(y2k.Previous("mo").Hash(), KZDate(27, 12, 1999).Hash());
}

TEST(DateArithmetic, OperatorsCompareAndWrap)
{
    const KZDate d(31, 12, 2010);
    EXPECT_EQ((1 + d).Hash(), KZDate(1, 1, 2011).Hash());
    EXPECT_EQ((d + -1).Hash(), KZDate(30, 12, 2010).Hash());
    EXPECT_EQ((KZDate(0, 1, 1) - 1).Hash(), 0xFFFFFFFFu);
    EXPECT_EQ((KZDate(0, 1, 1) - 1 + 1).Hash(), 0u);
    const KZDate later = d + 5;
    EXPECT_EQ(d.CompareTo(later), -1);
    EXPECT_EQ(later.CompareTo(d), 1);
    EXPECT_EQ(KZDate(0, 2, 3).CompareTo(KZDate(1, 1, 138)), -1); // the null date sorts first
}

TEST_F(DateNames, LookupsOutsideTheTablesAndReplacedOrUnusableTables)
{
    EXPECT_STREQ(KZDate::DayName(7), "Sonntag");
    EXPECT_STREQ(KZDate::GetIntlName(UpperMonthNames, 2),
                 "M\xC4"
                 "RZ");
    EXPECT_TRUE(!KZDate::MonthName(0) && !KZDate::MonthName(13) && !KZDate::DayName(8)
                && !KZDate::GetIntlName(DayNames, 7) && !KZDate::GetIntlName(MonthNames, -1)
                && !KZDate::GetIntlName(static_cast<KZDateType>(9), 0));
    const char* english[12] = {"January"};
    KZDate::SetIntlNames(MonthNames, english);
    EXPECT_STREQ(KZDate::MonthName(1), "January");
    EXPECT_EQ(KZDate::IndexOfMonth("Apr"), 4u); // matching still uses the upper-case table

    KZDate::SetIntlNames(MonthNames, nullptr);
    KZDate::SetIntlNames(UpperDayNames, nullptr);
    EXPECT_EQ(KZDate::MonthName(1), nullptr);
    EXPECT_EQ(KZDate::DayOfWeek("Mo"), 0u);
    EXPECT_STREQ(KZDate::DayName(1), "Montag"); // other slots untouched
    // Without month names a layout stops where the first name would go.
    const struct {
        int option;
        const char* text;
    } layouts[] = {{0, ""}, {1, ""}, {4, "05 "}, {3, "05/1/2010"}};
    for (const auto& l : layouts) {
        KZDate::PrintOption = l.option;
        EXPECT_EQ(KZDate(5, 1, 2010).AsString(), l.text) << l.option;
    }
}

TEST_F(DateNames, PrefixMatchingPrefersLaterNames)
{
    const struct {
        const char* input;
        unsigned month;
    } months[] = {{"", 12},  {"jan", 1},    {"Januarx", 0}, {"Ju", 7},        {"jun", 6},  {"M", 5},
                  {"ma", 5}, {"M\xC4R", 3}, {"m\xE4r", 0},  {"DEZEMBER", 12}, {nullptr, 0}};
    for (const auto& c : months)
        EXPECT_EQ(KZDate::IndexOfMonth(c.input), c.month) << (c.input ? c.input : "(null)");
    const struct {
        const char* input;
        unsigned day;
    } days[] = {{"", 7}, {"mo", 1}, {"D", 4}, {"di", 2}, {"s", 7}, {"sa", 6}, {"Freitagx", 0}, {nullptr, 0}};
    for (const auto& c : days)
        EXPECT_EQ(KZDate::DayOfWeek(c.input), c.day) << (c.input ? c.input : "(null)");
    EXPECT_EQ(KZDate(15, "Feb", 2010).Hash(), KZDate(15, 2, 2010).Hash());
    EXPECT_EQ(KZDate(15, "Foo", 2010).Hash(), 0u);
}

TEST_F(DateText, PrintLayouts)
{
    const struct {
        int option;
        KZDate date;
        const char* text;
    } cases[] = {{0, KZDate(5, 1, 2010), "Januar 5, 2010"},
                 {1, KZDate(5, 1, 2010), "05-Jan-2010"},
                 {2, KZDate(5, 1, 2010), "01/5/2010"},
                 {3, KZDate(5, 1, 2010), "05/1/2010"},
                 {4, KZDate(5, 1, 2010), "05 Januar 2010"},
                 {5, KZDate(5, 1, 2010), ""},
                 {-1, KZDate(5, 1, 2010), ""},
                 {1, KZDate(0, 2, 3), "28-Feb-2935093"},
                 {1, KZDate(9, 3, 138), "09-M\xE4r-0138"}};
    for (const auto& c : cases) {
        KZDate::PrintOption = c.option;
        EXPECT_EQ(c.date.AsString(), c.text) << c.option;
    }
    KZDate::PrintOption = 3;
    std::ostringstream out;
    out << std::setw(12) << std::setfill('*') << KZDate(5, 1, 2010) << "|" << KZDate(5, 1, 2010);
    EXPECT_EQ(out.str(), "***05/1/2010|05/1/2010");
}

TEST_F(DateText, StreamReader)
{
    const std::uint32_t jan15 = KZDate(15, 1, 2010).Hash();
    const struct {
        const char* text;
        std::uint32_t day;
        bool bad;
    } cases[] = {
        {"15. Januar 2010 ", jan15, false},
        {"1/15/2010 ", jan15, false},
        {"  jan, 15; 2010!", jan15, false},
        {"3 4 10 ", KZDate(4, 3, 1910).Hash(), false},
        {"15.01.2010 ", 0, true} /* month 15 */,
        {"1/15/2010", 0, true} /* the year must not end the stream */,
        {"15 Xyz 2010 ", 0, true},
        {"30 Februar 2010 ", 0, true},
        {"15", 0, false} /* ends before the second field */,
        {"--- ", 0, false},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.text);
        KZDate date(1, 1, 2000);
        date.ParseFrom(in);
        EXPECT_EQ(date.Hash(), c.day) << '"' << c.text << '"';
        EXPECT_EQ(in.bad(), c.bad) << '"' << c.text << '"';
    }
    std::istringstream failed("Januar 15 2010 ");
    failed.setstate(std::ios::failbit);
    KZDate date(1, 1, 2000);
    date.ParseFrom(failed);
    EXPECT_TRUE(date.Hash() == 0 && failed.bad());
}

TEST_F(DateText, PatternReader)
{
    const std::uint32_t jan5 = KZDate(5, 1, 2010).Hash();
    const struct {
        const char* text;
        const char* pattern;
        std::uint32_t day;
    } cases[] = {
        {"05.01.2010", nullptr, jan5},
        {"5.1.2010", "dd.MM.yyyy", jan5},
        {"05/01/2010", "DD?mm?YYYY", jan5},
        {"05.01.10", "dd.MM.yyyy", KZDate(5, 1, 1910).Hash()},
        {"12345678", "ddmmyy", 0},                             // month 34
        {"12035678", "ddmmy", KZDate(12, 3, 1956).Hash()},     // counting stops after 2 digits
        {"1203056789", "ddmmyy", KZDate(12, 3, 567).Hash()},   // more than 2 digits: 4 taken
        {"05.01.201", "dd.MM.yyyy", KZDate(5, 1, 201).Hash()}, // 4 wanted, 3 there
        {"1.1.", "d.m.yyyy", KZDate(1, 1, 1900).Hash()},       // year 0 means 1900
        {"xx.01.2010", "dd.MM.yyyy", 0},
        {"05.01.2010", "", 0},
        {nullptr, "dd.MM.yyyy", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parsePattern(c.text, c.pattern), c.day)
            << (c.text ? c.text : "(null)") << " / " << (c.pattern ? c.pattern : "(default)");
    std::strcpy(KZDate::ShortDateFmt, "MM/dd/yyyy");
    EXPECT_EQ(parsePattern("01/05/2010", nullptr), jan5);
}
