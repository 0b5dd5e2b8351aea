// Test helpers that pin what the library reads from the host: the time zone
// and "now". Every test that depends on either pins both.
#ifndef KZBS_TESTS_PINNED_H
#define KZBS_TESTS_PINNED_H

#include "CrossPlatformApi.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace kzbs_test {

// Central European time with its EU rule, spelled out so no zone database is needed.
inline const char* const kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";

// Sets an environment variable of this process; nullptr removes it.
inline void setEnvironment(const char* name, const char* value)
{
#ifdef _WIN32
    ::_putenv_s(name, value ? value : ""); // the empty value removes it there
#else
    if (value)
        ::setenv(name, value, 1);
    else
        ::unsetenv(name);
#endif
}

#ifdef _WIN32
// The Windows time-zone API does not read TZ: the process keeps the zone it
// was started in, which the test environment makes kBerlin (tests/CMakeLists.txt).
// A test that asks for another zone fails here, not with wrong answers.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone)
    {
        const char* started = std::getenv("TZ");
        if (!started || std::string(started) != zone)
            ADD_FAILURE() << "Windows runs the tests in the zone TZ names at their start ("
                          << (started ? started : "none") << "), not in " << zone;
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;
};
#else
// Sets TZ for the scope and restores the previous value afterwards.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone)
    {
        if (const char* old = std::getenv("TZ")) {
            m_hadOld = true;
            m_old = old;
        }
        setEnvironment("TZ", zone);
        ::tzset();
    }
    ~ScopedZone()
    {
        setEnvironment("TZ", m_hadOld ? m_old.c_str() : nullptr);
        ::tzset();
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    bool m_hadOld = false;
    std::string m_old;
};
#endif

inline std::time_t& pinnedNow()
{
    static std::time_t now = 0;
    return now;
}
inline std::time_t readPinnedNow()
{
    return pinnedNow();
}

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
