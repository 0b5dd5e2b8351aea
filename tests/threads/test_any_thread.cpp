// The functions whose headers say they may run on any thread, run from eight
// threads at once over the same inputs. Each thread's answers must equal the
// answers of one thread alone; under ThreadSanitizer (make test-tsan) nothing
// may be reported either. Each case runs in a process of its own, so the
// threads also meet every first-use initialisation.
//
// Covered: holiday law and classic table queries, working days, iCalendar
// writing, the matcher (compiled once per thread, and one compiled object
// searched by all), file names with an environment per thread, dates and
// local times, the number and text conversions, the Windows-1252 / UTF-8
// encodings, and the cipher's block functions in every mode on each
// implementation, on key schedules made before the threads start.
// Left out, as their headers promise no such thing: the encrypted-buffer
// objects (KZCrypt::encode and decode call makeKey, which writes the
// process-wide ROUNDS, so no two objects may encode or decode at once),
// KZStringFunctions::intToString (one static buffer), KZFileName::asString
// (it switches the process-wide separator) and the process-wide settings.
#include "KZCalendar.h"
#include "KZCrypt.h"
#include "KZDate.h"
#include "KZFileName.h"
#include "KZHolidayLaw.h"
#include "KZICalendar.h"
#include "KZRegExp.h"
#include "KZStringFunctions.h"
#include "KZTime.h"
#include "KZWorkdays.h"
#include "CrossPlatformApi.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace KZBasicServices;

constexpr int kThreads = 8;
constexpr int kRounds = 3; // so that the threads' calls overlap

std::vector<BundesLand> everyState()
{
    std::vector<BundesLand> states;
    for (int id = 1; id <= 16; ++id)
        states.push_back(Bundeslaender::mapBundesLandId2BundeLand(static_cast<BundesLandId>(id)));
    return states;
}

void describe(std::ostream& out, const std::vector<DatedHoliday>& days)
{
    for (const DatedHoliday& day : days) {
        out << day.date.Hash() << ' ' << day.name << ' ' << day.states;
        for (const HolidayRegion* region : day.regions)
            out << ' ' << region->code;
        out << '\n';
    }
}

std::string holidayLaw()
{
    std::ostringstream out;
    std::vector<DatedHoliday> days;
    for (BundesLand state : everyState()) {
        out << KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 2015), KZDate(31, 12, 2027), state, "", days);
        describe(out, days);
        for (KZDate d(1, 10, 2020); d.CompareTo(KZDate(30, 11, 2020)) <= 0; d = d + 1)
            out << KZHolidayLaw::isPublicHoliday(d, state);
    }
    for (const HolidayRegion& region : KZHolidayLaw::regions()) {
        out << KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 2024), KZDate(31, 12, 2025), region.state, region.code,
                                              days);
        describe(out, days);
    }
    int states = 0;
    std::vector<const HolidayRegion*> regions;
    for (int year = 1990; year <= 2030; ++year)
        out << KZHolidayLaw::whereHolds("Reformationstag", year, states, regions) << states << regions.size();
    return out.str();
}

std::string classicTable()
{
    std::ostringstream out;
    for (int year = 1583; year <= 2400; ++year)
        out << KZCalendar::easter(year).Hash() << ' ';
    for (BundesLand state : everyState()) {
        for (const PublicHolidayInfo& info :
             KZCalendar::getPublicHolidaysInPeriod(KZDate(1, 1, 2000), KZDate(31, 12, 2012), state))
            out << info.getDate().Hash() << info.m_name << ' ';
        describe(out, KZHolidayLaw::classicHolidaysInPeriod(KZDate(1, 1, 2020), KZDate(31, 12, 2021), state));
        for (unsigned dayOfYear = 1; dayOfYear <= 365; dayOfYear += 3)
            out << KZCalendar::isPublicHoliday(KZDate(dayOfYear, 2021), state);
    }
    return out.str();
}

std::string workdays()
{
    std::ostringstream out;
    for (BundesLand state : everyState()) {
        for (bool classic : {false, true}) {
            for (int perWeek : {5, 6}) {
                WorkdayCalendar calendar;
                calendar.land = state;
                calendar.classic = classic;
                calendar.daysPerWeek = perWeek;
                calendar.christmasAndNewYearsEveOff = perWeek == 6;
                long count = 0;
                KZDate due;
                bool working = false;
                out << KZWorkdays::count(KZDate(1, 1, 1995), KZDate(31, 12, 2040), calendar, count) << count
                    << KZWorkdays::advance(KZDate(18, 12, 2026), 10, calendar, due) << due.Hash()
                    << KZWorkdays::advance(KZDate(6, 1, 2027), -250, calendar, due) << due.Hash()
                    << KZWorkdays::isWorkday(KZDate(31, 10, 2017), calendar, working) << working << ' ';
            }
        }
    }
    WorkdayCalendar augsburg;
    augsburg.land = BY;
    augsburg.region = "A";
    long count = 0;
    out << KZWorkdays::count(KZDate(1, 8, 2024), KZDate(31, 8, 2024), augsburg, count) << count;
    return out.str();
}

