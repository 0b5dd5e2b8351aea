// The law's holidays: a year resolved from the table, and the queries over
// dates, periods and names.
#include "HolidayLawTable.h"

#include "CivilDays.h"
#include "DayOfRepentance.h"

#include <algorithm>
#include <cstring>

using namespace KZBasicServices;
using namespace kzdatetime;

namespace kzdatetime {

namespace {

bool inForce(const LawRow& row, int year)
{
    return row.firstYear <= year && year <= row.lastYear;
}

std::uint32_t dayOf(const LawDate& date, int year, const KZDate& easterSunday)
{
    const auto y = static_cast<unsigned>(year);
    switch (date.rule) {
    case DateRule::Fixed:
    case DateRule::Once:
        return dayNumberOf(KZDate(static_cast<unsigned>(date.day), static_cast<unsigned>(date.month), y));
    case DateRule::Easter: return dayNumberOf(easterSunday) + static_cast<std::uint32_t>(date.offset);
    case DateRule::DayOfRepentance: return dayNumberOf(dayOfRepentance(y));
    }
    return 0;
}

// Stable by day: rows were appended in table order.
void sortByDay(YearHolidays& year)
{
    std::stable_sort(year.items.begin(), year.items.begin() + year.count,
                     [](const ResolvedHoliday& a, const ResolvedHoliday& b) { return a.day < b.day; });
}

} // namespace

YearHolidays workOutYear(int year)
{
    YearHolidays result;
    if (year < KZHolidayLaw::FirstYear || year > kLastYear)
        return result;
    const KZDate easterSunday = KZCalendar::easter(year);
    const LawRow* rows = lawRows();
    for (std::size_t r = 0; r < lawRowCount(); ++r) {
        const LawRow& row = rows[r];
        if (!inForce(row, year))
            continue;
        const std::uint32_t day = dayOf(row.date, year, easterSunday);
        const unsigned regionBit = row.region == kNoRegion ? 0u : 1u << row.region;
        const auto merged =
            std::find_if(result.items.begin(), result.items.begin() + result.count, [&](const ResolvedHoliday& item) {
                return item.day == day && std::strcmp(rows[item.row].name, row.name) == 0;
            });
        if (merged != result.items.begin() + result.count) {
            merged->states |= row.states;
            merged->regions |= regionBit;
        } else {
            *merged = {day, r, row.states, regionBit};
            ++result.count;
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

int regionIndexOf(const HolidayRegion& region)
{
    return static_cast<int>(&region - KZHolidayLaw::regions().data());
}

} // namespace kzdatetime

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
    index = regionIndexOf(*region);
    return true;
}

std::vector<const HolidayRegion*> regionsOf(unsigned bits)
{
    std::vector<const HolidayRegion*> result;
    for (std::size_t i = 0; i < KZHolidayLaw::regions().size(); ++i)
        if (bits >> i & 1u)
            result.push_back(&KZHolidayLaw::regions()[i]);
    return result;
}

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
    if (dayNumberOf(to) < dayNumberOf(from))
        return Ok;
    if (yearOf(from) < FirstYear)
        return BeforeFirstYear;
    if (yearOf(from) > LastYear || yearOf(to) > LastYear) // the null date reads as a year far beyond
        return OutOfRange;
    for (int year = yearOf(from); year <= yearOf(to); ++year) {
        for (const ResolvedHoliday& h : resolveYear(year)) {
            if (h.day < dayNumberOf(from) || h.day > dayNumberOf(to) || !holdsFor(h, land, regionIndex))
                continue;
            out.push_back(DatedHoliday{dateOfDayNumber(h.day), lawRows()[h.row].name, h.states, regionsOf(h.regions)});
        }
    }
    return Ok;
}

int KZHolidayLaw::isPublicHoliday(const KZDate& date, BundesLand land, const std::string& region)
{
    int regionIndex = kNoRegion;
    if (!regionIndexFor(land, region, regionIndex))
        return -2;
    const int year = yearOf(date);
    if (year < FirstYear)
        return -1;
    if (year > LastYear)
        return -3;
    return answerOn(date, year, land, regionIndex);
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
    for (std::size_t r = 0; r < lawRowCount(); ++r) {
        if (name != rows[r].name || rows[r].firstYear > year || year > rows[r].lastYear)
            continue;
        states |= rows[r].states;
        if (rows[r].region != kNoRegion)
            regionBits |= 1u << rows[r].region;
    }
    regions = regionsOf(regionBits);
    return Ok;
}

std::string KZHolidayLaw::nameInState(const DatedHoliday& holiday, BundesLand state)
{
    if (!isSingleState(state))
        return "";
    bool holds = (holiday.states & state) != 0;
    for (const HolidayRegion* region : holiday.regions)
        holds = holds || (region && region->state == state);
    if (!holds)
        return "";
    const StateName* names = stateNames();
    for (std::size_t i = 0; i < stateNameCount(); ++i)
        if (names[i].state == state && holiday.name == names[i].name)
            return names[i].lawName;
    return holiday.name;
}

std::vector<DatedHoliday> KZHolidayLaw::classicHolidaysInPeriod(const KZDate& from, const KZDate& to, BundesLand land)
{
    std::vector<DatedHoliday> result;
    for (const PublicHolidayInfo& holiday : KZCalendar::getPublicHolidaysInPeriod(from, to, land))
        result.push_back(DatedHoliday{holiday.getDate(), holiday.m_name, holiday.m_states, {}});
    return result;
}
