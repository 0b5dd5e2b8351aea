// Civil dates and day numbers: the one place the library converts between a
// proleptic Gregorian year/month/day and a count of days. Private to the
// library.
//
// The conversions are Howard Hinnant's days_from_civil and civil_from_days
// ("chrono-Compatible Low-Level Date Algorithms"): the year is taken to start
// on 1 March, so the leap day ends it and the month lengths follow a fixed
// pattern, and days are counted in eras of 400 years (146097 days).
//
// A KZDate holds a Julian Day Number in 32 unsigned bits. Its conversions
// keep the answers the library has always given where the 32-bit arithmetic
// of its original formulas wrapped: see dayNumberFromCivil and
// civilFromDayNumber.
#ifndef KZ_CIVIL_DAYS_H
#define KZ_CIVIL_DAYS_H

#include "KZDate.h"

#include <cstdint>
#include <type_traits>

namespace kzdatetime {

template <typename Int>
struct CivilDate {
    Int year;
    unsigned month;  // 1..12
    unsigned day;    // 1..31
};

template <typename Int>
constexpr bool isLeapYear(Int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

inline constexpr unsigned char kDaysInMonthOfCommonYear[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

template <typename Int>
constexpr unsigned lastDayOfMonth(Int year, unsigned month)
{
    return month == 2 && isLeapYear(year) ? 29u : kDaysInMonthOfCommonYear[month - 1];
}

// Floor division, for counting eras before year 0 too.
template <typename Int>
constexpr Int floorDiv(Int value, Int divisor)
{
    if constexpr (std::is_signed_v<Int>)
        return (value >= 0 ? value : value - (divisor - 1)) / divisor;
    else
        return value / divisor;
}

// Days since 1 January 1970. A signed Int counts exactly (negative before
// 1970); an unsigned one modulo its range, which is what KZDate's day numbers
// do and is also faster.
template <typename Int>
constexpr Int daysFromCivil(Int year, unsigned month, unsigned day)
{
    year -= month <= 2 ? 1 : 0;
    const Int era = floorDiv<Int>(year, 400);
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);                                 // 0..399
    const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;  // 0..365
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;  // 0..146096
    return static_cast<Int>(era * 146097 + dayOfEra - 719468);
}

// The inverse of daysFromCivil: the date `days` after 1 January 1970.
template <typename Int>
constexpr CivilDate<Int> civilFromDays(Int days)
{
    days += 719468;  // now counted from 1 March of year 0
    const Int era = floorDiv<Int>(days, 146097);
    const auto dayOfEra = static_cast<unsigned>(days - era * 146097);                                  // 0..146096
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;  // 0..399
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);          // 0..365
    const unsigned shiftedMonth = (5 * dayOfYear + 2) / 153;                                            // 0 = March
    const unsigned day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    const unsigned month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    return {static_cast<Int>(era * 400 + yearOfEra + (month <= 2 ? 1 : 0)), month, day};
}

// --- KZDate day numbers ----------------------------------------------------

// Julian Day Number of 1 January 1970, where daysFromCivil counts from.
constexpr std::uint32_t kDayNumberOf1970 = 2440588;

// The day number of a date, modulo 2^32 as KZDate holds it. The library's
// original formula multiplied the count of centuries (from 1 March of year 0)
// by 146097 in 32 bits; from year 2939900 on that product wraps, and each
// wrap takes 2^30 days off the number. Kept, so every year gives the number
// it always gave. The date is not checked.
constexpr std::uint32_t dayNumberFromCivil(std::uint32_t year, unsigned month, unsigned day)
{
    const std::uint32_t centuries = (year - (month <= 2 ? 1 : 0)) / 100;  // year 0's January wraps too
    const auto wraps = static_cast<std::uint32_t>(std::uint64_t{centuries} * 146097 >> 32);  // 0 up to 2939899
    return daysFromCivil(year, month, day) + kDayNumberOf1970 - (wraps << 30);
}

constexpr std::uint32_t kJan1st1901 = dayNumberFromCivil(1901, 1, 1);  // day 0 of KZDate(n, 0) and of KZTime

// The date of a day number. The original formula multiplied the days since
// the day before 1 March of year 0 by 4 in 32 bits, so it read every number
// modulo 2^30 days, starting from 1 March of year 0: the null date reads as
// 28 February 2935093. Kept, so every number reads as it always did.
constexpr CivilDate<std::uint32_t> civilFromDayNumber(std::uint32_t dayNumber)
{
    constexpr std::uint32_t kMarch1st0 = daysFromCivil<std::uint32_t>(0, 3, 1);  // days since 1970, modulo 2^32
    constexpr std::uint32_t kCycle = std::uint32_t{1} << 30;
    const std::uint32_t sinceMarch1st0 = (dayNumber - kDayNumberOf1970 - kMarch1st0) % kCycle;
    return civilFromDays(kMarch1st0 + sinceMarch1st0);
}

// 1 = Monday .. 7 = Sunday; Julian Day 0 was a Monday. Counted from the day
// number plus one in 32 bits, so the last number, 2^32 - 1, reads as a Sunday.
constexpr unsigned weekdayOfDayNumber(std::uint32_t dayNumber) { return ((dayNumber + 1) % 7 + 6) % 7 + 1; }

// KZDate keeps its day number behind Hash(); these name what the library
// means by it.
inline std::uint32_t dayNumberOf(const KZDate& date) { return date.Hash(); }
inline bool isNullDate(const KZDate& date) { return date.Hash() == 0; }
// KZDate(n, 0) counts from 1 January 1901 and wraps, so it reaches every number.
inline KZDate dateOfDayNumber(std::uint32_t dayNumber) { return KZDate(dayNumber - kJan1st1901, 0); }

static_assert(kJan1st1901 == 2415386 && dayNumberFromCivil(2000, 1, 1) == 2451545, "Julian Day Numbers");
static_assert(civilFromDayNumber(0).year == 2935093 && civilFromDayNumber(0).month == 2 &&
                  civilFromDayNumber(0).day == 28,
              "the null date's parts");

} // namespace kzdatetime

#endif // KZ_CIVIL_DAYS_H
