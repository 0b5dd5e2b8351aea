// Local time and the small C-library shims the date, time and string code use,
// on Windows. The zone is the system's (GetTimeZoneInformation); the C
// runtime's TZ variable, whose daylight-saving rule is the United States' of
// the 1980s, is not read.
#include "CrossPlatformApi.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <windows.h>

namespace CrossPlatformApi {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t k1601To1970 = 11644473600;  // seconds
constexpr std::int64_t kTicksPerSecond = 10000000; // FILETIME counts 100 ns

// Days from 1 January 1970 to the given civil date (proleptic Gregorian).
std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day)
{
    year -= month <= 2;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 719468;
}

std::int64_t secondsOf(const SYSTEMTIME& t)
{
    return daysFromCivil(t.wYear, t.wMonth, t.wDay) * kSecondsPerDay + t.wHour * 3600 + t.wMinute * 60 + t.wSecond;
}

// The UTC instant as a SYSTEMTIME; false outside what FILETIME holds (before
// 1601, after 30827).
bool toSystemTime(std::time_t time, SYSTEMTIME& utc)
{
    constexpr std::int64_t kLast = 0x7FFFFFFFFFFFFFFF / kTicksPerSecond - k1601To1970;
    const std::int64_t t = time;
    if (t < -k1601To1970 || t > kLast)
        return false;
    const std::uint64_t ticks = static_cast<std::uint64_t>(t + k1601To1970) * kTicksPerSecond;
    FILETIME file;
    file.dwLowDateTime = static_cast<DWORD>(ticks);
    file.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
    return ::FileTimeToSystemTime(&file, &utc) != 0;
}

} // namespace

long timezone()
{
    const std::time_t t = now();
    std::tm local{};
    if (CrossPlatformApi::localtime_s(&local, &t) != 0 || local.tm_mday == 0)
        return 0;
    const std::int64_t localSeconds =
        daysFromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) * kSecondsPerDay + local.tm_hour * 3600
        + local.tm_min * 60 + local.tm_sec;
    return static_cast<long>(static_cast<std::int64_t>(t) - localSeconds);
}

int daylight()
{
    TIME_ZONE_INFORMATION zone;
    return ::GetTimeZoneInformation(&zone) != TIME_ZONE_ID_INVALID && zone.DaylightDate.wMonth != 0;
}

// The C library's answer where Windows has one; outside 1601 to 30827 the
// result is left as it was, as localtime_r leaves it where it fails.
int localtime_s(std::tm* result, const std::time_t* time)
{
    if (!result || !time)
        return EINVAL;
    SYSTEMTIME utc, local;
    TIME_ZONE_INFORMATION zone;
    if (!toSystemTime(*time, utc) || ::GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID
        || !::SystemTimeToTzSpecificLocalTime(&zone, &utc, &local))
        return 0;
    const std::int64_t offset = secondsOf(local) - secondsOf(utc);
    const std::int64_t standardOffset = -60 * static_cast<std::int64_t>(zone.Bias + zone.StandardBias);
    result->tm_year = local.wYear - 1900;
    result->tm_mon = local.wMonth - 1;
    result->tm_mday = local.wDay;
    result->tm_hour = local.wHour;
    result->tm_min = local.wMinute;
    result->tm_sec = local.wSecond;
    result->tm_wday = local.wDayOfWeek;
    result->tm_yday =
        static_cast<int>(daysFromCivil(local.wYear, local.wMonth, local.wDay) - daysFromCivil(local.wYear, 1, 1));
    result->tm_isdst = zone.DaylightDate.wMonth != 0 && offset != standardOffset;
    return 0;
}

// strcasecmp of the C locale: ASCII letters fold, every other byte compares
// as the unsigned number it is.
int strCmpNoCase(const char* a, const char* b)
{
    const auto fold = [](char c) {
        const unsigned char u = static_cast<unsigned char>(c);
        return u >= 'A' && u <= 'Z' ? u + ('a' - 'A') : u;
    };
    const char* p = a ? a : "";
    const char* q = b ? b : "";
    for (;; ++p, ++q) {
        const int difference = fold(*p) - fold(*q);
        if (difference != 0 || *p == '\0')
            return difference;
    }
}

void outputDebugString(const char* text)
{
    if (text)
        std::fputs(text, stderr);
}

} // namespace CrossPlatformApi
