// Lists of holidays as kzbs prints them: aligned text, CSV or JSON, each with
// the date, the weekday, the name and where the holiday holds.
#ifndef KZBS_HOLIDAY_TABLE_H
#define KZBS_HOLIDAY_TABLE_H

#include "KZDate.h"
#include "KZHolidayLaw.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kzbs {

struct HolidayRow {
    KZDate date;
    std::string name;                 // Windows-1252, as the library has it
    std::vector<std::string> states;  // abbreviations, in the library's order of the states
    std::vector<std::string> regions; // "SN-BZ": region BZ of Sachsen, ordered by state
    std::vector<std::pair<std::string, std::string>> stateNames = {}; // {"BW", its law's name} where that differs
};

// The abbreviations of the states in a mask: "BW", "BY", "ST".
std::vector<std::string> statesOf(int mask);
// A holiday of the law or the classic table as a row, with the names the
// states' laws give it where they differ.
HolidayRow rowOf(const DatedHoliday& holiday);
std::vector<HolidayRow> rowsOf(const std::vector<DatedHoliday>& holidays);

// "BW BY ST", "alle" (all sixteen), or with regions "SL, BY-A BY-KATH": whole
// states first, then the regions of each state as one group.
std::string whereText(const HolidayRow& row);

// format: "text", "csv" or "json".
void printHolidayRows(std::ostream& out, const std::vector<HolidayRow>& rows, const std::string& format);

} // namespace kzbs

#endif // KZBS_HOLIDAY_TABLE_H
