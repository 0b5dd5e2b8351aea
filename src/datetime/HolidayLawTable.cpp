// The public holidays of the sixteen states as their holiday laws have them,
// from 1990 on. One row per rule; rows of the same name on the same date are
// merged into one holiday when a year is resolved (Fronleichnam: six whole
// states plus four regions).
//
// Choices for 1990, the year of unification:
// - The nationwide days hold in all sixteen states from 1990. Until
//   3 October 1990 the eastern states' territory was under the GDR's rules;
//   this table does not model them and applies the nationwide days there too.
// - The eastern states' own days start with the first year their rules held
//   in full: Ostersonntag and Pfingstsonntag in Brandenburg in 1991 (its law
//   of 21 March 1991); Heilige Drei Koenige in Sachsen-Anhalt in 1993 (its
//   law of 1992 came after that year's 6 January); Fronleichnam in the
//   Thuringian regions in 1991. The GDR's holiday ordinance of 16 May 1990
//   made Fronleichnam a holiday in predominantly Catholic territories, the
//   Unification Treaty kept it until the states' laws, and Thueringen's law
//   keeps it where it was observed in 1994. So 14 June 1990, the ordinance's
//   first Fronleichnam, is no holiday of those regions here: like the rest
//   of the GDR's rules before 3 October 1990, it is not modelled.
// - 17 June 1990 was still the West German "Tag der deutschen Einheit"
//   (federal law of 4 August 1953, repealed by the Unification Treaty): it
//   holds in the ten western states. Berlin is left out, since only its
//   western part had it and a state here means the whole state. It fell on a
//   Sunday.
// - 3 October holds from 1990 (Unification Treaty, Art. 2 para. 2).
//
// Abbreviations of the laws in the source comments:
//   EV        Einigungsvertrag (Unification Treaty) 1990
//   FeiertagsVO DDR  the GDR's Verordnung ueber Feiertage of 16 May 1990
//             (GBl. I S. 248) and its first implementing rule of 7 June 1990
//   FTG BW    Gesetz ueber die Sonntage und Feiertage Baden-Wuerttemberg
//   FTG BY    Bayerisches Feiertagsgesetz
//   SonnFG    Berliner Gesetz ueber die Sonn- und Feiertage
//   FTG BB    Brandenburgisches Feiertagsgesetz (law of 21 March 1991)
//   SFG HB    Bremisches Gesetz ueber die Sonn- und Feiertage
//   FeiertG HH Hamburgisches Feiertagsgesetz
//   HFeiertagsG Hessisches Feiertagsgesetz
//   FTG MV    Feiertagsgesetz Mecklenburg-Vorpommern
//   NFeiertagsG Niedersaechsisches Gesetz ueber die Feiertage
//   FTG NW    Feiertagsgesetz Nordrhein-Westfalen
//   LFtG      Landesfeiertagsgesetz Rheinland-Pfalz
//   SFG SL    Saarlaendisches Gesetz ueber die Sonn- und Feiertage
//   SaechsSFG Saechsisches Sonn- und Feiertagsgesetz (1992)
//   FeiertG LSA Feiertagsgesetz Sachsen-Anhalt (1992; the government's draft
//             of late 1991 did not contain 6 January)
//   SFTG SH   Schleswig-Holsteinisches Sonn- und Feiertagsgesetz
//   ThuerFtG  Thueringer Feiertagsgesetz (1994)
// "all laws" stands for the list of public holidays in each of them.
#include "HolidayLawTable.h"

using namespace KZBasicServices;

