// KZRegExp on arbitrary bytes, and against the reference matcher of the test
// suite. The input up to its first NUL is the pattern, the rest the text.
//  - Raw: compiling and finding never read or write out of bounds, a copy
//    finds what the original finds, and a match lies inside the text.
//  - Mapped: the same bytes mapped onto the language's characters (no
//    escapes or newlines in the pattern, no NUL in the text) give a pattern
//    whose every match must agree with the reference matcher's.
#include "FuzzSupport.h"
#include "KZRegExp.h"
#include "ReferenceRegExp.h"

#include <cstdint>
#include <string>

namespace {

// The longest pattern and text of the comparison: long enough for every
// construct, short enough that the reference stays fast.
constexpr std::size_t kMappedPattern = 48;
constexpr std::size_t kMappedText = 256;

void checkRaw(const std::string& pattern, const std::string& text)
{
    for (const char* p = pattern.c_str(); *p;)
        esc(&p);

    KZRegExp re(pattern.c_str());
    const KZRegExp copy(re);
    re.status(); // cleared: find must still refuse a failed pattern
    for (unsigned long start : {0ul, static_cast<unsigned long>(text.size() / 2),
                                static_cast<unsigned long>(text.size()), static_cast<unsigned long>(text.size() + 3)}) {
        unsigned long length = 0;
        const int at = re.find(text, &length, start);
        unsigned long copyLength = 0;
        FUZZ_CHECK(copy.find(text, &copyLength, start) == at && copyLength == length);
        FUZZ_CHECK(
            at < 0
            || (static_cast<unsigned long>(at) >= start && static_cast<unsigned long>(at) + length <= text.size() + 1));
    }
}

std::string mapOnto(const std::string& bytes, const char* alphabet, std::size_t letters, std::size_t limit)
{
    std::string mapped;
    for (std::size_t i = 0; i < bytes.size() && i < limit; ++i)
        mapped += alphabet[static_cast<unsigned char>(bytes[i]) % letters];
    return mapped;
}

void checkAgainstReference(const std::string& pattern, const std::string& text)
{
    static const char kPatternChars[] = "abc.[]^-$*+?";
    // '\xE1' is 'a' with the top bit set: classes must take it for 'a'.
    static const char kTextChars[] = "abc\n$^-\xE1";
    const std::string p = mapOnto(pattern, kPatternChars, sizeof kPatternChars - 1, kMappedPattern);
    const std::string t = mapOnto(text, kTextChars, sizeof kTextChars - 1, kMappedText);
    KZRegExp re(p.c_str());
    if (re.status() != 0)
        return;
    for (unsigned long start :
         {0ul, 1ul, static_cast<unsigned long>(t.size() / 2), static_cast<unsigned long>(t.size())}) {
        if (start > t.size())
            continue;
        unsigned long length = 0;
        const int at = re.find(t, &length, start);
        FUZZ_CHECK(refregexp::Found(at, length) == refregexp::refFind(p, t, start));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const std::string pattern = input.untilNul();
    const std::string text = input.rest();
    checkRaw(pattern, text);
    checkAgainstReference(pattern, text);
    return 0;
}
