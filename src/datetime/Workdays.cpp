// Working days: whole weeks counted at once, the free days of each year
// subtracted; stepping estimates by weeks and corrects the last few days.
#include "KZWorkdays.h"

#include "CivilDays.h"
#include "HolidayLawTable.h"

#include <algorithm>
#include <array>
#include <cstdint>

using namespace KZBasicServices;
using namespace kzdatetime;

namespace {

using Day = std::int64_t; // a day number, signed so steps can be subtracted

// The range, from the first Gregorian year Easter is computed for.
constexpr Day kFirstDay = dayNumberFromCivil(1583, 1, 1);
constexpr Day kLastDay = dayNumberFromCivil(KZHolidayLaw::LastYear, 12, 31);
constexpr Day kFirstLawDay = dayNumberFromCivil(KZHolidayLaw::FirstYear, 1, 1);

// Days within the range only, which fit a day number.
int weekdayOf(Day day)
{
    return static_cast<int>(weekdayOfDayNumber(static_cast<std::uint32_t>(day)));
}
int yearOf(Day day)
{
    return static_cast<int>(civilFromDayNumber(static_cast<std::uint32_t>(day)).year);
}

// A WorkdayCalendar checked and reduced to what the counting needs.
struct Rules {
    int land = 0;
    int region = kNoRegion;
    bool classic = false;
    int week = 5;
    bool eves = false;
    Day firstDay = kFirstDay; // the first day the rule set answers for
};

KZWorkdays::Status prepare(const WorkdayCalendar& calendar, Rules& rules)
{
    if (calendar.daysPerWeek != 5 && calendar.daysPerWeek != 6)
        return KZWorkdays::BadWeek;
    rules.land = calendar.land;
    rules.classic = calendar.classic;
    rules.week = calendar.daysPerWeek;
    rules.eves = calendar.christmasAndNewYearsEveOff;
    if (!calendar.region.empty()) {
        // The classic table knows no regions.
        const HolidayRegion* region =
            calendar.classic ? nullptr : KZHolidayLaw::findRegion(calendar.land, calendar.region);
        if (!region)
            return KZWorkdays::UnknownRegion;
        rules.region = regionIndexOf(*region);
    }
    if (!rules.classic)
        rules.firstDay = kFirstLawDay;
    return KZWorkdays::Ok;
}

// Where a day lies relative to the range the rules answer for.
KZWorkdays::Status checkDay(Day day, const Rules& rules)
{
    if (day == 0 || day > kLastDay || day < kFirstDay)
        return KZWorkdays::OutOfRange;
    if (day < rules.firstDay)
        return KZWorkdays::BeforeFirstYear;
    return KZWorkdays::Ok;
}

// The rules of a calendar, for a question about one day.
KZWorkdays::Status prepareForDay(const WorkdayCalendar& calendar, Day day, Rules& rules)
{
    const KZWorkdays::Status status = prepare(calendar, rules);
    return status == KZWorkdays::Ok ? checkDay(day, rules) : status;
}

// The free days of one year that fall on working weekdays: holidays of the
// rule set and, when asked, 24 and 31 December; sorted, each date once.
class FreeDays {
public:
    explicit FreeDays(const Rules& rules) : m_rules(rules) {}

    // Those of `year` within lo..hi.
    long countWithin(int year, Day lo, Day hi)
    {
        load(year);
        return std::count_if(m_days.data(), end(), [&](Day day) { return lo <= day && day <= hi; });
    }

    bool isFree(Day day)
    {
        load(yearOf(day));
        return std::binary_search(m_days.data(), end(), day);
    }

private:
    Day* end() { return m_days.data() + m_count; }

    void add(Day day)
    {
        if (weekdayOf(day) <= m_rules.week && m_count < m_days.size())
            m_days[m_count++] = day;
    }

    void load(int year)
    {
        if (year == m_year)
            return;
        m_year = year;
        m_count = 0;
        const auto y = static_cast<unsigned>(year);
        if (m_rules.classic) {
            for (const PublicHolidayInfoBase& row : g_holiday_Info)
                if (row.isValidIn(static_cast<BundesLand>(m_rules.land)))
                    add(dayNumberOf(row.getDateForYear(year)));
        } else {
            for (const ResolvedHoliday& holiday : resolveYear(year))
                if (holdsFor(holiday, m_rules.land, m_rules.region))
                    add(holiday.day);
        }
        if (m_rules.eves) {
            add(dayNumberFromCivil(y, 12, 24));
            add(dayNumberFromCivil(y, 12, 31));
        }
        std::sort(m_days.data(), end());
        m_count = static_cast<std::size_t>(std::unique(m_days.data(), end()) - m_days.data());
    }

