// Measuring our code and its peer side by side: each iteration runs our pass
// and then every peer's pass on the same data, each timed in CPU seconds of
// this thread. The benchmark's own time is ours alone (manual time); the
// counter `vs_NAME` is the peer's total time over ours, that is our
// throughput over the peer's. Alternating the passes keeps the ratio honest
// on a shared machine, where the load (and a busy sibling core) changes from
// one moment to the next: both sides see the same moments.
#ifndef KZ_BENCH_SIDE_BY_SIDE_H
#define KZ_BENCH_SIDE_BY_SIDE_H

#include <benchmark/benchmark.h>

#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

inline double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

using Pass = std::function<void()>;
using Peers = std::vector<std::pair<std::string, Pass>>;

// Register with ->UseManualTime().
inline void sideBySide(benchmark::State& state, const Pass& ours, const Peers& peers)
{
    double ourSeconds = 0;
    std::vector<double> peerSeconds(peers.size(), 0.0);
    for (auto _ : state) {
        const double start = threadSeconds();
        ours();
        const double mine = threadSeconds() - start;
        ourSeconds += mine;
        state.SetIterationTime(mine);
        for (std::size_t i = 0; i < peers.size(); ++i) {
            const double peerStart = threadSeconds();
            peers[i].second();
            peerSeconds[i] += threadSeconds() - peerStart;
        }
    }
    for (std::size_t i = 0; i < peers.size(); ++i)
        if (ourSeconds > 0)
            state.counters["vs_" + peers[i].first] = peerSeconds[i] / ourSeconds;
}

} // namespace bench

#endif // KZ_BENCH_SIDE_BY_SIDE_H
