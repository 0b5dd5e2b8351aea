// The local-time shims and the small system services.
#include "CrossPlatformApi.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <set>

namespace cpa = CrossPlatformApi;
using cpa::KeyboardState;
using cpa::MilliSecTimer;
using kzbs_test::ScopedNow;
using kzbs_test::ScopedZone;

TEST(LocalTime, TimezoneIsTheOffsetInForceNow)
{
    ScopedZone zone(kzbs_test::kBerlin);
    {
        ScopedNow now(kzbs_test::kWinter2010);
        EXPECT_EQ(cpa::timezone(), -3600);
    }
    {
        ScopedNow now(kzbs_test::kSummer2010);
        EXPECT_EQ(cpa::timezone(), -7200);
    }
    ScopedZone utc("UTC0");
    EXPECT_EQ(cpa::timezone(), 0);
}

TEST(LocalTime, DaylightFlagFollowsTheZoneRules)
{
    {
        ScopedZone zone(kzbs_test::kBerlin);
        EXPECT_NE(cpa::daylight(), 0);
    }
    ScopedZone utc("UTC0");
    EXPECT_EQ(cpa::daylight(), 0);
}

TEST(LocalTime, LocaltimeSBreaksDownLocalTimeResultFirst)
{
    ScopedZone zone(kzbs_test::kBerlin);
    const std::time_t t = kzbs_test::kSummer2010;
    std::tm tm{};
    EXPECT_EQ(cpa::localtime_s(&tm, &t), 0);
    EXPECT_EQ(tm.tm_hour, 14);
    EXPECT_EQ(tm.tm_mday, 11);
    EXPECT_EQ(tm.tm_mon, 6);
    EXPECT_NE(cpa::localtime_s(nullptr, &t), 0);
    EXPECT_NE(cpa::localtime_s(&tm, nullptr), 0);
}

TEST(Shims, StrCmpNoCase)
{
    EXPECT_EQ(cpa::strCmpNoCase("abc", "ABC"), 0);
    EXPECT_LT(cpa::strCmpNoCase("a", "B"), 0);
    EXPECT_GT(cpa::strCmpNoCase("b", "A"), 0);
    EXPECT_LT(cpa::strCmpNoCase(nullptr, "a"), 0);
}

TEST(Shims, OutputDebugStringAddsNothing)
{
    testing::internal::CaptureStderr();
    cpa::outputDebugString("x");
    cpa::outputDebugString("y");
    cpa::outputDebugString(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "xy");
}

TEST(Arithmetic, MulDivTruncatesWithA64BitProduct)
{
    struct Case { int number, numerator, denominator, expected; };
    const Case cases[] = {
        {7, 1, 2, 3},
        {-7, 1, 2, -3},
        {100000, 100000, 100000, 100000},
        {2147483647, 2, 2, 2147483647},
        {-2147483647 - 1, -1, 1, -2147483647 - 1}, // 2^31 keeps its low 32 bits
        {5, 5, 0, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(cpa::MulDiv(c.number, c.numerator, c.denominator), c.expected)
            << c.number << " * " << c.numerator << " / " << c.denominator;
}

TEST(Arithmetic, RotlIsModulo32)
{
    EXPECT_EQ(cpa::rotl(0x80000001u, 1), 3u);
    EXPECT_EQ(cpa::rotl(0x12345678u, 32), 0x12345678u);
    EXPECT_EQ(cpa::rotl(0x12345678u, 0), 0x12345678u);
    EXPECT_EQ(cpa::rotl(0x12345678u, 36), 0x23456781u);
}

TEST(Clocks, TimersAndTicksAdvance)
{
    MilliSecTimer timer;
    const auto ticks = cpa::getTickCount();
    cpa::sleep(20);
    EXPECT_GE(timer.elapsed(), 20);
    EXPECT_GE(cpa::getTickCount() - ticks, 20);
    timer.start();
    EXPECT_LT(timer.elapsed(), 20);
}

TEST(Identity, UuidsAreBracedLowerCaseAndNew)
{
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string uuid = cpa::getUUID();
        ASSERT_EQ(uuid.size(), 38u);
        EXPECT_EQ(uuid.front(), '{');
        EXPECT_EQ(uuid.back(), '}');
        for (size_t k : {9u, 14u, 19u, 24u})
            EXPECT_EQ(uuid[k], '-');
        EXPECT_EQ(uuid.find_first_of("ABCDEF"), std::string::npos);
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 100u);
}

TEST(Encoding, ConvertsBetweenWindows1252AndUtf8)
{
    struct Case { std::string cp1252, utf8; };
    const Case cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"\xF6", "\xC3\xB6"},
        {"M\xE4rz \xDF", "M\xC3\xA4rz \xC3\x9F"},
        {"\x80", "\xE2\x82\xAC"}, // the euro sign needs three bytes
    };
    for (const Case& c : cases) {
        EXPECT_EQ(cpa::fileSystemEncoding(c.cp1252), c.utf8);
        EXPECT_EQ(cpa::internalEncoding(c.utf8), c.cp1252);
    }
}

TEST(Encoding, BadInputIsReportedAndReturnedUnchanged)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(cpa::internalEncoding("a\xFF" "b"), "a\xFF" "b");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Fehler in internalEncoding:a\xFF" "b");

    testing::internal::CaptureStderr();
    EXPECT_EQ(cpa::internalEncoding("\xC3"), "\xC3"); // cut off in the middle of a character
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Fehler in internalEncoding:\xC3");

    testing::internal::CaptureStderr();
    EXPECT_EQ(cpa::fileSystemEncoding("x\x81"), "x\x81"); // undefined in Windows-1252
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Fehler in fileSystemEncoding:x\x81");
}

TEST(Encoding, UnrepresentableCharactersBecomeQuestionMarks)
{
    EXPECT_EQ(cpa::internalEncoding("a\xC5\x91z"), "a?z");       // o with double acute
    EXPECT_EQ(cpa::internalEncoding("\xF0\x9F\x99\x82!"), "?!");  // outside the BMP
}

TEST(Keyboard, NothingIsHeldWithoutAGuiApplication)
{
    using K = KeyboardState;
    for (K::KeyType key : {K::KeyShift, K::KeyControl, K::KeyCommand, K::KeyOption})
        EXPECT_EQ(K::keyState(key), 0);
    EXPECT_EQ(K::keyState(static_cast<K::KeyType>(18)), 0); // generic Alt is not a key here
}
