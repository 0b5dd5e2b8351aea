// kzbs holidays, is-holiday, easter: the holiday calendar from the command line.
//
// Years are limited to 1583..4099, the span in which the library's Easter is
// the Gregorian one; this also keeps clear of its two-digit-year rule, which
// would read a year of 137 or less as 1900 plus that year.
#include "commands.h"

#include "KZCalendar.h"
#include "KZDate.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace kzbs {

namespace {

constexpr unsigned kFirstYear = 1583;
constexpr unsigned kLastYear = 4099;

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

struct Period {
    KZDate from;
    KZDate to;
};

bool allDigits(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return false;
    return true;
}

std::string yearRangeText()
{
    return std::to_string(kFirstYear) + ".." + std::to_string(kLastYear);
}

// A year as the user wrote it; nullopt (with the error written) when it is no
// number or outside the span the library answers correctly for.
std::optional<unsigned> parseYear(const std::string& text, int& status)
{
    if (!allDigits(text) || text.size() > 9) {
        status = fail("not a year: '" + text + "'");
        return std::nullopt;
    }
    const unsigned long year = std::stoul(text);
    if (year < kFirstYear || year > kLastYear) {
        status = fail("year " + text + " is outside " + yearRangeText());
        return std::nullopt;
    }
    return static_cast<unsigned>(year);
}

// Splits "A<sep>B<sep>C" into three all-digit parts of the given lengths
// (0: one or two digits).
bool splitNumbers(const std::string& text, char separator, const size_t (&lengths)[3], unsigned (&parts)[3])
{
    size_t start = 0;
    for (int i = 0; i < 3; ++i) {
        const size_t end = i < 2 ? text.find(separator, start) : text.size();
        if (end == std::string::npos)
            return false;
        const std::string part = text.substr(start, end - start);
        const bool lengthOk = lengths[i] ? part.size() == lengths[i] : (part.size() == 1 || part.size() == 2);
        if (!allDigits(part) || !lengthOk)
            return false;
        parts[i] = static_cast<unsigned>(std::stoul(part));
        start = end + 1;
    }
    return true;
}

// YYYY-MM-DD or DD.MM.YYYY.
std::optional<KZDate> parseDate(const std::string& text, int& status)
{
    unsigned parts[3] = {0, 0, 0};
    unsigned day, month, year;
    if (splitNumbers(text, '-', {4, 2, 2}, parts)) {
        year = parts[0], month = parts[1], day = parts[2];
    } else if (splitNumbers(text, '.', {0, 0, 4}, parts)) {
        day = parts[0], month = parts[1], year = parts[2];
    } else {
        status = fail("not a date: '" + text + "' (use YYYY-MM-DD or DD.MM.YYYY)");
        return std::nullopt;
    }
    if (year < kFirstYear || year > kLastYear) {
        status = fail("the year of " + text + " is outside " + yearRangeText());
        return std::nullopt;
    }
    if (!KZDate::DayWithinMonth(month, day, year)) {
        status = fail("no such date: " + text);
        return std::nullopt;
    }
    return KZDate(day, month, year);
}

// A period end: a full date, or a bare year meaning its first or last day.
std::optional<KZDate> parsePeriodEnd(const std::string& text, bool isEnd, int& status)
{
    if (allDigits(text)) {
        const std::optional<unsigned> year = parseYear(text, status);
        if (!year)
            return std::nullopt;
        return isEnd ? KZDate(31, 12, *year) : KZDate(1, 1, *year);
    }
    return parseDate(text, status);
}

// Latin-1 lower case with umlauts and sharp s spelled out, so "Th\xFCringen",
// "THUERINGEN" and "thueringen" compare equal.
std::string foldStateName(const std::string& latin1)
{
    std::string folded;
    for (char raw : latin1) {
        unsigned char c = static_cast<unsigned char>(raw);
        if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
            c = static_cast<unsigned char>(c + 0x20);
        switch (c) {
        case 0xE4: folded += "ae"; break;
        case 0xF6: folded += "oe"; break;
        case 0xFC: folded += "ue"; break;
        case 0xDF: folded += "ss"; break;
        default: folded += static_cast<char>(c < 0x80 ? std::tolower(c) : c);
        }
    }
    return folded;
}

bool isAscii(const std::string& text)
{
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

std::optional<BundesLand> parseState(const std::string& text, int& status)
{
    const Bundeslaender states;
    const std::string wanted = foldStateName(isAscii(text) ? text : fromTerminal(text));
    const BundesLand* all = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 16; ++i) {
        if (wanted == foldStateName(states.getName(all[i], false)) ||
            wanted == foldStateName(states.getName(all[i], true)))
            return all[i];
    }
    status = fail("unknown federal state '" + text + "' (use e.g. BY or Bayern)");
    return std::nullopt;
}

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

std::string isoDate(const KZDate& date)
{
    unsigned month, day, year;
    date.Mdy(month, day, year);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u", year, month, day);
    return buffer;
}

std::string weekdayName(const KZDate& date)
{
    const char* name = KZDate::DayName(date.WeekDay(0));
    return name ? toTerminal(name) : std::string();
}

// Pads to a width counted in characters, not UTF-8 bytes.
std::string padded(const std::string& latin1, size_t width)
{
    return toTerminal(latin1) + std::string(latin1.size() < width ? width - latin1.size() : 0, ' ');
}

std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string jsonString(const std::string& utf8)
{
    std::string quoted = "\"";
    for (char c : utf8) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, "\\u%04x", static_cast<unsigned>(c));
            quoted += buffer;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

void printHolidays(const std::list<PublicHolidayInfo>& holidays, const std::string& format)
{
    if (format == "csv") {
        std::cout << "date,weekday,name,states\n";
        for (const PublicHolidayInfo& h : holidays) {
            const KZDate date = h.getDate();
            std::cout << isoDate(date) << ',' << csvField(weekdayName(date)) << ','
                      << csvField(toTerminal(h.m_name)) << ',' << csvField(join(statesOf(h))) << '\n';
        }
    } else if (format == "json") {
        std::cout << "[";
        const char* separator = "\n";
        for (const PublicHolidayInfo& h : holidays) {
            const KZDate date = h.getDate();
            const std::vector<std::string> states = statesOf(h);
            std::cout << separator << "  {\"date\": " << jsonString(isoDate(date))
                      << ", \"weekday\": " << jsonString(weekdayName(date))
                      << ", \"name\": " << jsonString(toTerminal(h.m_name)) << ", \"states\": [";
            for (size_t i = 0; i < states.size(); ++i)
                std::cout << (i ? ", " : "") << jsonString(states[i]);
            std::cout << "]}";
            separator = ",\n";
        }
        std::cout << (holidays.empty() ? "]\n" : "\n]\n");
    } else {
        for (const PublicHolidayInfo& h : holidays) {
            const KZDate date = h.getDate();
            const char* day = KZDate::DayName(date.WeekDay(0));
            std::cout << isoDate(date) << "  " << padded(day ? day : "", 10) << "  " << padded(h.m_name, 25)
                      << "  " << join(statesOf(h)) << '\n';
        }
    }
}

// Reads --state into `land` (0 when absent); false after an error.
bool readStateOption(Args& args, BundesLand& land, int& status)
{
    land = XX;
    const std::optional<std::string> state = args.option("--state");
    if (!state)
        return true;
    const std::optional<BundesLand> parsed = parseState(*state, status);
    if (!parsed)
        return false;
    land = *parsed;
    return true;
}

} // namespace

