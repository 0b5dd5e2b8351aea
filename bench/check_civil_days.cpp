// A one-off check, too long for the test suite (minutes): the civil-date core
// gives KZDate the answers of the library's original 32-bit formulas (kept
// here as they were) for every 32-bit day number, and for every 32-bit year on
// the first and last days of the months where the year's handling differs
// (January and February count from the year before, March on from the year
// itself). Prints the mismatches and the time; exits 1 on any mismatch.
// Run by hand: build-bench/bench/check_civil_days
#include "CivilDays.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace {

struct Parts {
    std::uint32_t month, day, year;
};

std::uint32_t originalDayNumber(std::uint32_t month, std::uint32_t day, std::uint32_t year)
{
    std::uint32_t m, y;
    if (month > 2) {
        m = month - 3;
        y = year;
    } else {
        m = month + 9;
        y = year - 1;
    }
    const std::uint32_t c = y / 100;
    const std::uint32_t r = y - 100 * c;
    return (146097u * c) / 4 + (1461u * r) / 4 + (153u * m + 2) / 5 + day + 1721119u;
}

Parts originalParts(std::uint32_t dayNumber)
{
    const std::uint32_t j = 4u * (dayNumber - 1721119u);
    const std::uint32_t c = (j - 1) / 146097u;
    const std::uint32_t t = (j - 146097u * c - 1) & ~3u;
    const std::uint32_t y = (t + 3) / 1461u;
    const std::uint32_t u = 5u * ((t + 7 - 1461u * y) / 4);
    const std::uint32_t m = (u - 3) / 153u;
    Parts p{0, (u + 2 - 153u * m) / 5, 100u * c + y};
    if (m > 9) {
        p.month = m - 9;
        ++p.year;
    } else {
        p.month = m + 3;
    }
    return p;
}

constexpr int kShown = 10;

// Every day number, read as parts.
std::uint64_t checkParts()
{
    std::uint64_t mismatches = 0;
    std::uint32_t n = 0;
    do {
        const Parts want = originalParts(n);
        const kzdatetime::CivilDate got = kzdatetime::civilFromDayNumber(n);
        if (got.year != want.year || got.month != want.month || got.day != want.day) {
            if (mismatches++ < kShown)
                std::printf("day number %u: %u-%u-%u, originally %u-%u-%u\n", n, static_cast<unsigned>(got.year),
                            got.month, got.day, want.year, want.month, want.day);
        }
    } while (++n != 0);
    return mismatches;
}

// Every year, on the first and last day of January, February, March and December.
std::uint64_t checkDayNumbers()
{
    const struct {
        unsigned month, day;
    } days[] = {{1, 1}, {1, 31}, {2, 1}, {2, 28}, {3, 1}, {3, 31}, {12, 1}, {12, 31}};
    std::uint64_t mismatches = 0;
    std::uint32_t year = 0;
    do {
        for (const auto& d : days) {
            const std::uint32_t want = originalDayNumber(d.month, d.day, year);
            const std::uint32_t got = kzdatetime::dayNumberFromCivil(year, d.month, d.day);
            if (got != want && mismatches++ < kShown)
                std::printf("%u-%u-%u: day number %u, originally %u\n", year, d.month, d.day, got, want);
        }
    } while (++year != 0);
    return mismatches;
}

template <typename Check>
std::uint64_t timed(const char* what, Check check)
{
    const auto start = std::chrono::steady_clock::now();
    const std::uint64_t mismatches = check();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%s: %llu mismatches, %.1f s\n", what, static_cast<unsigned long long>(mismatches), seconds.count());
    return mismatches;
}

} // namespace

int main()
{
    const std::uint64_t mismatches = timed("all 2^32 day numbers to parts", checkParts)
                                     + timed("all 2^32 years x 8 days to day numbers", checkDayNumbers);
    return mismatches == 0 ? 0 : 1;
}
