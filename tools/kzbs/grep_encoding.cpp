// UTF-8 and Windows-1252 for kzbs grep: the scan that decides a file's
// encoding, the conversion of lines and pattern, and case folding.
#include "grep_encoding.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#define KZBS_HAVE_SSE2 1
#include <emmintrin.h>
#endif

namespace kzbs {

namespace {

// Windows-1252 0x80-0x9F as Unicode; 0 where the byte is unassigned.
constexpr std::uint16_t kHighControls[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

// The Windows-1252 byte of a character, or kNotInWindows1252. The five
// unassigned bytes come back from the C1 controls of the same number, which
// is how kzbs prints them.
char windows1252Of(std::uint32_t code)
{
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF))
        return static_cast<char>(code);
    for (unsigned i = 0; i < 32; ++i)
        if (kHighControls[i] == code || (kHighControls[i] == 0 && code == 0x80 + i))
            return static_cast<char>(0x80 + i);
    return kNotInWindows1252;
}

// The length of the UTF-8 character at data[0] (size > 0), 0 when the bytes
// there are not one; its code in *code.
std::size_t decodeUtf8(const unsigned char* data, std::size_t size, std::uint32_t* code)
{
    const unsigned char lead = data[0];
    if (lead < 0x80) {
        *code = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || length > size)
        return 0;
    std::uint32_t value = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((data[i] & 0xC0) != 0x80)
            return 0;
        value = value << 6 | (data[i] & 0x3F);
    }
    // Overlong forms, surrogates and codes past U+10FFFF are not UTF-8.
    static constexpr std::uint32_t kLeast[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (value < kLeast[length] || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF)
        return 0;
    *code = value;
    return length;
}

bool allAscii(const unsigned char* data, std::size_t size)
{
    std::size_t i = 0;
#if KZBS_HAVE_SSE2
    for (; i + 64 <= size; i += 64) {
        const auto load = [&](std::size_t k) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + i + k));
        };
        const __m128i any = _mm_or_si128(_mm_or_si128(load(0), load(16)), _mm_or_si128(load(32), load(48)));
        if (_mm_movemask_epi8(any) != 0)
            return false;
    }
#endif
    unsigned char any = 0;
    for (; i < size; ++i)
        any |= data[i];
    return (any & 0x80) == 0;
}

// A-Z, and A-umlaut 0xC4, O-umlaut 0xD6, U-umlaut 0xDC, to lower case.
inline char lowerOf(unsigned char c)
{
    const bool upper = (c >= 'A' && c <= 'Z') || c == 0xC4 || c == 0xD6 || c == 0xDC;
    return static_cast<char>(upper ? c | 0x20 : c);
}

// The matcher's tokens as Latin-1 bytes, with the metacharacter each is.
struct TokenByte {
    unsigned char byte;
    char token;
};
constexpr TokenByte kTokenBytes[] = {{0xA4, '$'}, {0xAA, '*'}, {0xAB, '+'}, {0xAE, '.'},
                                     {0xBF, '?'}, {0xDB, '['}, {0xDE, '^'}};

} // namespace

bool parseGrepEncoding(const std::string& name, GrepEncoding& encoding)
{
    static const struct {
        const char* name;
        GrepEncoding encoding;
    } kNames[] = {{"auto", GrepEncoding::Auto},           {"utf-8", GrepEncoding::Utf8},
                  {"utf8", GrepEncoding::Utf8},           {"cp1252", GrepEncoding::Cp1252},
                  {"windows-1252", GrepEncoding::Cp1252}, {"raw", GrepEncoding::Raw}};
    for (const auto& known : kNames)
        if (name == known.name) {
            encoding = known.encoding;
            return true;
        }
    return false;
}

Utf8Scan scanUtf8(const char* data, std::size_t size)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    Utf8Scan scan;
    // Long runs of ASCII a word at a time: most text is mostly ASCII.
    constexpr std::size_t kChunk = 4096;
    for (std::size_t at = 0; at < size;) {
        const std::size_t chunk = size - at < kChunk ? size - at : kChunk;
        if (allAscii(bytes + at, chunk)) {
            at += chunk;
            continue;
        }
        scan.ascii = false;
        for (const std::size_t end = at + chunk; at < end;) {
            std::uint32_t code;
            const std::size_t length = decodeUtf8(bytes + at, size - at, &code);
            if (length == 0) {
                scan.valid = false;
                return scan;
            }
            at += length;
        }
    }
    return scan;
}

