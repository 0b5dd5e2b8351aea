// Working days over a century (2000..2099): KZWorkdays::count, which counts
// whole weeks and subtracts each year's holidays, beside a day-by-day loop
// over KZWorkdays::isWorkday. The counter "dayByDay/count" is how many times
// faster the count is than the walk, both measured in the same run.
#include "KZWorkdays.h"

#include <benchmark/benchmark.h>

#include <chrono>

namespace {

const KZDate kFrom(1, 1, 2000);
const KZDate kTo(31, 12, 2099);

WorkdayCalendar calendarFor(const benchmark::State& state)
{
    WorkdayCalendar c;
    c.land = KZBasicServices::BY;
    c.classic = state.range(0) != 0;
    return c;
}

long walkDayByDay(const WorkdayCalendar& c)
{
    long n = 0;
    for (KZDate d = kFrom; d.Hash() <= kTo.Hash(); d = d + 1) {
        bool working = false;
        KZWorkdays::isWorkday(d, c, working);
        n += working ? 1 : 0;
    }
    return n;
}

double secondsOf(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

void BM_WorkdaysCountCentury(benchmark::State& state)
{
    const WorkdayCalendar c = calendarFor(state);
    const auto walkStart = std::chrono::steady_clock::now();
    const long walked = walkDayByDay(c);
    const double walkSeconds = secondsOf(std::chrono::steady_clock::now() - walkStart);

    long counted = 0;
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        KZWorkdays::count(kFrom, kTo, c, counted);
        benchmark::DoNotOptimize(counted);
    }
    const double perCount = secondsOf(std::chrono::steady_clock::now() - start) / static_cast<double>(state.iterations());
    if (counted != walked)
        state.SkipWithError("count and day-by-day walk disagree");
    state.counters["workdays"] = static_cast<double>(counted);
    state.counters["dayByDay/count"] = perCount > 0 ? walkSeconds / perCount : 0;
    state.SetLabel(c.classic ? "classic BY" : "law BY");
}
BENCHMARK(BM_WorkdaysCountCentury)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_WorkdaysDayByDayCentury(benchmark::State& state)
{
    const WorkdayCalendar c = calendarFor(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(walkDayByDay(c));
    state.SetLabel(c.classic ? "classic BY" : "law BY");
}
BENCHMARK(BM_WorkdaysDayByDayCentury)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_WorkdaysAdvanceCentury(benchmark::State& state)
{
    const WorkdayCalendar c = calendarFor(state);
    KZDate result(0u, 0u, 0u);
    for (auto _ : state) {
        KZWorkdays::advance(kFrom, 25000, c, result);
        benchmark::DoNotOptimize(result);
    }
    state.SetLabel(c.classic ? "classic BY" : "law BY");
}
BENCHMARK(BM_WorkdaysAdvanceCentury)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

} // namespace
