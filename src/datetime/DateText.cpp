// Date text: the output layouts and the two readers (free form, pattern).
#include "KZDate.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <ostream>
#include <sstream>

int KZDate::PrintOption = 0;
char KZDate::ShortDateFmt[12] = "dd.MM.yyyy";

namespace {

// Writes a month name, or marks the stream bad when there is none so that the
// rest of the layout is dropped.
void putMonthName(std::ostream& out, unsigned month)
{
    if (const char* name = KZDate::MonthName(month))
        out << name;
    else
        out.setstate(std::ios::badbit);
}

std::string formatDate(const KZDate& date)
{
    unsigned month, day, year;
    date.Mdy(month, day, year);
    std::ostringstream text;
    const int option = KZDate::PrintOption;
    if (option == 0 || (option >= 2 && option <= 4)) {
        // One-shot width: only the first item is padded.
        text.width(2);
        text.fill('0');
    }
    switch (option) {
    case 0:
        putMonthName(text, month);
        text << " " << day << ", " << year;
        break;
    case 1:
        if (const char* name = KZDate::MonthName(month)) {
            char buffer[48];
            std::snprintf(buffer, sizeof buffer, "%02u-%.3s-%.4u", day, name, year);
            text << buffer;
        }
        break;
    case 2: text << month << "/" << day << "/" << year; break;
    case 3: text << day << "/" << month << "/" << year; break;
    case 4:
        text << day << " ";
        putMonthName(text, month);
        text << " " << year;
        break;
    default: break;
    }
    return text.str();
}

bool isAlnum(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}
bool isAlpha(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads (skipping white space) up to the next letter or digit and leaves it unread.
void skipDelimiters(std::istream& in)
{
    char c;
    while (in >> c) {
        if (isAlnum(c)) {
            in.putback(c);
            return;
        }
    }
}

unsigned readMonthName(std::istream& in)
{
    skipDelimiters(in);
    char buffer[11] = {};
    int length = 0;
    char c;
    while (length < 10 && in.get(c)) {
        if (!isAlpha(c)) {
            in.putback(c);
            break;
        }
        buffer[length++] = c;
    }
    return KZDate::IndexOfMonth(buffer);
}

// Up to `most` leading digits of text as a number; `used` gets how many were read.
unsigned readDigits(const char* text, std::size_t most, std::size_t& used)
{
    char buffer[8] = {};
    used = 0;
    while (used < most && isDigit(text[used])) {
        buffer[used] = text[used];
        ++used;
    }
    return static_cast<unsigned>(std::atoi(buffer));
}

bool isFieldChar(char c, char lower)
{
    return c == lower || c == lower - 'a' + 'A';
}

} // namespace

std::ostream& operator<<(std::ostream& out, const KZDate& date)
{
    return out << formatDate(date).c_str();
}

std::string KZDate::AsString() const
{
    std::ostringstream text;
    text << *this;
    return text.str();
}

void KZDate::ParseFrom(std::istream& in)
{
    m_day = 0;
    if (!in.good()) {
        in.setstate(std::ios::badbit);
        return;
    }
    unsigned month = 0, day = 0, year = 0, first = 0;
    skipDelimiters(in);
    in >> first;
    skipDelimiters(in);
    if (in.eof())
        return;
    if (in.fail()) {
        in.clear();
        month = readMonthName(in);
        skipDelimiters(in);
        in >> day;
    } else {
        unsigned second = 0;
        in >> second;
        if (in.eof())
            return;
        if (in.fail()) {
            in.clear();
            day = first;
            month = readMonthName(in);
        } else {
            month = first;
            day = second;
        }
    }
    skipDelimiters(in);
    in >> year;
    if (!in.good()) {
        in.setstate(std::ios::badbit);
        return;
    }
    m_day = Jday(month, day, year);
    if (!m_day)
        in.setstate(std::ios::badbit);
}

void KZDate::ParseFrom(const char* text, const char* pattern)
{
    if (!pattern)
        pattern = ShortDateFmt;
    unsigned day = 0, month = 0, year = 0;
    while (text && *text && *pattern) {
        const char p = *pattern;
        const bool isDay = isFieldChar(p, 'd'), isMonth = isFieldChar(p, 'm'), isYear = isFieldChar(p, 'y');
        if (!isDay && !isMonth && !isYear) {
            ++pattern;
            ++text;
            continue;
        }
        std::size_t run = 0;
        while (isFieldChar(pattern[run], static_cast<char>(p | 0x20)))
            ++run;
        pattern += run;
        std::size_t used = 0;
        if (isYear) {
            std::size_t digits = 0;
            while (digits <= run && isDigit(text[digits]))
                ++digits;
            std::size_t take = digits > 2 ? 4 : 2;
            // Never past the end of the text.
            const std::size_t available = std::strlen(text);
            if (take > available)
                take = available;
            char buffer[5] = {};
            std::memcpy(buffer, text, take);
            year = static_cast<unsigned>(std::atoi(buffer));
            used = take;
        } else {
            const unsigned value = readDigits(text, 2, used);
            (isDay ? day : month) = value;
        }
        text += used;
    }
    m_day = Jday(month, day, year);
}
