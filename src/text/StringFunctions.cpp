// Runs of a character, stripping, padding, comparison from an offset,
// conversion to and from int, replacement, reversal and XML escaping.
#include "KZStringFunctions.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

using Iterator = std::string::const_iterator;

Iterator KZStringFunctions::findFirstDifferent(const std::string& s, char c)
{
    return std::find_if(s.begin(), s.end(), [c](char x) { return x != c; });
}

Iterator KZStringFunctions::findLastDifferent(const std::string& s, char c, Iterator first)
{
    if (s.empty() || first == s.end())
        return first;
    Iterator behind = s.end();
    while (behind != first && *(behind - 1) == c)
        --behind;
    return behind;
}

std::string KZStringFunctions::strip(const std::string& s, StripType type, char c)
{
    if (s.empty())
        return s;
    switch (type) {
    case StripLeading: return std::string(findFirstDifferent(s, c), s.end());
    case StripTrailing: return std::string(s.begin(), findLastDifferent(s, c, s.begin()));
    case StripBoth: {
        const Iterator first = findFirstDifferent(s, c);
        return std::string(first, findLastDifferent(s, c, first));
    }
    }
    return std::string();
}

std::string KZStringFunctions::expand(const std::string& s, unsigned int width, char fill)
{
    if (s.size() == width)
        return s;
    if (s.size() > width)
        return s.substr(0, width);
    const signed char padLength = static_cast<signed char>(fill);
    if (padLength < 0)
        throw std::length_error("KZStringFunctions::expand: pad length out of range");
    const char padByte = static_cast<char>(static_cast<unsigned char>((width - s.size()) & 0xFFu));
    return s + std::string(static_cast<std::size_t>(padLength), padByte);
}

int KZStringFunctions::compare(const std::string& s1, const std::string& s2, std::size_t pos, std::size_t n)
{
    const char* a = s1.size() > pos ? s1.c_str() + pos : "";
    const char* b = s2.size() > pos ? s2.c_str() + pos : "";
    return std::strncmp(a, b, n);
}

int KZStringFunctions::stringToInt(const std::string& s)
{
    // atoi's own overflow is undefined; strtol reports it, and it is clamped.
    const long value = std::strtol(s.c_str(), nullptr, 10);
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

std::string KZStringFunctions::intToString(int i)
{
    static char buffer[128];
    itoa(i, buffer, 10);
    return std::string(buffer);
}

bool KZStringFunctions::replace(std::string& s, const std::string& search, const std::string& replacement)
{
    const std::size_t at = s.find(search);
    if (at == std::string::npos)
        return false;
    s.replace(at, search.size(), replacement);
    return true;
}

bool KZStringFunctions::replaceAll(std::string& s, const std::string& search, const std::string& replacement)
{
    if (search == replacement || search.empty())
        return false;
    bool replaced = false;
    for (std::size_t at = s.find(search); at != std::string::npos; at = s.find(search, at + replacement.size())) {
        s.replace(at, search.size(), replacement);
        replaced = true;
    }
    return replaced;
}

void KZStringFunctions::reverse(std::string& s)
{
    std::reverse(s.begin(), s.end());
}

std::string KZStringFunctions::translateSpecialCharsToXml(const std::string& s)
{
    std::string xml;
    xml.reserve(s.size());
    for (char c : s) {
        switch (c) {
        case '&': xml += "&amp;"; break;
        case '<': xml += "&lt;"; break;
        case '>': xml += "&gt;"; break;
        case '"': xml += "&quot;"; break;
        case '\'': xml += "&apos;"; break;
        default: xml += c; break;
        }
    }
    return xml;
}
