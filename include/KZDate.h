// KZDate.h - calendar dates.
//
// A KZDate is one unsigned 32-bit Julian Day Number in the proleptic Gregorian
// calendar (1 January 1901 = 2415386, 1 January 1970 = 2440588, 1 January 2000
// = 2451545). Day number 0 is the null date: constructors yield it for an
// invalid day/month/year; everything else computes from it as from any number
// (its parts read as 28 February 2935093). Date arithmetic is integer
// arithmetic on the day number, wrapping modulo 2^32. Parts are read modulo
// 2^30 days from 1 March of year 0 (day number 1721120), so every number
// reads as a date between then and 5 June 2939805.
//
// Two-digit years: wherever a date is built from a year, a year of 137 or less
// means 1900 plus that year (0..99 -> 1900..1999, 100..137 -> 2000..2037).
// Weekdays are 1 = Monday .. 7 = Sunday, months 1 .. 12.
//
// Names of months and weekdays are German Latin-1 texts, held in four
// process-wide tables that SetIntlNames can replace. Those tables and the
// print settings (PrintOption, ShortDateFmt) are unguarded: set them at
// start-up, before other threads use dates. Everything else works on the value
// alone and may be called from any thread.
//
// "Today" is read through CrossPlatformApi::now() and converted with
// CrossPlatformApi::localtime_s, so a program (or a test) can pin the clock.
#ifndef KZ_DATE_H
#define KZ_DATE_H

#include "KZExport.h"

#include <cstdint>
#include <iosfwd>
#include <string>

class KZTime;

// The four name tables, for SetIntlNames / GetIntlName (int-based, so any
// number is a valid value; unknown ones are refused by those functions).
enum KZDateType : int {
    MonthNames = 0,      // "Januar" .. "Dezember": output
    UpperMonthNames = 1, // "JANUAR" .. "DEZEMBER": input matching
    DayNames = 2,        // "Montag" .. "Sonntag": output
    UpperDayNames = 3    // "MONTAG" .. "SONNTAG": input matching
};

class KZBS_API KZDate {
public:
    // --- Construction ------------------------------------------------------

    // Today's local date.
    KZDate();
    // Jday(month, day, year): the null date when invalid.
    KZDate(unsigned day, unsigned month, unsigned year);
    // The month given by a (prefix of a) name, matched like IndexOfMonth; an
    // unknown name gives the null date.
    KZDate(unsigned day, const char* monthName, unsigned year);
    // year != 0: day of that year counted from 1 (Jday(12, 31, year - 1) plus
    // the number; not checked, so 366 of a common year is 1 January of the
    // next). year == 0: days since 1 January 1901 (0 is that day).
    KZDate(unsigned dayNumberOrDayOfYear, unsigned year);
    // The local date of a moment; the null date for the null time.
    KZDate(const KZTime& time);

    // --- Calendar arithmetic -----------------------------------------------

    // Day number of a date, 0 if invalid. Note the order: month first.
    // Applies the two-digit-year rule, then the arithmetic wraps modulo 2^32
    // for absurdly large years (no fault, just a meaningless number).
    static std::uint32_t Jday(unsigned month, unsigned day, unsigned year);
    // 1 for a Gregorian leap year, else 0 (no two-digit rule).
    static unsigned LeapYear(unsigned year);
    static unsigned DaysInYear(unsigned year);
    // Non-zero when day 1..length of month (1..12) in that year (no two-digit rule).
    static unsigned DayWithinMonth(unsigned month, unsigned day, unsigned year);

    // --- Names ---------------------------------------------------------------

    // Entry month-1 of the current MonthNames table; nullptr outside 1..12 or
    // when that table slot was made unusable (see SetIntlNames).
    static const char* MonthName(unsigned month);
    // Entry weekday-1 of the current DayNames table (1 = Monday); nullptr
    // outside 1..7 or for an unusable slot.
    static const char* DayName(unsigned weekday);
    // Month 1..12 whose UpperMonthNames entry starts with `name` ignoring ASCII
    // case; searched from December backwards, so ties go to the later month
    // ("Ju" is July, "" is December). 0 when nothing matches, for nullptr and
    // for an unusable slot.
    static unsigned IndexOfMonth(const char* name);
    // The same for weekdays against UpperDayNames ("" is Sunday).
    static unsigned DayOfWeek(const char* name);
    // Installs `names` (12 entries for month tables, 7 for day tables; the
    // caller keeps the array alive) as the table of that kind. With nullptr
    // the slot does NOT return to the defaults: it becomes unusable for
    // lookups (this is kept for compatibility), and lookups through it give
    // nullptr / 0 instead of reading garbage. An unknown kind is ignored.
    static void SetIntlNames(KZDateType type, const char** names);
    // Entry `index` (from 0) of the current table of that kind; nullptr when
    // the index lies outside the table, the kind is unknown or the slot is
    // unusable.
    static const char* GetIntlName(KZDateType type, int index);

