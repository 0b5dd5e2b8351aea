// Version words: major * 100 + minor in 16 bits, shown as "%d.%02d".
#include "KZFileHeader.h"

#include <cstdio>
#include <cstdlib>

namespace {

// atoi's reading of a number, without its undefined overflow: out-of-range
// values are clamped by strtol and then cut to int, as glibc's atoi does.
int leadingInteger(const char* text)
{
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

} // namespace

std::string wordToVersionString(unsigned short version)
{
    char text[16];
    std::snprintf(text, sizeof text, "%d.%02d", version / 100, version % 100);
    return text;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the exported signature takes a copy
unsigned short versionStringToWord(std::string text)
{
    const long long major = leadingInteger(text.c_str());
    const std::string::size_type dot = text.find('.');
    const long long minor = dot == std::string::npos ? 0 : leadingInteger(text.c_str() + dot + 1);
    return static_cast<unsigned short>(static_cast<unsigned long long>(major * 100 + minor) & 0xFFFFu);
}
