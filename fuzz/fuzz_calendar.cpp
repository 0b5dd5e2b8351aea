// Working days and the iCalendar writer on decoded inputs. The bytes choose a
// calendar (state or mask, region, rule set, week, 24/31 December), a period
// of up to three years from 1985 on, a step count and a holiday name; the
// properties checked:
// - count agrees with a day-by-day count through the holiday queries;
// - advance(n) lands on a working day and count over the days stepped is |n|;
// - every physical line of the iCalendar text is at most 75 octets and ends
//   in CRLF.
#include "KZICalendar.h"
#include "KZWorkdays.h"
#include "ReferenceWorkdays.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace KZBasicServices;

namespace {

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    unsigned byte() { return m_pos < m_size ? m_data[m_pos++] : 0u; }
    unsigned word() { return byte() | byte() << 8; }
    std::string rest()
    {
        std::string s(reinterpret_cast<const char*>(m_data) + m_pos, m_size - m_pos);
        m_pos = m_size;
        return s;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

void check(bool property)
{
    if (!property)
        std::abort();
}

BundesLand landOf(Bytes& in)
{
    const unsigned pick = in.byte() % 20;
    if (pick < 16)
        return Bundeslaender::getBundesLandConstants()[pick];
    if (pick == 16)
        return Alle;
    if (pick == 17)
        return XX;
    if (pick == 18)
        return static_cast<BundesLand>(in.word());
    return static_cast<BundesLand>(static_cast<int>(in.word() | in.word() << 16));
}

long countOrAbort(const KZDate& from, const KZDate& to, const WorkdayCalendar& c)
{
    long n = -1;
    check(KZWorkdays::count(from, to, c, n) == KZWorkdays::Ok);
    return n;
}

void checkCount(const KZDate& from, const KZDate& to, const WorkdayCalendar& c)
{
    long n = -1;
    if (KZWorkdays::count(from, to, c, n) != KZWorkdays::Ok)
        return;
    check(n == kzbs_test::referenceCount(from, to, c));
    // The period's holidays and the one-day query agree at its ends.
    check(kzbs_test::referenceWorkday(from, c) == (kzbs_test::referenceCount(from, from, c) == 1));
    check(kzbs_test::referenceWorkday(to, c) == (kzbs_test::referenceCount(to, to, c) == 1));
}

void checkAdvance(const KZDate& from, long n, const WorkdayCalendar& c)
{
    KZDate result(0u, 0u, 0u);
    if (KZWorkdays::advance(from, n, c, result) != KZWorkdays::Ok)
        return;
    bool working = false;
    check(KZWorkdays::isWorkday(result, c, working) == KZWorkdays::Ok && working);
    if (n > 0)
        check(result.Hash() > from.Hash() && countOrAbort(from + 1, result, c) == n);
    else if (n < 0)
        check(result.Hash() < from.Hash() && countOrAbort(result, from - 1, c) == -n);
    else
        check(result.Hash() >= from.Hash() && countOrAbort(from, result, c) == 1);
}

void checkLines(const std::string& text)
{
    check(text.size() >= 2 && text.compare(text.size() - 2, 2, "\r\n") == 0);
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n')
            check(false); // every LF belongs to a CRLF, handled below
        if (text[i] == '\r') {
            check(i + 1 < text.size() && text[i + 1] == '\n');
            check(i - start <= 75);
            start = i + 2;
            ++i;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes in(data, size);
    WorkdayCalendar calendar;
    calendar.land = landOf(in);
    const unsigned flags = in.byte();
    calendar.classic = (flags & 1) != 0;
    calendar.daysPerWeek = (flags & 2) ? 6 : 5;
    if (flags & 0x80)
        calendar.daysPerWeek = static_cast<int>(in.byte()) - 128; // mostly a bad week
    calendar.christmasAndNewYearsEveOff = (flags & 4) != 0;
    const unsigned region = flags >> 3 & 7;
    const std::vector<HolidayRegion>& regions = KZHolidayLaw::regions();
    if (region >= 1 && region <= regions.size())
        calendar.region = regions[region - 1].code;
    else if (region == 7)
        calendar.region = std::string(1, static_cast<char>(in.byte()));

    const KZDate from = KZDate(1, 1, 1985) + static_cast<int>(in.word() % 60000);
    const KZDate to = from + static_cast<int>(in.word() % 1100);
    const long n = static_cast<long>(in.word() % 1601) - 800;

    checkCount(from, to, calendar);
    checkAdvance(from, n, calendar);

    std::vector<DatedHoliday> holidays;
    const KZHolidayLaw::Status status =
        KZHolidayLaw::holidaysInPeriod(from, to, calendar.land, calendar.region, holidays);
    check(status == KZHolidayLaw::Ok || holidays.empty());
    const std::string name = in.rest();
    holidays.push_back(DatedHoliday{from, name, calendar.land, {}});
    ICalendarOptions options;
    options.stamp = static_cast<std::time_t>(n) * 86400 * 3650;
    options.prodId = name;
    options.uidDomain = name;
    checkLines(KZICalendar::write(holidays, options));
    checkLines(KZICalendar::foldLine(name));
    return 0;
}
