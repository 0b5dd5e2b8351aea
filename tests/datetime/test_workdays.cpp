// Working days: known years, errors, and the arithmetic count and the
// estimating step cross-checked against a plain day-by-day walk over
// random periods (fixed seed), for every state, both weeks and both rule sets.
#include "KZWorkdays.h"
#include "ReferenceWorkdays.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

using namespace KZBasicServices;
using kzbs_test::referenceCount;
using kzbs_test::referenceWorkday;

namespace {

WorkdayCalendar calendarOf(BundesLand land, const char* region = "", bool classic = false, int week = 5,
                           bool eves = false)
{
    WorkdayCalendar c;
    c.land = land;
    c.region = region;
    c.classic = classic;
    c.daysPerWeek = week;
    c.christmasAndNewYearsEveOff = eves;
    return c;
}

std::string describe(const WorkdayCalendar& c)
{
    return "land " + std::to_string(c.land) + " region '" + c.region + "' " + (c.classic ? "classic" : "law") + " week "
           + std::to_string(c.daysPerWeek) + (c.christmasAndNewYearsEveOff ? " eves off" : "");
}

KZDate referenceAdvance(const KZDate& date, long n, const WorkdayCalendar& c)
{
    KZDate d = date;
    if (n == 0) {
        while (!referenceWorkday(d, c))
            d = d + 1;
        return d;
    }
    const int step = n > 0 ? 1 : -1;
    for (long left = n > 0 ? n : -n; left > 0;) {
        d = d + step;
        if (referenceWorkday(d, c))
            --left;
    }
    return d;
}

long countOf(const KZDate& from, const KZDate& to, const WorkdayCalendar& c)
{
    long n = -1;
    EXPECT_EQ(KZWorkdays::count(from, to, c, n), KZWorkdays::Ok) << describe(c);
    return n;
}

TEST(WorkdaysCount, KnownYears)
{
    const KZDate jan1(1, 1, 2024), dec31(31, 12, 2024);
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(BY)), 251);
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(BE)), 252); // Frauentag, a Friday
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(Alle)), 253);
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(Alle, "", false, 6)), 305);
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(BY, "", false, 5, true)), 249);
    EXPECT_EQ(countOf(jan1, dec31, calendarOf(BY, "A")), 249); // 8 and 15 August, both Thursdays
    EXPECT_EQ(countOf(KZDate(1, 5, 2008), KZDate(31, 5, 2008), calendarOf(Alle)), 20); // 1 May counted once
    EXPECT_EQ(countOf(KZDate(1, 5, 2008), KZDate(31, 5, 2008), calendarOf(BY)), 19);
    EXPECT_EQ(countOf(KZDate(31, 10, 2017), KZDate(31, 10, 2017), calendarOf(Alle)), 0);
    EXPECT_EQ(countOf(KZDate(30, 5, 2024), KZDate(30, 5, 2024), calendarOf(ST, "", true)), 0); // classic table
    EXPECT_EQ(countOf(KZDate(30, 5, 2024), KZDate(30, 5, 2024), calendarOf(ST)), 1);
    EXPECT_EQ(countOf(KZDate(2, 1, 2024), KZDate(1, 1, 2024), calendarOf(BY)), 0); // reversed
}

