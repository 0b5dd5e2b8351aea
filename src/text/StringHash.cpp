// The library's 32-bit string hash: rotate left by 7, XOR the next byte.
#include "KZStringFunctions.h"

#include <cstdint>

int KZStringFunctions::hash(const char* text)
{
    if (!text)
        return 0;
    std::uint32_t h = 0;
    for (const char* p = text; *p; ++p) {
        // The byte is sign-extended: 0xE4 contributes 0xFFFFFFE4, also where
        // char is unsigned (ARM Linux), so that every platform hashes alike.
        const std::uint32_t byte = static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(*p)));
        h = ((h << 7) | (h >> 25)) ^ byte;
    }
    return static_cast<int>(h);
}

int KZStringFunctions::hash(const std::string& s)
{
    return hash(s.c_str());
}
