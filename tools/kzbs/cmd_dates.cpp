// kzbs holidays, is-holiday, easter: the holiday calendar from the command line.
#include "commands.h"

#include "date_input.h"
#include "holiday_table.h"

#include "KZCalendar.h"
#include "KZDate.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace kzbs {

namespace {

const char* const kHolidaysHelp =
    "usage: kzbs holidays [--state XX] [YEAR | FROM TO] [--format text|csv|json]\n"
    "\n"
    "Lists the public holidays of a year (this year when none is given) or of a\n"
    "period FROM..TO (both inclusive), one per line: date, weekday, name and the\n"
    "federal states in which it is a public holiday (\"alle\": all sixteen).\n"
    "\n"
    "  YEAR            1583..4099\n"
    "  FROM, TO        YYYY-MM-DD or DD.MM.YYYY; a bare year means its first\n"
    "                  (FROM) or last (TO) day\n"
    "  --state XX      only holidays of one state: abbreviation (BY) or name\n"
    "                  (Bayern, bayern, Th\xC3\xBCringen, Thueringen)\n"
    "  --format F      text (default), csv or json\n";

const char* const kIsHolidayHelp =
    "usage: kzbs is-holiday DATE [--state XX]\n"
    "\n"
    "Names the public holiday(s) on DATE (YYYY-MM-DD or DD.MM.YYYY) and the states\n"
    "where each holds. Exit status 0 when DATE is a public holiday in the state\n"
    "(without --state: in any state), 1 when it is not, 2 for bad input.\n";

const char* const kEasterHelp =
    "usage: kzbs easter YEAR...\n"
    "\n"
    "Prints the date of Easter Sunday (YYYY-MM-DD) of each YEAR (1583..4099), one\n"
    "per line.\n";

// What the holiday commands take from the command line.
struct HolidayRequest {
    std::optional<std::string> state;
    std::string format = "text";
    std::vector<std::string> words;
};

// "BW BY ST", or "alle" for all sixteen.
std::vector<std::string> statesOf(const PublicHolidayInfoBase& rule)
{
    if ((rule.m_states & Alle) == Alle)
        return {"alle"};
    const Bundeslaender states;
    std::vector<std::string> result;
    const BundesLand* all = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 16; ++i)
        if (rule.m_states & all[i])
            result.push_back(states.getName(all[i], false));
    return result;
}

std::string join(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& w : words)
        text += (text.empty() ? "" : " ") + w;
    return text;
}

// The --state option: XX (every state) when it is not given; nullopt after an error.
std::optional<BundesLand> stateOption(const std::optional<std::string>& text, int& status)
{
    if (!text)
        return XX;
    return parseState(*text, status);
}

int holidays(const HolidayRequest& request)
{
    int status = 0;
    const std::optional<BundesLand> land = stateOption(request.state, status);
    if (!land)
        return status;
    const std::optional<Period> period = parseYearOrPeriod(request.words, status);
    if (!period)
        return status;
    std::vector<HolidayRow> rows;
    for (const PublicHolidayInfo& h : KZCalendar::getPublicHolidaysInPeriod(period->from, period->to, *land))
        rows.push_back({h.getDate(), h.m_name, statesOf(h), {}});
    printHolidayRows(std::cout, rows, request.format);
    return 0;
}

int isHoliday(const HolidayRequest& request)
{
    int status = 0;
    const std::optional<BundesLand> land = stateOption(request.state, status);
    if (!land)
        return status;
    if (request.words.size() != 1)
        return fail("is-holiday takes one date (see kzbs is-holiday --help)");
    const std::optional<KZDate> date = parseDate(request.words[0], status);
    if (!date)
        return status;

    const std::string head = isoDate(*date) + " " + weekdayName(*date) + ": ";
    const PublicHolidayMatches matches = KZCalendar::getPublicHolidayInfo(*date);
    if (matches.count == 0) {
        std::cout << head << "no public holiday\n";
        return 1;
    }
    for (int i = 0; i < matches.count; ++i)
        std::cout << head << toTerminal(matches.matches[i]->m_name) << " (" << join(statesOf(*matches.matches[i]))
                  << ")\n";
    const bool holiday = KZCalendar::isPublicHoliday(*date, *land) == 0;
    if (*land != XX) {
        const Bundeslaender states;
        std::cout << (holiday ? "a public holiday in " : "not a public holiday in ") << states.getName(*land, false)
                  << '\n';
    }
    return holiday ? 0 : 1;
}

int easter(const std::vector<std::string>& words)
{
    if (words.empty())
        return fail("easter needs at least one year (see kzbs easter --help)");
    // Check every year before printing any, so bad input never leaves half an answer.
    std::vector<unsigned> years;
    int status = 0;
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
        program.add("holidays", "public holidays of a year or period, per federal state", kHolidaysHelp,
                    [list] { return holidays(*list); });
    addOptional(holidaysCommand, "--state", list->state);
    holidaysCommand.add_option("--format", list->format)->check(CLI::IsMember({"text", "csv", "json"}));
    program.addWords(holidaysCommand, list->words);

    auto query = std::make_shared<HolidayRequest>();
    CLI::App& isHolidayCommand =
        program.add("is-holiday", "whether a date is a public holiday (exit 0: yes, 1: no)", kIsHolidayHelp,
                    [query] { return isHoliday(*query); });
    addOptional(isHolidayCommand, "--state", query->state);
    program.addWords(isHolidayCommand, query->words);

    auto years = std::make_shared<std::vector<std::string>>();
    program.addWords(program.add("easter", "Easter Sunday of one or more years", kEasterHelp,
                         [years] { return easter(*years); }),
             *years);
}

} // namespace kzbs
