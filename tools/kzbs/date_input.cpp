#include "date_input.h"

#include "cli.h"

#include "KZHolidayLaw.h"

#include <cctype>
#include <cstdio>

using namespace KZBasicServices;

namespace kzbs {

namespace {

bool allDigits(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return false;
    return true;
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

} // namespace

std::string yearRangeText(YearSpan span)
{
    const unsigned first = span == YearSpan::Law ? KZHolidayLaw::FirstYear : kFirstYear;
    return std::to_string(first) + ".." + std::to_string(kLastYear);
}

Checked<unsigned> parseYear(const std::string& text, YearSpan span)
{
    if (!allDigits(text) || text.size() > 9) {
        return refuse("not a year: '" + text + "'");
    }
    const unsigned long year = std::stoul(text);
    if (year < kFirstYear || year > kLastYear) {
        return refuse("year " + text + " is outside " + yearRangeText(span));
    }
    return static_cast<unsigned>(year);
}

Checked<unsigned> thisYear(YearSpan span)
{
    const unsigned year = KZDate().Year();
    if (year < kFirstYear || year > kLastYear) {
        return refuse("this year (" + std::to_string(year) + ") is outside " + yearRangeText(span));
    }
    return year;
}

Checked<KZDate> parseDate(const std::string& text, YearSpan span)
{
    unsigned parts[3] = {0, 0, 0};
    unsigned day, month, year;
    if (splitNumbers(text, '-', {4, 2, 2}, parts)) {
        year = parts[0], month = parts[1], day = parts[2];
    } else if (splitNumbers(text, '.', {0, 0, 4}, parts)) {
        day = parts[0], month = parts[1], year = parts[2];
    } else {
        return refuse("not a date: '" + text + "' (use YYYY-MM-DD or DD.MM.YYYY)");
    }
    if (year < kFirstYear || year > kLastYear) {
        return refuse("the year of " + text + " is outside " + yearRangeText(span));
    }
    if (!KZDate::DayWithinMonth(month, day, year)) {
        return refuse("no such date: " + text);
    }
    return KZDate(day, month, year);
}

Checked<KZDate> parsePeriodEnd(const std::string& text, bool isEnd, YearSpan span)
{
    if (allDigits(text)) {
        const Checked<unsigned> year = parseYear(text, span);
        if (!year.ok())
            return year.refusal();
        return isEnd ? KZDate(31, 12, year.value()) : KZDate(1, 1, year.value());
    }
    return parseDate(text, span);
}

Checked<Period> parsePeriod(const std::string& fromText, const std::string& toText, YearSpan span)
{
    const Checked<KZDate> from = parsePeriodEnd(fromText, false, span);
    if (!from.ok())
        return from.refusal();
    const Checked<KZDate> to = parsePeriodEnd(toText, true, span);
    if (!to.ok())
        return to.refusal();
    if (to.value().CompareTo(from.value()) < 0) {
        return refuse("the period " + fromText + " .. " + toText + " ends before it begins");
    }
    return Period{from.value(), to.value()};
}

Checked<Period> parseYearOrPeriod(const std::vector<std::string>& words, YearSpan span)
{
    if (words.size() <= 1) {
        const Checked<unsigned> year = words.empty() ? thisYear(span) : parseYear(words[0], span);
        if (!year.ok())
            return year.refusal();
        return Period{KZDate(1, 1, year.value()), KZDate(31, 12, year.value())};
    }
    if (words.size() == 2)
        return parsePeriod(words[0], words[1], span);
    return refuse("holidays takes a year or a period FROM TO (see kzbs holidays --help)");
}

Checked<BundesLand> parseState(const std::string& text)
{
    const Bundeslaender states;
    const std::string wanted = foldStateName(isAscii(text) ? text : fromTerminal(text));
    const BundesLand* all = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 16; ++i) {
        if (wanted == foldStateName(states.getName(all[i], false))
            || wanted == foldStateName(states.getName(all[i], true)))
            return all[i];
    }
    return refuse("unknown federal state '" + text + "' (use e.g. BY or Bayern)");
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

} // namespace kzbs
