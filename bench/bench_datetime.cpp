// Dates and holidays: KZDate conversions side by side with the well-known
// branch-light days-from-civil / civil-from-days algorithms, and the holiday
// queries over a century. KZDate's construction and Mdy report
// `vs_reference`: their dates per second over the reference's; the per-date
// holiday answers report `vs_bitset` the same way. Peers run alternately
// with ours (SideBySide.h).
#include "KZCalendar.h"
#include "KZDate.h"
#include "KZHolidayLaw.h"

#include <benchmark/benchmark.h>

#include "SideBySide.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

struct Civil {
    unsigned year, month, day;
};

// The reference: days since 1970-01-01 from a proleptic Gregorian date and back.
inline std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

inline Civil civilFromDays(std::int64_t z)
{
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<unsigned>(static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2)), m, d};
}

// Every day from 1900 to 2099.
const std::vector<Civil>& civilDates()
{
    static const std::vector<Civil> dates = [] {
        std::vector<Civil> all;
        for (unsigned y = 1900; y < 2100; ++y)
            for (unsigned m = 1; m <= 12; ++m)
                for (unsigned d = 1; d <= KZDate(1, m, y).DaysInMonth(0); ++d)
                    all.push_back({y, m, d});
        return all;
    }();
    return dates;
}

void referenceDaysFromCivilPass()
{
    std::int64_t sum = 0;
    for (const Civil& c : civilDates()) {
        // The same validity check KZDate makes, so both do the same job.
        if (KZDate::DayWithinMonth(c.month, c.day, c.year))
            sum += daysFromCivil(c.year, c.month, c.day);
    }
    benchmark::DoNotOptimize(sum);
}

void kzDateConstructPass()
{
    std::uint32_t sum = 0;
    for (const Civil& c : civilDates())
        sum += KZDate(c.day, c.month, c.year).Hash();
    benchmark::DoNotOptimize(sum);
}

void referenceCivilFromDaysPass()
{
    const std::int64_t first = daysFromCivil(1900, 1, 1);
    const std::int64_t count = static_cast<std::int64_t>(civilDates().size());
    unsigned sum = 0;
    for (std::int64_t n = first; n < first + count; ++n) {
        const Civil c = civilFromDays(n);
        sum += c.month + c.day + c.year;
    }
    benchmark::DoNotOptimize(sum);
}

void kzDateMdyPass()
{
    const std::uint32_t first = KZDate(1, 1, 1900).Hash();
    const std::uint32_t count = static_cast<std::uint32_t>(civilDates().size());
    unsigned sum = 0;
    for (std::uint32_t n = first; n < first + count; ++n) {
        unsigned m, d, y;
        KZDate(n - 2415386u, 0).Mdy(m, d, y);
        sum += m + d + y;
    }
    benchmark::DoNotOptimize(sum);
}

std::int64_t dateCount()
{
    return static_cast<std::int64_t>(civilDates().size());
}

void BM_ReferenceDaysFromCivil(benchmark::State& state)
{
    for (auto _ : state)
        referenceDaysFromCivilPass();
    state.SetItemsProcessed(state.iterations() * dateCount());
}

void BM_KZDateConstruct(benchmark::State& state)
{
    bench::sideBySide(state, kzDateConstructPass, {{"reference", referenceDaysFromCivilPass}});
    state.SetItemsProcessed(state.iterations() * dateCount());
}

void BM_ReferenceCivilFromDays(benchmark::State& state)
{
    for (auto _ : state)
        referenceCivilFromDaysPass();
    state.SetItemsProcessed(state.iterations() * dateCount());
}

void BM_KZDateMdy(benchmark::State& state)
{
    bench::sideBySide(state, kzDateMdyPass, {{"reference", referenceCivilFromDaysPass}});
    state.SetItemsProcessed(state.iterations() * dateCount());
}

// The century 2000..2099 asked day by day, beside a lookup in a std::bitset
// of its holidays (indexed by day number minus the first day's), walked
// over the same KZDate sequence in the same loop shape. DoNotOptimize on
// each answer keeps either loop from being vectorised away; `vs_bitset` is
// our dates per second over the bit set's.
constexpr std::size_t kCenturyDays = 36525;
const KZDate kCenturyFirst(1, 1, 2000), kCenturyLast(31, 12, 2099);

using CenturyBits = std::bitset<kCenturyDays>;

template <typename IsHoliday>
CenturyBits centuryBits(IsHoliday isHoliday)
{
    CenturyBits bits;
    for (KZDate d = kCenturyFirst; d.Hash() <= kCenturyLast.Hash(); d = d + 1)
        bits[d.Hash() - kCenturyFirst.Hash()] = isHoliday(d);
    return bits;
}

template <typename IsHoliday>
void centuryPass(IsHoliday isHoliday)
{
    for (KZDate d = kCenturyFirst; d.Hash() <= kCenturyLast.Hash(); d = d + 1)
        benchmark::DoNotOptimize(isHoliday(d));
}

bool classicHoliday(const KZDate& d)
{
    return KZCalendar::isPublicHoliday(d, KZBasicServices::BY) == 0;
}
bool lawHoliday(const KZDate& d)
{
    return KZHolidayLaw::isPublicHoliday(d, KZBasicServices::BY) == 0;
}

template <bool (*isHoliday)(const KZDate&)>
void everyDayOfACentury(benchmark::State& state)
{
    static const CenturyBits bits = centuryBits(isHoliday);
    const std::uint32_t first = kCenturyFirst.Hash();
    bench::sideBySide(
        state, [] { centuryPass(isHoliday); },
        {{"bitset", [first] { centuryPass([first](const KZDate& d) { return bits[d.Hash() - first]; }); }}});
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCenturyDays));
}

void BM_IsPublicHolidayEveryDayOfACentury(benchmark::State& state)
{
    everyDayOfACentury<classicHoliday>(state);
}

void BM_LawIsPublicHolidayEveryDayOfACentury(benchmark::State& state)
{
    everyDayOfACentury<lawHoliday>(state);
}

void BM_HolidaysInPeriodOfACentury(benchmark::State& state)
{
    const KZDate first(1, 1, 2000), last(31, 12, 2099);
    for (auto _ : state) {
        auto list = KZCalendar::getPublicHolidaysInPeriod(first, last, KZBasicServices::XX);
        benchmark::DoNotOptimize(list.size());
    }
}

} // namespace

BENCHMARK(BM_KZDateConstruct)->UseManualTime();
BENCHMARK(BM_ReferenceDaysFromCivil);
BENCHMARK(BM_KZDateMdy)->UseManualTime();
BENCHMARK(BM_ReferenceCivilFromDays);
BENCHMARK(BM_IsPublicHolidayEveryDayOfACentury)->UseManualTime();
BENCHMARK(BM_LawIsPublicHolidayEveryDayOfACentury)->UseManualTime();
BENCHMARK(BM_HolidaysInPeriodOfACentury);
