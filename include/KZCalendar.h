// KZCalendar.h - the public holidays of the sixteen German federal states.
//
// States are bit flags (KZBasicServices::BundesLand, combinable into masks; 0
// no state, 65535 all) or numbers 1..16 (BundesLandId). Bundeslaender names
// them. The fifteen holidays the library knows are the rows of g_holiday_Info:
// fixed days, days relative to Easter Sunday and the Day of Repentance, each
// with the mask of the states where it is a public holiday. KZCalendar
// resolves them for dates and periods. No other holiday (no Easter Sunday, no
// Whit Sunday, no local ones) is known, and the table cannot be changed.
//
// Years are handed to KZDate as they stand, so its two-digit-year rule
// applies: a year of 137 or less means 1900 plus that year.
//
// Invariants: the table is built during static initialisation and read-only
// afterwards; a Bundeslaender object is immutable once constructed. So every
// query may run on any thread; a list passed in belongs to the caller.
// Texts are German, Latin-1. The enumerations have a fixed int underlying
// type, so masks of several states and unknown rule numbers are valid values.
#ifndef KZ_CALENDAR_H
#define KZ_CALENDAR_H

#include "KZDate.h"
#include "KZExport.h"

#include <list>
#include <map>
#include <string>

namespace KZBasicServices {

// The states as bit flags, in the alphabetical order of their German names.
enum BundesLand : int {
    XX = 0x0000,  // no state
    BW = 0x0001,  // Baden-Wuerttemberg
    BY = 0x0002,  // Bayern
    BE = 0x0004,  // Berlin
    BB = 0x0008,  // Brandenburg
    HB = 0x0010,  // Bremen
    HH = 0x0020,  // Hamburg
    HE = 0x0040,  // Hessen
    MV = 0x0080,  // Mecklenburg-Vorpommern
    NI = 0x0100,  // Niedersachsen
    NW = 0x0200,  // Nordrhein-Westfalen
    RP = 0x0400,  // Rheinland-Pfalz
    SL = 0x0800,  // Saarland
    SN = 0x1000,  // Sachsen
    ST = 0x2000,  // Sachsen-Anhalt
    SH = 0x4000,  // Schleswig-Holstein
    TH = 0x8000,  // Thueringen
    Alle = 0xFFFF // all sixteen
};

// The states as consecutive numbers, for lists and stored settings.
enum BundesLandId : int {
    XXId = -1,
    AlleId = 0,
    BWId = 1,
    BYId,
    BEId,
    BBId,
    HBId,
    HHId,
    HEId,
    MVId,
    NIId,
    NWId,
    RPId,
    SLId,
    SNId,
    STId,
    SHId,
    THId
};

} // namespace KZBasicServices

// --- Federal states ----------------------------------------------------------

// Names and abbreviations of the states. Each client builds its own object.
class KZBS_API Bundeslaender {
public:
    // The full name and the abbreviation of one state.
    struct KZBS_API NameAndAbreviation {
        NameAndAbreviation(const char* name, const char* abreviation);
        std::string m_name;
        std::string m_abreviation;
    };

    // Eighteen rows: the sixteen states ("Baden-W\xFCrttemberg" .. "Th\xFCringen"),
    // 0 as "XX" and 65535 as "Alle"; both of these are named "Unbekanntes
    // Bundesland".
    Bundeslaender();

    // The sixteen state flags 1, 2, 4, .., 32768 in table order.
    static const KZBasicServices::BundesLand* getBundesLandConstants();
    // -1 -> 0, 1..16 -> 2^(id-1), 0 and anything else -> 65535.
    static KZBasicServices::BundesLand mapBundesLandId2BundeLand(KZBasicServices::BundesLandId id);

    // The state whose full name is exactly `name` (case-sensitive, Latin-1);
    // 0 for anything else, abbreviations included, and for nullptr.
    KZBasicServices::BundesLand getBundesLand(const char* name) const;
    // Full name or abbreviation of one table value; "Fehler" for anything
    // else (a mask of several states, say).
    const std::string& getName(KZBasicServices::BundesLand land, bool fullName) const;

private:
    std::map<KZBasicServices::BundesLand, NameAndAbreviation> m_names;
};

// --- Holiday rules -------------------------------------------------------------

// A holiday rule: how its date is found in a year and where it holds.
class KZBS_API PublicHolidayInfoBase {
public:
    enum DateCalcRule : int {
        FixedDate = 0,        // KZDate(m_day, m_month, year)
        RelativeToEaster = 1, // easter(year) + m_offset
        DayOfRepentance = 2   // the Wednesday between 16 and 22 November
        // any other value: 1 January
    };

