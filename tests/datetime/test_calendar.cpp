// Easter, the holiday rows, the federal states and the holiday queries.
#include "KZCalendar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace KZBasicServices;

namespace {

// Meeus/Jones/Butcher (Gregorian) and Meeus (Julian), written independently.
KZDate gregorianEaster(int y)
{
    const int a = y % 19, b = y / 100, c = y % 100, d = b / 4, e = b % 4, f = (b + 8) / 25;
    const int g = (b - f + 1) / 3, h = (19 * a + b - d - g + 15) % 30, i = c / 4, k = c % 4;
    const int l = (32 + 2 * e + 2 * i - h - k) % 7, m = (a + 11 * h + 22 * l) / 451;
    const int month = (h + l - 7 * m + 114) / 31, day = (h + l - 7 * m + 114) % 31 + 1;
    return KZDate(day, month, y);
}

KZDate julianEaster(int y, int placeInYear)
{
    const int d = (19 * (y % 19) + 15) % 30, e = (2 * (y % 4) + 4 * (y % 7) - d + 34) % 7;
    return KZDate((d + e + 114) % 31 + 1, (d + e + 114) / 31, placeInYear);
}

const PublicHolidayInfoBase& row(const char* name)
{
    for (const PublicHolidayInfoBase& r : g_holiday_Info)
        if (r.m_name == name)
            return r;
    ADD_FAILURE() << "no row " << name;
    return g_holiday_Info[0];
}

std::vector<std::string> names(const std::list<PublicHolidayInfo>& list)
{
    std::vector<std::string> result;
    for (const PublicHolidayInfo& h : list)
        result.push_back(h.m_name + " " + std::to_string(h.getDate().Year()));
    return result;
}

BundesLand mask(int bits) { return static_cast<BundesLand>(bits); }

} // namespace

TEST(Easter, ReferenceYearsAndBothCalendars)
{
    const struct { int year; unsigned day, month; } cases[] = {
        {2000, 23, 4}, {2008, 23, 3}, {2011, 24, 4}, {2019, 21, 4}, {2024, 31, 3}, {2038, 25, 4}, {2285, 22, 3}};
    for (const auto& c : cases)
        EXPECT_EQ(KZCalendar::easter(c.year).Hash(), KZDate(c.day, c.month, c.year).Hash()) << c.year;
    for (int year = 1583; year <= 4099; ++year)
        ASSERT_EQ(KZCalendar::easter(year).Hash(), gregorianEaster(year).Hash()) << year;
    for (int year = 138; year <= 1582; ++year)
        ASSERT_EQ(KZCalendar::easter(year).Hash(), julianEaster(year, year).Hash()) << year;
    // Two-digit years: the Julian Easter of the year 99, placed in 1999.
    EXPECT_EQ(KZCalendar::easter(99).Hash(), julianEaster(99, 1999).Hash());
}

TEST(HolidayRules, ResolvedDates)
{
    const struct { const char* name; int year; unsigned day, month; } cases[] = {
        {"Neujahrstag", 2024, 1, 1}, {"Karfreitag", 2024, 29, 3}, {"Ostermontag", 2024, 1, 4},
        {"Tag der Arbeit", 2024, 1, 5}, {"Christi Himmelfahrt", 2024, 9, 5}, {"Pfingstmontag", 2024, 20, 5},
        {"Tag der Deutschen Einheit", 2024, 3, 10}, {"1. Weihnachtstag", 2024, 25, 12},
        {"2. Weihnachtstag", 2024, 26, 12}, {"Heilige Drei K\xF6nige", 2024, 6, 1}, {"Fronleichnam", 2024, 30, 5},
        {"Reformationstag", 2024, 31, 10}, {"Allerheiligen", 2024, 1, 11}, {"Mari\xE4 Himmelfahrt", 2024, 15, 8},
        {"Bu\xDF- und Bettag", 2010, 17, 11}, {"Bu\xDF- und Bettag", 2011, 16, 11}, {"Bu\xDF- und Bettag", 2012, 21, 11},
        {"Christi Himmelfahrt", 2008, 1, 5}, {"Neujahrstag", 99, 1, 1},
    };
    for (const auto& c : cases) {
        const KZDate expected(c.day, c.month, c.year == 99 ? 1999 : c.year);
        EXPECT_EQ(row(c.name).getDateForYear(c.year).Hash(), expected.Hash()) << c.name << " " << c.year;
        EXPECT_EQ(PublicHolidayInfo(row(c.name), c.year).getDate().Hash(), expected.Hash()) << c.name;
    }
    for (int year = 1900; year <= 2100; ++year) {
        const KZDate d = row("Bu\xDF- und Bettag").getDateForYear(year);
        ASSERT_TRUE(d.WeekDay() == 3 && d.DayOfMonth() >= 16 && d.DayOfMonth() <= 22) << year;
    }
}

