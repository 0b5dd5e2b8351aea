// Working days over a century (2000..2099): KZWorkdays::count, which counts
// whole weeks and subtracts each year's holidays, beside a day-by-day loop
// over KZWorkdays::isWorkday on the same calendar. The counter
// `vs_day_by_day` is how many times faster the count is than the walk.
#include "KZWorkdays.h"
#include "SideBySide.h"

#include <benchmark/benchmark.h>

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
        n += KZWorkdays::isWorkday(d, c, working) == KZWorkdays::Ok && working ? 1 : 0;
    }
    return n;
}

void BM_WorkdaysCountCentury(benchmark::State& state)
{
    const WorkdayCalendar c = calendarFor(state);
    long counted = 0;
    long walked = 0;
    bench::sideBySide(state,
                      [&] {
                          if (KZWorkdays::count(kFrom, kTo, c, counted) != KZWorkdays::Ok)
                              counted = -1; // the walk never gives that
                          benchmark::DoNotOptimize(counted);
                      },
                      {{"day_by_day", [&] { walked = walkDayByDay(c); }}});
    if (counted != walked)
        state.SkipWithError("count and day-by-day walk disagree");
    state.counters["workdays"] = static_cast<double>(counted);
    state.SetLabel(c.classic ? "classic BY" : "law BY");
}
// The walk takes some milliseconds a pass, so a fixed number of passes keeps
// the run short.
BENCHMARK(BM_WorkdaysCountCentury)->Arg(0)->Arg(1)->UseManualTime()->Iterations(40)->Unit(benchmark::kMicrosecond);

void BM_WorkdaysAdvanceCentury(benchmark::State& state)
{
    const WorkdayCalendar c = calendarFor(state);
    KZDate result(0u, 0u, 0u);
    KZWorkdays::Status status = KZWorkdays::Ok;
    for (auto _ : state) {
        status = KZWorkdays::advance(kFrom, 25000, c, result);
        benchmark::DoNotOptimize(result);
    }
    if (status != KZWorkdays::Ok)
        state.SkipWithError("advance refused the step");
    state.SetLabel(c.classic ? "classic BY" : "law BY");
}
BENCHMARK(BM_WorkdaysAdvanceCentury)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

} // namespace
