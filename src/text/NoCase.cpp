// Case folding and everything that compares or searches without regard to
// case. Folding is ASCII only: a byte 0x80-0xFF is a negative char, which the
// C library's mapping hands back unchanged; doing the folding here keeps that
// result independent of the locale and free of out-of-range ctype calls.
#include "KZStringFunctions.h"

#include "CrossPlatformApi.h"

#include <cstring>

namespace {

inline char upperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

inline char lowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Finds the candidates for a no-case search: the positions holding the
// needle's first character in either case. memchr does the scanning; each
// scan's result is kept until the search has passed it.
class FirstCharScanner {
public:
    FirstCharScanner(const char* end, char c) : m_end(end), m_upper(upperAscii(c)), m_lower(lowerAscii(c)) {}

    // The next candidate at or after from, or end.
    const char* next(const char* from)
    {
        if (!m_upperValid || m_nextUpper < from) {
            m_nextUpper = scan(from, m_upper);
            m_upperValid = true;
        }
        if (m_upper == m_lower)
            return m_nextUpper;
        if (!m_lowerValid || m_nextLower < from) {
            m_nextLower = scan(from, m_lower);
            m_lowerValid = true;
        }
        return m_nextUpper < m_nextLower ? m_nextUpper : m_nextLower;
    }

private:
    const char* scan(const char* from, char c) const
    {
        const void* hit = std::memchr(from, c, static_cast<std::size_t>(m_end - from));
        return hit ? static_cast<const char*>(hit) : m_end;
    }

    const char* m_end;
    char m_upper, m_lower;
    const char* m_nextUpper = nullptr;
    const char* m_nextLower = nullptr;
    bool m_upperValid = false, m_lowerValid = false;
};

bool restEqualsNoCase(const char* at, const char* needle, std::size_t length)
{
    for (std::size_t i = 1; i < length; ++i)
        if (upperAscii(at[i]) != upperAscii(needle[i]))
            return false;
    return true;
}

} // namespace

bool KZStringFunctions::nocase_compare(char a, char b)
{
    return upperAscii(a) == upperAscii(b);
}

int KZStringFunctions::findNoCase(const std::string& haystack, const std::string& needle)
{
    if (haystack.empty() || needle.size() > haystack.size())
        return -1;
    if (needle.empty())
        return 0;
    const char* const begin = haystack.data();
    const char* const last = begin + (haystack.size() - needle.size()) + 1; // one past the last start
    FirstCharScanner candidates(last, needle[0]);
    for (const char* at = candidates.next(begin); at != last; at = candidates.next(at + 1))
        if (restEqualsNoCase(at, needle.data(), needle.size()))
            return static_cast<int>(at - begin);
    return -1;
}

bool KZStringFunctions::containsNoCase(const std::string& haystack, const std::string& needle)
{
    return findNoCase(haystack, needle) != -1;
}

bool KZStringFunctions::equalsNoCase(const char* a, const char* b)
{
    return CrossPlatformApi::strCmpNoCase(a, b) == 0;
}

bool KZStringFunctions::equalsNoCase(const std::string& a, const std::string& b)
{
    return equalsNoCase(a.c_str(), b.c_str());
}

int KZStringFunctions::compareNoCase(const char* a, const char* b)
{
    return CrossPlatformApi::strCmpNoCase(a, b);
}

int KZStringFunctions::compareNoCase(const std::string& a, const std::string& b)
{
    return compareNoCase(a.c_str(), b.c_str());
}

void KZStringFunctions::toLower(std::string& s)
{
    for (char& c : s)
        c = lowerAscii(c);
}

void KZStringFunctions::toUpper(std::string& s)
{
    for (char& c : s)
        c = upperAscii(c);
}

std::string KZStringFunctions::lower(const std::string& s)
{
    std::string copy = s;
    toLower(copy);
    return copy;
}

std::string KZStringFunctions::upper(const std::string& s)
{
    std::string copy = s;
    toUpper(copy);
    return copy;
}

bool KZStringLessNoCase::operator()(const std::string& a, const std::string& b) const
{
    return CrossPlatformApi::strCmpNoCase(a.c_str(), b.c_str()) < 0;
}

bool KZStringGreaterNoCase::operator()(const std::string& a, const std::string& b) const
{
    return CrossPlatformApi::strCmpNoCase(a.c_str(), b.c_str()) > 0;
}
