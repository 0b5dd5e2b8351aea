// Date text: the output layouts and the stream and pattern readers.
#include "KZDate.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <sstream>

namespace {

// Restores the process-wide print settings after each test.
class DateText : public ::testing::Test {
protected:
    void SetUp() override { std::memcpy(m_fmt, KZDate::ShortDateFmt, sizeof m_fmt); }
    void TearDown() override
    {
        KZDate::PrintOption = 0;
        std::memcpy(KZDate::ShortDateFmt, m_fmt, sizeof m_fmt);
    }
    char m_fmt[12] = {};
};

std::string print(int option, const KZDate& date)
{
    KZDate::PrintOption = option;
    return date.AsString();
}

struct Parsed {
    std::uint32_t day;
    bool bad;
};

Parsed parseStream(const std::string& text)
{
    std::istringstream in(text);
    KZDate date(1, 1, 2000);
    date.ParseFrom(in);
    return {date.Hash(), in.bad()};
}

std::uint32_t parsePattern(const char* text, const char* pattern)
{
    KZDate date(1, 1, 2000);
    date.ParseFrom(text, pattern);
    return date.Hash();
}

} // namespace

TEST_F(DateText, PrintLayouts)
{
    const KZDate d(5, 1, 2010);
    const struct { int option; const char* text; } cases[] = {
        {0, "Januar 5, 2010"}, {1, "05-Jan-2010"}, {2, "01/5/2010"}, {3, "05/1/2010"},
        {4, "05 Januar 2010"}, {5, ""}, {-1, ""}, {7, ""}};
    for (const auto& c : cases)
        EXPECT_EQ(print(c.option, d), c.text) << c.option;
    EXPECT_EQ(print(1, KZDate(0, 2, 3)), "28-Feb-2935093");
    EXPECT_EQ(print(1, KZDate(9, 3, 138)), "09-M\xE4r-0138");
    EXPECT_EQ(print(0, KZDate(25, 12, 2010)), "Dezember 25, 2010");
}

TEST_F(DateText, TargetStreamWidthAppliesToTheWholeText)
{
    KZDate::PrintOption = 3;
    std::ostringstream out;
    out << std::setw(12) << std::setfill('*') << KZDate(5, 1, 2010) << "|" << KZDate(5, 1, 2010);
    EXPECT_EQ(out.str(), "***05/1/2010|05/1/2010");
}

TEST_F(DateText, MissingMonthNameStopsTheLayout)
{
    const char* saved[12];
    for (int i = 0; i < 12; ++i)
        saved[i] = KZDate::GetIntlName(MonthNames, i);
    KZDate::SetIntlNames(MonthNames, nullptr);
    const KZDate d(5, 1, 2010);
    EXPECT_EQ(print(0, d), "");
    EXPECT_EQ(print(1, d), "");
    EXPECT_EQ(print(4, d), "05 ");
    EXPECT_EQ(print(3, d), "05/1/2010");
    KZDate::SetIntlNames(MonthNames, saved);
}

TEST_F(DateText, StreamReader)
{
    const std::uint32_t jan15 = KZDate(15, 1, 2010).Hash();
    const struct { const char* text; std::uint32_t day; bool bad; } cases[] = {
        {"Januar 15 2010 ", jan15, false},
        {"15. Januar 2010 ", jan15, false},
        {"1/15/2010 ", jan15, false},
        {"  jan, 15; 2010!", jan15, false},
        {"Ju 4 2010 ", KZDate(4, 7, 2010).Hash(), false},
        {"3 4 10 ", KZDate(4, 3, 1910).Hash(), false},
        {"15.01.2010 ", 0, true},   // month 15
        {"1/15/2010", 0, true},     // the year must not end the stream
        {"15 Xyz 2010 ", 0, true},
        {"30 Februar 2010 ", 0, true},
        {"15", 0, false},           // ends before the second field
        {"1 15", 0, false},
        {"", 0, false},
        {"--- ", 0, false},
    };
    for (const auto& c : cases) {
        const Parsed p = parseStream(c.text);
        EXPECT_EQ(p.day, c.day) << '"' << c.text << '"';
        EXPECT_EQ(p.bad, c.bad) << '"' << c.text << '"';
    }
    std::istringstream failed("Januar 15 2010 ");
    failed.setstate(std::ios::failbit);
    KZDate date(1, 1, 2000);
    date.ParseFrom(failed);
    EXPECT_EQ(date.Hash(), 0u);
    EXPECT_TRUE(failed.bad());
}

TEST_F(DateText, PatternReader)
{
    const std::uint32_t jan5 = KZDate(5, 1, 2010).Hash();
    const struct { const char* text; const char* pattern; std::uint32_t day; } cases[] = {
        {"05.01.2010", nullptr, jan5},
        {"5.1.2010", "dd.MM.yyyy", jan5},
        {"05.01.10", "dd.MM.yyyy", KZDate(5, 1, 1910).Hash()},
        {"2010-01-05", "yyyy-MM-dd", jan5},
        {"05/01/2010", "DD?mm?YYYY", jan5},
        {"050110", "ddMMyy", KZDate(5, 1, 1910).Hash()},
        {"12345678", "ddmmyy", 0},                            // month 34
        {"12035678", "ddmmy", KZDate(12, 3, 1956).Hash()},    // counting stops after 2 digits
        {"1203056789", "ddmmyy", KZDate(12, 3, 567).Hash()},  // more than 2 digits: 4 taken
        {"05.01.201", "dd.MM.yyyy", KZDate(5, 1, 201).Hash()}, // 4 wanted, 3 there
        {"1.1.", "d.m.yyyy", KZDate(1, 1, 1900).Hash()},       // year 0 means 1900
        {"xx.01.2010", "dd.MM.yyyy", 0},
        {"05.Jan.2010", "dd.MM.yyyy", 0},
        {"", "dd.MM.yyyy", 0},
        {"05.01.2010", "", 0},
        {nullptr, "dd.MM.yyyy", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parsePattern(c.text, c.pattern), c.day) << (c.text ? c.text : "(null)") << " / "
                                                         << (c.pattern ? c.pattern : "(default)");
    std::strcpy(KZDate::ShortDateFmt, "MM/dd/yyyy");
    EXPECT_EQ(parsePattern("01/05/2010", nullptr), jan5);
}