TEST(WorkdaysCount, RefusesWhatItCannotAnswer)
{
    struct Case {
        KZDate from, to;
        WorkdayCalendar calendar;
        KZWorkdays::Status status;
    } const cases[] = {
        {KZDate(1, 1, 2024), KZDate(2, 1, 2024), calendarOf(BY, "", false, 7), KZWorkdays::BadWeek},
        {KZDate(1, 1, 2024), KZDate(2, 1, 2024), calendarOf(BY, "", false, 0), KZWorkdays::BadWeek},
        {KZDate(1, 1, 2024), KZDate(2, 1, 2024), calendarOf(BY, "X"), KZWorkdays::UnknownRegion},
        {KZDate(1, 1, 2024), KZDate(2, 1, 2024), calendarOf(BY, "A", true), KZWorkdays::UnknownRegion},
        {KZDate(1, 1, 2024), KZDate(2, 1, 2024), calendarOf(Alle, "A"), KZWorkdays::UnknownRegion},
        {KZDate(31, 12, 1989), KZDate(2, 1, 1990), calendarOf(BY), KZWorkdays::BeforeFirstYear},
        {KZDate(0u, 0u, 0u), KZDate(2, 1, 2024), calendarOf(BY), KZWorkdays::OutOfRange},
        {KZDate(1, 1, 2024), KZDate(0u, 0u, 0u), calendarOf(BY), KZWorkdays::OutOfRange},
        {KZDate(31, 12, 1582), KZDate(2, 1, 1600), calendarOf(BY, "", true), KZWorkdays::OutOfRange},
        {KZDate(1, 1, 4099), KZDate(1, 1, 4100), calendarOf(BY), KZWorkdays::OutOfRange},
    };
    for (const Case& c : cases) {
        long n = 99;
        EXPECT_EQ(KZWorkdays::count(c.from, c.to, c.calendar, n), c.status) << describe(c.calendar);
        EXPECT_EQ(n, 0);
    }
    long n = 0;
    EXPECT_EQ(KZWorkdays::count(KZDate(1, 1, 1583), KZDate(31, 12, 1989), calendarOf(BY, "", true), n), KZWorkdays::Ok);
    EXPECT_GT(n, 0);
}

TEST(WorkdaysCount, AgreesWithADayByDayWalkForEveryCalendar)
{
    std::mt19937 random(20240531);
    const BundesLand* states = Bundeslaender::getBundesLandConstants();
    std::vector<BundesLand> lands(states, states + 16);
    lands.push_back(Alle);
    lands.push_back(XX);
    const KZDate first(1, 1, 1990);
    int periods = 0;
    for (const BundesLand land : lands)
        for (const bool classic : {false, true})
            for (const int week : {5, 6})
                for (const bool eves : {false, true}) {
                    WorkdayCalendar c = calendarOf(land, "", classic, week, eves);
                    for (int i = 0; i < 3; ++i) {
                        if (!classic && (land == BY || land == SN || land == TH) && i == 2) {
                            for (const HolidayRegion& r : KZHolidayLaw::regions())
                                if (r.state == land)
                                    c.region = r.code;
                        }
                        const KZDate from = first + static_cast<int>(random() % 30000);
                        const KZDate to = from + static_cast<int>(random() % 900);
                        EXPECT_EQ(countOf(from, to, c), referenceCount(from, to, c))
                            << describe(c) << " from " << from.AsString() << " to " << to.AsString();
                        ++periods;
                    }
                }
    EXPECT_EQ(periods, 18 * 2 * 2 * 2 * 3);
}

TEST(WorkdaysCount, AgreesOverACentury)
{
    for (const bool classic : {false, true}) {
        const WorkdayCalendar c = calendarOf(BW, "", classic);
        EXPECT_EQ(countOf(KZDate(1, 1, 2000), KZDate(31, 12, 2099), c),
                  referenceCount(KZDate(1, 1, 2000), KZDate(31, 12, 2099), c));
    }
}

TEST(WorkdaysAdvance, AgreesWithADayByDayWalk)
{
    std::mt19937 random(19900103);
    const BundesLand* states = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 400; ++i) {
        const WorkdayCalendar c =
            calendarOf(i % 17 == 16 ? Alle : states[i % 17 % 16], "", i % 3 == 0, i % 2 == 0 ? 5 : 6, i % 5 == 0);
        const KZDate date = KZDate(1, 1, 1992) + static_cast<int>(random() % 30000);
        const long n = static_cast<long>(random() % 601) - 300;
        KZDate result(0u, 0u, 0u);
        ASSERT_EQ(KZWorkdays::advance(date, n, c, result), KZWorkdays::Ok) << describe(c);
        EXPECT_EQ(result.Hash(), referenceAdvance(date, n, c).Hash())
            << describe(c) << " from " << date.AsString() << " n " << n;
    }
}

