#include "holiday_table.h"

#include "cli.h"
#include "date_input.h"

#include <algorithm>
#include <cstdio>

using namespace KZBasicServices;

namespace kzbs {

namespace {

std::string join(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& w : words)
        text += (text.empty() ? "" : separator) + w;
    return text;
}

// The state part of "SN-BZ".
std::string stateOf(const std::string& region)
{
    return region.substr(0, region.find('-'));
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

void printCsv(std::ostream& out, const std::vector<HolidayRow>& rows)
{
    out << "date,weekday,name,states\n";
    for (const HolidayRow& row : rows)
        out << isoDate(row.date) << ',' << csvField(weekdayName(row.date)) << ',' << csvField(toTerminal(row.name))
            << ',' << csvField(whereText(row)) << '\n';
}

void printJson(std::ostream& out, const std::vector<HolidayRow>& rows)
{
    out << "[";
    const char* separator = "\n";
    for (const HolidayRow& row : rows) {
        std::vector<std::string> where = row.states;
        where.insert(where.end(), row.regions.begin(), row.regions.end());
        out << separator << "  {\"date\": " << jsonString(isoDate(row.date))
            << ", \"weekday\": " << jsonString(weekdayName(row.date))
            << ", \"name\": " << jsonString(toTerminal(row.name)) << ", \"states\": [";
        for (size_t i = 0; i < where.size(); ++i)
            out << (i ? ", " : "") << jsonString(where[i]);
        out << "]";
        const char* before = ", \"state_names\": {";
        for (const auto& own : row.stateNames) {
            out << before << jsonString(own.first) << ": " << jsonString(toTerminal(own.second));
            before = ", ";
        }
        out << (row.stateNames.empty() ? "}" : "}}");
        separator = ",\n";
    }
    out << (rows.empty() ? "]\n" : "\n]\n");
}

// Names up to 25 characters (all of the classic table's) keep the columns of
// the classic listing; longer ones widen the name column for the whole list.
void printText(std::ostream& out, const std::vector<HolidayRow>& rows)
{
    size_t nameWidth = 25;
    for (const HolidayRow& row : rows)
        nameWidth = std::max(nameWidth, row.name.size());
    for (const HolidayRow& row : rows) {
        const char* day = KZDate::DayName(row.date.WeekDay(0));
        out << isoDate(row.date) << "  " << padded(day ? day : "", 10) << "  " << padded(row.name, nameWidth) << "  "
            << whereText(row) << '\n';
    }
}

} // namespace

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
    rows.reserve(holidays.size());
    for (const DatedHoliday& holiday : holidays)
        rows.push_back(rowOf(holiday));
    return rows;
}

std::string whereText(const HolidayRow& row)
{
    std::string text = row.states.size() == 16 ? "alle" : join(row.states, " ");
    for (size_t i = 0; i < row.regions.size(); ++i) {
        const bool sameState = i > 0 && stateOf(row.regions[i]) == stateOf(row.regions[i - 1]);
        text += sameState ? " " : text.empty() ? "" : ", ";
        text += row.regions[i];
    }
    return text;
}

void printHolidayRows(std::ostream& out, const std::vector<HolidayRow>& rows, const std::string& format)
{
    if (format == "csv")
        printCsv(out, rows);
    else if (format == "json")
        printJson(out, rows);
    else
        printText(out, rows);
}

} // namespace kzbs