namespace kzdatetime {

namespace {

constexpr int kWest = BW | BY | HB | HH | HE | NI | NW | RP | SL | SH;

// The rows stay aligned as a table; clang-format would pack them.
// clang-format off
constexpr LawRow kRows[] = {
    // name                               date                           states / region          first  last
    {"Neujahrstag",                       fixed(1, 1),                   Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Heilige Drei K\xF6nige",            fixed(6, 1),                   BW | BY, kNoRegion,       1990, kOpenEnded}, // FTG BW s1; FTG BY Art.1(1)
    {"Heilige Drei K\xF6nige",            fixed(6, 1),                   ST, kNoRegion,            1993, kOpenEnded}, // FeiertG LSA s2(1), in force from 1992 (after that 6 January)
    {"Internationaler Frauentag",         fixed(8, 3),                   BE, kNoRegion,            2019, kOpenEnded}, // SonnFG s1, amended January 2019
    {"Internationaler Frauentag",         fixed(8, 3),                   MV, kNoRegion,            2023, kOpenEnded}, // FTG MV s2, amended 2022
    {"Karfreitag",                        easterPlus(-2),                Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Ostersonntag",                      easterPlus(0),                 BB, kNoRegion,            1991, kOpenEnded}, // FTG BB s2(1); no other law names it (HFeiertagsG s1(1) has "die Sonntage")
    {"Ostermontag",                       easterPlus(1),                 Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Tag der Arbeit",                    fixed(1, 5),                   Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Tag der Befreiung",                 once(8, 5, 2020),              BE, kNoRegion,            2020, 2020},       // SonnFG s1a (75th anniversary)
    {"Tag der Befreiung",                 once(8, 5, 2025),              BE, kNoRegion,            2025, 2025},       // SonnFG s1a (80th anniversary)
    {"Christi Himmelfahrt",               easterPlus(39),                Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Pfingstsonntag",                    easterPlus(49),                BB, kNoRegion,            1991, kOpenEnded}, // FTG BB s2(1); as Ostersonntag
    {"Pfingstmontag",                     easterPlus(50),                Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"Fronleichnam",                      easterPlus(60),                BW | BY | HE | NW | RP | SL, kNoRegion,
                                                                                                   1990, kOpenEnded}, // FTG BW s1; FTG BY Art.1(1); HFeiertagsG s1; FTG NW s2; LFtG s2; SFG SL s2
    {"Fronleichnam",                      easterPlus(60),                0, RegionBZ,              1993, kOpenEnded}, // SaechsSFG s1(2) with its ordinance of communities
    {"Fronleichnam",                      easterPlus(60),                0, RegionEIC,             1991, kOpenEnded}, // FeiertagsVO DDR, kept by EV Annex II Ch. VIII Area C Sec. III; ThuerFtG s10(1), law of 21 December 1994
    {"Fronleichnam",                      easterPlus(60),                0, RegionUH,              1991, kOpenEnded}, // as EIC
    {"Fronleichnam",                      easterPlus(60),                0, RegionWAK,             1991, kOpenEnded}, // as EIC
    {"Tag der deutschen Einheit",         once(17, 6, 1990),             kWest, kNoRegion,         1990, 1990},       // federal law of 4 August 1953, repealed by EV
    {"Jahrestag des Volksaufstandes vom 17. Juni 1953",
                                          once(17, 6, 2028),             BE, kNoRegion,            2028, 2028},       // SonnFG s1a (75th anniversary)
    {"Augsburger Hohes Friedensfest",     fixed(8, 8),                   0, RegionA,               1990, kOpenEnded}, // FTG BY Art.1(2)
    {"Mari\xE4 Himmelfahrt",              fixed(15, 8),                  SL, kNoRegion,            1990, kOpenEnded}, // SFG SL s2
    {"Mari\xE4 Himmelfahrt",              fixed(15, 8),                  0, RegionA,               1990, kOpenEnded}, // FTG BY Art.1(1) no.2 (Augsburg is one such community)
    {"Mari\xE4 Himmelfahrt",              fixed(15, 8),                  0, RegionKATH,            1990, kOpenEnded}, // FTG BY Art.1(1) no.2
    {"Weltkindertag",                     fixed(20, 9),                  TH, kNoRegion,            2019, kOpenEnded}, // ThuerFtG s2(1), amended 2019
    {"Tag der Deutschen Einheit",         fixed(3, 10),                  Alle, kNoRegion,          1990, kOpenEnded}, // EV Art.2(2); all laws
    {"Reformationstag",                   fixed(31, 10),                 BB | MV | SN | ST | TH, kNoRegion,
                                                                                                   1990, kOpenEnded}, // FTG BB s2; FTG MV s2; SaechsSFG s1; FeiertG LSA s2; ThuerFtG s2
    {"Reformationstag",                   fixed(31, 10),                 HB | HH | NI | SH, kNoRegion,
                                                                                                   2018, kOpenEnded}, // SFG HB s1; FeiertG HH s1; NFeiertagsG s2; SFTG SH s2; amended 2018
    {"Reformationstag",                   once(31, 10, 2017),            BW | BY | BE | HB | HH | HE | NI | NW | RP | SL | SH, kNoRegion,
                                                                                                   2017, 2017},       // 500 years of the Reformation: each state's law or ordinance for 2017
    {"Allerheiligen",                     fixed(1, 11),                  BW | BY | NW | RP | SL, kNoRegion,
                                                                                                   1990, kOpenEnded}, // FTG BW s1; FTG BY Art.1(1); FTG NW s2; LFtG s2; SFG SL s2
    {"Bu\xDF- und Bettag",                wednesdayBefore23November(),   Alle & ~SN, kNoRegion,    1990, 1994},       // all laws until the 1995 long-term-care insurance (SGB XI s58)
    {"Bu\xDF- und Bettag",                wednesdayBefore23November(),   SN, kNoRegion,            1990, kOpenEnded}, // SaechsSFG s1
    {"1. Weihnachtstag",                  fixed(25, 12),                 Alle, kNoRegion,          1990, kOpenEnded}, // all laws
    {"2. Weihnachtstag",                  fixed(26, 12),                 Alle, kNoRegion,          1990, kOpenEnded}, // all laws
};

constexpr std::size_t kRowCount = sizeof kRows / sizeof kRows[0];
static_assert(kRowCount <= kMaxRows, "a year must have room for every row");

constexpr HolidayRegion kRegions[kRegionCount] = {
    {BY, "A", "Stadt Augsburg"},
    {BY, "KATH", "Gemeinden mit \xFC" "berwiegend katholischer Bev\xF6lkerung"},
    {SN, "BZ", "Die von der s\xE4" "chsischen Verordnung von 1993 benannten Gemeinden im Landkreis Bautzen"},
    {TH, "EIC", "Landkreis Eichsfeld: Teile, in denen Fronleichnam 1994 begangen wurde (der Kreis wendet es auf sein ganzes Gebiet an)"},
    {TH, "UH", "Teile des Unstrut-Hainich-Kreises, in denen Fronleichnam 1994 begangen wurde"},
    {TH, "WAK", "Teile des Wartburgkreises, in denen Fronleichnam 1994 begangen wurde"},
};

// Where a state's law calls a day by another name than the rows do.
constexpr StateName kStateNames[] = {
    {"Heilige Drei K\xF6nige",      BW, "Erscheinungsfest"},  // FTG BW s1
    {"Internationaler Frauentag",   BE, "Frauentag"},         // SonnFG s1
    {"Reformationstag",             BB, "Reformationsfest"},  // FTG BB s2(1)
};
// clang-format on

// A single-date row holds in its own year only; its years must say so.
constexpr bool onceRowsAgree()
{
    for (const LawRow& row : kRows)
        if (row.date.rule == DateRule::Once && (row.firstYear != row.date.offset || row.lastYear != row.date.offset))
            return false;
    return true;
}
static_assert(onceRowsAgree(), "a single-date row must hold in exactly its year");

} // namespace

const LawRow* lawRows()
{
    return kRows;
}
std::size_t lawRowCount()
{
    return kRowCount;
}
const HolidayRegion* regionTable()
{
    return kRegions;
}
const StateName* stateNames()
{
    return kStateNames;
}
std::size_t stateNameCount()
{
    return sizeof kStateNames / sizeof kStateNames[0];
}

} // namespace kzdatetime
