// Calendar arithmetic of KZDate: day numbers, parts, weekdays.
#include "KZDate.h"
#include "KZTime.h"

#include "CivilDays.h"
#include "CrossPlatformApi.h"

#include <ctime>

using namespace kzdatetime;

namespace {

unsigned applyTwoDigitRule(unsigned year)
{
    return year <= 137 ? year + 1900 : year;
}

// The exported functions below are thin wrappers around these: calls between
// exported functions of a shared library cannot be inlined, and the
// conversions are hot.
inline bool isDayWithinMonth(unsigned month, unsigned day, unsigned year)
{
    return day >= 1 && month >= 1 && month <= 12 && day <= lastDayOfMonth(year, month);
}

inline std::uint32_t dayNumber(unsigned month, unsigned day, unsigned year)
{
    year = applyTwoDigitRule(year);
    return isDayWithinMonth(month, day, year) ? dayNumberFromCivil(year, month, day) : 0;
}

} // namespace

std::uint32_t KZDate::Jday(unsigned month, unsigned day, unsigned year)
{
    return dayNumber(month, day, year);
}

unsigned KZDate::LeapYear(unsigned year)
{
    return isLeapYear(year) ? 1 : 0;
}

unsigned KZDate::DaysInYear(unsigned year)
{
    return isLeapYear(year) ? 366 : 365;
}

unsigned KZDate::DayWithinMonth(unsigned month, unsigned day, unsigned year)
{
    return isDayWithinMonth(month, day, year) ? 1 : 0;
}

KZDate::KZDate()
{
    const std::time_t now = CrossPlatformApi::now();
    std::tm local{};
    CrossPlatformApi::localtime_s(&local, &now);
    m_day = dayNumber(static_cast<unsigned>(local.tm_mon + 1), static_cast<unsigned>(local.tm_mday),
                      static_cast<unsigned>(local.tm_year + 1900));
}

KZDate::KZDate(unsigned day, unsigned month, unsigned year) : m_day(dayNumber(month, day, year)) {}

KZDate::KZDate(unsigned day, const char* monthName, unsigned year)
    : m_day(dayNumber(IndexOfMonth(monthName), day, year))
{
}

KZDate::KZDate(unsigned dayNumberOrDayOfYear, unsigned year)
    : m_day(year ? dayNumber(12, 31, year - 1) + dayNumberOrDayOfYear : kJan1st1901 + dayNumberOrDayOfYear)
{
}

KZDate::KZDate(const KZTime& time) : m_day(time.Hash() == 0 ? 0 : time.LocalSecs() / 86400u + kJan1st1901) {}

void KZDate::Mdy(unsigned& month, unsigned& day, unsigned& year) const
{
    const CivilDate<std::uint32_t> date = civilFromDayNumber(m_day);
    month = date.month;
    day = date.day;
    year = date.year;
}

unsigned KZDate::Month() const
{
    return civilFromDayNumber(m_day).month;
}
unsigned KZDate::DayOfMonth() const
{
    return civilFromDayNumber(m_day).day;
}
unsigned KZDate::Year() const
{
    return civilFromDayNumber(m_day).year;
}

unsigned KZDate::Day() const
{
    return m_day - dayNumber(12, 31, civilFromDayNumber(m_day).year - 1);
}

unsigned KZDate::WeekDay(unsigned n) const
{
    std::uint32_t day = m_day;
    if (n != 0) {
        const CivilDate<std::uint32_t> date = civilFromDayNumber(m_day);
        day = dayNumber(n, date.month, date.year);
    }
    return weekdayOfDayNumber(day);
}

KZDate KZDate::Previous(unsigned weekday) const
{
    const std::uint32_t w = WeekDay(0) - 1;
    const std::uint32_t d = weekday - 1;
    const std::uint32_t back = d <= w ? w - d : w - d + 7;
    KZDate result = *this;
    result.m_day = m_day - back;
    return result;
}

KZDate KZDate::Previous(const char* dayName) const
{
    return Previous(DayOfWeek(dayName));
}

unsigned KZDate::DaysInMonth(unsigned month) const
{
    const CivilDate<std::uint32_t> date = civilFromDayNumber(m_day);
    if (month == 0)
        month = date.month;
    if (month < 1 || month > 12)
        return 0;
    return lastDayOfMonth(date.year, month);
}

unsigned KZDate::FirstDayOfMonth(unsigned month) const
{
    if (month < 1 || month > 12)
        return 0;
    return dayOfYear(civilFromDayNumber(m_day).year, month, 1);
}

int KZDate::CompareTo(const KZDate& other) const
{
    return m_day < other.m_day ? -1 : m_day > other.m_day ? 1 : 0;
}

std::uint32_t KZDate::Max(const KZDate& other) const
{
    return other.m_day > m_day ? other.m_day : m_day;
}

std::uint32_t KZDate::Min(const KZDate& other) const
{
    return other.m_day < m_day ? other.m_day : m_day;
}

KZDate operator+(const KZDate& date, int days)
{
    return dateOfDayNumber(dayNumberOf(date) + static_cast<std::uint32_t>(days));
}

KZDate operator+(int days, const KZDate& date)
{
    return date + days;
}

KZDate operator-(const KZDate& date, int days)
{
    return dateOfDayNumber(dayNumberOf(date) - static_cast<std::uint32_t>(days));
}
