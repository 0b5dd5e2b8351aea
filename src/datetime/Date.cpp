// Calendar arithmetic of KZDate: day numbers, parts, weekdays.
#include "KZDate.h"
#include "KZTime.h"

#include "CrossPlatformApi.h"

#include <ctime>

namespace {

const unsigned char kDaysPerMonth[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
const std::uint32_t kFirstDayOfMonth[12] = {1, 32, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335};

constexpr std::uint32_t kJan1st1901 = 2415386;

unsigned applyTwoDigitRule(unsigned year) { return year <= 137 ? year + 1900 : year; }

// The exported functions below are thin wrappers around these: calls between
// exported functions of a shared library cannot be inlined, and the
// conversions are hot.
inline unsigned isLeapYear(unsigned year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 1 : 0;
}

inline bool isDayWithinMonth(unsigned month, unsigned day, unsigned year)
{
    if (day < 1 || month < 1 || month > 12)
        return false;
    return day <= kDaysPerMonth[month - 1] + (month == 2 ? isLeapYear(year) : 0);
}

inline std::uint32_t dayNumber(unsigned month, unsigned day, unsigned year)
{
    year = applyTwoDigitRule(year);
    if (!isDayWithinMonth(month, day, year))
        return 0;
    std::uint32_t m, y;
    if (month > 2) {
        m = month - 3;
        y = year;
    } else {
        m = month + 9;
        y = year - 1;
    }
    const std::uint32_t c = y / 100;
    const std::uint32_t r = y - 100 * c;
    return (146097u * c) / 4 + (1461u * r) / 4 + (153u * m + 2) / 5 + day + 1721119u;
}

struct Parts {
    unsigned month, day, year;
};

// Plain unsigned arithmetic, so the null date (and anything below the epoch
// of the algorithm) wraps to a defined, if meaningless, result.
inline Parts splitDayNumber(std::uint32_t dayNumber)
{
    const std::uint32_t j = 4u * (dayNumber - 1721119u);
    const std::uint32_t c = (j - 1) / 146097u;
    const std::uint32_t t = (j - 146097u * c - 1) & ~3u;
    const std::uint32_t y = (t + 3) / 1461u;
    const std::uint32_t u = 5u * ((t + 7 - 1461u * y) / 4);
    const std::uint32_t m = (u - 3) / 153u;
    Parts p;
    p.day = (u + 2 - 153u * m) / 5;
    p.year = 100u * c + y;
    if (m > 9) {
        p.month = m - 9;
        ++p.year;
    } else {
        p.month = m + 3;
    }
    return p;
}

} // namespace

std::uint32_t KZDate::Jday(unsigned month, unsigned day, unsigned year) { return dayNumber(month, day, year); }

unsigned KZDate::LeapYear(unsigned year) { return isLeapYear(year); }

unsigned KZDate::DaysInYear(unsigned year) { return isLeapYear(year) ? 366 : 365; }

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

KZDate::KZDate(const KZTime& time)
    : m_day(time.Hash() == 0 ? 0 : time.LocalSecs() / 86400u + kJan1st1901)
{
}

void KZDate::Mdy(unsigned& month, unsigned& day, unsigned& year) const
{
    const Parts p = splitDayNumber(m_day);
    month = p.month;
    day = p.day;
    year = p.year;
}

unsigned KZDate::Month() const { return splitDayNumber(m_day).month; }
unsigned KZDate::DayOfMonth() const { return splitDayNumber(m_day).day; }
unsigned KZDate::Year() const { return splitDayNumber(m_day).year; }

unsigned KZDate::Day() const { return m_day - dayNumber(12, 31, splitDayNumber(m_day).year - 1); }

unsigned KZDate::WeekDay(unsigned n) const
{
    std::uint32_t day = m_day;
    if (n != 0) {
        const Parts p = splitDayNumber(m_day);
        day = dayNumber(n, p.month, p.year);
    }
    return ((day + 1) % 7 + 6) % 7 + 1;
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

KZDate KZDate::Previous(const char* dayName) const { return Previous(DayOfWeek(dayName)); }

unsigned KZDate::DaysInMonth(unsigned month) const
{
    const Parts p = splitDayNumber(m_day);
    if (month == 0)
        month = p.month;
    if (month < 1 || month > 12)
        return 0;
    return kDaysPerMonth[month - 1] + (month == 2 ? isLeapYear(p.year) : 0);
}

unsigned KZDate::FirstDayOfMonth(unsigned month) const
{
    if (month < 1 || month > 12)
        return 0;
    return kFirstDayOfMonth[month - 1] + (month >= 3 ? isLeapYear(splitDayNumber(m_day).year) : 0);
}

int KZDate::CompareTo(const KZDate& other) const
{
    return m_day < other.m_day ? -1 : m_day > other.m_day ? 1 : 0;
}

std::uint32_t KZDate::Max(const KZDate& other) const { return other.m_day > m_day ? other.m_day : m_day; }

std::uint32_t KZDate::Min(const KZDate& other) const { return other.m_day < m_day ? other.m_day : m_day; }

// The day-count constructor wraps modulo 2^32 too, so it reaches every day number.
KZDate operator+(const KZDate& date, int days)
{
    return KZDate(date.Hash() + static_cast<std::uint32_t>(days) - kJan1st1901, 0);
}

KZDate operator+(int days, const KZDate& date) { return date + days; }

KZDate operator-(const KZDate& date, int days)
{
    return KZDate(date.Hash() - static_cast<std::uint32_t>(days) - kJan1st1901, 0);
}
