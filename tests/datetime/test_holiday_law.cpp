// The law's holidays, checked as facts per state and year written from the
// holiday laws: each law statement lists the states where a date is a public
// holiday, and is checked for all sixteen (yes where listed, no elsewhere).
#include "KZHolidayLaw.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace KZBasicServices;

namespace {

const BundesLand kStates[16] = {BW, BY, BE, BB, HB, HH, HE, MV, NI, NW, RP, SL, SN, ST, SH, TH};
constexpr int kNone = 0;
constexpr int kWest = BW | BY | HB | HH | HE | NI | NW | RP | SL | SH;
constexpr int kEast = BB | MV | SN | ST | TH;

std::string iso(const KZDate& d)
{
    unsigned m, day, y;
    d.Mdy(m, day, y);
    return std::to_string(y) + "-" + std::to_string(m) + "-" + std::to_string(day);
}

// A date and the states where it is a public holiday throughout the state.
struct Statement {
    int day, month, year;
    int states;
    const char* what;
};

const Statement kStatements[] = {
    // every state, in the first year, the year of unification and today
    {1, 1, 1990, Alle, "Neujahrstag"},
    {13, 4, 1990, Alle, "Karfreitag"},
    {16, 4, 1990, Alle, "Ostermontag"},
    {1, 5, 1990, Alle, "Tag der Arbeit"},
    {24, 5, 1990, Alle, "Himmelfahrt"},
    {4, 6, 1990, Alle, "Pfingstmontag"},
    {3, 10, 1990, Alle, "Deutsche Einheit"},
    {25, 12, 1990, Alle, "1. Weihnachtstag"},
    {26, 12, 1990, Alle, "2. Weihnachtstag"},
    {1, 1, 2024, Alle, "Neujahrstag"},
    {29, 3, 2024, Alle, "Karfreitag"},
    {1, 4, 2024, Alle, "Ostermontag"},
    {1, 5, 2024, Alle, "Tag der Arbeit"},
    {9, 5, 2024, Alle, "Himmelfahrt"},
    {20, 5, 2024, Alle, "Pfingstmontag"},
    {3, 10, 2024, Alle, "Deutsche Einheit"},
    {25, 12, 2024, Alle, "1. Weihnachtstag"},
    {26, 12, 2024, Alle, "2. Weihnachtstag"},
    // ordinary days
    {2, 1, 2024, kNone, "2 January"},
    {24, 12, 2024, kNone, "Heiligabend"},
    {31, 12, 2024, kNone, "Silvester"},
    {7, 10, 1990, kNone, "former GDR day of the republic"},
    // Heilige Drei Koenige: Sachsen-Anhalt from 1993 (its law of 1992)
    {6, 1, 1990, BW | BY, "Heilige Drei Koenige 1990"},
    {6, 1, 1992, BW | BY, "Heilige Drei Koenige 1992"},
    {6, 1, 1993, BW | BY | ST, "Heilige Drei Koenige 1993"},
    {6, 1, 2024, BW | BY | ST, "Heilige Drei Koenige 2024"},
    // Internationaler Frauentag
    {8, 3, 2018, kNone, "Frauentag 2018"},
    {8, 3, 2019, BE, "Frauentag 2019"},
    {8, 3, 2022, BE, "Frauentag 2022"},
    {8, 3, 2023, BE | MV, "Frauentag 2023"},
    // Ostersonntag and Pfingstsonntag: only Brandenburg's law names them (from
    // 1991); Hessen's has them among "die Sonntage", like every state
    {15, 4, 1990, kNone, "Ostersonntag 1990"},
    {31, 3, 1991, BB, "Ostersonntag 1991"},
    {31, 3, 2024, BB, "Ostersonntag 2024"},
    {3, 6, 1990, kNone, "Pfingstsonntag 1990"},
    {19, 5, 1991, BB, "Pfingstsonntag 1991"},
    {19, 5, 2024, BB, "Pfingstsonntag 2024"},
    // Fronleichnam: not in Sachsen-Anhalt, but in Hessen
    {14, 6, 1990, BW | BY | HE | NW | RP | SL, "Fronleichnam 1990"},
    {30, 5, 2024, BW | BY | HE | NW | RP | SL, "Fronleichnam 2024"},
    // regional only
    {8, 8, 2024, kNone, "Augsburger Friedensfest"},
    {15, 8, 2024, SL, "Mariae Himmelfahrt"},
    // Weltkindertag
    {20, 9, 2018, kNone, "Weltkindertag 2018"},
    {20, 9, 2019, TH, "Weltkindertag 2019"},
    // Reformationstag
    {31, 10, 1990, kEast, "Reformationstag 1990"},
    {31, 10, 2016, kEast, "Reformationstag 2016"},
    {31, 10, 2017, Alle, "Reformationstag 2017"},
    {31, 10, 2018, kEast | HB | HH | NI | SH, "Reformationstag 2018"},
    {31, 10, 2024, kEast | HB | HH | NI | SH, "Reformationstag 2024"},
    // Allerheiligen
    {1, 11, 2024, BW | BY | NW | RP | SL, "Allerheiligen"},
    // Buss- und Bettag
    {21, 11, 1990, Alle, "Buss- und Bettag 1990"},
    {16, 11, 1994, Alle, "Buss- und Bettag 1994"},
    {22, 11, 1995, SN, "Buss- und Bettag 1995"},
    {20, 11, 2024, SN, "Buss- und Bettag 2024"},
    // single dates
    {17, 6, 1990, kWest, "17 June 1990"},
    {17, 6, 1991, kNone, "17 June 1991"},
    {8, 5, 2020, BE, "8 May 2020"},
    {8, 5, 2024, kNone, "8 May 2024"},
    {8, 5, 2025, BE, "8 May 2025"},
    {17, 6, 2028, BE, "17 June 2028"},
    {17, 6, 2027, kNone, "17 June 2027"},
};

struct RegionFact {
    BundesLand state;
    const char* region;
    int day, month, year;
    bool holiday;
};

const RegionFact kRegionFacts[] = {
    {BY, "A", 8, 8, 2024, true},
    {BY, "A", 8, 8, 1990, true},
    {BY, "KATH", 8, 8, 2024, false},
    {BY, "A", 15, 8, 2024, true},
    {BY, "KATH", 15, 8, 2024, true},
    {BY, "A", 6, 1, 2024, true},
    {BY, "KATH", 30, 5, 2024, true},
    {BY, "A", 31, 10, 2024, false},
    {SN, "BZ", 30, 5, 2024, true},
    {SN, "BZ", 10, 6, 1993, true},
    {SN, "BZ", 18, 6, 1992, false},
    {SN, "BZ", 31, 10, 2024, true},
    {SN, "BZ", 15, 8, 2024, false},
    {TH, "EIC", 30, 5, 2024, true},
    {TH, "UH", 30, 5, 2024, true},
    {TH, "WAK", 30, 5, 2024, true},
    {TH, "EIC", 15, 6, 1995, true},
    {TH, "EIC", 2, 6, 1994, true},
    {TH, "WAK", 20, 9, 2019, true},
    // Thueringen's regions from 1991, under the GDR's ordinance kept by the Unification Treaty
    {TH, "EIC", 14, 6, 1990, false},
    {TH, "UH", 14, 6, 1990, false},
    {TH, "WAK", 14, 6, 1990, false},
    {TH, "EIC", 30, 5, 1991, true},
    {TH, "UH", 30, 5, 1991, true},
    {TH, "WAK", 30, 5, 1991, true},
};

TEST(HolidayLawFacts, EveryStatementHoldsInExactlyItsStates)
{
    int facts = 0;
    for (const Statement& s : kStatements) {
        const KZDate date(static_cast<unsigned>(s.day), static_cast<unsigned>(s.month), static_cast<unsigned>(s.year));
        for (const BundesLand state : kStates) {
            const bool expected = (s.states & state) != 0;
            EXPECT_EQ(KZHolidayLaw::isPublicHoliday(date, state) == 0, expected)
                << s.what << " " << iso(date) << " state " << state;
            ++facts;
        }
    }
    EXPECT_EQ(facts, 16 * static_cast<int>(sizeof kStatements / sizeof kStatements[0]));
    RecordProperty("stateYearFacts", facts);
}

TEST(HolidayLawFacts, RegionsAddTheirOwnDaysToTheirState)
{
    for (const RegionFact& f : kRegionFacts) {
        const KZDate date(static_cast<unsigned>(f.day), static_cast<unsigned>(f.month), static_cast<unsigned>(f.year));
        EXPECT_EQ(KZHolidayLaw::isPublicHoliday(date, f.state, f.region) == 0, f.holiday)
            << f.region << " " << iso(date);
    }
}

TEST(HolidayLawAnswers, DistinguishElsewhereNothingAndOutOfRange)
{
    struct Case {
        KZDate date;
        BundesLand land;
        const char* region;
        int answer;
    } const cases[] = {
        {KZDate(30, 5, 2024), BE, "", 2}, // Fronleichnam holds elsewhere
        {KZDate(8, 8, 2024), BY, "", 2},  // Augsburg only
        {KZDate(8, 8, 2024), XX, "", 0},  // land 0 accepts every place
        {KZDate(2, 1, 2024), XX, "", 1},
        {KZDate(31, 12, 1989), BY, "", -1},
        {KZDate(1, 1, 1900), Alle, "", -1},
        {KZDate(1, 1, 2024), BY, "X", -2},
        {KZDate(1, 1, 2024), BY, "a", -2},   // codes are case-sensitive
        {KZDate(1, 1, 2024), SN, "A", -2},   // Augsburg is no region of Sachsen
        {KZDate(1, 1, 2024), Alle, "A", -2}, // a region needs its one state
        {KZDate(1, 1, 4100), BY, "", -3},
        {KZDate(0u, 0u, 0u), BY, "", -3},                                // the null date lies far after 4099
        {KZDate(31, 10, 2018), static_cast<BundesLand>(BB | HB), "", 0}, // merged rows hold in both
        {KZDate(31, 10, 2018), static_cast<BundesLand>(BB | BY), "", 2},
        {KZDate(16, 11, 1994), Alle, "", 0},
        {KZDate(1, 1, 2024), static_cast<BundesLand>(0x10000), "", 2}, // no state at all
    };
    for (const Case& c : cases)
        EXPECT_EQ(KZHolidayLaw::isPublicHoliday(c.date, c.land, c.region), c.answer)
            << iso(c.date) << " land " << c.land << " region " << c.region;
}

std::vector<std::string> namesOf(const std::vector<DatedHoliday>& list)
{
    std::vector<std::string> names;
    for (const DatedHoliday& h : list)
        names.push_back(h.name);
    return names;
}

TEST(HolidayLawPeriod, ListsAStateYearInDateOrder)
{
    std::vector<DatedHoliday> list;
    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 2024), KZDate(31, 12, 2024), BE, "", list), KZHolidayLaw::Ok);
    const std::vector<std::string> expected = {
        "Neujahrstag",      "Internationaler Frauentag", "Karfreitag",    "Ostermontag",
        "Tag der Arbeit",   "Christi Himmelfahrt",       "Pfingstmontag", "Tag der Deutschen Einheit",
        "1. Weihnachtstag", "2. Weihnachtstag"};
    EXPECT_EQ(namesOf(list), expected);
    for (std::size_t i = 1; i < list.size(); ++i)
        EXPECT_LT(list[i - 1].date.Hash(), list[i].date.Hash());
}

