// Holiday queries over dates and periods.
#include "KZCalendar.h"

using namespace KZBasicServices;

KZCalendar::~KZCalendar() = default;

bool PublicHolidayInfoListSorter::operator()(const PublicHolidayInfo& a, const PublicHolidayInfo& b) const
{
    return a.getDate().Hash() < b.getDate().Hash();
}

PublicHolidayMatches KZCalendar::getPublicHolidayInfo(const KZDate& date)
{
    PublicHolidayMatches result;
    const int year = static_cast<int>(date.Year());
    for (const PublicHolidayInfoBase& row : g_holiday_Info) {
        if (row.getDateForYear(year).Hash() != date.Hash())
            continue;
        if (result.count < 2) // the table never puts three rows on one day
            result.matches[result.count++] = &row;
    }
    return result;
}

int KZCalendar::isPublicHoliday(const KZDate& date, BundesLand land)
{
    const PublicHolidayMatches found = getPublicHolidayInfo(date);
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
    const int year = static_cast<int>(from.Year());
    int appended = 0;
    for (const PublicHolidayInfoBase& row : g_holiday_Info) {
        if (!row.isValidIn(land))
            continue;
        const std::uint32_t day = row.getDateForYear(year).Hash();
        if (from.Hash() <= day && day <= to.Hash()) {
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
    const int lastYear = static_cast<int>(to.Year());
    KZDate start = from;
    int year = static_cast<int>(start.Year());
    int appended = 0;
    while (year < lastYear) {
        appended += appendPublicHolidaysInYear(start, KZDate(31, 12, static_cast<unsigned>(year)), land, list);
        start = KZDate(1, 1, static_cast<unsigned>(year) + 1);
        const int next = static_cast<int>(start.Year());
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
    if (to.Hash() < from.Hash())
        return result;
    appendPublicHolidaysInPeriod(from, to, land, result);
    result.sort(PublicHolidayInfoListSorter()); // stable: one day keeps table order
    return result;
}