TEST(WorkdaysAdvance, IsConsistentWithCountOverLongDistances)
{
    const WorkdayCalendar c = calendarOf(SN, "BZ", false, 5, true);
    const KZDate start(15, 3, 1995);
    for (const long n : {1L, 250L, 9999L, 26000L}) {
        KZDate forward(0u, 0u, 0u), back(0u, 0u, 0u);
        ASSERT_EQ(KZWorkdays::advance(start, n, c, forward), KZWorkdays::Ok);
        EXPECT_EQ(countOf(start + 1, forward, c), n);
        bool working = false;
        EXPECT_EQ(KZWorkdays::isWorkday(forward, c, working), KZWorkdays::Ok);
        EXPECT_TRUE(working);
        ASSERT_EQ(KZWorkdays::advance(forward, -n, c, back), KZWorkdays::Ok);
        EXPECT_EQ(countOf(back, forward - 1, c), n);
        EXPECT_LE(back.Hash(), start.Hash()); // start itself may be free
    }
}

TEST(WorkdaysAdvance, ZeroStaysOnAWorkdayOrMovesToTheNext)
{
    const WorkdayCalendar c = calendarOf(BY);
    KZDate result(0u, 0u, 0u);
    ASSERT_EQ(KZWorkdays::advance(KZDate(2, 1, 2024), 0, c, result), KZWorkdays::Ok);
    EXPECT_EQ(result.Hash(), KZDate(2, 1, 2024).Hash());
    ASSERT_EQ(KZWorkdays::advance(KZDate(24, 12, 2022), 0, c, result), KZWorkdays::Ok); // Sat, Sun, 25, 26
    EXPECT_EQ(result.Hash(), KZDate(27, 12, 2022).Hash());
    ASSERT_EQ(KZWorkdays::advance(KZDate(29, 3, 2024), 1, c, result), KZWorkdays::Ok); // Good Friday .. Easter Monday
    EXPECT_EQ(result.Hash(), KZDate(2, 4, 2024).Hash());
    ASSERT_EQ(KZWorkdays::advance(KZDate(2, 4, 2024), -1, c, result), KZWorkdays::Ok);
    EXPECT_EQ(result.Hash(), KZDate(28, 3, 2024).Hash());
}

TEST(WorkdaysAdvance, RefusesResultsOutsideTheRange)
{
    struct Case {
        KZDate date;
        long n;
        WorkdayCalendar calendar;
        KZWorkdays::Status status;
    } const cases[] = {
        {KZDate(3, 1, 1990), -5, calendarOf(BY), KZWorkdays::BeforeFirstYear},
        {KZDate(3, 1, 1990), -5, calendarOf(BY, "", true), KZWorkdays::Ok},
        {KZDate(30, 12, 4099), 5, calendarOf(BY), KZWorkdays::OutOfRange},
        {KZDate(31, 12, 4099), 0, calendarOf(BY), KZWorkdays::Ok}, // a Thursday
        {KZDate(3, 1, 1583), -5, calendarOf(BY, "", true), KZWorkdays::OutOfRange},
        {KZDate(1, 1, 2024), LONG_MAX, calendarOf(BY), KZWorkdays::OutOfRange},
        {KZDate(1, 1, 2024), LONG_MIN, calendarOf(BY), KZWorkdays::BeforeFirstYear},
        {KZDate(1, 1, 2024), LONG_MIN, calendarOf(BY, "", true), KZWorkdays::OutOfRange},
        {KZDate(0u, 0u, 0u), 1, calendarOf(BY), KZWorkdays::OutOfRange},
        {KZDate(1, 1, 1989), 1, calendarOf(BY), KZWorkdays::BeforeFirstYear},
        {KZDate(1, 1, 2024), 1, calendarOf(BY, "", false, 4), KZWorkdays::BadWeek},
    };
    for (const Case& c : cases) {
        KZDate result(1, 1, 2000);
        const KZWorkdays::Status status = KZWorkdays::advance(c.date, c.n, c.calendar, result);
        EXPECT_EQ(status, c.status) << c.date.AsString() << " n " << c.n;
        if (status != KZWorkdays::Ok) {
            EXPECT_EQ(result.Hash(), 0u);
        }
    }
}

} // namespace
