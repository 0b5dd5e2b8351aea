// Holiday queries over dates and periods.
#include "KZCalendar.h"

#include "CivilDays.h"

#include <cstdint>

using namespace KZBasicServices;
using namespace kzdatetime;

KZCalendar::~KZCalendar() = default;

bool PublicHolidayInfoListSorter::operator()(const PublicHolidayInfo& a, const PublicHolidayInfo& b) const
{
    return dayNumberOf(a.getDate()) < dayNumberOf(b.getDate());
}

namespace {

// The days from 1 January 138 to 31 December 4099. For a date among them,
// date.Year() is its true year, above the two-digit rule, and every row's
// date in that year is a true date of the same year: so a row falls on the
// date exactly when its day and month match, or its offset from Easter does.
// Other dates (the years up to 137, which a row reads as 19xx; the null
// date; the years after 4099) ask each row for its date as they always did.
constexpr std::uint32_t kFirstPlainDay = dayNumberFromCivil(138, 1, 1);
constexpr std::uint32_t kLastPlainDay = dayNumberFromCivil(4099, 12, 31);

// KZCalendar::easter gives 22 March .. 26 April in these years (Julian
// dates included): days 21..56 counted from 1 March.
constexpr int kEarliestEaster = 21, kLatestEaster = 56;

// What the rows are compared with, worked out once per question.
struct PlainDay {
    const KZDate& date;
    unsigned month, day;
    int year;
    std::uint32_t easter = 0; // Easter Sunday's day number, once needed

    explicit PlainDay(const KZDate& d) : date(d)
    {
        const CivilDate<std::uint32_t> civil = civilFromDayNumber(dayNumberOf(date));
        month = civil.month;
        day = civil.day;
        year = static_cast<int>(civil.year);
    }

    // False when Easter plus `offset` cannot be this date, so most dates
    // need no Easter. Days are counted from 1 March of the date's year;
    // before March the count is one of two, as February has 28 or 29 days.
    bool mayBeEasterPlus(int offset) const
    {
        const std::int64_t sinceMarch1st = daysSinceMarch1st(month, day);
        const std::int64_t latest = month >= 3 ? sinceMarch1st : sinceMarch1st - 365;
        const std::int64_t earliest = month >= 3 ? latest : latest - 1;
        return earliest - offset <= kLatestEaster && latest - offset >= kEarliestEaster;
    }

    bool fallsOn(const PublicHolidayInfoBase& row)
    {
        switch (row.m_rule) {
        case PublicHolidayInfoBase::FixedDate:
            return static_cast<unsigned>(row.m_day) == day && static_cast<unsigned>(row.m_month) == month;
        case PublicHolidayInfoBase::RelativeToEaster:
            if (!mayBeEasterPlus(row.m_offset))
                return false;
            if (easter == 0)
                easter = dayNumberOf(KZCalendar::easter(year));
            return easter + static_cast<std::uint32_t>(row.m_offset) == dayNumberOf(date);
        case PublicHolidayInfoBase::DayOfRepentance:
            return month == 11 && 16 <= day && day <= 22 && weekdayOfDayNumber(dayNumberOf(date)) == 3;
        default: return month == 1 && day == 1;
        }
    }
};

// The rows falling on `date`, in table order (at most two are kept).
PublicHolidayMatches rowsOn(const KZDate& date)
{
    PublicHolidayMatches result;
    const auto keep = [&result](const PublicHolidayInfoBase& row) {
        if (result.count < 2) // the table never puts three rows on one day
            result.matches[result.count++] = &row;
    };
    const std::uint32_t dayNumber = dayNumberOf(date);
    if (dayNumber < kFirstPlainDay || dayNumber > kLastPlainDay) {
        const int year = yearOf(date);
        for (const PublicHolidayInfoBase& row : g_holiday_Info)
            if (dayNumberOf(row.getDateForYear(year)) == dayNumber)
                keep(row);
        return result;
    }
    PlainDay plain(date);
    for (const PublicHolidayInfoBase& row : g_holiday_Info)
        if (plain.fallsOn(row))
            keep(row);
    return result;
}

} // namespace

PublicHolidayMatches KZCalendar::getPublicHolidayInfo(const KZDate& date)
{
    return rowsOn(date);
}

int KZCalendar::isPublicHoliday(const KZDate& date, BundesLand land)
{
    const PublicHolidayMatches found = rowsOn(date);
    if (found.count == 0)
        return 1;
    for (int i = 0; i < found.count; ++i)
        if (found.matches[i]->isValidIn(land))
            return 0;
    return 2;
}

int KZCalendar::appendPublicHolidaysInYear(const KZDate& from, const KZDate& to, BundesLand land,
                                           std::list<PublicHolidayInfo>& list)
{
    const int year = yearOf(from);
    int appended = 0;
    for (const PublicHolidayInfoBase& row : g_holiday_Info) {
        if (!row.isValidIn(land))
            continue;
        const std::uint32_t day = dayNumberOf(row.getDateForYear(year));
        if (dayNumberOf(from) <= day && day <= dayNumberOf(to)) {
            list.emplace_back(row, year);
            ++appended;
        }
    }
    return appended;
}

// Year by year. A step that would not advance the year (possible only where
// the day-number arithmetic wraps, far beyond any calendar use) ends the walk.
int KZCalendar::appendPublicHolidaysInPeriod(const KZDate& from, const KZDate& to, BundesLand land,
                                             std::list<PublicHolidayInfo>& list)
{
    const int lastYear = yearOf(to);
    KZDate start = from;
    int year = yearOf(start);
    int appended = 0;
    while (year < lastYear) {
        appended += appendPublicHolidaysInYear(start, KZDate(31, 12, static_cast<unsigned>(year)), land, list);
        start = KZDate(1, 1, static_cast<unsigned>(year) + 1);
        const int next = yearOf(start);
        if (next <= year)
            return appended;
        year = next;
    }
    if (year == lastYear)
        appended += appendPublicHolidaysInYear(start, to, land, list);
    return appended;
}

std::list<PublicHolidayInfo> KZCalendar::getPublicHolidaysInPeriod(const KZDate& from, const KZDate& to,
                                                                   BundesLand land)
{
    std::list<PublicHolidayInfo> result;
    if (dayNumberOf(to) < dayNumberOf(from))
        return result;
    appendPublicHolidaysInPeriod(from, to, land, result);
    result.sort(PublicHolidayInfoListSorter()); // stable: one day keeps table order
    return result;
}
