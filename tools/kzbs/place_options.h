// Which holidays a command goes by: --state, --region and --classic, shared
// by holidays, is-holiday, workdays and workday.
//
// By default kzbs follows the holiday laws of the states (KZHolidayLaw.h),
// which reach back to 1990; --classic takes the library's fixed table
// (KZCalendar.h) instead, the one applications rely on, for any year from
// 1583 to 4099. Regions exist in the law only.
#ifndef KZBS_PLACE_OPTIONS_H
#define KZBS_PLACE_OPTIONS_H

#include "cli.h"
#include "date_input.h"

#include "KZCalendar.h"
#include "KZHolidayLaw.h"

#include <optional>
#include <string>
#include <vector>

namespace kzbs {

// The options as given.
struct PlaceWords {
    std::optional<std::string> state;
    std::optional<std::string> region;
    bool classic = false;
};

// The options checked: no state is XX; the region is its code ("" none).
struct Place {
    KZBasicServices::BundesLand land = KZBasicServices::XX;
    std::string region;
    bool classic = false;
};

void addPlaceOptions(CLI::App& command, PlaceWords& words);

// Checks the state's spelling and that the region belongs to it.
Checked<Place> parsePlace(const PlaceWords& words);

// The years the rule set chosen (--classic or not) answers for, for messages.
inline YearSpan spanOf(bool classic)
{
    return classic ? YearSpan::Table : YearSpan::Law;
}

// "BY", "SN-BZ"; "" without a state.
std::string placeName(const Place& place);

// The holidays of a period by the place's rule set: those that hold at the
// place, or without a state all of them anywhere. Each carries where it
// holds. Refuses a period the rule set does not reach.
Checked<std::vector<DatedHoliday>> holidaysAt(const Period& period, const Place& place);

// The message for a question the law's rule set does not reach (before
// 1990): "<what> is before 1990, ..."; it names --classic, which does.
Refusal beforeLaw(const std::string& what);

} // namespace kzbs

#endif // KZBS_PLACE_OPTIONS_H
