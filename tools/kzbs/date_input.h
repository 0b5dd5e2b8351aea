// Dates, years, periods and federal states as users type them on the command
// line. Each parser returns the value or the message that refuses the words
// (checked.h).
//
// Years are limited to 1583..4099, the span in which the library's Easter is
// the Gregorian one; this also keeps clear of its two-digit-year rule, which
// would read a year of 137 or less as 1900 plus that year.
#ifndef KZBS_DATE_INPUT_H
#define KZBS_DATE_INPUT_H

#include "checked.h"

#include "KZCalendar.h"
#include "KZDate.h"

#include <optional>
#include <string>
#include <vector>

namespace kzbs {

constexpr unsigned kFirstYear = 1583;
constexpr unsigned kLastYear = 4099;

struct Period {
    KZDate from;
    KZDate to;
};

// The years a command answers for, as its messages name them: the library's
// fixed table and Easter reach over all of 1583..4099, the holiday laws begin
// in 1990. The parsers accept 1583..4099 either way, so that a year before
// the laws gets the message that points to --classic.
enum class YearSpan { Table, Law };

// "1583..4099" or "1990..4099", for messages.
std::string yearRangeText(YearSpan span = YearSpan::Table);

Checked<unsigned> parseYear(const std::string& text, YearSpan span = YearSpan::Table);
// The year of today's date (the library's clock).
Checked<unsigned> thisYear(YearSpan span = YearSpan::Table);
// YYYY-MM-DD or DD.MM.YYYY.
Checked<KZDate> parseDate(const std::string& text, YearSpan span = YearSpan::Table);
// A full date, or a bare year meaning its first (FROM) or last (TO) day.
Checked<KZDate> parsePeriodEnd(const std::string& text, bool isEnd, YearSpan span = YearSpan::Table);
// FROM TO, the end not before the start.
Checked<Period> parsePeriod(const std::string& from, const std::string& to, YearSpan span = YearSpan::Table);
// This year, or one year, or FROM TO.
Checked<Period> parseYearOrPeriod(const std::vector<std::string>& words, YearSpan span = YearSpan::Table);

// An abbreviation (BY) or a name in any case, UTF-8 umlauts or spelled out
// (Th\xC3\xBCringen, THUERINGEN).
Checked<KZBasicServices::BundesLand> parseState(const std::string& text);

// YYYY-MM-DD.
std::string isoDate(const KZDate& date);
// The German weekday name, UTF-8.
std::string weekdayName(const KZDate& date);

} // namespace kzbs

#endif // KZBS_DATE_INPUT_H
