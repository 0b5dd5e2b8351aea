// kzbs cal, next: the holidays as a wall calendar shows them, and the ones
// coming up.
#include "commands.h"

#include "date_input.h"
#include "holiday_table.h"
#include "place_options.h"

#include "KZDate.h"
#include "KZHolidayLaw.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace kzbs {

namespace {

const char* const kCalHelp =
    "usage: kzbs cal [YEAR | YEAR-MM] [--state XX [--region R]] [--classic]\n"
    "                [--color auto|always|never]\n"
    "\n"
    "Prints month grids, Monday first, with the ISO week number (KW) before each\n"
    "week and the public holidays marked: this month when nothing is given, the\n"
    "twelve months of YEAR, or the month YEAR-MM. Under each month its holidays\n"
    "are named with where they hold.\n"
    "\n"
    "  --state XX      mark the holidays of one state (BY or Bayern); days that\n"
    "                  are holidays in parts of it only are marked apart\n"
    "  --region R      with --state, the holidays of one of its regions too\n"
    "  --classic       the library's fixed holiday table instead of the states'\n"
    "                  holiday laws (which are covered from 1990 on)\n"
    "  --color WHEN    auto (the default: on a terminal, unless NO_COLOR is set),\n"
    "                  always or never. Without colour a marker follows the day:\n"
    "                  * a public holiday (without --state: in all states),\n"
    "                  + one in parts only (some states or regions)\n"
    "\n"
    "examples:\n"
    "  kzbs cal 2026-08 --state BY\n"
    "  kzbs cal 2027 --state Sachsen --region BZ --color never\n";

const char* const kNextHelp =
    "usage: kzbs next [N] [--state XX [--region R]] [--from DATE] [--classic]\n"
    "                 [--format text|csv|json]\n"
    "\n"
    "Lists the next N public holidays (1 when N is not given, at most 1000) from\n"
    "today or from DATE (YYYY-MM-DD or DD.MM.YYYY), that day included, in the\n"
    "form of kzbs holidays. Without --state the holidays of every state count.\n"
    "--state, --region and --classic as for kzbs holidays.\n"
    "\n"
    "examples:\n"
    "  kzbs next --state BY\n"
    "  kzbs next 5 --state Berlin --from 2026-12-01\n";

constexpr int kMostHolidays = 1000;
// Each day cell is a space, the day and a marker: " 15*".
constexpr int kGridWidth = 2 + 7 * 4;

// How a day is marked: a holiday at the place (without a state: in all
// states), or one in parts of it only.
enum class Mark { None, InParts, Here };

struct CalRequest {
    PlaceWords place;
    std::string color = "auto";
    std::vector<std::string> words;
};

struct NextRequest {
    PlaceWords place;
    std::optional<std::string> from;
    std::string format = "text";
    std::vector<std::string> words;
};

Mark markOf(const DatedHoliday& holiday, const Place& place)
{
    if (place.land == XX)
        return (holiday.states & Alle) == Alle ? Mark::Here : Mark::InParts;
    if (holiday.states & place.land)
        return Mark::Here;
    Mark mark = Mark::None;
    for (const HolidayRegion* region : holiday.regions)
        if (region->state == place.land)
            mark = region->code == place.region ? Mark::Here : std::max(mark, Mark::InParts);
    return mark;
}

// ISO 8601: the week belongs to the year its Thursday falls in.
unsigned isoWeek(const KZDate& date)
{
    const KZDate thursday = date + (4 - static_cast<int>(date.WeekDay()));
    return (thursday.Day() - 1) / 7 + 1;
}

bool colorWanted(const std::string& when)
{
    if (when != "auto")
        return when == "always";
    const char* noColor = std::getenv("NO_COLOR");
    return ::isatty(1) && (noColor == nullptr || *noColor == '\0');
}

// A day of the month or a week number, right-aligned in two columns.
std::string padded(unsigned number)
{
    return (number < 10 ? " " : "") + std::to_string(number);
}

std::string dayCell(unsigned day, Mark mark, bool color)
{
    const std::string number = padded(day);
    if (mark == Mark::None)
        return std::string(" ") + number + " ";
    if (color)
        return std::string(mark == Mark::Here ? " \x1b[1;31m" : " \x1b[36m") + number + "\x1b[0m ";
    return std::string(" ") + number + (mark == Mark::Here ? "*" : "+");
}

std::string centered(const std::string& text, size_t characters, size_t width)
{
    return std::string(characters < width ? (width - characters) / 2 : 0, ' ') + text;
}

// One month: title, weekday line, the weeks, then its holidays by name.
void printMonth(unsigned year, unsigned month, const std::vector<DatedHoliday>& holidays, const Place& place,
                bool color)
{
    const char* name = KZDate::MonthName(month);
    const std::string title = std::string(name ? name : "") + " " + std::to_string(year);
    std::cout << centered(toTerminal(title), title.size(), kGridWidth) << "\nKW Mo  Di  Mi  Do  Fr  Sa  So\n";
    std::vector<std::pair<const DatedHoliday*, Mark>> named;
    Mark marks[32] = {};
    for (const DatedHoliday& holiday : holidays) {
        const Mark mark = markOf(holiday, place);
        if (holiday.date.Month() != month || holiday.date.Year() != year || mark == Mark::None)
            continue;
        named.emplace_back(&holiday, mark);
        marks[holiday.date.DayOfMonth()] = std::max(marks[holiday.date.DayOfMonth()], mark);
    }
    const KZDate first(1, month, year);
    const unsigned days = first.DaysInMonth();
    for (unsigned day = 1; day <= days;) {
        const KZDate date(day, month, year);
        std::string line = padded(isoWeek(date)) + std::string(4 * (date.WeekDay() - 1), ' ');
        for (unsigned weekday = date.WeekDay(); weekday <= 7 && day <= days; ++weekday, ++day)
            line += dayCell(day, marks[day], color);
        while (!line.empty() && line.back() == ' ')
            line.pop_back();
        std::cout << line << '\n';
    }
    for (const auto& [holiday, mark] : named) {
        std::string cell = dayCell(holiday->date.DayOfMonth(), mark, color);
        if (cell.back() == ' ') // a coloured day has no marker to separate
            cell.pop_back();
        std::cout << cell << ' ' << toTerminal(holiday->name) << " (" << whereText(rowOf(*holiday)) << ")\n";
    }
}

// The first month shown and how many: YEAR, YEAR-MM, or nothing for this month.
struct Months {
    KZDate first;
    unsigned count;
};

Checked<Months> parseMonths(const std::vector<std::string>& words, YearSpan span)
{
    if (words.size() > 1)
        return refuse("cal takes one YEAR or YEAR-MM (see kzbs cal --help)");
    if (words.empty()) {
        const Checked<unsigned> year = thisYear(span);
        if (!year.ok())
            return year.refusal();
        return Months{KZDate(1, KZDate().Month(), year.value()), 1u};
    }
    const std::string& word = words[0];
    const size_t dash = word.find('-');
    const Checked<unsigned> year = parseYear(word.substr(0, dash), span);
    if (!year.ok())
        return year.refusal();
    if (dash == std::string::npos)
        return Months{KZDate(1, 1, year.value()), 12u};
    const std::string month = word.substr(dash + 1);
    if (month.size() != 2 || month.find_first_not_of("0123456789") != std::string::npos || month < "01" || month > "12")
        return refuse("not a month: '" + word + "' (use YYYY-MM, such as 2026-08)");
    return Months{KZDate(1, static_cast<unsigned>(std::stoul(month)), year.value()), 1u};
}

int cal(const CalRequest& request)
{
    const Place place = parsePlace(request.place).value();
    const Months months = parseMonths(request.words, spanOf(place.classic)).value();
    const KZDate first = months.first;
    const KZDate last(1, first.Month() + months.count - 1, first.Year());
    // Every holiday anywhere: the grid marks those of the place, and those of
    // its regions apart.
    Place everywhere = place;
    everywhere.land = place.classic ? place.land : XX;
    everywhere.region.clear();
    const std::vector<DatedHoliday> holidays =
        holidaysAt({first, KZDate(last.DaysInMonth(), last.Month(), last.Year())}, everywhere).value();
    const bool color = colorWanted(request.color);
    for (unsigned month = first.Month(); month <= last.Month(); ++month) {
        if (month != first.Month())
            std::cout << '\n';
        printMonth(first.Year(), month, holidays, place, color);
    }
    return 0;
}

Checked<int> parseCount(const std::vector<std::string>& words)
{
    if (words.empty())
        return 1;
    const std::string& text = words[0];
    const bool number = words.size() == 1 && !text.empty() && text.size() <= 4
                        && text.find_first_not_of("0123456789") == std::string::npos;
    const int count = number ? std::stoi(text) : 0;
    if (count < 1 || count > kMostHolidays)
        return refuse(words.size() > 1 ? "next takes one number N (see kzbs next --help)"
                                       : "N must be a whole number from 1 to " + std::to_string(kMostHolidays)
                                             + ", not '" + text + "'");
    return count;
}

int next(const NextRequest& request)
{
    const Place place = parsePlace(request.place).value();
    const std::size_t count = static_cast<std::size_t>(parseCount(request.words).value());
    const KZDate from = request.from ? parseDate(*request.from, spanOf(place.classic)).value() : KZDate();
    std::vector<DatedHoliday> found;
    for (unsigned year = from.Year(); year <= kLastYear && found.size() < count; ++year) {
        const KZDate start = year == from.Year() ? from : KZDate(1, 1, year);
        const std::vector<DatedHoliday> holidays = holidaysAt({start, KZDate(31, 12, year)}, place).value();
        found.insert(found.end(), holidays.begin(), holidays.end());
    }
    if (found.size() > count)
        found.resize(count);
    printHolidayRows(std::cout, rowsOf(found), request.format);
    return 0;
}

} // namespace

void addCalendarCommands(Program& program)
{
    auto grid = std::make_shared<CalRequest>();
    CLI::App& calCommand = program.add("cal", "month calendars with week numbers and the holidays marked", kCalHelp,
                                       [grid] { return cal(*grid); });
    addPlaceOptions(calCommand, grid->place);
    calCommand.add_option("--color", grid->color)->check(CLI::IsMember({"auto", "always", "never"}));
    program.addWords(calCommand, grid->words);

    auto coming = std::make_shared<NextRequest>();
    CLI::App& nextCommand = program.add("next", "the next public holidays from today or a date", kNextHelp,
                                        [coming] { return next(*coming); });
    addPlaceOptions(nextCommand, coming->place);
    addOptional(nextCommand, "--from", coming->from);
    nextCommand.add_option("--format", coming->format)->check(CLI::IsMember({"text", "csv", "json"}));
    program.addWords(nextCommand, coming->words);
}

} // namespace kzbs