int runHolidays(Args& args)
{
    if (args.answeredHelp(kHolidaysHelp))
        return 0;
    int status = 0;
    BundesLand land = XX;
    if (!readStateOption(args, land, status))
        return status;
    const std::string format = args.option("--format").value_or("text");
    const std::vector<std::string> words = args.positional();
    if (!args.error().empty())
        return fail(args.error());
    if (format != "text" && format != "csv" && format != "json")
        return fail("unknown format '" + format + "' (text, csv or json)");

    Period period;
    if (words.empty()) {
        const unsigned year = KZDate().Year();
        if (year < kFirstYear || year > kLastYear)
            return fail("this year (" + std::to_string(year) + ") is outside " + yearRangeText());
        period = {KZDate(1, 1, year), KZDate(31, 12, year)};
    } else if (words.size() == 1) {
        const std::optional<unsigned> year = parseYear(words[0], status);
        if (!year)
            return status;
        period = {KZDate(1, 1, *year), KZDate(31, 12, *year)};
    } else if (words.size() == 2) {
        const std::optional<KZDate> from = parsePeriodEnd(words[0], false, status);
        if (!from)
            return status;
        const std::optional<KZDate> to = parsePeriodEnd(words[1], true, status);
        if (!to)
            return status;
        if (to->CompareTo(*from) < 0)
            return fail("the period " + words[0] + " .. " + words[1] + " ends before it begins");
        period = {*from, *to};
    } else {
        return fail("holidays takes a year or a period FROM TO (see kzbs holidays --help)");
    }
    printHolidays(KZCalendar::getPublicHolidaysInPeriod(period.from, period.to, land), format);
    return 0;
}

int runIsHoliday(Args& args)
{
    if (args.answeredHelp(kIsHolidayHelp))
        return 0;
    int status = 0;
    BundesLand land = XX;
    if (!readStateOption(args, land, status))
        return status;
    const std::vector<std::string> words = args.positional();
    if (!args.error().empty())
        return fail(args.error());
    if (words.size() != 1)
        return fail("is-holiday takes one date (see kzbs is-holiday --help)");
    const std::optional<KZDate> date = parseDate(words[0], status);
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
    const bool holiday = KZCalendar::isPublicHoliday(*date, land) == 0;
    if (land != XX) {
        const Bundeslaender states;
        std::cout << (holiday ? "a public holiday in " : "not a public holiday in ") << states.getName(land, false)
                  << '\n';
    }
    return holiday ? 0 : 1;
}

int runEaster(Args& args)
{
    if (args.answeredHelp(kEasterHelp))
        return 0;
    const std::vector<std::string> words = args.positional();
    if (!args.error().empty())
        return fail(args.error());
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

} // namespace kzbs
