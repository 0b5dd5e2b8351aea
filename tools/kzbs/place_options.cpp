#include "place_options.h"

#include "date_input.h"

#include "KZHolidayLaw.h"

#include <cctype>

using namespace KZBasicServices;

namespace kzbs {

namespace {

std::string upper(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// "A, KATH": the region codes of one state, for messages.
std::string regionsOf(BundesLand land)
{
    std::string list;
    for (const HolidayRegion& region : KZHolidayLaw::regions())
        if (region.state == land)
            list += std::string(list.empty() ? "" : ", ") + region.code;
    return list;
}

std::string abbreviation(BundesLand land)
{
    const Bundeslaender states;
    return states.getName(land, false);
}

} // namespace

void addPlaceOptions(CLI::App& command, PlaceWords& words)
{
    CLI::Option* state = addOptional(command, "--state", words.state);
    addOptional(command, "--region", words.region)->needs(state);
    command.add_flag("--classic", words.classic);
}

Checked<Place> parsePlace(const PlaceWords& words)
{
    Place place;
    place.classic = words.classic;
    if (words.state) {
        const Checked<BundesLand> land = parseState(*words.state);
        if (!land.ok())
            return land.refusal();
        place.land = land.value();
    }
    if (!words.region)
        return place;
    if (place.classic) {
        return refuse("--region goes with the law's holidays; the classic table has no regions");
    }
    const std::string code = upper(*words.region);
    if (!KZHolidayLaw::findRegion(place.land, code)) {
        const std::string known = regionsOf(place.land);
        return refuse(known.empty() ? abbreviation(place.land) + " has no regions with holidays of their own"
                                    : "unknown region '" + *words.region + "' of " + abbreviation(place.land)
                                          + " (known: " + known + ")");
    }
    place.region = code;
    return place;
}

std::string placeName(const Place& place)
{
    if (place.land == XX)
        return "";
    return abbreviation(place.land) + (place.region.empty() ? "" : "-" + place.region);
}

Checked<std::vector<DatedHoliday>> holidaysAt(const Period& period, const Place& place)
{
    if (place.classic)
        return KZHolidayLaw::classicHolidaysInPeriod(period.from, period.to, place.land);
    std::vector<DatedHoliday> holidays;
    switch (KZHolidayLaw::holidaysInPeriod(period.from, period.to, place.land, place.region, holidays)) {
    case KZHolidayLaw::Ok: return holidays;
    case KZHolidayLaw::BeforeFirstYear: return beforeLaw(std::to_string(period.from.Year()));
    default: return refuse("no holidays known for " + isoDate(period.from) + " .. " + isoDate(period.to));
    }
}

Refusal beforeLaw(const std::string& what)
{
    return refuse(what + " is before " + std::to_string(KZHolidayLaw::FirstYear)
                  + ", where the holiday laws kzbs knows begin; --classic answers from the fixed table for "
                  + yearRangeText());
}

} // namespace kzbs