    const Rules& m_rules;
    int m_year = -1;
    std::size_t m_count = 0;
    std::array<Day, kMaxRows + 2> m_days{};
};

// Days of the working week in lo..hi: whole weeks at once, then the rest.
long weekdaysWithin(Day lo, Day hi, int week)
{
    const Day days = hi - lo + 1;
    long n = static_cast<long>(days / 7) * week;
    for (Day d = lo + days / 7 * 7; d <= hi; ++d)
        if (weekdayOf(d) <= week)
            ++n;
    return n;
}

// Working days in lo..hi (both inside the rules' range, lo <= hi).
long countWithin(Day lo, Day hi, FreeDays& free, int week)
{
    long n = weekdaysWithin(lo, hi, week);
    for (int year = yearOf(lo); year <= yearOf(hi); ++year)
        n -= free.countWithin(year, lo, hi);
    return n;
}

bool isWorkingDay(Day day, FreeDays& free, int week)
{
    return weekdayOf(day) <= week && !free.isFree(day);
}

// Days needed for `n` working days at the week's rate, rounded up.
Day daysForWorkdays(long n, int week)
{
    return (static_cast<Day>(n) * 7 + week - 1) / week;
}

// The n-th working day after `start` (n >= 1), or 0 when it lies after kLastDay.
Day stepForward(Day start, long n, FreeDays& free, int week)
{
    Day d = std::min(kLastDay, start + daysForWorkdays(n, week));
    long c = countWithin(start + 1, d, free, week);
    // Each jump removes all but the holidays' share of the error.
    for (int jumps = 0; jumps < 64 && (c - n > 7 || n - c > 7); ++jumps) {
        if (c < n && d == kLastDay)
            return 0;
        d = std::clamp(d + (static_cast<Day>(n) - c) * 7 / week, start + 1, kLastDay);
        c = countWithin(start + 1, d, free, week);
    }
    while (c < n) {
        if (d >= kLastDay)
            return 0;
        if (isWorkingDay(++d, free, week))
            ++c;
    }
    // d is now at or after the answer: the first day where the count reaches n.
    while (!(c == n && isWorkingDay(d, free, week))) {
        if (isWorkingDay(d, free, week))
            --c;
        --d;
    }
    return d;
}

// The n-th working day before `start` (n >= 1), or 0 when it lies before `first`.
Day stepBackward(Day start, long n, Day first, FreeDays& free, int week)
{
    Day d = std::max(first, start - daysForWorkdays(n, week));
    long c = countWithin(d, start - 1, free, week);
    for (int jumps = 0; jumps < 64 && (c - n > 7 || n - c > 7); ++jumps) {
        if (c < n && d == first)
            return 0;
        d = std::clamp(d - (static_cast<Day>(n) - c) * 7 / week, first, start - 1);
        c = countWithin(d, start - 1, free, week);
    }
    while (c < n) {
        if (d <= first)
            return 0;
        if (isWorkingDay(--d, free, week))
            ++c;
    }
    while (!(c == n && isWorkingDay(d, free, week))) {
        if (isWorkingDay(d, free, week))
            --c;
        ++d;
    }
    return d;
}

KZDate nullDate()
{
    return KZDate(0u, 0u, 0u);
}

} // namespace

KZWorkdays::Status KZWorkdays::isWorkday(const KZDate& date, const WorkdayCalendar& calendar, bool& result)
{
    result = false;
    Rules rules;
    const Status status = prepareForDay(calendar, dayNumberOf(date), rules);
    if (status != Ok)
        return status;
    FreeDays free(rules);
    result = isWorkingDay(dayNumberOf(date), free, rules.week);
    return Ok;
}

KZWorkdays::Status KZWorkdays::count(const KZDate& from, const KZDate& to, const WorkdayCalendar& calendar,
                                     long& result)
{
    result = 0;
    Rules rules;
    Status status = prepare(calendar, rules);
    if (status != Ok)
        return status;
    const Day lo = dayNumberOf(from);
    const Day hi = dayNumberOf(to);
    if (lo == 0 || hi == 0 || checkDay(lo, rules) == OutOfRange || checkDay(hi, rules) == OutOfRange)
        return OutOfRange;
    if (hi < lo)
        return Ok;
    if (lo < rules.firstDay)
        return BeforeFirstYear;
    FreeDays free(rules);
    result = countWithin(lo, hi, free, rules.week);
    return Ok;
}

KZWorkdays::Status KZWorkdays::advance(const KZDate& date, long n, const WorkdayCalendar& calendar, KZDate& result)
{
    result = nullDate();
    Rules rules;
    const Status status = prepareForDay(calendar, dayNumberOf(date), rules);
    if (status != Ok)
        return status;
    FreeDays free(rules);
    const Day start = dayNumberOf(date);
    // More working days than there are days in the whole range cannot be
    // reached; this also keeps n * 7 from overflowing.
    const Day span = kLastDay - kFirstDay + 1;
    Day found = 0;
    if (n == 0) {
        for (Day d = start; d <= kLastDay && !found; ++d)
            if (isWorkingDay(d, free, rules.week))
                found = d;
    } else if (n > 0) {
        if (n <= span)
            found = stepForward(start, n, free, rules.week);
    } else {
        if (n >= -span)
            found = stepBackward(start, -n, rules.firstDay, free, rules.week);
        if (!found)
            return rules.classic ? OutOfRange : BeforeFirstYear;
    }
    if (!found)
        return OutOfRange;
    result = dateOfDayNumber(static_cast<std::uint32_t>(found));
    return Ok;
}
