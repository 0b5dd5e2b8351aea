// kzbs holidays, is-holiday, easter: the holiday calendar from the command line.
#include "commands.h"

#include "date_input.h"
#include "holiday_table.h"
#include "place_options.h"

#include "KZCalendar.h"
#include "KZDate.h"
#include "KZHolidayLaw.h"
#include "KZICalendar.h"

#include <algorithm>
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
    "                     [--format text|csv|json|ics [--calendar-name NAME]]\n"
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
    "                  programs)\n"
    "  --calendar-name NAME\n"
    "                  with ics, the name calendar programs show for the file\n"
    "\n"
    "examples:\n"
    "  kzbs holidays 2026 --state BY\n"
    "  kzbs holidays 2026 --state BY --format ics --calendar-name \"Feiertage BY\" >by.ics\n";

const char* const kIsHolidayHelp =
    "usage: kzbs is-holiday DATE [--state XX [--region R]] [--classic]\n"
    "\n"
    "Names the public holiday(s) on DATE (YYYY-MM-DD or DD.MM.YYYY) and where each\n"
    "holds. Exit status 0 when DATE is a public holiday in the state (and region;\n"
    "without --state: anywhere), 1 when it is not, 2 for bad input.\n"
    "By default by the states' holiday laws (dates from 1990 on); --classic asks\n"
    "the library's fixed table (1583..4099). --state and --region as for\n"
    "kzbs holidays. A day that is a holiday in parts of the state only is named\n"
    "with the --region choices where it is one.\n"
    "\n"
    "examples:\n"
    "  kzbs is-holiday 2026-08-15 --state BY\n"
    "  kzbs is-holiday 2026-08-15 --state BY --region KATH && echo closed\n";

const char* const kEasterHelp =
    "usage: kzbs easter [YEAR...]\n"
    "\n"
    "Prints the date of Easter Sunday (YYYY-MM-DD) of each YEAR (1583..4099), one\n"
    "per line; of this year when no YEAR is given.\n"
    "\n"
    "examples:\n"
    "  kzbs easter\n"
    "  kzbs easter 2026 2027 2028\n";

// What the holiday commands take from the command line.
struct HolidayRequest {
    PlaceWords place;
    std::string format = "text";
    std::optional<std::string> calendarName;
    std::vector<std::string> words;
};

// The classic table's holidays, listed exactly as kzbs always listed them.
std::vector<HolidayRow> classicRows(const Period& period, BundesLand land)
{
    std::vector<HolidayRow> rows;
    for (const PublicHolidayInfo& h : KZCalendar::getPublicHolidaysInPeriod(period.from, period.to, land))
        rows.push_back({h.getDate(), h.m_name, statesOf(h.m_states), {}});
    return rows;
}

// The calendar with an X-WR-CALNAME line, the name calendar programs show
// for an imported file, before its first event. ICalendarOptions has no field
// for it: a new one would change the layout of an exported type.
std::string withCalendarName(std::string calendar, const std::optional<std::string>& utf8Name)
{
    if (!utf8Name)
        return calendar;
    size_t at = calendar.find("BEGIN:VEVENT\r\n");
    if (at == std::string::npos)
        at = calendar.rfind("END:VCALENDAR\r\n");
    if (at != std::string::npos)
        calendar.insert(at, KZICalendar::foldLine("X-WR-CALNAME:" + KZICalendar::escapeText(*utf8Name)));
    return calendar;
}

int holidays(const HolidayRequest& request)
{
    if (request.calendarName && request.format != "ics")
        return fail("--calendar-name goes with --format ics");
    const Place place = parsePlace(request.place).value();
    const Period period = parseYearOrPeriod(request.words, spanOf(place.classic)).value();
    if (place.classic && request.format != "ics") {
        printHolidayRows(std::cout, classicRows(period, place.land), request.format);
        return 0;
    }
    const std::vector<DatedHoliday> holidays = holidaysAt(period, place).value();
    if (request.format == "ics")
        std::cout << withCalendarName(KZICalendar::write(holidays), request.calendarName);
    else
        printHolidayRows(std::cout, rowsOf(holidays), request.format);
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
    // When not here: the regions of the state asked about where one holds.
    std::vector<const HolidayRegion*> inParts = {};
};

