// Easter Sunday: Gregorian computus after 1582, Julian up to 1582.
#include "KZCalendar.h"

#include <cstdint>

namespace {

// Floor division, for the steps that floor rather than truncate.
std::int64_t floorDiv(std::int64_t a, std::int64_t b)
{
    const std::int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

} // namespace

// 64-bit arithmetic gives the 32-bit results for every year where those do
// not overflow, and something defined for the rest.
KZDate KZCalendar::easter(int year)
{
    const std::int64_t y = year;
    const std::int64_t golden = y % 19 + 1;
    std::int64_t d, e;
    if (y > 1582) {
        const std::int64_t century = y / 100;
        const std::int64_t x = floorDiv(3 * century + 3, 4) - 12;
        d = floorDiv(5 * y, 4) - x - 10;
        const std::int64_t z = (century - (century - 17) / 25 - 15) / 3;
        e = (11 * golden + 19 + z - x) % 30 + 1;
        if (e == 24 || (e == 25 && golden > 11))
            ++e;
    } else {
        d = 5 * y / 4;
        e = (11 * golden - 4) % 30 + 1;
    }
    std::int64_t n = 44 - e;
    if (n <= 20)
        n += 30;
    n = n + 7 - ((n + d) % 7);
    const auto uyear = static_cast<unsigned>(year);
    return n > 31 ? KZDate(static_cast<unsigned>(n - 31), 4, uyear) : KZDate(static_cast<unsigned>(n), 3, uyear);
}
