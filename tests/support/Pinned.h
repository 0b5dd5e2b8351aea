// Test helpers that pin what the library reads from the host: the time zone
// and "now". Every test that depends on either pins both.
#ifndef KZBS_TESTS_PINNED_H
#define KZBS_TESTS_PINNED_H

#include "CrossPlatformApi.h"

#include <cstdlib>
#include <ctime>
#include <string>

namespace kzbs_test {

// Central European time with its EU rule, spelled out so no zone database is needed.
inline const char* const kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";

// Sets TZ for the scope and restores the previous value afterwards.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone)
    {
        if (const char* old = std::getenv("TZ")) {
            m_hadOld = true;
            m_old = old;
        }
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~ScopedZone()
    {
        if (m_hadOld)
            ::setenv("TZ", m_old.c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    bool m_hadOld = false;
    std::string m_old;
};

inline std::time_t& pinnedNow()
{
    static std::time_t now = 0;
    return now;
}
inline std::time_t readPinnedNow() { return pinnedNow(); }

// Makes the library's "now" the given UTC instant for the scope.
class ScopedNow {
public:
    explicit ScopedNow(std::time_t utc)
    {
        pinnedNow() = utc;
        CrossPlatformApi::setClock(&readPinnedNow);
    }
    ~ScopedNow() { CrossPlatformApi::setClock(nullptr); }
    ScopedNow(const ScopedNow&) = delete;
    ScopedNow& operator=(const ScopedNow&) = delete;
};

// UTC instants for pinning "now" on a known side of the daylight-saving switch.
inline constexpr std::time_t kWinter2010 = 1263556800; // 2010-01-15 12:00:00 UTC
inline constexpr std::time_t kSummer2010 = 1278849600; // 2010-07-11 12:00:00 UTC

} // namespace kzbs_test

#endif // KZBS_TESTS_PINNED_H