TEST(HolidayRules, OddRecordsAndCopies)
{
    EXPECT_EQ(PublicHolidayInfoBase().getDateForYear(2010).Hash(), 0u);
    EXPECT_EQ(PublicHolidayInfoBase("x", 30, 2, Alle).getDateForYear(2010).Hash(), 0u);
    const PublicHolidayInfoBase unknownRule("x", static_cast<PublicHolidayInfoBase::DateCalcRule>(7), 5, Alle);
    EXPECT_EQ(unknownRule.getDateForYear(2010).Hash(), KZDate(1, 1, 2010).Hash());

    PublicHolidayInfo copy(g_holiday_Info[0], 2000);
    copy = PublicHolidayInfo(row("Fronleichnam"), 2024);
    copy = copy;
    EXPECT_EQ(copy.m_name, "Fronleichnam");
    EXPECT_EQ(copy.m_year, 2024);
    EXPECT_EQ(copy.getDate().Hash(), KZDate(30, 5, 2024).Hash());
}

TEST(HolidayRules, ValidityInStatesAndMasks)
{
    const PublicHolidayInfoBase& assumption = row("Mari\xE4 Himmelfahrt");
    EXPECT_TRUE(assumption.isValidIn(XX));
    EXPECT_TRUE(assumption.isValidIn(BY));
    EXPECT_TRUE(assumption.isValidIn(mask(BY | SL)));
    EXPECT_FALSE(assumption.isValidIn(mask(BY | SN)));
    EXPECT_FALSE(row("Reformationstag").isValidIn(BY));
    EXPECT_FALSE(row("Fronleichnam").isValidIn(HE));
    for (const PublicHolidayInfoBase& r : g_holiday_Info)
        EXPECT_TRUE(r.isValidIn(XX)) << r.m_name;
}

TEST(FederalStates, NamesAndLookups)
{
    const Bundeslaender states;
    const struct { int land; const char* full; const char* abbreviation; } names[] = {
        {BW, "Baden-W\xFCrttemberg", "BW"}, {BY, "Bayern", "BY"}, {SN, "Sachsen", "SN"},
        {TH, "Th\xFCringen", "TH"}, {XX, "Unbekanntes Bundesland", "XX"}, {Alle, "Unbekanntes Bundesland", "Alle"},
        {BY | BW, "Fehler", "Fehler"}, {0x10000, "Fehler", "Fehler"}};
    for (const auto& n : names) {
        EXPECT_EQ(states.getName(mask(n.land), true), n.full) << n.land;
        EXPECT_EQ(states.getName(mask(n.land), false), n.abbreviation) << n.land;
    }
    const struct { const char* name; int land; } lookups[] = {
        {"Sachsen", SN}, {"Sachsen-Anhalt", ST}, {"sachsen", XX}, {"Alle", XX}, {"BY", XX},
        {"Unbekanntes Bundesland", XX}, {"Th\xFCringen", TH}, {nullptr, XX}};
    for (const auto& l : lookups)
        EXPECT_EQ(states.getBundesLand(l.name), l.land) << (l.name ? l.name : "(null)");
}

TEST(FederalStates, IdsAndConstants)
{
    const struct { int id; int land; } cases[] = {
        {-1, XX}, {0, Alle}, {1, BW}, {2, BY}, {13, SN}, {16, TH}, {17, Alle}, {-2, Alle}};
    for (const auto& c : cases)
        EXPECT_EQ(Bundeslaender::mapBundesLandId2BundeLand(static_cast<BundesLandId>(c.id)), c.land) << c.id;
    const BundesLand* all = Bundeslaender::getBundesLandConstants();
    int combined = 0;
    for (int k = 0; k < 16; ++k) {
        EXPECT_EQ(all[k], 1 << k);
        combined |= all[k];
    }
    EXPECT_EQ(combined, Alle);
}

