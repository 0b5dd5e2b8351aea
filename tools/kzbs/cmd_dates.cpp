// kzbs holidays, is-holiday, easter: the holiday calendar from the command line.
#include "commands.h"

#include "date_input.h"
#include "holiday_table.h"
#include "place_options.h"

#include "KZCalendar.h"
#include "KZDate.h"
#include "KZHolidayLaw.h"
#include "KZICalendar.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace kzbs {

namespace {

const char* const kHolidaysHelp =
    "usage: kzbs holidays [YEAR | FROM TO] [--state XX [--region R]] [--classic]\n"
    "                     [--format text|csv|json|ics]\n"
    "\n"
    "Lists the public holidays of a year (this year when none is given) or of a\n"
    "period FROM..TO (both inclusive), one per line: date, weekday, name and where\n"
    "it is a public holiday: the states (\"alle\": all sixteen), then regions as\n"
    "STATE-CODE (SN-BZ). By default the holidays are those of the states' holiday\n"
    "laws as they stood in each year, from 1990 on.\n"
    "\n"
    "  YEAR            1990..4099 (1583..4099 with --classic)\n"
    "  FROM, TO        YYYY-MM-DD or DD.MM.YYYY; a bare year means its first\n"
    "                  (FROM) or last (TO) day\n"
    "  --state XX      only holidays of one state: abbreviation (BY) or name\n"
    "                  (Bayern, bayern, Th\xC3\xBCringen, Thueringen)\n"
    "  --region R      with --state, also the holidays of one of its regions:\n"
    "                  BY A (Augsburg), BY KATH (Catholic communities), SN BZ,\n"
    "                  TH EIC, TH UH, TH WAK (Catholic communities there)\n"
    "  --classic       the library's fixed table of fifteen holidays instead, as\n"
    "                  applications built on the library see it\n"
    "  --format F      text (default), csv, json or ics (iCalendar, for calendar\n"
    "                  programs)\n";

const char* const kIsHolidayHelp =
    "usage: kzbs is-holiday DATE [--state XX [--region R]] [--classic]\n"
    "\n"
    "Names the public holiday(s) on DATE (YYYY-MM-DD or DD.MM.YYYY) and where each\n"
    "holds. Exit status 0 when DATE is a public holiday in the state (and region;\n"
    "without --state: anywhere), 1 when it is not, 2 for bad input.\n"
    "By default by the states' holiday laws (dates from 1990 on); --classic asks\n"
    "the library's fixed table (1583..4099). --state and --region as for\n"
    "kzbs holidays.\n";

const char* const kEasterHelp =
    "usage: kzbs easter [YEAR...]\n"
    "\n"
    "Prints the date of Easter Sunday (YYYY-MM-DD) of each YEAR (1583..4099), one\n"
    "per line; of this year when no YEAR is given.\n";

// What the holiday commands take from the command line.
struct HolidayRequest {
    PlaceWords place;
    std::string format = "text";
    std::vector<std::string> words;
};

// The abbreviations of the states in a mask: "BW", "BY", "ST".
std::vector<std::string> statesOf(int mask)
{
    const Bundeslaender states;
    std::vector<std::string> result;
    const BundesLand* all = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 16; ++i)
        if (mask & all[i])
            result.push_back(states.getName(all[i], false));
    return result;
}

HolidayRow rowOf(const DatedHoliday& holiday)
{
    const Bundeslaender states;
    HolidayRow row{holiday.date, holiday.name, statesOf(holiday.states), {}};
    for (const HolidayRegion* region : holiday.regions)
        row.regions.push_back(states.getName(region->state, false) + "-" + region->code);
    for (int i = 0; i < 16; ++i) {
        const BundesLand state = Bundeslaender::getBundesLandConstants()[i];
        const std::string own = KZHolidayLaw::nameInState(holiday, state);
        if (!own.empty() && own != holiday.name)
            row.stateNames.emplace_back(states.getName(state, false), own);
    }
    return row;
}

std::vector<HolidayRow> rowsOf(const std::vector<DatedHoliday>& holidays)
{
    std::vector<HolidayRow> rows;
    for (const DatedHoliday& holiday : holidays)
        rows.push_back(rowOf(holiday));
    return rows;
}

// The classic table's holidays, listed exactly as kzbs always listed them.
std::vector<HolidayRow> classicRows(const Period& period, BundesLand land)
{
    std::vector<HolidayRow> rows;
    for (const PublicHolidayInfo& h : KZCalendar::getPublicHolidaysInPeriod(period.from, period.to, land))
        rows.push_back({h.getDate(), h.m_name, statesOf(h.m_states), {}});
    return rows;
}

// The law's holidays of a period for a place; nullopt after an error.
std::optional<std::vector<DatedHoliday>> lawHolidays(const Period& period, const Place& place, int& status)
{
    std::vector<DatedHoliday> holidays;
    switch (KZHolidayLaw::holidaysInPeriod(period.from, period.to, place.land, place.region, holidays)) {
    case KZHolidayLaw::Ok:
        return holidays;
    case KZHolidayLaw::BeforeFirstYear:
        status = failBeforeLaw(std::to_string(period.from.Year()));
        return std::nullopt;
    default:
        status = fail("no holidays known for " + isoDate(period.from) + " .. " + isoDate(period.to));
        return std::nullopt;
    }
}

