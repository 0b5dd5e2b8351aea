// Dates and holidays: KZDate conversions side by side with the well-known
// branch-light days-from-civil / civil-from-days algorithms, and the holiday
// queries over a century. KZDate's construction and Mdy report
// `vs_reference`: their dates per second over the reference's, measured just
// before them.
#include "KZCalendar.h"
#include "KZDate.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <ctime>
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

double threadSeconds()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Runs `pass` over the loop, reports the dates and returns dates per CPU second.
template <class Pass>
double timedDates(benchmark::State& state, std::int64_t count, Pass pass)
{
    const double start = threadSeconds();
    for (auto _ : state)
        pass();
    const double seconds = threadSeconds() - start;
    state.SetItemsProcessed(state.iterations() * count);
    return seconds > 0 ? static_cast<double>(state.iterations() * count) / seconds : 0;
}

double g_daysFromCivilRate = 0, g_civilFromDaysRate = 0;

void reportVersus(benchmark::State& state, double rate, double reference)
{
    if (reference > 0)
        state.counters["vs_reference"] = rate / reference;
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

void BM_ReferenceDaysFromCivil(benchmark::State& state)
{
    const auto& dates = civilDates();
    g_daysFromCivilRate = timedDates(state, static_cast<std::int64_t>(dates.size()), [&] {
        std::int64_t sum = 0;
        for (const Civil& c : dates) {
            // The same validity check KZDate makes, so both do the same job.
            if (KZDate::DayWithinMonth(c.month, c.day, c.year))
                sum += daysFromCivil(c.year, c.month, c.day);
        }
        benchmark::DoNotOptimize(sum);
    });
}

void BM_KZDateConstruct(benchmark::State& state)
{
    const auto& dates = civilDates();
    const double rate = timedDates(state, static_cast<std::int64_t>(dates.size()), [&] {
        std::uint32_t sum = 0;
        for (const Civil& c : dates)
            sum += KZDate(c.day, c.month, c.year).Hash();
        benchmark::DoNotOptimize(sum);
    });
    reportVersus(state, rate, g_daysFromCivilRate);
}

void BM_ReferenceCivilFromDays(benchmark::State& state)
{
    const std::int64_t first = daysFromCivil(1900, 1, 1);
    const std::int64_t count = static_cast<std::int64_t>(civilDates().size());
    g_civilFromDaysRate = timedDates(state, count, [&] {
        unsigned sum = 0;
        for (std::int64_t n = first; n < first + count; ++n) {
            const Civil c = civilFromDays(n);
            sum += c.month + c.day + c.year;
        }
        benchmark::DoNotOptimize(sum);
    });
}

void BM_KZDateMdy(benchmark::State& state)
{
    const std::uint32_t first = KZDate(1, 1, 1900).Hash();
    const std::uint32_t count = static_cast<std::uint32_t>(civilDates().size());
    const double rate = timedDates(state, count, [&] {
        unsigned sum = 0;
        for (std::uint32_t n = first; n < first + count; ++n) {
            unsigned m, d, y;
            KZDate(n - 2415386u, 0).Mdy(m, d, y);
            sum += m + d + y;
        }
        benchmark::DoNotOptimize(sum);
    });
    reportVersus(state, rate, g_civilFromDaysRate);
}

void BM_IsPublicHolidayEveryDayOfACentury(benchmark::State& state)
{
    const KZDate first(1, 1, 2000), last(31, 12, 2099);
    for (auto _ : state) {
        int holidays = 0;
        for (KZDate d = first; d.Hash() <= last.Hash(); d = d + 1)
            holidays += KZCalendar::isPublicHoliday(d, KZBasicServices::BY) == 0;
        benchmark::DoNotOptimize(holidays);
    }
    state.SetItemsProcessed(state.iterations() * (last.Hash() - first.Hash() + 1));
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

// Registration order is run order: each reference first, so the ratios have their reference.
BENCHMARK(BM_ReferenceDaysFromCivil);
BENCHMARK(BM_KZDateConstruct);
BENCHMARK(BM_ReferenceCivilFromDays);
BENCHMARK(BM_KZDateMdy);
BENCHMARK(BM_IsPublicHolidayEveryDayOfACentury);
BENCHMARK(BM_HolidaysInPeriodOfACentury);