void appendUtf8AsWindows1252(const char* data, std::size_t size, std::string& out)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    for (std::size_t at = 0; at < size;) {
        if (bytes[at] < 0x80) {
            const std::size_t from = at;
            while (at < size && bytes[at] < 0x80)
                ++at;
            out.append(data + from, at - from);
            continue;
        }
        std::uint32_t code;
        const std::size_t length = decodeUtf8(bytes + at, size - at, &code);
        out += length == 0 ? kNotInWindows1252 : windows1252Of(code);
        at += length == 0 ? 1 : length;
    }
}

void appendWindows1252AsUtf8(const char* data, std::size_t size, std::string& out)
{
    for (std::size_t at = 0; at < size; ++at) {
        const unsigned char c = static_cast<unsigned char>(data[at]);
        std::uint32_t code = c;
        if (c >= 0x80 && c < 0xA0 && kHighControls[c - 0x80] != 0)
            code = kHighControls[c - 0x80];
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | code >> 6);
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | code >> 12);
            out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
}

std::size_t utf8BytesOf(const char* data, std::size_t size, std::size_t characters)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    std::size_t at = 0;
    for (; characters > 0 && at < size; --characters) {
        std::uint32_t code;
        const std::size_t length = decodeUtf8(bytes + at, size - at, &code);
        at += length == 0 ? 1 : length;
    }
    return at;
}

void foldCase(char* data, std::size_t size)
{
    std::size_t i = 0;
#if KZBS_HAVE_SSE2
    // 16 bytes a step: c - 'A' moved to the bottom of the signed range is
    // below -128 + 26 exactly for A-Z.
    const __m128i shift = _mm_set1_epi8(static_cast<char>(0x80 - 'A')), limit = _mm_set1_epi8(-128 + 26);
    const __m128i ae = _mm_set1_epi8('\xC4'), oe = _mm_set1_epi8('\xD6'), ue = _mm_set1_epi8('\xDC');
    const __m128i bit = _mm_set1_epi8(0x20);
    for (; i + 16 <= size; i += 16) {
        __m128i* at = reinterpret_cast<__m128i*>(data + i);
        const __m128i c = _mm_loadu_si128(at);
        const __m128i upper = _mm_or_si128(
            _mm_cmplt_epi8(_mm_add_epi8(c, shift), limit),
            _mm_or_si128(_mm_cmpeq_epi8(c, ae), _mm_or_si128(_mm_cmpeq_epi8(c, oe), _mm_cmpeq_epi8(c, ue))));
        _mm_storeu_si128(at, _mm_or_si128(c, _mm_and_si128(upper, bit)));
    }
#endif
    for (; i < size; ++i)
        data[i] = lowerOf(static_cast<unsigned char>(data[i]));
}

std::string patternFromUtf8(const std::string& utf8, std::string& pattern)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    pattern.clear();
    for (std::size_t at = 0; at < utf8.size();) {
        std::uint32_t code = 0;
        const std::size_t length = decodeUtf8(bytes + at, utf8.size() - at, &code);
        if (length == 0)
            return "the pattern is not valid UTF-8, the encoding kzbs reads";
        const std::string character = utf8.substr(at, length);
        const char byte = windows1252Of(code);
        if (byte == kNotInWindows1252 && code != 0x81)
            return "pattern character '" + character
                   + "' is not in Windows-1252, the matcher's text encoding; '.' matches it";
        for (const TokenByte& token : kTokenBytes)
            if (static_cast<unsigned char>(byte) == token.byte)
                return "pattern character '" + character + "' is byte 0x" + "0123456789ABCDEF"[token.byte >> 4]
                       + "0123456789ABCDEF"[token.byte & 15]
                       + " in Windows-1252, which the matcher reads as its token '" + token.token + "'; '.' matches it";
        pattern += byte;
        at += length;
    }
    return "";
}

} // namespace kzbs
