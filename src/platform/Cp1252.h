// Windows-1252, the library's text encoding, byte by byte as Unicode. For
// conversions that must take every byte (a message box, an iCalendar file):
// the five bytes the code page leaves open in 0x80..0x9F stay the control
// characters of the same number, as Qt 5's codec read them. The iconv-based
// encodings of CrossPlatformApi report such bytes instead.
#ifndef KZ_PLATFORM_CP1252_H
#define KZ_PLATFORM_CP1252_H

namespace KZBasicServices {

inline char16_t cp1252ToUnicode(unsigned char byte)
{
    // Windows-1252 differs from Latin-1 in 0x80..0x9F only.
    static constexpr char16_t kHigh[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                           0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    return byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80] : static_cast<char16_t>(byte);
}

} // namespace KZBasicServices

#endif // KZ_PLATFORM_CP1252_H
