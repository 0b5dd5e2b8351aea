// KZTime: seconds since 1901, local time and the fixed daylight-saving rule.
#include "KZTime.h"

#include "CivilDays.h"
#include "CrossPlatformApi.h"

#include <ctime>

using namespace kzdatetime;

namespace {

constexpr std::uint32_t kSecondsPerDay = 86400;
constexpr std::uint32_t kSecondsPerHour = 3600;
constexpr std::uint32_t kLastSecond = 0xFFFFFFFFu;
constexpr std::uint32_t kSecondsTo1970 = (kDayNumberOf1970 - kJan1st1901) * kSecondsPerDay;
constexpr long kLastTimeT = kLastSecond - kSecondsTo1970; // 2037-02-06 06:28:15 UTC
constexpr auto kLastWholeDay = static_cast<std::uint32_t>((kLastSecond + 1ull) / kSecondsPerDay - 1); // 5 February 2037

std::uint32_t zoneOffset()
{
    return static_cast<std::uint32_t>(CrossPlatformApi::timezone());
}

} // namespace

KZDate KZTime::RefDate = KZDate(0, 0);
KZDate KZTime::MaxDate = KZDate(kLastWholeDay, 0);
int KZTime::PrintDateFlag = 1;

KZTime::KZTime(const KZDate& date, unsigned hour, unsigned minute, unsigned second) : m_secs(0)
{
    if (isNullDate(date))
        return;
    // Start one hour early and probe the rule on both sides of the hour.
    std::uint32_t t = (dayNumberOf(date) - dayNumberOf(RefDate)) * kSecondsPerDay + hour * kSecondsPerHour
                      - kSecondsPerHour + minute * 60u + second;
    if (t != 0)
        t += zoneOffset();
    if (isDstAt(t)) {
        t += kSecondsPerHour;
        if (isDstAt(t))
            t -= kSecondsPerHour; // a summer clock time
        // otherwise: the hour shown twice is taken as standard time
    } else {
        t += kSecondsPerHour;
        if (isDstAt(t))
            return; // the hour skipped when summer time begins
    }
    m_secs = t;
}

KZTime::KZTime(unsigned hour, unsigned minute, unsigned second) : KZTime(KZDate(), hour, minute, second) {}

// The year goes in as years-since-1900: the two-digit-year rule makes it right
// up to 2037, the last year a KZTime can hold anyway.
KZTime::KZTime() : m_secs(0)
{
    const std::time_t now = CrossPlatformApi::now();
    std::tm local{};
    CrossPlatformApi::localtime_s(&local, &now);
    *this = KZTime(KZDate(static_cast<unsigned>(local.tm_mday), static_cast<unsigned>(local.tm_mon + 1),
                          static_cast<unsigned>(local.tm_year)),
                   static_cast<unsigned>(local.tm_hour), static_cast<unsigned>(local.tm_min),
                   static_cast<unsigned>(local.tm_sec));
}

bool KZTime::AssertDate(const KZDate& date)
{
    return dayNumberOf(RefDate) <= dayNumberOf(date) && dayNumberOf(date) <= dayNumberOf(MaxDate);
}

std::uint32_t KZTime::BuildLocal(const KZDate& date, unsigned hour)
{
    return (dayNumberOf(date) - dayNumberOf(RefDate)) * kSecondsPerDay + hour * kSecondsPerHour + zoneOffset();
}

std::uint32_t KZTime::BeginDST(unsigned year)
{
    return BuildLocal(KZDate(31, 3, year).Previous(7), 2);
}

std::uint32_t KZTime::EndDST(unsigned year)
{
    return BuildLocal(KZDate(31, 10, year).Previous(7), 1);
}

bool KZTime::isDstAt(std::uint32_t seconds)
{
    if (CrossPlatformApi::daylight() == 0)
        return false;
    const unsigned year = civilFromDayNumber(kJan1st1901 + seconds / kSecondsPerDay).year;
    return BeginDST(year) <= seconds && seconds < EndDST(year);
}

bool KZTime::IsDST() const
{
    return isDstAt(m_secs);
}

std::uint32_t KZTime::LocalSecs() const
{
    const std::uint32_t t = m_secs - zoneOffset();
    return isDstAt(t) ? t + kSecondsPerHour : t;
}

unsigned KZTime::Hour() const
{
    return LocalSecs() % kSecondsPerDay / kSecondsPerHour;
}
unsigned KZTime::Minute() const
{
    return LocalSecs() % kSecondsPerDay % kSecondsPerHour / 60;
}
unsigned KZTime::HourGMT() const
{
    return m_secs % kSecondsPerDay / kSecondsPerHour;
}
unsigned KZTime::MinuteGMT() const
{
    return m_secs % kSecondsPerDay % kSecondsPerHour / 60;
}
unsigned KZTime::Second() const
{
    return m_secs % kSecondsPerDay % kSecondsPerHour % 60;
}

int KZTime::CompareTo(const KZTime& other) const
{
    if (m_secs == other.m_secs)
        return 0;
    const auto difference = static_cast<std::int32_t>(m_secs - other.m_secs);
    return difference > 0 ? 1 : -1;
}

std::uint32_t KZTime::Max(const KZTime& other) const
{
    return other.m_secs > m_secs ? other.m_secs : m_secs;
}
std::uint32_t KZTime::Min(const KZTime& other) const
{
    return other.m_secs < m_secs ? other.m_secs : m_secs;
}

long KZTime::get_time_t() const
{
    return m_secs <= kSecondsTo1970 ? 0 : static_cast<long>(m_secs - kSecondsTo1970);
}

void KZTime::set_time_t(long t)
{
    m_secs = t >= 0 && t <= kLastTimeT ? static_cast<std::uint32_t>(t) + kSecondsTo1970 : 0;
}
