// Local time and the small C-library shims the date, time and string code use,
// on POSIX.
#include "CrossPlatformApi.h"

#include <cerrno>
#include <cstdio>
#include <strings.h>
#include <time.h>

namespace CrossPlatformApi {

// tzset and localtime_r read what localtime reads, a TZ changed since the
// last call included, without localtime's one shared result, on which every
// KZTime conversion in two threads would race.
long timezone()
{
    const std::time_t t = now();
    ::tzset();
    std::tm local;
    return ::localtime_r(&t, &local) ? -local.tm_gmtoff : 0;
}

int daylight()
{
    return ::daylight;
}

int localtime_s(std::tm* result, const std::time_t* time)
{
    if (!result || !time)
        return EINVAL;
    ::localtime_r(time, result);
    return 0;
}

int strCmpNoCase(const char* a, const char* b)
{
    return ::strcasecmp(a ? a : "", b ? b : "");
}

void outputDebugString(const char* text)
{
    if (text)
        std::fputs(text, stderr);
}

} // namespace CrossPlatformApi
