// KZHolidayLaw.h - the public holidays of the German federal states as their
// holiday laws (Feiertagsgesetze) have them, year by year, from 1990 on.
//
// KZCalendar.h keeps the library's classic table of fifteen holidays
// unchanged, for the applications that rely on it. This rule set stands
// beside it and follows the law: every rule holds from a first to a last
// year, in whole states or in one region of a state, and one-off days (the
// Reformationstag of 2017 in every state, Berlin's 8 May 2020) are rules of a
// single date. Regions are named by their vehicle registration code within
// their state (BY "A": the city of Augsburg).
//
// States and masks mean what they mean in KZCalendar: 0 accepts every holiday
// of every state and region; one state selects the holidays that hold in the
// whole state, plus those of its region when one is named; a mask of several
// states asks for the holidays that hold throughout all of them (Alle: in all
// sixteen).
//
// Years before 1990 are outside the rule set. The queries answer them with
// BeforeFirstYear rather than an empty list, so "no holiday" always means no
// holiday. Years after 4099 (where the Easter computation ends) are answered
// with OutOfRange in the same way.
//
// The holidays and their names (Windows-1252), for whereHolds and for
// readers of the lists:
//   in every state: "Neujahrstag", "Karfreitag", "Ostermontag", "Tag der
//     Arbeit", "Christi Himmelfahrt", "Pfingstmontag", "Tag der Deutschen
//     Einheit" (3 October, from 1990), "1. Weihnachtstag", "2. Weihnachtstag";
//   "Heilige Drei K\xF6nige" (BW, BY; ST from 1993), "Internationaler
//     Frauentag" (BE from 2019, MV from 2023), "Ostersonntag" and
//     "Pfingstsonntag" (BB from 1991; elsewhere they are holidays as every
//     Sunday is, which this list does not repeat), "Fronleichnam" (BW, BY,
//     HE, NW, RP, SL; regions SN BZ from 1993, TH EIC, UH, WAK from 1991),
//     "Augsburger Hohes Friedensfest" (8 August, BY A), "Mari\xE4
//     Himmelfahrt" (SL; BY A and KATH), "Weltkindertag" (20 September, TH from 2019),
//     "Reformationstag" (BB, MV, SN, ST, TH; HB, HH, NI, SH from 2018; every
//     state in 2017), "Allerheiligen" (BW, BY, NW, RP, SL), "Bu\xDF- und
//     Bettag" (every state up to 1994, SN only from 1995);
//   single dates: "Tag der deutschen Einheit" 17 June 1990 in the ten western
//     states (the old federal holiday, in its last year; Berlin is left out as
//     only its western part had it), "Tag der Befreiung" 8 May 2020 and
//     8 May 2025 in BE, "Jahrestag des Volksaufstandes vom 17. Juni 1953"
//     17 June 2028 in BE.
// For 1990 the eastern states get the nationwide days for the whole year;
// their own days start in 1991 at the earliest.
//
// A state's law sometimes calls a day otherwise (Baden-W\xFCrttemberg's
// "Erscheinungsfest", Brandenburg's "Reformationsfest", Berlin's
// "Frauentag"): nameInState gives that name. The lists keep the common name.
//
// Invariants: the rules are constant data built at compile time; each year
// is worked out from them once, on its first question, and shared by every
// thread without a lock (at most one small record per year of 1990..4099 is
// kept). Every function is reentrant and may run on any thread. Names are
// German, Windows-1252, as in the rest of the library.
#ifndef KZ_HOLIDAY_LAW_H
#define KZ_HOLIDAY_LAW_H

#include "KZCalendar.h"
#include "KZDate.h"
#include "KZExport.h"

#include <string>
#include <vector>

namespace KZBasicServices {

// A part of one state with holidays of its own.
struct HolidayRegion {
    BundesLand state;
    const char* code;        // vehicle registration code: "A", "KATH", "BZ", "EIC", ...
    const char* description; // German, Windows-1252
};

} // namespace KZBasicServices

// One holiday on one date and where it holds in that year.
struct KZBS_API DatedHoliday {
    KZDate date;
    std::string name; // German, Windows-1252
    int states = 0;   // BundesLand mask of the states where it holds throughout
    std::vector<const KZBasicServices::HolidayRegion*> regions; // where it holds in a region only
};

class KZBS_API KZHolidayLaw {
public:
    static constexpr int FirstYear = 1990;
    static constexpr int LastYear = 4099;

    // KZWorkdays::Status uses the same names for the same answers, and the
    // same values but one: OutOfRange is 3 here and 4 there, where 3 is
    // BadWeek. The values are fixed; compare codes by name across the two.
    enum Status : int {
        Ok = 0,
        BeforeFirstYear = 1, // the question reaches before 1990
        UnknownRegion = 2,   // no such region in the state (or no single state given)
        OutOfRange = 3       // the question reaches after 4099 (a null date does)
    };

    // Every region known, ordered by state and code.
    static const std::vector<KZBasicServices::HolidayRegion>& regions();
    // The region `code` of `state` (exact, case-sensitive); nullptr if none.
    static const KZBasicServices::HolidayRegion* findRegion(KZBasicServices::BundesLand state, const std::string& code);

    // The holidays from `from` to `to` (both included) for `land` and the
    // optional `region` ("" none), sorted by date; two on one day keep rule
    // order. `out` is replaced; it is empty when to is before from. Each
    // holiday carries every place where it holds that year, not only `land`.
    // An unknown region is reported first, then a reversed period (Ok,
    // empty), then the years.
    [[nodiscard]] static Status holidaysInPeriod(const KZDate& from, const KZDate& to, KZBasicServices::BundesLand land,
                                                 const std::string& region, std::vector<DatedHoliday>& out);

    // 0: a holiday that holds in `land` (and `region`) falls on `date`;
    // 2: holidays fall on it that hold elsewhere only; 1: no holiday anywhere;
    // -1: `date` is before 1990; -2: unknown region; -3: after 4099 (the
    // negated Status codes).
    [[nodiscard]] static int isPublicHoliday(const KZDate& date, KZBasicServices::BundesLand land,
                                             const std::string& region = "");

    // Where the holiday called `name` (exact, Windows-1252) holds in `year`:
    // the mask of whole states and the regions. An unknown name, or one not
    // in force that year, gives Ok with states 0 and no regions.
    [[nodiscard]] static Status whereHolds(const std::string& name, int year, int& states,
                                           std::vector<const KZBasicServices::HolidayRegion*>& regions);

    // The name the law of `state` (one state) gives `holiday`: its common
    // name mostly, "Erscheinungsfest" for Heilige Drei K\xF6nige in BW, say.
    // "" when the holiday holds neither throughout `state` nor in one of its
    // regions, or `state` is not exactly one state.
    static std::string nameInState(const DatedHoliday& holiday, KZBasicServices::BundesLand state);

    // The classic table's holidays (KZCalendar::getPublicHolidaysInPeriod) in
    // the same form, without regions; for code that handles both rule sets.
    static std::vector<DatedHoliday> classicHolidaysInPeriod(const KZDate& from, const KZDate& to,
                                                             KZBasicServices::BundesLand land);
};

#endif // KZ_HOLIDAY_LAW_H