TEST(HolidayLawPeriod, KeepsRuleOrderOnOneDayAndSpansYears)
{
    std::vector<DatedHoliday> list;
    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(1, 5, 2008), KZDate(1, 5, 2008), Alle, "", list), KZHolidayLaw::Ok);
    EXPECT_EQ(namesOf(list), (std::vector<std::string>{"Tag der Arbeit", "Christi Himmelfahrt"}));

    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(20, 12, 2023), KZDate(10, 1, 2024), ST, "", list),
              KZHolidayLaw::Ok);
    EXPECT_EQ(namesOf(list), (std::vector<std::string>{"1. Weihnachtstag", "2. Weihnachtstag", "Neujahrstag",
                                                       "Heilige Drei K\xF6nige"}));
    EXPECT_EQ(iso(list[2].date), "2024-1-1");
}

TEST(HolidayLawPeriod, MergesOneHolidayOnOneDateWithAllItsPlaces)
{
    std::vector<DatedHoliday> list;
    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(30, 5, 2024), KZDate(30, 5, 2024), XX, "", list), KZHolidayLaw::Ok);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].name, "Fronleichnam");
    EXPECT_EQ(list[0].states, BW | BY | HE | NW | RP | SL);
    std::vector<std::string> codes;
    for (const HolidayRegion* r : list[0].regions)
        codes.push_back(r->code);
    EXPECT_EQ(codes, (std::vector<std::string>{"BZ", "EIC", "UH", "WAK"}));

    ASSERT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(31, 10, 2017), KZDate(31, 10, 2017), Alle, "", list),
              KZHolidayLaw::Ok);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].states, Alle);
}

