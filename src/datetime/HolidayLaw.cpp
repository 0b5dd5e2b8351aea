// The law's holidays: a year resolved from the table, and the queries over
// dates, periods and names.
#include "HolidayLawTable.h"

#include <cstring>

using namespace KZBasicServices;
using namespace KZBasicServices::holidaylaw;

namespace KZBasicServices {
namespace holidaylaw {

namespace {

bool inForce(const LawRow& row, int year) { return row.firstYear <= year && year <= row.lastYear; }

std::uint32_t dayOf(const LawDate& date, int year, const KZDate& easterSunday)
{
    const auto y = static_cast<unsigned>(year);
    switch (date.rule) {
    case DateRule::Fixed:
    case DateRule::Once:
        return KZDate(static_cast<unsigned>(date.day), static_cast<unsigned>(date.month), y).Hash();
    case DateRule::Easter:
        return (easterSunday + date.offset).Hash();
    case DateRule::DayOfRepentance:
        // 23 November minus the weekday of 27 November: the Wednesday in 16..22 November.
        return (KZDate(23, 11, y) - static_cast<int>(KZDate(27, 11, y).WeekDay())).Hash();
    }
    return 0;
}

bool sameHoliday(const ResolvedHoliday& item, std::uint32_t day, const LawRow& row)
{
    return item.day == day && std::strcmp(lawRows()[item.row].name, row.name) == 0;
}

// Stable by day: rows were appended in table order.
void sortByDay(YearHolidays& year)
{
    for (int i = 1; i < year.count; ++i) {
        const ResolvedHoliday moving = year.items[static_cast<std::size_t>(i)];
        int j = i;
        while (j > 0 && year.items[static_cast<std::size_t>(j - 1)].day > moving.day) {
            year.items[static_cast<std::size_t>(j)] = year.items[static_cast<std::size_t>(j - 1)];
            --j;
        }
        year.items[static_cast<std::size_t>(j)] = moving;
    }
}

} // namespace

YearHolidays resolveYear(int year)
{
    YearHolidays result;
    if (year < KZHolidayLaw::FirstYear || year > kLastYear)
        return result;
    const KZDate easterSunday = KZCalendar::easter(year);
    const LawRow* rows = lawRows();
    for (int r = 0; r < lawRowCount(); ++r) {
        const LawRow& row = rows[r];
        if (!inForce(row, year))
            continue;
        const std::uint32_t day = dayOf(row.date, year, easterSunday);
        const unsigned regionBit = row.region == kNoRegion ? 0u : 1u << row.region;
        ResolvedHoliday* merged = nullptr;
        for (int i = 0; i < result.count; ++i)
            if (sameHoliday(result.items[static_cast<std::size_t>(i)], day, row))
                merged = &result.items[static_cast<std::size_t>(i)];
        if (merged) {
            merged->states |= row.states;
            merged->regions |= regionBit;
        } else {
            result.items[static_cast<std::size_t>(result.count++)] = {day, r, row.states, regionBit};
        }
    }
    sortByDay(result);
    return result;
}

bool isSingleState(int land)
{
    const auto bits = static_cast<unsigned>(land);
    return bits != 0 && bits <= 0xFFFFu && (bits & (bits - 1)) == 0;
}

bool holdsFor(const ResolvedHoliday& holiday, int land, int region)
{
    if (land == 0)
        return true;
    if (isSingleState(land))
        return (holiday.states & land) != 0 || (region != kNoRegion && (holiday.regions >> region & 1u) != 0);
    return (holiday.states & land) == land;
}

} // namespace holidaylaw
} // namespace KZBasicServices