std::string iCalendar()
{
    std::vector<DatedHoliday> days;
    const int status = KZHolidayLaw::holidaysInPeriod(KZDate(1, 1, 2024), KZDate(31, 12, 2026), BY, "A", days);
    ICalendarOptions options;
    options.stamp = kzbs_test::kSummer2010;
    return std::to_string(status) + KZICalendar::write(days, options) + KZICalendar::write(days);
}

struct Search {
    const char* pattern;
    const char* text;
};
const Search kSearches[] = {
    {"[0-9]+-[0-9]+", "Zimmer 12-14"},
    {"^a*b", "aaab"},
    {"x?y+z$", "wxyyyz"},
    {"[^a-z]", "abc!"},
    {"\\x41.\\101", "zzA-A"},
    {"a*a*a*a*b", "aaaaaaaaaaaaaaaaaaaac"},
    {"[a-", "broken"},
    {"K.*e", "Kalenderwoche"},
};

void search(std::ostream& out, const KZRegExp& re, const Search& s)
{
    unsigned long length = 0;
    for (unsigned long start = 0; start < 4; ++start)
        out << re.find(s.text, &length, start) << ':' << length << ' ';
}

std::string matcherPerThread()
{
    std::ostringstream out;
    for (int round = 0; round < 20; ++round) {
        for (const Search& s : kSearches) {
            KZRegExp re(s.pattern);
            out << re.status() << ' ';
            search(out, re, s);
        }
    }
    return out.str();
}

// Compiled before the threads start; find() is const.
const std::vector<KZRegExp>& sharedMatchers()
{
    static const std::vector<KZRegExp> matchers = [] {
        std::vector<KZRegExp> compiled;
        for (const Search& s : kSearches)
            compiled.emplace_back(s.pattern);
        return compiled;
    }();
    return matchers;
}

std::string matcherShared()
{
    std::ostringstream out;
    for (int round = 0; round < 20; ++round)
        for (std::size_t i = 0; i < sharedMatchers().size(); ++i)
            search(out, sharedMatchers()[i], kSearches[i]);
    return out.str();
}

std::string fileNames()
{
    KZFileEnvironment env;
    env.setBaseDir("/opt/kalender");
    std::istringstream symbols("DATA=<SYS_BASEDIR>/Daten ARCHIV=<DATA>/../Archiv LOOP=<LOOP><LOOP>");
    env.setMaxGrowth(4096);
    env.readSymbolsFromFile(symbols);
    std::ostringstream out;
    for (const char* text : {"<DATA>\\2027\\termine.dat", "<ARCHIV>/a/../b//c.tar.gz", "<LOOP>x", "C:dir\\x.txt",
                             "\\\\srv\\share\\f", "a/b/../../../c", ".profile", "name."}) {
        const std::string expanded = env.expandString(text);
        KZFileName name(expanded);
        out << expanded.size() << ' ' << name.compose() << '|' << name.normalizedString() << '|'
            << KZFileName::getNormalizedString(expanded.substr(0, 64)) << '|' << name.isAbsPath() << name.isValid()
            << name.isDriveRelPath() << '|' << name.asRelPathString() << '\n';
    }
    out << env.symbolsAsString();
    return out.str();
}

std::string datesAndTimes()
{
    std::ostringstream out;
    for (KZDate date(1, 1, 2010); date.Year() < 2012; date = date + 5) {
        const KZTime noon(date, 12, 30, 15);
        out << date.AsString() << date.WeekDay() << noon.LocalSecs() << noon.Hour() << noon.IsDST() << noon.get_time_t()
            << noon.asFormatString("%d.%m.%Y %H:%M") << ' ';
    }
    KZDate parsed;
    parsed.ParseFrom("29.02.2024", nullptr);
    out << parsed.Hash() << KZDate(15, "Jan", 2010).Hash() << KZTime::BeginDST(2026) << KZTime::EndDST(2026);
    return out.str();
}

std::string conversions()
{
    std::ostringstream out;
    char buffer[72];
    for (long value : {0L, 7L, -28L, 255L, 65536L, -2147483647L - 1, LONG_MAX}) {
        for (int radix : {2, 8, 10, 16, 36})
            out << itoa(static_cast<int>(value), buffer, radix) << ' ' << ltoa(value, buffer, radix) << ' ';
        out << itoa_s(static_cast<int>(value), buffer, 4, 10) << lTohex(value, true)
            << formatDoubleToString(value / 7.0, 3, 0, ',', '.') << reformatNumString(std::to_string(value), true);
    }
    const std::string escaped = c2txt("a\r\nb\t\"\\\x01\xE4");
    out << escaped << txt2c(escaped) << KZStringFunctions::stringToInt("  -42x")
        << KZStringFunctions::upper("gro\xDF und klein") << KZStringFunctions::hash("Kalender")
        << KZStringFunctions::findNoCase("Hello World", "WORLD") << KZStringFunctions::compareNoCase("abc", "ABD")
        << KZStringFunctions::translateSpecialCharsToXml("<a & \"b\">")
        << KZStringFunctions::strip("  Datei  ", KZStringFunctions::StripBoth, ' ');
    const std::string utf8 = CrossPlatformApi::fileSystemEncoding("M\xE4rz \x80 \xDF");
    out << utf8 << CrossPlatformApi::internalEncoding(utf8) << CrossPlatformApi::strCmpNoCase("Abc", "aBd");
    return out.str();
}

