// The law's holiday table and its resolution for one year. Private to the
// library: the holiday queries, the working days and the iCalendar export
// read it; clients see KZHolidayLaw.h.
#ifndef KZ_HOLIDAY_LAW_TABLE_H
#define KZ_HOLIDAY_LAW_TABLE_H

#include "KZHolidayLaw.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kzdatetime {

// How a row finds its date in a year.
enum class DateRule {
    Fixed,           // day.month every year
    Easter,          // Easter Sunday plus offset days
    DayOfRepentance, // the Wednesday before 23 November
    Once             // day.month of one single year
};

struct LawDate {
    DateRule rule;
    int day;
    int month;
    int offset; // Easter: days after Easter Sunday; Once: the year
};

constexpr LawDate fixed(int day, int month)
{
    return {DateRule::Fixed, day, month, 0};
}
constexpr LawDate easterPlus(int days)
{
    return {DateRule::Easter, 0, 0, days};
}
constexpr LawDate wednesdayBefore23November()
{
    return {DateRule::DayOfRepentance, 0, 0, 0};
}
constexpr LawDate once(int day, int month, int year)
{
    return {DateRule::Once, day, month, year};
}

constexpr int kOpenEnded = 9999; // last year of a rule the law still has
constexpr int kLastYear = KZHolidayLaw::LastYear;
constexpr int kNoRegion = -1;

// Indexes into regionTable(), ordered by state and code.
enum RegionIndex : int { RegionA, RegionKATH, RegionBZ, RegionEIC, RegionUH, RegionWAK, kRegionCount };

struct LawRow {
    const char* name; // German, Windows-1252
    LawDate date;
    int states; // BundesLand mask where it holds throughout; 0 for a region row
    int region; // RegionIndex, or kNoRegion
    int firstYear;
    int lastYear;
};

constexpr std::size_t kMaxRows = 48; // room for every row; the table checks it fits

const LawRow* lawRows();
std::size_t lawRowCount();
const KZBasicServices::HolidayRegion* regionTable(); // kRegionCount entries

// A name one state's law gives a holiday instead of its common name.
struct StateName {
    const char* name;    // the common name, as in the rows
    int state;           // one BundesLand bit
    const char* lawName; // German, Windows-1252
};

const StateName* stateNames();
std::size_t stateNameCount();

// One holiday in one year: the rows of one name on one date, merged.
struct ResolvedHoliday {
    std::uint32_t day; // day number of the date
    std::size_t row;   // the first of the merged rows (its name, its order)
    int states;        // union of the rows' state masks
    unsigned regions;  // bit i: RegionIndex i
};

// The holidays of one year, sorted by date; one date keeps row order.
struct YearHolidays {
    std::size_t count = 0;
    std::array<ResolvedHoliday, kMaxRows> items{};

    const ResolvedHoliday* begin() const { return items.data(); }
    const ResolvedHoliday* end() const { return items.data() + count; }
};

// Every holiday in force in `year` (1990..kLastYear; others give none),
// worked out from the table.
YearHolidays workOutYear(int year);

// The same, worked out once per process and shared by every thread
// (HolidayLawYears.cpp); the reference stays valid until the process ends
// (should memory for keeping the year run out: until this thread's next
// question about the law).
const YearHolidays& resolveYear(int year);

// KZHolidayLaw::isPublicHoliday for a date of `year` (1990..kLastYear):
// 0 a holiday for `land` and `region`, 2 holidays elsewhere only, 1 none.
int answerOn(const KZDate& date, int year, int land, int region);

// Whether a resolved holiday is one for `land` (0: any place; one state:
// throughout it or in `region`; several: throughout all of them).
bool holdsFor(const ResolvedHoliday& holiday, int land, int region);

// True when `land` is exactly one of the sixteen state bits.
bool isSingleState(int land);

// The RegionIndex of a region of KZHolidayLaw::regions().
int regionIndexOf(const KZBasicServices::HolidayRegion& region);

} // namespace kzdatetime

#endif // KZ_HOLIDAY_LAW_TABLE_H
