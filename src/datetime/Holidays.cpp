// The holiday rules and the table of the fifteen holidays.
#include "KZCalendar.h"

#include "DayOfRepentance.h"

using namespace KZBasicServices;

PublicHolidayInfoBase g_holiday_Info[kPublicHolidayCount] = {
    PublicHolidayInfoBase("Neujahrstag", 1, 1, Alle),
    PublicHolidayInfoBase("Karfreitag", PublicHolidayInfoBase::RelativeToEaster, -2, Alle),
    PublicHolidayInfoBase("Ostermontag", PublicHolidayInfoBase::RelativeToEaster, 1, Alle),
    PublicHolidayInfoBase("Tag der Arbeit", 1, 5, Alle),
    PublicHolidayInfoBase("Christi Himmelfahrt", PublicHolidayInfoBase::RelativeToEaster, 39, Alle),
    PublicHolidayInfoBase("Pfingstmontag", PublicHolidayInfoBase::RelativeToEaster, 50, Alle),
    PublicHolidayInfoBase("Tag der Deutschen Einheit", 3, 10, Alle),
    PublicHolidayInfoBase("1. Weihnachtstag", 25, 12, Alle),
    PublicHolidayInfoBase("2. Weihnachtstag", 26, 12, Alle),
    PublicHolidayInfoBase("Heilige Drei K\xF6nige", 6, 1, BW | BY | ST),
    PublicHolidayInfoBase("Fronleichnam", PublicHolidayInfoBase::RelativeToEaster, 60, BW | BY | NW | RP | SL | ST),
    PublicHolidayInfoBase("Reformationstag", 31, 10, BB | MV | SN | ST | TH),
    PublicHolidayInfoBase("Allerheiligen", 1, 11, BW | BY | NW | RP | SL),
    PublicHolidayInfoBase("Bu\xDF- und Bettag", PublicHolidayInfoBase::DayOfRepentance, 0, SN),
    PublicHolidayInfoBase("Mari\xE4 Himmelfahrt", 15, 8, BY | SL),
};

PublicHolidayInfoBase::PublicHolidayInfoBase() : m_day(-1), m_month(-1), m_offset(-1), m_states(Alle), m_rule(FixedDate)
{
}

PublicHolidayInfoBase::PublicHolidayInfoBase(const char* name, int day, int month, int states)
    : m_name(name ? name : ""), m_day(day), m_month(month), m_offset(-1), m_states(states), m_rule(FixedDate)
{
}

PublicHolidayInfoBase::PublicHolidayInfoBase(const char* name, DateCalcRule rule, int offset, int states)
    : m_name(name ? name : ""), m_day(-1), m_month(-1), m_offset(offset), m_states(states), m_rule(rule)
{
}

PublicHolidayInfoBase::PublicHolidayInfoBase(const PublicHolidayInfoBase& other) = default;

PublicHolidayInfoBase& PublicHolidayInfoBase::operator=(const PublicHolidayInfoBase& other)
{
    if (this != &other) {
        m_name = other.m_name;
        m_day = other.m_day;
        m_month = other.m_month;
        m_offset = other.m_offset;
        m_states = other.m_states;
        m_rule = other.m_rule;
    }
    return *this;
}

bool PublicHolidayInfoBase::isValidIn(BundesLand land) const
{
    return land == 0 || (m_states & land) == land;
}

KZDate PublicHolidayInfoBase::getDateForYear(int year) const
{
    const auto y = static_cast<unsigned>(year);
    switch (m_rule) {
    case FixedDate: return KZDate(static_cast<unsigned>(m_day), static_cast<unsigned>(m_month), y);
    case RelativeToEaster: return KZCalendar::easter(year) + m_offset;
    case DayOfRepentance: return kzdatetime::dayOfRepentance(y);
    default: return KZDate(1, 1, y);
    }
}

PublicHolidayInfo::PublicHolidayInfo(const PublicHolidayInfoBase& rule, int year)
    : PublicHolidayInfoBase(rule), m_year(year)
{
}

PublicHolidayInfo::PublicHolidayInfo(const PublicHolidayInfo& other) = default;

PublicHolidayInfo& PublicHolidayInfo::operator=(const PublicHolidayInfo& other)
{
    if (this != &other) {
        PublicHolidayInfoBase::operator=(other);
        m_year = other.m_year;
    }
    return *this;
}