// Key and cipher records for every mode, made before the threads start.
struct CipherRecords {
    keyInstance encrypt, decrypt;
    cipherInstance modes[3];
};
CipherRecords& cipherRecords()
{
    static CipherRecords records;
    return records;
}

void prepareCipher(int implementation)
{
    CipherRecords& r = cipherRecords();
    const char* key = "603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4";
    makeKey(&r.encrypt, DIR_ENCRYPT, 256, key);
    makeKey(&r.decrypt, DIR_DECRYPT, 256, key);
    const unsigned char modes[3] = {MODE_ECB, MODE_CBC, MODE_CFB1};
    for (int i = 0; i < 3; ++i)
        cipherInit(&r.modes[i], modes[i], "000102030405060708090a0b0c0d0e0f");
    rijndaelSetImplementation(implementation);
}

std::string cipherBlocks()
{
    const CipherRecords& r = cipherRecords();
    std::vector<unsigned char> plain(16 * 37), sealed(plain.size()), opened(plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i)
        plain[i] = static_cast<unsigned char>(i * 7 + 3);
    std::string answers;
    for (int round = 0; round < 10; ++round) {
        for (const cipherInstance& mode : r.modes) {
            const int bits = mode.mode == MODE_CFB1 ? 256 : static_cast<int>(plain.size() * 8);
            sealed = plain;
            answers += std::to_string(blockEncrypt(&mode, &r.encrypt, plain.data(), bits, sealed.data()));
            const keyInstance& key = mode.mode == MODE_CFB1 ? r.encrypt : r.decrypt;
            opened = sealed;
            answers += std::to_string(blockDecrypt(&mode, &key, sealed.data(), bits, opened.data()));
            answers.append(sealed.begin(), sealed.end());
            answers.append(opened.begin(), opened.end());
        }
        unsigned char state[16];
        cipherUpdateRounds(&r.modes[0], &r.encrypt, plain.data(), 128, state, 5);
        answers.append(state, state + 16);
    }
    return answers;
}

struct Job {
    const char* name;
    std::string (*run)();
    void (*prepare)();
};

void noPreparation() {}

const Job kJobs[] = {
    {"HolidayLaw", holidayLaw, noPreparation},
    {"ClassicTable", classicTable, noPreparation},
    {"Workdays", workdays, noPreparation},
    {"ICalendar", iCalendar, noPreparation},
    {"MatcherPerThread", matcherPerThread, noPreparation},
    {"MatcherShared", matcherShared, [] { sharedMatchers(); }},
    {"FileNames", fileNames, noPreparation},
    {"DatesAndTimes", datesAndTimes, noPreparation},
    {"Conversions", conversions, noPreparation},
    {"CipherPortable", cipherBlocks, [] { prepareCipher(RIJNDAEL_PORTABLE); }},
    {"CipherAesNi", cipherBlocks, [] { prepareCipher(RIJNDAEL_HARDWARE); }},
    {"CipherVaes", cipherBlocks, [] { prepareCipher(RIJNDAEL_VAES); }},
};

void PrintTo(const Job& job, std::ostream* out)
{
    *out << job.name;
}

class AnyThread : public testing::TestWithParam<Job> {};

TEST_P(AnyThread, EightThreadsGiveTheAnswersOfOne)
{
    // Zone and "now" are process-wide: pinned before any thread starts.
    kzbs_test::ScopedZone zone(kzbs_test::kBerlin);
    kzbs_test::ScopedNow now(kzbs_test::kWinter2010);
    const Job& job = GetParam();
    job.prepare();

    std::vector<std::string> answers(kThreads * kRounds);
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            waiting.fetch_sub(1);
            while (waiting.load() > 0)
                std::this_thread::yield(); // all start together
            for (int round = 0; round < kRounds; ++round)
                answers[t * kRounds + round] = job.run();
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const std::string alone = job.run();
    ASSERT_FALSE(alone.empty());
    for (std::size_t i = 0; i < answers.size(); ++i)
        EXPECT_TRUE(answers[i] == alone) << "thread " << i / kRounds << ", round " << i % kRounds;
}

INSTANTIATE_TEST_SUITE_P(Library, AnyThread, testing::ValuesIn(kJobs),
                         [](const testing::TestParamInfo<Job>& info) { return std::string(info.param.name); });

} // namespace
