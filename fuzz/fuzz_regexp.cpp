// KZRegExp on arbitrary bytes: the first NUL-free part is the pattern, the
// rest the text. Compiling and finding must never read or write out of
// bounds, and a match must lie inside the searched text.
#include "KZRegExp.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const void* nul = std::memchr(bytes, '\0', size);
    const std::size_t patternLength = nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - bytes) : size;
    const std::string pattern(bytes, patternLength);
    const std::string text = patternLength < size ? std::string(bytes + patternLength + 1, size - patternLength - 1)
                                                  : std::string();

    for (const char* p = pattern.c_str(); *p;)
        esc(&p);

    KZRegExp re(pattern.c_str());
    const KZRegExp copy(re);
    re.status();   // cleared: find must still refuse a failed pattern
    for (unsigned long start : {0ul, static_cast<unsigned long>(text.size() / 2),
                                static_cast<unsigned long>(text.size()), static_cast<unsigned long>(text.size() + 3)}) {
        unsigned long length = 0;
        const int at = re.find(text, &length, start);
        unsigned long copyLength = 0;
        if (copy.find(text, &copyLength, start) != at || copyLength != length)
            std::abort();
        if (at >= 0 && (static_cast<unsigned long>(at) < start ||
                        static_cast<unsigned long>(at) + length > text.size() + 1))
            std::abort();
    }
    return 0;
}
