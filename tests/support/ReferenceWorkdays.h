// Working days the plainest way, to check KZWorkdays' arithmetic against:
// one day at a time, with the holidays taken from the public holiday queries.
// Used by the unit tests and the calendar fuzz target.
#ifndef KZBS_TESTS_REFERENCE_WORKDAYS_H
#define KZBS_TESTS_REFERENCE_WORKDAYS_H

#include "KZCalendar.h"
#include "KZHolidayLaw.h"
#include "KZWorkdays.h"

#include <list>
#include <set>
#include <vector>

namespace kzbs_test {

// A day of the working week, unless it is 24 or 31 December and those are free.
inline bool inWorkingWeek(const KZDate& d, const WorkdayCalendar& c)
{
    if (static_cast<int>(d.WeekDay()) > c.daysPerWeek)
        return false;
    return !(c.christmasAndNewYearsEveOff && d.Month() == 12 && (d.DayOfMonth() == 24 || d.DayOfMonth() == 31));
}

// One day, asking the holiday query for that day.
inline bool referenceWorkday(const KZDate& d, const WorkdayCalendar& c)
{
    if (!inWorkingWeek(d, c))
        return false;
    return c.classic ? KZCalendar::isPublicHoliday(d, c.land) != 0
                     : KZHolidayLaw::isPublicHoliday(d, c.land, c.region) != 0;
}

// The working days of a period, walked day by day. The holidays are fetched
// once for the whole period: the same answers as asking each day, without
// resolving a year's rules again for every day.
inline long referenceCount(const KZDate& from, const KZDate& to, const WorkdayCalendar& c)
{
    std::set<unsigned> holidays;
    if (c.classic) {
        for (const PublicHolidayInfo& h : KZCalendar::getPublicHolidaysInPeriod(from, to, c.land))
            holidays.insert(h.getDate().Hash());
    } else {
        std::vector<DatedHoliday> list;
        if (KZHolidayLaw::holidaysInPeriod(from, to, c.land, c.region, list) != KZHolidayLaw::Ok)
            return -1; // a period the law refuses has no count: -1 matches none
        for (const DatedHoliday& h : list)
            holidays.insert(h.date.Hash());
    }
    long n = 0;
    for (KZDate d = from; d.Hash() <= to.Hash(); d = d + 1)
        n += inWorkingWeek(d, c) && holidays.count(d.Hash()) == 0 ? 1 : 0;
    return n;
}

} // namespace kzbs_test

#endif // KZBS_TESTS_REFERENCE_WORKDAYS_H
