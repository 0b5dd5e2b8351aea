// KZWorkdays.h - counting working days and stepping over them.
//
// A working day is a day of the working week that is no public holiday of
// the chosen calendar: the law's (KZHolidayLaw.h) or the classic table's
// (KZCalendar.h), for one state and optional region, or for a mask of states
// (Alle, the default: only the holidays that hold in all sixteen states
// count; XX, 0: every holiday of any state or region counts). The week is
// Monday to Friday, or Monday to Saturday (Werktage); 24 and 31 December may
// be taken as free days too. A date that is a holiday twice (1 May 2008:
// Tag der Arbeit and Christi Himmelfahrt) is one free day.
//
// Range: dates from 1583 to 4099 (the Gregorian years Easter is computed
// for); under the law from 1990 on. Regions exist under the law only: a
// region with the classic table is UnknownRegion. On any status but Ok the
// result is 0, false or the null date.
//
// Counting does not walk day by day: whole weeks are counted at once and the
// holidays of each year subtracted, so a century costs about as much as a
// few hundred holiday lookups.
//
// Invariants: WorkdayCalendar is a plain value; the functions are reentrant
// and may run on any thread.
#ifndef KZ_WORKDAYS_H
#define KZ_WORKDAYS_H

#include "KZCalendar.h"
#include "KZDate.h"
#include "KZExport.h"
#include "KZHolidayLaw.h"

#include <string>

// Which days count as working days.
struct KZBS_API WorkdayCalendar {
    KZBasicServices::BundesLand land = KZBasicServices::Alle;
    std::string region;                      // a region of `land` (a single state), or ""
    bool classic = false;                    // the classic table instead of the law
    int daysPerWeek = 5;                     // 5: Monday-Friday; 6: Monday-Saturday
    bool christmasAndNewYearsEveOff = false; // 24 and 31 December are free
};

class KZBS_API KZWorkdays {
public:
    // Ok, BeforeFirstYear and UnknownRegion have the meaning and the value
    // they have in KZHolidayLaw::Status; OutOfRange is 4 here but 3 there,
    // as 3 is BadWeek here. The values are fixed; compare codes by name
    // across the two.
    enum Status : int {
        Ok = 0,
        BeforeFirstYear = 1, // the law's rule set does not reach that year
        UnknownRegion = 2,
        BadWeek = 3,   // daysPerWeek is neither 5 nor 6
        OutOfRange = 4 // a null date, or a result outside 1583..4099
    };

    // Whether `date` is a working day.
    [[nodiscard]] static Status isWorkday(const KZDate& date, const WorkdayCalendar& calendar, bool& result);

    // The working days from `from` to `to`, both included; 0 when to is
    // before from.
    [[nodiscard]] static Status count(const KZDate& from, const KZDate& to, const WorkdayCalendar& calendar,
                                      long& result);

    // The n-th working day after `date` (n > 0) or before it (n < 0), `date`
    // itself not counted; n = 0 gives `date` when it is a working day, else
    // the next working day. Long steps are estimated by weeks and then
    // corrected, so a century costs a few counts. A step that would end
    // before 1990 under the law is BeforeFirstYear; one that would leave
    // 1583..4099 otherwise is OutOfRange.
    [[nodiscard]] static Status advance(const KZDate& date, long n, const WorkdayCalendar& calendar, KZDate& result);
};

#endif // KZ_WORKDAYS_H
