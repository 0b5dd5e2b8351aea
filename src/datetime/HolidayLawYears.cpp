// The law's years, each worked out once per process and shared by every
// thread. A calendar view or a payroll run asks about every day in turn, and
// working out a year from the table takes far longer than the answer for one
// day; so each year is worked out on its first question and kept.
//
// Every year of 1990..4099 has one slot: an atomic pointer, null until the
// year is first asked for. The first thread to ask works the year out and
// publishes it with a compare-and-swap; a thread that loses the race frees
// its copy and takes the winner's. Once published, a year is never changed or
// freed, so readers need no lock: the hot path is one acquire load. Memory is
// bounded by the range: at most one year object (under 1 KiB) per year asked
// for, kept until the process ends.
#include "HolidayLawTable.h"

#include "CivilDays.h"

#include <atomic>
#include <new>

namespace kzdatetime {

namespace {

// One year's holidays and, for the question about one day, which days of the
// year any holiday falls on (most days have none).
struct SharedYear {
    YearHolidays holidays;
    std::uint32_t firstDay = 0; // day number of 1 January
    std::uint64_t busy[6] = {}; // bit d: a holiday on day firstDay + d

    bool anyOn(std::uint32_t day) const
    {
        const std::uint32_t d = day - firstDay;
        return (busy[d / 64] >> (d % 64) & 1u) != 0;
    }
};

void workOut(SharedYear& year, int number)
{
    year.holidays = workOutYear(number);
    year.firstDay = dayNumberFromCivil(static_cast<std::uint32_t>(number), 1, 1);
    for (const ResolvedHoliday& h : year.holidays) {
        const std::uint32_t d = h.day - year.firstDay;
        year.busy[d / 64] |= std::uint64_t{1} << (d % 64);
    }
}

constexpr int kYearCount = kLastYear - KZHolidayLaw::FirstYear + 1;

static_assert(ATOMIC_POINTER_LOCK_FREE == 2, "readers must not take a lock");

std::atomic<const SharedYear*> g_years[kYearCount]; // static storage: all null at start

// `number` in 1990..kLastYear.
const SharedYear& sharedYear(int number)
{
    std::atomic<const SharedYear*>& slot = g_years[number - KZHolidayLaw::FirstYear];
    const SharedYear* year = slot.load(std::memory_order_acquire);
    if (year)
        return *year;
    SharedYear* fresh = new (std::nothrow) SharedYear;
    if (!fresh) {
        // No memory to keep it: this thread works the year out for itself,
        // in a buffer it owns until its next question.
        thread_local SharedYear own;
        own = SharedYear();
        workOut(own, number);
        return own;
    }
    workOut(*fresh, number);
    if (slot.compare_exchange_strong(year, fresh, std::memory_order_acq_rel, std::memory_order_acquire))
        return *fresh;
    delete fresh; // another thread published the same year first
    return *year;
}

} // namespace

const YearHolidays& resolveYear(int year)
{
    static const YearHolidays none;
    if (year < KZHolidayLaw::FirstYear || year > kLastYear)
        return none;
    return sharedYear(year).holidays;
}

int answerOn(const KZDate& date, int number, int land, int region)
{
    const SharedYear& year = sharedYear(number);
    const std::uint32_t day = dayNumberOf(date);
    if (!year.anyOn(day))
        return 1;
    bool elsewhere = false;
    for (const ResolvedHoliday& h : year.holidays) {
        if (h.day != day)
            continue;
        if (holdsFor(h, land, region))
            return 0;
        elsewhere = true;
    }
    return elsewhere ? 2 : 1;
}

} // namespace kzdatetime