TEST(HolidayLawPeriod, AnswersPlainlyOutsideTheRuleSet)
{
    std::vector<DatedHoliday> list(3, DatedHoliday{KZDate(1, 1, 2000), "x", 0, {}});
    EXPECT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(31, 12, 1989), KZDate(2, 1, 1990), BY, "", list),
              KZHolidayLaw::BeforeFirstYear);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 2024), KZDate(2, 1, 2024), BY, "NOPE", list),
              KZHolidayLaw::UnknownRegion);
    EXPECT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 4099), KZDate(1, 1, 4100), BY, "", list),
              KZHolidayLaw::OutOfRange);
    EXPECT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(0u, 0u, 0u), KZDate(1, 1, 2024), BY, "", list),
              KZHolidayLaw::OutOfRange);
    EXPECT_EQ(KZHolidayLaw::holidaysInPeriod(KZDate(2, 1, 2024), KZDate(1, 1, 2024), BY, "", list), KZHolidayLaw::Ok);
    EXPECT_TRUE(list.empty());
}

TEST(HolidayLawWhere, ReportsStatesAndRegionsOfAYear)
{
    struct Case {
        const char* name;
        int year;
        int states;
        std::vector<std::string> regions;
    } const cases[] = {
        {"Reformationstag", 2016, kEast, {}},
        {"Reformationstag", 2017, Alle, {}},
        {"Reformationstag", 2018, kEast | HB | HH | NI | SH, {}},
        {"Mari\xE4 Himmelfahrt", 2024, SL, {"A", "KATH"}},
        {"Fronleichnam", 1994, BW | BY | HE | NW | RP | SL, {"BZ", "EIC", "UH", "WAK"}},
        {"Fronleichnam", 1991, BW | BY | HE | NW | RP | SL, {"EIC", "UH", "WAK"}},
        {"Ostersonntag", 1990, 0, {}},
        {"Pfingstsonntag", 2024, BB, {}},
        {"Internationaler Frauentag", 2018, 0, {}},
        {"Bu\xDF- und Bettag", 1995, SN, {}},
        {"Kein Feiertag", 2024, 0, {}},
    };
    for (const Case& c : cases) {
        int states = -1;
        std::vector<const HolidayRegion*> regions;
        ASSERT_EQ(KZHolidayLaw::whereHolds(c.name, c.year, states, regions), KZHolidayLaw::Ok) << c.name;
        EXPECT_EQ(states, c.states) << c.name << " " << c.year;
        std::vector<std::string> codes;
        for (const HolidayRegion* r : regions)
            codes.push_back(r->code);
        EXPECT_EQ(codes, c.regions) << c.name << " " << c.year;
    }
    int states = 0;
    std::vector<const HolidayRegion*> regions;
    EXPECT_EQ(KZHolidayLaw::whereHolds("Neujahrstag", 1989, states, regions), KZHolidayLaw::BeforeFirstYear);
}