namespace {

// The region index for a query: "" is none; anything else must name a region
// of the one state asked for.
bool regionIndexFor(BundesLand land, const std::string& code, int& index)
{
    index = kNoRegion;
    if (code.empty())
        return true;
    const HolidayRegion* region = KZHolidayLaw::findRegion(land, code);
    if (!region)
        return false;
    index = static_cast<int>(region - KZHolidayLaw::regions().data());
    return true;
}

std::vector<const HolidayRegion*> regionsOf(unsigned bits)
{
    std::vector<const HolidayRegion*> result;
    for (int i = 0; i < kRegionCount; ++i)
        if (bits >> i & 1u)
            result.push_back(&KZHolidayLaw::regions()[static_cast<std::size_t>(i)]);
    return result;
}

int yearOf(const KZDate& date) { return static_cast<int>(date.Year()); }

} // namespace

const std::vector<HolidayRegion>& KZHolidayLaw::regions()
{
    static const std::vector<HolidayRegion> all(regionTable(), regionTable() + kRegionCount);
    return all;
}

const HolidayRegion* KZHolidayLaw::findRegion(BundesLand state, const std::string& code)
{
    for (const HolidayRegion& region : regions())
        if (region.state == state && code == region.code)
            return &region;
    return nullptr;
}

KZHolidayLaw::Status KZHolidayLaw::holidaysInPeriod(const KZDate& from, const KZDate& to, BundesLand land,
                                                    const std::string& region, std::vector<DatedHoliday>& out)
{
    out.clear();
    int regionIndex = kNoRegion;
    if (!regionIndexFor(land, region, regionIndex))
        return UnknownRegion;
    if (to.Hash() < from.Hash())
        return Ok;
    if (yearOf(from) < FirstYear)
        return BeforeFirstYear;
    if (yearOf(from) > LastYear || yearOf(to) > LastYear)  // the null date reads as a year far beyond
        return OutOfRange;
    for (int year = yearOf(from); year <= yearOf(to); ++year) {
        const YearHolidays holidays = resolveYear(year);
        for (int i = 0; i < holidays.count; ++i) {
            const ResolvedHoliday& h = holidays.items[static_cast<std::size_t>(i)];
            if (h.day < from.Hash() || h.day > to.Hash() || !holdsFor(h, land, regionIndex))
                continue;
            out.push_back(DatedHoliday{dateOfDay(h.day), lawRows()[h.row].name, h.states, regionsOf(h.regions)});
        }
    }
    return Ok;
}

int KZHolidayLaw::isPublicHoliday(const KZDate& date, BundesLand land, const std::string& region)
{
    int regionIndex = kNoRegion;
    if (!regionIndexFor(land, region, regionIndex))
        return -2;
    if (yearOf(date) < FirstYear)
        return -1;
    if (yearOf(date) > LastYear)
        return -3;
    const YearHolidays holidays = resolveYear(yearOf(date));
    bool any = false;
    for (int i = 0; i < holidays.count; ++i) {
        const ResolvedHoliday& h = holidays.items[static_cast<std::size_t>(i)];
        if (h.day != date.Hash())
            continue;
        if (holdsFor(h, land, regionIndex))
            return 0;
        any = true;
    }
    return any ? 2 : 1;
}

KZHolidayLaw::Status KZHolidayLaw::whereHolds(const std::string& name, int year, int& states,
                                              std::vector<const HolidayRegion*>& regions)
{
    states = 0;
    regions.clear();
    if (year < FirstYear)
        return BeforeFirstYear;
    if (year > LastYear)
        return OutOfRange;
    unsigned regionBits = 0;
    const LawRow* rows = lawRows();
    for (int r = 0; r < lawRowCount(); ++r) {
        if (name != rows[r].name || rows[r].firstYear > year || year > rows[r].lastYear)
            continue;
        states |= rows[r].states;
        if (rows[r].region != kNoRegion)
            regionBits |= 1u << rows[r].region;
    }
    regions = regionsOf(regionBits);
    return Ok;
}

std::vector<DatedHoliday> KZHolidayLaw::classicHolidaysInPeriod(const KZDate& from, const KZDate& to, BundesLand land)
{
    std::vector<DatedHoliday> result;
    for (const PublicHolidayInfo& holiday : KZCalendar::getPublicHolidaysInPeriod(from, to, land))
        result.push_back(DatedHoliday{holiday.getDate(), holiday.m_name, holiday.m_states, {}});
    return result;
}
