// Buss- und Bettag, the one holiday that is neither on a fixed date nor
// counted from Easter. Private to the library: the fifteen classic rules and
// the law's table both date it here.
#ifndef KZ_DAY_OF_REPENTANCE_H
#define KZ_DAY_OF_REPENTANCE_H

#include "KZDate.h"

#include "CivilDays.h"

#include <cstdint>

namespace kzdatetime {

// 23 November minus the weekday of 27 November (1 = Monday .. 7 = Sunday):
// the Wednesday in 16..22 November. The year is read as KZDate reads it
// (0..137 mean 1900..2037).
inline KZDate dayOfRepentance(unsigned year)
{
    const std::uint32_t november23rd = dayNumberOf(KZDate(23, 11, year));
    return dateOfDayNumber(november23rd - weekdayOfDayNumber(november23rd + 4));
}

} // namespace kzdatetime

#endif // KZ_DAY_OF_REPENTANCE_H
