// Civil dates and day numbers: the one place the library converts between a
// proleptic Gregorian year/month/day and a count of days. Private to the
// library.
//
// The conversions are R. G. Tantzen's (Algorithm 199, Communications of the
// ACM, 1963), which the library has always used: the year is taken to start
// on 1 March, so the leap day ends it and the month lengths follow a fixed
// pattern (153 days every five months), and days are counted in centuries of
// 36524 or 36525 days, 146097 every four. Howard Hinnant's days_from_civil
// and civil_from_days ("chrono-Compatible Low-Level Date Algorithms") work
// the same way in eras of 400 years; centuries need fewer divisions, and in
// unsigned 32-bit arithmetic they wrap exactly where KZDate's day numbers
// always have (see dayNumberFromCivil and civilFromDayNumber).
#ifndef KZ_CIVIL_DAYS_H
#define KZ_CIVIL_DAYS_H

#include "KZDate.h"

#include <cstdint>
#include <type_traits>

namespace kzdatetime {

template <typename Int>
struct CivilDate {
    Int year;
    unsigned month; // 1..12
    unsigned day;   // 1..31
};

// A year divisible by 100 is divisible by 400 exactly when it is by 16.
template <typename Int>
constexpr bool isLeapYear(Int year)
{
    return year % 100 != 0 ? year % 4 == 0 : year % 16 == 0;
}

inline constexpr unsigned char kDaysInMonthOfCommonYear[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

template <typename Int>
constexpr unsigned lastDayOfMonth(Int year, unsigned month)
{
    return month == 2 && isLeapYear(year) ? 29u : kDaysInMonthOfCommonYear[month - 1];
}

// Floor division, for counting centuries before year 0 too.
template <typename Int>
constexpr Int floorDiv(Int value, Int divisor)
{
    if constexpr (std::is_signed_v<Int>)
        return (value >= 0 ? value : value - (divisor - 1)) / divisor;
    else
        return value / divisor;
}

// Days since the latest 1 March on or before the date, 0..365: January and
// February count in the year that began the March before.
constexpr unsigned daysSinceMarch1st(unsigned month, unsigned day)
{
    return (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
}

// Day of the year, 1..366. 1 March is day 60, or 61 in a leap year; January
// and February count from the March before, 306 days earlier.
template <typename Int>
constexpr unsigned dayOfYear(Int year, unsigned month, unsigned day)
{
    return month > 2 ? daysSinceMarch1st(month, day) + (isLeapYear(year) ? 61 : 60)
                     : daysSinceMarch1st(month, day) - 305;
}

// Days from 1 March of year 0 to 1 January 1970.
inline constexpr unsigned kDaysFromMarch1st0To1970 = 719468;

// Days since 1 January 1970 (negative before, for a signed Int). An unsigned
// Int counts modulo its range as long as the count of centuries times 146097
// fits it (for 32 bits: up to the year 2939899); beyond, each time the
// product wraps the count loses 2^30 days, which is what KZDate's day numbers
// do (see dayNumberFromCivil).
template <typename Int>
constexpr Int daysFromCivil(Int year, unsigned month, unsigned day)
{
    year -= month <= 2 ? 1 : 0; // year 0's January wraps an unsigned Int too
    const Int century = floorDiv<Int>(year, 100);
    const auto yearOfCentury = static_cast<unsigned>(year - century * 100); // 0..99
    return floorDiv<Int>(century * 146097, 4)
           + static_cast<Int>((1461 * yearOfCentury) / 4 + daysSinceMarch1st(month, day))
           - static_cast<Int>(kDaysFromMarch1st0To1970);
}

// The inverse of daysFromCivil: the date `days` after 1 January 1970. An
// unsigned Int reads the days since 1 March of year 0 modulo a quarter of its
// range, as four times the count wraps (see civilFromDayNumber).
template <typename Int>
constexpr CivilDate<Int> civilFromDays(Int days)
{
    const Int quarterDays = (days + static_cast<Int>(kDaysFromMarch1st0To1970)) * 4 + 3;
    const Int century = floorDiv<Int>(quarterDays, 146097);
    const auto quarterDayOfCentury = static_cast<unsigned>(quarterDays - century * 146097) | 3u; // 4 * (0..36524) + 3
    const unsigned yearOfCentury = quarterDayOfCentury / 1461;                                   // 0..99
    const unsigned sinceMarch1st = (quarterDayOfCentury - 1461 * yearOfCentury) / 4;             // 0..365
    const unsigned shiftedMonth = (5 * sinceMarch1st + 2) / 153;                                 // 0 = March
    const unsigned day = sinceMarch1st - (153 * shiftedMonth + 2) / 5 + 1;
    const unsigned month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    return {static_cast<Int>(century * 100 + static_cast<Int>(yearOfCentury + (month <= 2 ? 1 : 0))), month, day};
}

// --- KZDate day numbers ----------------------------------------------------

// Julian Day Number of 1 January 1970, where daysFromCivil counts from.
constexpr std::uint32_t kDayNumberOf1970 = 2440588;

// The day number of a date, modulo 2^32 as KZDate holds it. From the year
// 2939900 on, the count of centuries times 146097 wraps in 32 bits and each
// wrap takes 2^30 days off the number, as in the library's original formula:
// kept, so every year gives the number it always gave. The date is not
// checked.
constexpr std::uint32_t dayNumberFromCivil(std::uint32_t year, unsigned month, unsigned day)
{
    return daysFromCivil(year, month, day) + kDayNumberOf1970;
}

constexpr std::uint32_t kJan1st1901 = dayNumberFromCivil(1901, 1, 1); // day 0 of KZDate(n, 0) and of KZTime

// The date of a day number. Four times the days since 1 March of year 0
// wraps in 32 bits, so every number reads modulo 2^30 days from that day, as
// with the original formula: the null date reads as 28 February 2935093.
constexpr CivilDate<std::uint32_t> civilFromDayNumber(std::uint32_t dayNumber)
{
    return civilFromDays(dayNumber - kDayNumberOf1970);
}

// 1 = Monday .. 7 = Sunday; Julian Day 0 was a Monday. Counted from the day
// number plus one in 32 bits, so the last number, 2^32 - 1, reads as a Sunday.
constexpr unsigned weekdayOfDayNumber(std::uint32_t dayNumber)
{
    return ((dayNumber + 1) % 7 + 6) % 7 + 1;
}

// KZDate keeps its day number behind Hash(); these name what the library
// means by it.
inline std::uint32_t dayNumberOf(const KZDate& date)
{
    return date.Hash();
}
inline bool isNullDate(const KZDate& date)
{
    return date.Hash() == 0;
}
// KZDate(n, 0) counts from 1 January 1901 and wraps, so it reaches every number.
inline KZDate dateOfDayNumber(std::uint32_t dayNumber)
{
    return KZDate(dayNumber - kJan1st1901, 0);
}
// Every day number reads as a year below 2939806, so the year fits an int.
inline int yearOf(const KZDate& date)
{
    return static_cast<int>(civilFromDayNumber(dayNumberOf(date)).year);
}

static_assert(kJan1st1901 == 2415386 && dayNumberFromCivil(2000, 1, 1) == 2451545, "Julian Day Numbers");
static_assert(civilFromDayNumber(0).year == 2935093 && civilFromDayNumber(0).month == 2
                  && civilFromDayNumber(0).day == 28,
              "the null date's parts");

} // namespace kzdatetime

#endif // KZ_CIVIL_DAYS_H