// The regions of `place`'s state, other than its own region, where one of
// `holidays` holds.
std::vector<const HolidayRegion*> regionsHolding(const std::vector<DatedHoliday>& holidays, const Place& place)
{
    std::vector<const HolidayRegion*> regions;
    for (const DatedHoliday& holiday : holidays)
        for (const HolidayRegion* region : holiday.regions)
            if (region->state == place.land && region->code != place.region
                && std::find(regions.begin(), regions.end(), region) == regions.end())
                regions.push_back(region);
    return regions;
}

// "not a public holiday in all of BY; it is one in parts of it: --region
// KATH (Gemeinden ...), --region A (Stadt Augsburg)": a day that holds in
// regions of a state is neither simply yes nor no for the people there.
std::string partsText(const Place& place, const std::vector<const HolidayRegion*>& regions)
{
    const std::string state = placeName({place.land, "", false});
    std::string text = place.region.empty() ? "not a public holiday in all of " + state + "; it is one in parts of it: "
                                            : "not a public holiday in " + placeName(place)
                                                  + "; it is one in other parts of " + state + ": ";
    for (size_t i = 0; i < regions.size(); ++i)
        text += std::string(i ? ", " : "") + "--region " + regions[i]->code + " (" + toTerminal(regions[i]->description)
                + ")";
    return text;
}

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

Answer answerLaw(const KZDate& date, const Place& place)
{
    const std::vector<DatedHoliday> holidays = holidaysAt({date, date}, Place()).value();
    for (const DatedHoliday& holiday : holidays)
        std::cout << holidayLine(rowOf(holiday));
    const bool here = KZHolidayLaw::isPublicHoliday(date, place.land, place.region) == 0;
    return Answer{holidays.size(), here, here ? std::vector<const HolidayRegion*>() : regionsHolding(holidays, place)};
}

int isHoliday(const HolidayRequest& request)
{
    const Place place = parsePlace(request.place).value();
    if (request.words.size() != 1)
        return fail("is-holiday takes one date (see kzbs is-holiday --help)");
    const KZDate date = parseDate(request.words[0], spanOf(place.classic)).value();

    const Answer answer = place.classic ? answerClassic(date, place) : answerLaw(date, place);
    if (answer.found == 0) {
        std::cout << isoDate(date) << " " << weekdayName(date) << ": no public holiday\n";
        return 1;
    }
    if (place.land != XX && !answer.inParts.empty())
        std::cout << partsText(place, answer.inParts) << '\n';
    else if (place.land != XX)
        std::cout << (answer.here ? "a public holiday in " : "not a public holiday in ") << placeName(place) << '\n';
    return answer.here ? 0 : 1;
}

int easter(const std::vector<std::string>& words)
{
    // Check every year before printing any, so bad input never leaves half an answer.
    std::vector<unsigned> years;
    if (words.empty())
        years.push_back(thisYear().value());
    for (const std::string& word : words)
        years.push_back(parseYear(word).value());
    for (unsigned year : years)
        std::cout << isoDate(KZCalendar::easter(static_cast<int>(year))) << '\n';
    return 0;
}

} // namespace

void addDateCommands(Program& program)
{
    auto list = std::make_shared<HolidayRequest>();
    CLI::App& holidaysCommand =
        program.add("holidays", "public holidays of a year or period, per federal state and region", kHolidaysHelp,
                    [list] { return holidays(*list); });
    addPlaceOptions(holidaysCommand, list->place);
    holidaysCommand.add_option("--format", list->format)->check(CLI::IsMember({"text", "csv", "json", "ics"}));
    addOptional(holidaysCommand, "--calendar-name", list->calendarName);
    program.addWords(holidaysCommand, list->words);

    auto query = std::make_shared<HolidayRequest>();
    CLI::App& isHolidayCommand = program.add("is-holiday", "whether a date is a public holiday (exit 0: yes, 1: no)",
                                             kIsHolidayHelp, [query] { return isHoliday(*query); });
    addPlaceOptions(isHolidayCommand, query->place);
    program.addWords(isHolidayCommand, query->words);

    auto years = std::make_shared<std::vector<std::string>>();
    program.addWords(
        program.add("easter", "Easter Sunday of one or more years", kEasterHelp, [years] { return easter(*years); }),
        *years);
}

} // namespace kzbs
