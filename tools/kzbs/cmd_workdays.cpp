// kzbs workdays, workday: counting working days and stepping over them.
#include "commands.h"

#include "date_input.h"
#include "place_options.h"

#include "KZWorkdays.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace kzbs {

namespace {

const char kWorkdaysHead[] =
    "usage: kzbs workdays FROM TO [--state XX [--region R]] [--week 5|6] [--eves-off]\n"
    "                     [--classic]\n"
    "\n"
    "Counts the working days from FROM to TO, both included: the days of the\n"
    "working week that are no public holiday. The count is the first word of the\n"
    "line printed. A bare year as FROM or TO means its first or last day.\n"
    "\n";

const char kWorkdayHead[] =
    "usage: kzbs workday DATE N [--state XX [--region R]] [--week 5|6] [--eves-off]\n"
    "                    [--classic]\n"
    "\n"
    "Prints the N-th working day after DATE (N > 0) or before it (N < 0), DATE\n"
    "itself not counted; N = 0 gives DATE when it is a working day, else the next\n"
    "one. The date (YYYY-MM-DD) is the first word of the line printed.\n"
    "\n";

const char kOptionsHelp[] =
    "  --state XX      the holidays of one state: abbreviation (BY) or name\n"
    "                  (Bayern, Th\xC3\xBCringen); without it only the holidays that hold\n"
    "                  in all sixteen states count\n"
    "  --region R      with --state, the holidays of one of its regions too\n"
    "                  (BY A, BY KATH, SN BZ, TH EIC, TH UH, TH WAK)\n"
    "  --week 5|6      a week of Monday to Friday (5, the default) or of Monday to\n"
    "                  Saturday (6, Werktage)\n"
    "  --eves-off      24 and 31 December are no working days either\n"
    "  --classic       the library's fixed holiday table instead of the states'\n"
    "                  holiday laws (which are covered from 1990 on)\n"
    "\n"
    "Dates are YYYY-MM-DD or DD.MM.YYYY, from 1583 to 4099.\n"
    "\n"
    "examples:\n";

const char kWorkdaysExamples[] =
    "  kzbs workdays 2026-01-01 2026-12-31 --state BY\n"
    "  kzbs workdays 2026 2026 --state NW --eves-off\n";

const char kWorkdayExamples[] =
    "  kzbs workday 2026-12-22 10 --state BE\n"
    "  kzbs workday 2026-05-04 -5 --week 6\n";

struct WorkdayRequest {
    PlaceWords place;
    std::string week = "5";
    bool evesOff = false;
    std::vector<std::string> words;
};

// The calendar the options describe.
WorkdayCalendar calendarOf(const WorkdayRequest& request)
{
    const Place place = parsePlace(request.place).value();
    WorkdayCalendar calendar;
    calendar.land = place.land == XX ? Alle : place.land;
    calendar.region = place.region;
    calendar.classic = place.classic;
    calendar.daysPerWeek = request.week == "6" ? 6 : 5;
    calendar.christmasAndNewYearsEveOff = request.evesOff;
    return calendar;
}

// "Monday-Friday, holidays of BY-A by law, 24/31 December off".
std::string describe(const WorkdayCalendar& calendar)
{
    const Bundeslaender states;
    std::string text = calendar.daysPerWeek == 6 ? "Monday-Saturday, " : "Monday-Friday, ";
    text += calendar.land == Alle ? "nationwide holidays"
                                  : "holidays of " + states.getName(calendar.land, false)
                                        + (calendar.region.empty() ? "" : "-" + calendar.region);
    text += calendar.classic ? " in the classic table" : " by law";
    if (calendar.christmasAndNewYearsEveOff)
        text += ", 24/31 December off";
    return text;
}

// Why the library refused; `start` is the date asked about.
Refusal refusalOf(KZWorkdays::Status status, const KZDate& start, bool classic)
{
    switch (status) {
    case KZWorkdays::BeforeFirstYear:
        return beforeLaw(start.Year() < KZHolidayLaw::FirstYear ? std::to_string(start.Year()) : "the answer");
    case KZWorkdays::OutOfRange: return refuse("the answer lies outside " + yearRangeText(spanOf(classic)));
    default: return refuse("the working days cannot be computed for these options");
    }
}

// A whole number of at most seven digits, with an optional sign: every step
// that can end inside 1583..4099 fits, and nothing overflows.
Checked<long> parseSteps(const std::string& text)
{
    const size_t digits = text.size() - (!text.empty() && (text[0] == '-' || text[0] == '+'));
    const bool number = digits >= 1 && text.find_first_not_of("0123456789", text.size() - digits) == std::string::npos;
    if (!number)
        return refuse("N must be a whole number of working days such as 10 or -3, not '" + text + "'");
    if (digits > 7)
        return refuse("N must lie within -9999999..9999999, not " + text);
    return std::stol(text);
}

int workdays(const WorkdayRequest& request)
{
    const WorkdayCalendar calendar = calendarOf(request);
    if (request.words.size() != 2)
        return fail("workdays takes a period FROM TO (see kzbs workdays --help)");
    const Period period = parsePeriod(request.words[0], request.words[1], spanOf(calendar.classic)).value();
    long count = 0;
    const KZWorkdays::Status result = KZWorkdays::count(period.from, period.to, calendar, count);
    if (result != KZWorkdays::Ok)
        return fail(refusalOf(result, period.from, calendar.classic).message);
    std::cout << count << (count == 1 ? " working day from " : " working days from ") << isoDate(period.from) << " to "
              << isoDate(period.to) << " (" << describe(calendar) << ")\n";
    return 0;
}

int workday(const WorkdayRequest& request)
{
    const WorkdayCalendar calendar = calendarOf(request);
    if (request.words.size() != 2)
        return fail("workday takes a DATE and a number N (see kzbs workday --help)");
    const KZDate date = parseDate(request.words[0], spanOf(calendar.classic)).value();
    const long steps = parseSteps(request.words[1]).value();
    KZDate answer;
    const KZWorkdays::Status result = KZWorkdays::advance(date, steps, calendar, answer);
    if (result != KZWorkdays::Ok)
        return fail(refusalOf(result, date, calendar.classic).message);
    std::cout << isoDate(answer) << ' ' << weekdayName(answer) << " (" << describe(calendar) << ")\n";
    return 0;
}

void addWorkdayOptions(CLI::App& command, WorkdayRequest& request)
{
    addPlaceOptions(command, request.place);
    command.add_option("--week", request.week)->check(CLI::IsMember({"5", "6"}));
    command.add_flag("--eves-off", request.evesOff);
}

} // namespace

void addWorkdayCommands(Program& program)
{
    static const std::string workdaysHelp = std::string(kWorkdaysHead) + kOptionsHelp + kWorkdaysExamples;
    static const std::string workdayHelp = std::string(kWorkdayHead) + kOptionsHelp + kWorkdayExamples;
    auto count = std::make_shared<WorkdayRequest>();
    CLI::App& workdaysCommand = program.add("workdays", "the number of working days in a period", workdaysHelp.c_str(),
                                            [count] { return workdays(*count); });
    addWorkdayOptions(workdaysCommand, *count);
    program.addWords(workdaysCommand, count->words);

    auto step = std::make_shared<WorkdayRequest>();
    CLI::App& workdayCommand = program.add("workday", "the working day N working days after (or before) a date",
                                           workdayHelp.c_str(), [step] { return workday(*step); });
    addWorkdayOptions(workdayCommand, *step);
    program.addWords(workdayCommand, step->words);
}

} // namespace kzbs
