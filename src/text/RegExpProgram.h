// The compiled form of a KZRegExp pattern, and what each of its tokens
// matches. This is the one place that says which characters a token takes;
// the compiler, matching at a position and the search plan all ask here.
//
// A compiled pattern is one block: the token string (its terminator included
// at most KZRegExp::maxpat bytes), zero bytes up to kTokenBytes, then the
// search plan the compiler derives from the tokens (RegExpPlan.h).
#ifndef KZ_REGEXP_PROGRAM_H
#define KZ_REGEXP_PROGRAM_H

#include "KZRegExp.h"

#include <cstddef>
#include <cstring>

namespace kztext {

// Metacharacters have the top bit set; every other byte is a literal
// character. A closure token stands in front of the token it repeats; a
// class token is followed by its bitmap.
enum Token : unsigned char {
    BOL = '^' | 0x80,      // 0xDE
    EOL = '$' | 0x80,      // 0xA4
    ANY = '.' | 0x80,      // 0xAE
    CCL = '[' | 0x80,      // 0xDB
    CLOSURE = '*' | 0x80,  // 0xAA
    PCLOSURE = '+' | 0x80, // 0xAB
    OPT = '?' | 0x80,      // 0xBF
};

constexpr int kClassBytes = 16; // one bit per 7-bit character
constexpr int kClassTokenSize = 1 + kClassBytes;
constexpr int kLastElementStart = KZRegExp::maxpat - 1;             // 127 bytes leave room for the terminator
constexpr int kLastClassStart = KZRegExp::maxpat - kClassTokenSize; // 111
// Zero bytes behind the 128: a class that fills the buffer still gets its
// terminator, and a pattern byte that reads back as a class token never has
// its bitmap read outside the token string, so every walk over the tokens
// stops at a zero before kTokenBytes.
constexpr int kTokenBytes = KZRegExp::maxpat + kClassTokenSize;

inline bool isClosure(unsigned char token)
{
    return token == CLOSURE || token == PCLOSURE || token == OPT;
}

inline bool isToken(unsigned char c)
{
    return c == BOL || c == EOL || c == ANY || c == CCL || isClosure(c);
}

inline int tokenSize(const unsigned char* token)
{
    return *token == CCL ? kClassTokenSize : 1;
}

// Class membership ignores a character's top bit.
inline bool inClass(const unsigned char* bitmap, unsigned char c)
{
    return (bitmap[(c & 0x7F) >> 3] >> (c & 7)) & 1u;
}

// The number of literal tokens at pat.
inline std::size_t literalRunLength(const unsigned char* pat)
{
    std::size_t n = 0;
    while (pat[n] != 0 && !isToken(pat[n]))
        ++n;
    return n;
}

// --- What a token takes ------------------------------------------------------
//
// Each kind of token takes characters by one rule, given as a small function
// object so that the loops over a text are compiled once per kind:
//   operator()(c)     whether the token takes the character c;
//   firstIn(at, end)  the first position in [at, end) holding a character it
//                     takes, else end (*end is the text's terminating NUL).
// No token takes that NUL. The anchors take nothing: they match between
// characters, '^' at the search start and '$' at the end of a line.

struct TakesNothing {
    bool operator()(char) const { return false; }
    const char* firstIn(const char*, const char* end) const { return end; }
};

struct TakesAnyButNewline {
    bool operator()(char c) const { return c != '\n' && c != '\0'; }
    const char* firstIn(const char* at, const char* end) const
    {
        while (at < end && *at == '\n')
            ++at;
        return at;
    }
};

struct TakesCharacter {
    char literal; // never NUL
    bool operator()(char c) const { return c == literal; }
    const char* firstIn(const char* at, const char* end) const
    {
        const void* hit = std::memchr(at, literal, static_cast<std::size_t>(end - at));
        return hit ? static_cast<const char*>(hit) : end;
    }
};

// A class without NUL among its members: the text's NUL stops it by itself.
struct TakesClass {
    const unsigned char* bitmap;
    bool operator()(char c) const { return inClass(bitmap, static_cast<unsigned char>(c)); }
    const char* firstIn(const char* at, const char* end) const
    {
        while (at < end && !(*this)(*at))
            ++at;
        return at;
    }
};

// A class with NUL's bit set (a negated class, say): NUL is still not taken.
struct TakesClassButNul {
    const unsigned char* bitmap;
    bool operator()(char c) const { return c != '\0' && inClass(bitmap, static_cast<unsigned char>(c)); }
    const char* firstIn(const char* at, const char* end) const
    {
        // The NUL at end has its bit set, so the scan needs no bound.
        while (!inClass(bitmap, static_cast<unsigned char>(*at)))
            ++at;
        return at < end ? at : end;
    }
};

// '$' takes nothing either; it matches where the character is a newline or
// the text's NUL.
struct AtEndOfLine {
    bool operator()(char c) const { return c == '\n' || c == '\0'; }
    const char* firstIn(const char* at, const char* end) const
    {
        const void* hit = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        return hit ? static_cast<const char*>(hit) : end;
    }
};

// Calls f with the rule of the token at token. Every byte that is neither an
// anchor, '.' nor a class is a literal here, a closure byte included (one
// only gets here as a stray pattern byte), and a literal NUL takes nothing.
template <class F>
decltype(auto) withRule(const unsigned char* token, F&& f)
{
    switch (*token) {
    case BOL:
    case EOL:
    case 0: return f(TakesNothing{});
    case ANY: return f(TakesAnyButNewline{});
    case CCL:
        if (inClass(token + 1, 0))
            return f(TakesClassButNul{token + 1});
        return f(TakesClass{token + 1});
    default: return f(TakesCharacter{static_cast<char>(*token)});
    }
}

inline bool takes(const unsigned char* token, char c)
{
    return withRule(token, [c](auto rule) { return rule(c); });
}

// The end of the longest run of characters the token takes from str on.
inline const char* runEnd(const char* str, const unsigned char* token)
{
    return withRule(token, [str](auto rule) mutable {
        while (rule(*str))
            ++str;
        return str;
    });
}

// The beginning of the run of characters the token takes that ends at str,
// never before from.
inline const char* runBegin(const char* from, const char* str, const unsigned char* token)
{
    return withRule(token, [from, str](auto rule) mutable {
        while (str > from && rule(str[-1]))
            --str;
        return str;
    });
}

// --- What an attempt needs at its first position ------------------------------

// Any position will do: the first token may match empty, or it is '^',
// which the position alone decides.
struct AnyPosition {
    bool operator()(char) const { return true; }
    const char* firstIn(const char* at, const char*) const { return at; }
};

// Calls f with a test of the character at a position where an attempt of the
// token string pat can get past its first token: that token's rule, for '+'
// the rule of the token it repeats. Tokens that may match empty, and '^',
// which is decided by the position alone, ask nothing.
template <class F>
decltype(auto) withFirstRule(const unsigned char* pat, F&& f)
{
    switch (*pat) {
    case 0: // no tokens at all: matches wherever it is tried
    case CLOSURE:
    case OPT:
    case BOL: return f(AnyPosition{});
    case EOL: return f(AtEndOfLine{});
    case PCLOSURE:
        if (pat[1] == BOL) // only a stray byte puts an anchor behind a closure
            return f(AnyPosition{});
        if (pat[1] == EOL)
            return f(AtEndOfLine{});
        return withRule(pat + 1, f);
    default: return withRule(pat, f);
    }
}

} // namespace kztext

#endif // KZ_REGEXP_PROGRAM_H
