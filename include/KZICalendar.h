// KZICalendar.h - holidays as an iCalendar file (RFC 5545), for calendar
// programs to import.
//
// The file is a VCALENDAR (VERSION:2.0, PRODID) with one all-day VEVENT per
// holiday: DTSTART;VALUE=DATE on the day and DTEND on the next, SUMMARY in
// UTF-8 with TEXT escaping, DTSTAMP, and a UID made from the date and the
// name alone, so exporting the same holiday again gives the same UID and
// calendar programs update rather than duplicate it. Lines end in CRLF and
// are folded at 75 octets, never inside a UTF-8 character.
//
// Invariants: pure functions of their arguments; any thread.
#ifndef KZ_ICALENDAR_H
#define KZ_ICALENDAR_H

#include "KZExport.h"
#include "KZHolidayLaw.h"

#include <ctime>
#include <string>
#include <vector>

struct KZBS_API ICalendarOptions {
    std::string prodId = "-//KzBasicServices//kzbs//DE";
    std::string uidDomain = "kzbasicservices.invalid"; // the part after '@' in every UID
    std::time_t stamp = 0;                             // DTSTAMP (UTC); 0: CrossPlatformApi::now()
};

class KZBS_API KZICalendar {
public:
    // The whole calendar, UTF-8 with CRLF line ends, events in the order
    // given. Names are converted from Windows-1252 (every byte, so any name
    // converts); where a holiday holds (states, regions) goes into
    // DESCRIPTION. A holiday whose date no iCalendar DATE can hold (the null
    // date, years after 9998) is left out. prodId and uidDomain are written
    // as TEXT, escaped.
    [[nodiscard]] static std::string write(const std::vector<DatedHoliday>& holidays,
                                           const ICalendarOptions& options = {});

    // One content line ("NAME:value", UTF-8) folded at 75 octets, with CRLF.
    // Continuation lines start with one space, which counts in their 75. A
    // content line cannot hold CR or LF; any there are dropped.
    [[nodiscard]] static std::string foldLine(const std::string& line);
    // A TEXT value with backslash, semicolon, comma and newline (LF, CR LF or
    // a lone CR) escaped. Other control characters but TAB cannot stand in
    // TEXT and are dropped.
    [[nodiscard]] static std::string escapeText(const std::string& utf8);
};

#endif // KZ_ICALENDAR_H