int holidays(const HolidayRequest& request)
{
    int status = 0;
    const std::optional<Place> place = parsePlace(request.place, status);
    if (!place)
        return status;
    const std::optional<Period> period = parseYearOrPeriod(request.words, status, spanOf(place->classic));
    if (!period)
        return status;
    if (place->classic && request.format != "ics") {
        printHolidayRows(std::cout, classicRows(*period, place->land), request.format);
        return 0;
    }
    std::optional<std::vector<DatedHoliday>> holidays =
        place->classic ? KZHolidayLaw::classicHolidaysInPeriod(period->from, period->to, place->land)
                       : lawHolidays(*period, *place, status);
    if (!holidays)
        return status;
    if (request.format == "ics")
        std::cout << KZICalendar::write(*holidays);
    else
        printHolidayRows(std::cout, rowsOf(*holidays), request.format);
    return 0;
}

// "2024-11-01 Freitag: Allerheiligen (BW BY NW RP SL)".
std::string holidayLine(const HolidayRow& row)
{
    return isoDate(row.date) + " " + weekdayName(row.date) + ": " + toTerminal(row.name) + " (" + whereText(row)
        + ")\n";
}

// How many holidays fall on a date anywhere, and whether one of them holds at
// the place asked about (without a state: anywhere).
struct Answer {
    size_t found = 0;
    bool here = false;
};

// Both print the holidays on `date` as they find them.
Answer answerClassic(const KZDate& date, const Place& place)
{
    const PublicHolidayMatches matches = KZCalendar::getPublicHolidayInfo(date);
    for (int i = 0; i < matches.count; ++i) {
        const PublicHolidayInfoBase& rule = *matches.matches[i];
        std::cout << holidayLine({date, rule.m_name, statesOf(rule.m_states), {}});
    }
    return {static_cast<size_t>(matches.count), KZCalendar::isPublicHoliday(date, place.land) == 0};
}

std::optional<Answer> answerLaw(const KZDate& date, const Place& place, int& status)
{
    const std::optional<std::vector<DatedHoliday>> holidays = lawHolidays({date, date}, Place(), status);
    if (!holidays)
        return std::nullopt;
    for (const DatedHoliday& holiday : *holidays)
        std::cout << holidayLine(rowOf(holiday));
    return Answer{holidays->size(), KZHolidayLaw::isPublicHoliday(date, place.land, place.region) == 0};
}

int isHoliday(const HolidayRequest& request)
{
    int status = 0;
    const std::optional<Place> place = parsePlace(request.place, status);
    if (!place)
        return status;
    if (request.words.size() != 1)
        return fail("is-holiday takes one date (see kzbs is-holiday --help)");
    const std::optional<KZDate> date = parseDate(request.words[0], status, spanOf(place->classic));
    if (!date)
        return status;

    const std::optional<Answer> answer =
        place->classic ? answerClassic(*date, *place) : answerLaw(*date, *place, status);
    if (!answer)
        return status;
    if (answer->found == 0) {
        std::cout << isoDate(*date) << " " << weekdayName(*date) << ": no public holiday\n";
        return 1;
    }
    if (place->land != XX)
        std::cout << (answer->here ? "a public holiday in " : "not a public holiday in ") << placeName(*place)
                  << '\n';
    return answer->here ? 0 : 1;
}

int easter(const std::vector<std::string>& words)
{
    // Check every year before printing any, so bad input never leaves half an answer.
    std::vector<unsigned> years;
    int status = 0;
    if (words.empty()) {
        const std::optional<unsigned> year = thisYear(status);
        if (!year)
            return status;
        years.push_back(*year);
    }
    for (const std::string& word : words) {
        const std::optional<unsigned> year = parseYear(word, status);
        if (!year)
            return status;
        years.push_back(*year);
    }
    for (unsigned year : years)
        std::cout << isoDate(KZCalendar::easter(static_cast<int>(year))) << '\n';
    return 0;
}

} // namespace

void addDateCommands(Program& program)
{
    auto list = std::make_shared<HolidayRequest>();
    CLI::App& holidaysCommand =
        program.add("holidays", "public holidays of a year or period, per federal state and region",
                    kHolidaysHelp, [list] { return holidays(*list); });
    addPlaceOptions(holidaysCommand, list->place);
    holidaysCommand.add_option("--format", list->format)->check(CLI::IsMember({"text", "csv", "json", "ics"}));
    program.addWords(holidaysCommand, list->words);

    auto query = std::make_shared<HolidayRequest>();
    CLI::App& isHolidayCommand =
        program.add("is-holiday", "whether a date is a public holiday (exit 0: yes, 1: no)", kIsHolidayHelp,
                    [query] { return isHoliday(*query); });
    addPlaceOptions(isHolidayCommand, query->place);
    program.addWords(isHolidayCommand, query->words);

    auto years = std::make_shared<std::vector<std::string>>();
    program.addWords(program.add("easter", "Easter Sunday of one or more years", kEasterHelp,
                                 [years] { return easter(*years); }),
                     *years);
}

} // namespace kzbs