TEST(CalendarQueries, SingleDates)
{
    const struct { unsigned day, month, year; int land; int answer; } cases[] = {
        {1, 11, 2010, BY, 0}, {1, 11, 2010, HB, 2}, {2, 11, 2010, BY, 1}, {1, 11, 2010, XX, 0},
        {15, 8, 2010, mask(BY | SL), 0}, {15, 8, 2010, mask(BY | SN), 2}, {25, 12, 2010, Alle, 0},
        {4, 4, 2010, BY, 1},  // Easter Sunday is no table row
    };
    for (const auto& c : cases)
        EXPECT_EQ(KZCalendar::isPublicHoliday(KZDate(c.day, c.month, c.year), mask(c.land)), c.answer)
            << c.day << "." << c.month << "." << c.year << " in " << c.land;
    const PublicHolidayMatches may1st = KZCalendar::getPublicHolidayInfo(KZDate(1, 5, 2008));
    ASSERT_EQ(may1st.count, 2);
    EXPECT_EQ(may1st.matches[0]->m_name, "Tag der Arbeit");
    EXPECT_EQ(may1st.matches[1]->m_name, "Christi Himmelfahrt");
    const PublicHolidayMatches none = KZCalendar::getPublicHolidayInfo(KZDate(2, 5, 2008));
    EXPECT_EQ(none.count, 0);
    EXPECT_EQ(none.matches[0], nullptr);
}

TEST(CalendarQueries, PeriodsAreSplitAtYearEndsAndSortedStably)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(names(KZCalendar::getPublicHolidaysInPeriod(KZDate(20, 12, 2010), KZDate(10, 1, 2011), BY)),
              (V{"1. Weihnachtstag 2010", "2. Weihnachtstag 2010", "Neujahrstag 2011", "Heilige Drei K\xF6nige 2011"}));
    EXPECT_EQ(names(KZCalendar::getPublicHolidaysInPeriod(KZDate(20, 12, 2010), KZDate(10, 1, 2011), HB)),
              (V{"1. Weihnachtstag 2010", "2. Weihnachtstag 2010", "Neujahrstag 2011"}));
    EXPECT_EQ(names(KZCalendar::getPublicHolidaysInPeriod(KZDate(3, 10, 2010), KZDate(3, 10, 2010), XX)),
              (V{"Tag der Deutschen Einheit 2010"}));
    EXPECT_EQ(names(KZCalendar::getPublicHolidaysInPeriod(KZDate(1, 4, 2008), KZDate(31, 5, 2008), SN)),
              (V{"Tag der Arbeit 2008", "Christi Himmelfahrt 2008", "Pfingstmontag 2008"}));
    EXPECT_TRUE(KZCalendar::getPublicHolidaysInPeriod(KZDate(4, 10, 2010), KZDate(3, 10, 2010), XX).empty());

    // Ten years in Bayern: the nine common days plus four of its own, every year.
    const auto decade = KZCalendar::getPublicHolidaysInPeriod(KZDate(1, 1, 2010), KZDate(31, 12, 2019), BY);
    EXPECT_EQ(decade.size(), 130u);
    std::uint32_t previous = 0;
    for (const PublicHolidayInfo& h : decade) {
        EXPECT_LE(previous, h.getDate().Hash()) << h.m_name;
        previous = h.getDate().Hash();
    }
}

TEST(CalendarQueries, AppendersNeitherClearNorSort)
{
    std::list<PublicHolidayInfo> list{PublicHolidayInfo(g_holiday_Info[7], 1999)};
    EXPECT_EQ(KZCalendar::appendPublicHolidaysInPeriod(KZDate(20, 12, 2010), KZDate(10, 1, 2011), HB, list), 3);
    EXPECT_EQ(names(list), (std::vector<std::string>{"1. Weihnachtstag 1999", "1. Weihnachtstag 2010",
                                                     "2. Weihnachtstag 2010", "Neujahrstag 2011"}));
    // In-year order is table order, not date order.
    std::list<PublicHolidayInfo> year;
    EXPECT_EQ(KZCalendar::appendPublicHolidaysInYear(KZDate(1, 1, 2010), KZDate(30, 4, 2010), BY, year), 4);
    EXPECT_EQ(names(year), (std::vector<std::string>{"Neujahrstag 2010", "Karfreitag 2010", "Ostermontag 2010",
                                                     "Heilige Drei K\xF6nige 2010"}));
    EXPECT_EQ(KZCalendar::appendPublicHolidaysInPeriod(KZDate(1, 1, 2011), KZDate(31, 12, 2010), XX, year), 0);
    EXPECT_EQ(KZCalendar::appendPublicHolidaysInYear(KZDate(31, 12, 2010), KZDate(1, 1, 2010), XX, year), 0);
    EXPECT_EQ(year.size(), 4u);
}
