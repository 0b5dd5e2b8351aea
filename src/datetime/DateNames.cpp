// The German month and weekday names of KZDate and the matching of typed names.
#include "KZDate.h"

#include <cstring>
#include <strings.h>

namespace {

// Umlauts as octal escapes: three digits at most, so the letters after them stay letters.
const char* const kMonthNames[12] = {"Januar", "Februar", "M\344rz",   "April",   "Mai",      "Juni",
                                     "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
const char* const kUpperMonthNames[12] = {"JANUAR", "FEBRUAR", "M\304RZ",   "APRIL",   "MAI",      "JUNI",
                                          "JULI",   "AUGUST",  "SEPTEMBER", "OKTOBER", "NOVEMBER", "DEZEMBER"};
const char* const kDayNames[7] = {"Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag", "Sonntag"};
const char* const kUpperDayNames[7] = {"MONTAG", "DIENSTAG", "MITTWOCH", "DONNERSTAG", "FREITAG", "SAMSTAG", "SONNTAG"};

const int kTableSize[4] = {12, 12, 7, 7};

// The current tables. A null slot is one made unusable by SetIntlNames(kind, nullptr).
const char* const* g_tables[4] = {kMonthNames, kUpperMonthNames, kDayNames, kUpperDayNames};

bool knownKind(KZDateType type)
{
    return type >= MonthNames && type <= UpperDayNames;
}

const char* entry(KZDateType type, int index)
{
    if (!knownKind(type) || index < 0 || index >= kTableSize[type] || !g_tables[type])
        return nullptr;
    return g_tables[type][index];
}

// Searches from the last entry, so of several names sharing the prefix the later wins.
unsigned matchPrefix(KZDateType type, const char* name)
{
    if (!name || !g_tables[type])
        return 0;
    const std::size_t length = std::strlen(name);
    for (int i = kTableSize[type] - 1; i >= 0; --i) {
        const char* candidate = g_tables[type][i];
        if (candidate && ::strncasecmp(name, candidate, length) == 0)
            return static_cast<unsigned>(i + 1);
    }
    return 0;
}

} // namespace

const char* KZDate::MonthName(unsigned month)
{
    return month >= 1 && month <= 12 ? entry(MonthNames, static_cast<int>(month) - 1) : nullptr;
}

const char* KZDate::DayName(unsigned weekday)
{
    return weekday >= 1 && weekday <= 7 ? entry(DayNames, static_cast<int>(weekday) - 1) : nullptr;
}

unsigned KZDate::IndexOfMonth(const char* name)
{
    return matchPrefix(UpperMonthNames, name);
}

unsigned KZDate::DayOfWeek(const char* name)
{
    return matchPrefix(UpperDayNames, name);
}

void KZDate::SetIntlNames(KZDateType type, const char** names)
{
    if (!knownKind(type))
        return;
    // A null table leaves the slot unusable rather than restoring the
    // defaults; lookups through it answer "nothing" instead of misreading the
    // built-in table's first name as a table.
    g_tables[type] = names;
}

const char* KZDate::GetIntlName(KZDateType type, int index)
{
    return entry(type, index);
}