TEST(HolidayLawNames, GiveEachStatesOwnNameWhereTheDayHolds)
{
    const DatedHoliday epiphany{KZDate(6, 1, 2024), "Heilige Drei K\xF6nige", BW | BY | ST, {}};
    const DatedHoliday womensDay{KZDate(8, 3, 2024), "Internationaler Frauentag", BE | MV, {}};
    const DatedHoliday reformation{KZDate(31, 10, 2024), "Reformationstag", kEast | HB | HH | NI | SH, {}};
    const DatedHoliday corpusChristi{KZDate(30, 5, 2024), "Fronleichnam", BW, {KZHolidayLaw::findRegion(TH, "EIC")}};
    const struct {
        const DatedHoliday& holiday;
        int state;
        const char* name;
    } cases[] = {
        {epiphany, BW, "Erscheinungsfest"},
        {epiphany, BY, "Heilige Drei K\xF6nige"},
        {epiphany, ST, "Heilige Drei K\xF6nige"},
        {epiphany, BE, ""},
        {womensDay, BE, "Frauentag"},
        {womensDay, MV, "Internationaler Frauentag"},
        {reformation, BB, "Reformationsfest"},
        {reformation, SN, "Reformationstag"},
        {reformation, BW, ""},
        {reformation, BB | SN, ""},
        {reformation, XX, ""},
        {reformation, Alle, ""},
        {corpusChristi, TH, "Fronleichnam"},
        {corpusChristi, SN, ""}, // a region names its state
    };
    for (const auto& c : cases)
        EXPECT_EQ(KZHolidayLaw::nameInState(c.holiday, static_cast<BundesLand>(c.state)), c.name)
            << c.holiday.name << " in " << c.state;
}

