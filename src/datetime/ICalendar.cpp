// Holidays as an iCalendar file: one all-day event per holiday.
#include "KZICalendar.h"

#include "CivilDays.h"
#include "CrossPlatformApi.h"
#include "../platform/Cp1252.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

using namespace KZBasicServices;
using namespace kzdatetime;

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;

void appendUtf8(std::string& out, unsigned code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

std::string utf8FromCp1252(const std::string& text)
{
    std::string out;
    out.reserve(text.size() + text.size() / 4);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        appendUtf8(out, cp1252ToUnicode(byte));
    }
    return out;
}

bool isContinuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The UID depends on the date and the name only: FNV-1a over the name.
std::string hashOf(const std::string& name)
{
    std::uint64_t hash = 14695981039346656037ull;
    for (const char c : name) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 1099511628211ull;
    }
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

std::string dateValue(unsigned year, unsigned month, unsigned day)
{
    char text[16];
    std::snprintf(text, sizeof text, "%04u%02u%02u", year % 10000u, month % 100u, day % 100u);
    return text;
}

std::string dateValue(const KZDate& date)
{
    unsigned month = 0, day = 0, year = 0;
    date.Mdy(month, day, year);
    return dateValue(year, month, day);
}

// UTC, held within years 1..9999.
std::string stampValue(std::time_t stamp)
{
    const std::int64_t lowest = daysFromCivil(std::int64_t{1}, 1, 1) * kSecondsPerDay;
    const std::int64_t highest = daysFromCivil(std::int64_t{10000}, 1, 1) * kSecondsPerDay - 1;
    const std::int64_t t = std::clamp(static_cast<std::int64_t>(stamp), lowest, highest);
    const std::int64_t days = t / kSecondsPerDay - (t % kSecondsPerDay < 0 ? 1 : 0);
    const std::int64_t secs = t - days * kSecondsPerDay;
    const CivilDate<std::int64_t> date = civilFromDays(days);
    char text[32];
    std::snprintf(text, sizeof text, "%sT%02d%02d%02dZ",
                  dateValue(static_cast<unsigned>(date.year), date.month, date.day).c_str(),
                  static_cast<int>(secs / 3600), static_cast<int>(secs / 60 % 60), static_cast<int>(secs % 60));
    return text;
}

// "Gesetzlicher Feiertag in ..." with the states' full names and the regions
// (Windows-1252).
std::string whereText(const DatedHoliday& holiday)
{
    static const Bundeslaender names;
    std::string text = "Gesetzlicher Feiertag";
    if ((holiday.states & Alle) == Alle)
        return text + " in allen Bundesl\xE4ndern";
    std::string places;
    const BundesLand* states = Bundeslaender::getBundesLandConstants();
    for (int i = 0; i < 16; ++i)
        if (holiday.states & states[i])
            places += (places.empty() ? "" : ", ") + names.getName(states[i], true);
    for (const HolidayRegion* region : holiday.regions)
        if (region)
            places += (places.empty() ? "" : ", ") + names.getName(region->state, true) + " ("
                      + (region->description ? region->description : "") + ")";
    return places.empty() ? text : text + " in " + places;
}

} // namespace

std::string KZICalendar::escapeText(const std::string& utf8)
{
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        switch (c) {
        case '\\': out += "\\\\"; break;
        case ';': out += "\\;"; break;
        case ',': out += "\\,"; break;
        case '\n': out += "\\n"; break;
        case '\r':
            if (i + 1 < utf8.size() && utf8[i + 1] == '\n')
                ++i;
            out += "\\n";
            break;
        default:
            // No other control character may stand in a TEXT value.
            if ((static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) || c == '\t')
                out += c;
        }
    }
    return out;
}

std::string KZICalendar::foldLine(const std::string& line)
{
    std::string text;
    text.reserve(line.size());
    for (const char c : line)
        if (c != '\r' && c != '\n')
            text += c;

    std::string out;
    std::size_t pos = 0;
    std::size_t limit = 75; // octets per physical line; later ones start with a space
    while (text.size() - pos > limit) {
        std::size_t cut = pos + limit;
        for (int back = 0; back < 3 && isContinuationByte(text[cut]); ++back)
            --cut;
        if (isContinuationByte(text[cut])) // not UTF-8 at all: any cut will do
            cut = pos + limit;
        out.append(text, pos, cut - pos);
        out += "\r\n ";
        pos = cut;
        limit = 74;
    }
    out.append(text, pos, std::string::npos);
    out += "\r\n";
    return out;
}

std::string KZICalendar::write(const std::vector<DatedHoliday>& holidays, const ICalendarOptions& options)
{
    const std::string stamp = stampValue(options.stamp ? options.stamp : CrossPlatformApi::now());
    const std::string domain = escapeText(options.uidDomain);
    std::string out;
    out += foldLine("BEGIN:VCALENDAR");
    out += foldLine("VERSION:2.0");
    out += foldLine("PRODID:" + escapeText(options.prodId));
    out += foldLine("CALSCALE:GREGORIAN");
    for (const DatedHoliday& holiday : holidays) {
        // A date an iCalendar DATE cannot hold (the null date among them) is left out.
        const unsigned year = holiday.date.Year();
        if (isNullDate(holiday.date) || year < 1 || year > 9998)
            continue;
        const std::string day = dateValue(holiday.date);
        out += foldLine("BEGIN:VEVENT");
        out += foldLine("UID:" + day + "-" + hashOf(holiday.name) + "@" + domain);
        out += foldLine("DTSTAMP:" + stamp);
        out += foldLine("DTSTART;VALUE=DATE:" + day);
        out += foldLine("DTEND;VALUE=DATE:" + dateValue(holiday.date + 1));
        out += foldLine("SUMMARY:" + escapeText(utf8FromCp1252(holiday.name)));
        out += foldLine("DESCRIPTION:" + escapeText(utf8FromCp1252(whereText(holiday))));
        out += foldLine("TRANSP:TRANSPARENT");
        out += foldLine("END:VEVENT");
    }
    out += foldLine("END:VCALENDAR");
    return out;
}
