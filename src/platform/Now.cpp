// "Now" for the whole library, and the seam through which tests and
// simulations pin it.
#include "CrossPlatformApi.h"

#include <atomic>

namespace CrossPlatformApi {

namespace {
std::atomic<ClockFunction> g_clock{nullptr};
}

void setClock(ClockFunction clock)
{
    g_clock.store(clock);
}

std::time_t now()
{
    const ClockFunction clock = g_clock.load();
    return clock ? clock() : std::time(nullptr);
}

} // namespace CrossPlatformApi