// Each year is worked out once and shared; the answers for single days must
// be the lists' answers, however many threads ask first. Four threads walk
// 1990..4099 side by side, each for its own place, so every year is first
// asked for by several at once. Every day: 0 where the list for the place has
// a holiday, 2 where only the list for every place has one, 1 elsewhere.
TEST(HolidayLawShared, DayAnswersAgreeWithTheListsFromEveryThread)
{
    struct Place {
        BundesLand land;
        const char* region;
    };
    const auto checkYears = [](Place place, std::vector<std::string>& faults) {
        for (int year = KZHolidayLaw::FirstYear; year <= KZHolidayLaw::LastYear; ++year) {
            const KZDate jan1(1, 1, static_cast<unsigned>(year)), dec31(31, 12, static_cast<unsigned>(year));
            std::vector<DatedHoliday> anywhere, here;
            if (KZHolidayLaw::holidaysInPeriod(jan1, dec31, XX, "", anywhere) != KZHolidayLaw::Ok
                || KZHolidayLaw::holidaysInPeriod(jan1, dec31, place.land, place.region, here) != KZHolidayLaw::Ok)
                faults.push_back("no list for " + std::to_string(year));
            std::vector<int> expected(366, 1);
            for (const DatedHoliday& h : anywhere)
                expected[h.date.Hash() - jan1.Hash()] = 2;
            for (const DatedHoliday& h : here)
                expected[h.date.Hash() - jan1.Hash()] = 0;
            for (KZDate date = jan1; date.Hash() <= dec31.Hash(); date = date + 1) {
                const int got = KZHolidayLaw::isPublicHoliday(date, place.land, place.region);
                if (got != expected[date.Hash() - jan1.Hash()])
                    faults.push_back(iso(date) + " " + place.region + " gives " + std::to_string(got));
            }
        }
    };
    const Place places[] = {{BY, "A"}, {TH, "EIC"}, {BB, ""}, {static_cast<BundesLand>(BW | BY), ""}};
    std::vector<std::vector<std::string>> faults(4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < 4; ++t)
        threads.emplace_back(checkYears, places[t], std::ref(faults[t]));
    for (std::thread& t : threads)
        t.join();
    for (const std::vector<std::string>& f : faults)
        EXPECT_TRUE(f.empty()) << f.size() << " faults, the first: " << f.front();
}

TEST(HolidayLawRegions, AreOrderedAndFoundByExactCode)
{
    std::vector<std::string> all;
    for (const HolidayRegion& r : KZHolidayLaw::regions())
        all.push_back(std::to_string(r.state) + ":" + r.code);
    EXPECT_EQ(all, (std::vector<std::string>{"2:A", "2:KATH", "4096:BZ", "32768:EIC", "32768:UH", "32768:WAK"}));
    EXPECT_EQ(KZHolidayLaw::findRegion(BY, "KATH"), &KZHolidayLaw::regions()[1]);
    EXPECT_EQ(KZHolidayLaw::findRegion(TH, "A"), nullptr);
    EXPECT_EQ(KZHolidayLaw::findRegion(BY, ""), nullptr);
}

TEST(HolidayLawClassic, GivesTheFixedTableInTheSameForm)
{
    const std::vector<DatedHoliday> list =
        KZHolidayLaw::classicHolidaysInPeriod(KZDate(1, 1, 2024), KZDate(31, 12, 2024), ST);
    const std::list<PublicHolidayInfo> classic =
        KZCalendar::getPublicHolidaysInPeriod(KZDate(1, 1, 2024), KZDate(31, 12, 2024), ST);
    ASSERT_EQ(list.size(), classic.size());
    auto it = classic.begin();
    for (const DatedHoliday& h : list) {
        EXPECT_EQ(h.name, it->m_name);
        EXPECT_EQ(h.date.Hash(), it->getDate().Hash());
        EXPECT_TRUE(h.regions.empty());
        ++it;
    }
    // The fixed table keeps Fronleichnam in Sachsen-Anhalt; the law does not.
    EXPECT_EQ(KZCalendar::isPublicHoliday(KZDate(30, 5, 2024), ST), 0);
    EXPECT_EQ(KZHolidayLaw::isPublicHoliday(KZDate(30, 5, 2024), ST), 2);
}

} // namespace