    // --- Parts -----------------------------------------------------------------

    // Note the order: month, day, year.
    void Mdy(unsigned& month, unsigned& day, unsigned& year) const;
    unsigned Month() const;
    unsigned DayOfMonth() const;
    unsigned Year() const;
    // Day of the year, 1..366.
    unsigned Day() const;
    // n == 0: weekday of this date (1 = Monday .. 7 = Sunday). n != 0: the
    // weekday of the date with month n and day-of-month equal to THIS date's
    // month, in this date's year (an odd argument order kept for
    // compatibility); an impossible date there yields 1.
    unsigned WeekDay(unsigned n = 0) const;
    // The latest date on or before this one that falls on `weekday`; the date
    // itself when it already does. Previous(0) steps back weekday + 7 days.
    KZDate Previous(unsigned weekday) const;
    KZDate Previous(const char* dayName) const;
    // Length of `month` in this date's year (0 = this date's month); 0 outside 1..12.
    unsigned DaysInMonth(unsigned month = 0) const;
    // Day of this date's year on which `month` begins; 0 outside 1..12 (and,
    // unlike DaysInMonth, also for 0).
    unsigned FirstDayOfMonth(unsigned month) const;

    // --- Comparison --------------------------------------------------------------

    int CompareTo(const KZDate& other) const;
    unsigned Hash() const { return m_day; }
    // Day number of the later / earlier date; this one's on equality.
    std::uint32_t Max(const KZDate& other) const;
    std::uint32_t Min(const KZDate& other) const;

    // --- Text ------------------------------------------------------------------

    // The layout of operator<< (0..4, see there); any other value prints nothing.
    static int PrintOption;
    // The default pattern of ParseFrom(text, pattern).
    static char ShortDateFmt[12];

    // What operator<< writes, as a string.
    std::string AsString() const;
    // Reads a date typed in free form: "Januar 15 2010 ", "15. Januar 2010 ",
    // "1/15/2010 " (numbers are month, day). A character must follow the year.
    // On failure the date is null and the stream's bad bit is set; a stream
    // that ends before the second field leaves the null date without error.
    // Bounds: a month name is at most 10 letters (the rest of a longer word
    // stays in the stream), numbers are read by the stream's unsigned
    // extraction (too many digits fail it), and nothing is allocated; the
    // time is linear in the characters read.
    void ParseFrom(std::istream& in);
    // Reads a date by a pattern of d/D (day), m/M (month) and y/Y (year) runs;
    // every other pattern character skips one text character unseen. Day and
    // month take up to two digits; a year field takes 4 characters when the
    // text starts with more than two digits, else 2. nullptr pattern means
    // ShortDateFmt; nullptr text gives the null date. Fields are never read
    // past the end of the text, and at most 2 digits of a day or month and 4
    // characters of a year are converted, however long the field's digits
    // or pattern run; nothing is allocated. On failure the date is null.
    void ParseFrom(const char* text, const char* pattern);

private:
    std::uint32_t m_day;
};

static_assert(sizeof(KZDate) == 4, "a KZDate is exactly its day number");

// New dates n days later / earlier, wrapping modulo 2^32, unchecked.
KZBS_API KZDate operator+(const KZDate& date, int days);
KZBS_API KZDate operator+(int days, const KZDate& date);
KZBS_API KZDate operator-(const KZDate& date, int days);

// The date in the layout chosen by KZDate::PrintOption, for 5 January 2010:
//   0 "Januar 5, 2010"   1 "05-Jan-2010"   2 "01/5/2010"   3 "05/1/2010"
//   4 "05 Januar 2010"   other: nothing.
// Only the first field is zero-padded in layouts 2 to 4 (kept for
// compatibility). A layout needing a month name stops where the name is
// unavailable. The whole text is written as one item, so the target stream's
// width and fill apply to it.
KZBS_API std::ostream& operator<<(std::ostream& out, const KZDate& date);

#endif // KZ_DATE_H