    // Empty name, day/month/offset -1, all states, FixedDate.
    PublicHolidayInfoBase();
    PublicHolidayInfoBase(const char* name, int day, int month, int states);
    PublicHolidayInfoBase(const char* name, DateCalcRule rule, int offset, int states);
    PublicHolidayInfoBase(const PublicHolidayInfoBase& other);
    PublicHolidayInfoBase& operator=(const PublicHolidayInfoBase& other);

    // True for land 0; otherwise only when every bit of land is in the mask
    // (a mask of several states asks whether the holiday holds in all).
    bool isValidIn(KZBasicServices::BundesLand land) const;
    // The date in that year; the null date when a fixed day does not exist.
    KZDate getDateForYear(int year) const;

    std::string m_name; // German, Latin-1
    int m_day;          // fixed rules: day of month, else -1
    int m_month;        // fixed rules: month, else -1
    int m_offset;       // Easter rules: days after Easter Sunday, else -1 (0 for DayOfRepentance)
    int m_states;       // mask of BundesLand bits; 65535 all
    DateCalcRule m_rule;
};

// A rule resolved for one year.
class KZBS_API PublicHolidayInfo : public PublicHolidayInfoBase {
public:
    PublicHolidayInfo(const PublicHolidayInfoBase& rule, int year);
    PublicHolidayInfo(const PublicHolidayInfo& other);
    PublicHolidayInfo& operator=(const PublicHolidayInfo& other);

    KZDate getDate() const { return getDateForYear(m_year); }

    int m_year;
};

// The fifteen holidays, in this order (lists of one day keep it):
//  0 Neujahrstag 1.1.            1 Karfreitag Easter-2         2 Ostermontag Easter+1
//  3 Tag der Arbeit 1.5.         4 Christi Himmelfahrt +39     5 Pfingstmontag +50
//  6 Tag der Deutschen Einheit 3.10.  7 1. Weihnachtstag 25.12.  8 2. Weihnachtstag 26.12.
//  (all states so far)
//  9 Heilige Drei K\xF6nige 6.1. (BW BY ST)   10 Fronleichnam +60 (BW BY NW RP SL ST)
// 11 Reformationstag 31.10. (BB MV SN ST TH) 12 Allerheiligen 1.11. (BW BY NW RP SL)
// 13 Bu\xDF- und Bettag (SN)                  14 Mari\xE4 Himmelfahrt 15.8. (BY SL)
// The Fronleichnam mask (Sachsen-Anhalt, not Hessen) is the long-standing data
// and kept for compatibility.
constexpr int kPublicHolidayCount = 15;
extern KZBS_API PublicHolidayInfoBase g_holiday_Info[kPublicHolidayCount];

// --- Queries --------------------------------------------------------------------

// The rows falling on one date: only the first `count` pointers are set (no
// three rows can share a day).
struct KZBS_API PublicHolidayMatches {
    int count = 0;
    const PublicHolidayInfoBase* matches[2] = {nullptr, nullptr};
};

// Orders by date (day number of getDate()).
struct KZBS_API PublicHolidayInfoListSorter {
    bool operator()(const PublicHolidayInfo& a, const PublicHolidayInfo& b) const;
};

class KZBS_API KZCalendar {
public:
    virtual ~KZCalendar();

    // Easter Sunday: Gregorian after 1582, Julian up to 1582 (right for 1583..4099).
    static KZDate easter(int year);

    // The two per-date queries read nothing but the table and the date: no
    // cache, no allocation, Easter worked out at most once a call.
    //
    // The rows whose date in date.Year() is `date`, in table order, whatever the state.
    static PublicHolidayMatches getPublicHolidayInfo(const KZDate& date);
    // 0: a holiday valid in `land` falls on the date (land 0: any);
    // 2: holidays fall on it, none valid in `land`; 1: no holiday at all.
    static int isPublicHoliday(const KZDate& date, KZBasicServices::BundesLand land);

    // Appends, in table order, the holidays of from's year valid in `land`
    // with from <= date <= to; returns how many. Neither clears nor sorts.
    static int appendPublicHolidaysInYear(const KZDate& from, const KZDate& to, KZBasicServices::BundesLand land,
                                          std::list<PublicHolidayInfo>& list);
    // The same over a period split at year ends, year by year; nothing when
    // to's year is before from's.
    static int appendPublicHolidaysInPeriod(const KZDate& from, const KZDate& to, KZBasicServices::BundesLand land,
                                            std::list<PublicHolidayInfo>& list);
    // The holidays of the period, sorted stably by date (so two on one day
    // keep table order); empty when to is before from.
    static std::list<PublicHolidayInfo> getPublicHolidaysInPeriod(const KZDate& from, const KZDate& to,
                                                                  KZBasicServices::BundesLand land);
};

#endif // KZ_CALENDAR_H
