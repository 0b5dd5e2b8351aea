// KZRegExp: compiling a pattern into its token string, and matching the
// tokens against a text with greedy, backtracking closures.
#include "KZRegExp.h"

#include <cstring>
#include <new>

namespace {

enum Token : unsigned char {
    BOL = '^' | 0x80,   // 0xDE
    EOL = '$' | 0x80,   // 0xA4
    ANY = '.' | 0x80,   // 0xAE
    CCL = '[' | 0x80,   // 0xDB
    CLOSURE = '*' | 0x80,  // 0xAA
    PCLOSURE = '+' | 0x80, // 0xAB
    OPT = '?' | 0x80,   // 0xBF
};

constexpr int kClassBytes = 16;
constexpr int kClassTokenSize = 1 + kClassBytes;
constexpr int kLastElementStart = KZRegExp::maxpat - 1;          // 127 bytes leave room for the terminator
constexpr int kLastClassStart = KZRegExp::maxpat - kClassTokenSize; // 111
// Zero bytes behind the 128: a class that fills the buffer still gets its
// terminator, and a pattern byte that reads back as a class token never has
// its bitmap read outside the allocation.
constexpr int kAllocation = KZRegExp::maxpat + kClassTokenSize;

enum Match { NoMatch = 0, MatchedEmpty = 1, MatchedChar = 2 };

bool isClosure(unsigned char token)
{
    return token == CLOSURE || token == PCLOSURE || token == OPT;
}

int tokenSize(const unsigned char* token)
{
    return *token == CCL ? kClassTokenSize : 1;
}

void setBit(unsigned char* bitmap, unsigned char c)
{
    bitmap[(c & 0x7F) >> 3] |= static_cast<unsigned char>(1u << (c & 7));
}

bool testBit(const unsigned char* bitmap, unsigned char c)
{
    return (bitmap[(c & 0x7F) >> 3] >> (c & 7)) & 1u;
}

bool isOctal(char c) { return c >= '0' && c <= '7'; }
bool isDecimal(char c) { return c >= '0' && c <= '9'; }
bool isHex(char c) { return isDecimal(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
bool endsPattern(char c) { return c == '\0' || c == '\n'; }

// One token at *pos; see Match. A consuming match advances *pos. Nothing
// consumes the terminating NUL.
int omatch(const char** pos, const unsigned char* token, const char* start)
{
    const char c = **pos;
    bool consumes = false;
    switch (*token) {
    case EOL:
        return c == '\n' || c == '\0' ? MatchedEmpty : NoMatch;
    case BOL:
        return *pos == start ? MatchedEmpty : NoMatch;
    case ANY:
        consumes = c != '\n';
        break;
    case CCL:
        consumes = testBit(token + 1, static_cast<unsigned char>(c));
        break;
    default:
        consumes = c == static_cast<char>(*token);
        break;
    }
    if (!consumes || c == '\0')
        return NoMatch;
    ++*pos;
    return MatchedChar;
}

const char* lastMatched(const char* pos, const char* start)
{
    return pos > start ? pos - 1 : start;
}

// Matches the token string pat at str; returns a pointer to the last
// character matched (never before start), or null.
const char* patcmp(const char* str, const unsigned char* pat, const char* start)
{
    while (*pat) {
        if (*pat == OPT) {
            ++pat;
            omatch(&str, pat, start);
            pat += tokenSize(pat);
            continue;
        }
        if (*pat == CLOSURE || *pat == PCLOSURE) {
            const bool atLeastOnce = *pat++ == PCLOSURE;
            if (atLeastOnce && omatch(&str, pat, start) == NoMatch)
                return nullptr;
            const char* const began = str;
            while (*str && omatch(&str, pat, start) == MatchedChar) {
            }
            pat += tokenSize(pat);
            if (!*pat)
                return lastMatched(str, start);
            for (;; --str) {
                if (const char* end = patcmp(str, pat, start))
                    return end;
                if (str == began)
                    return nullptr;
            }
        }
        if (omatch(&str, pat, start) == NoMatch)
            return nullptr;
        pat += tokenSize(pat);
    }
    return lastMatched(str, start);
}

// Reads the class after '[' at *p into out (token and bitmap); *p is left
// behind the closing ']' or at the end of the pattern.
void compileClass(const char** p, unsigned char* out)
{
    out[0] = CCL;
    unsigned char* const bitmap = out + 1;
    std::memset(bitmap, 0, kClassBytes);
    const char* s = *p;
    const bool negated = *s == '^';
    if (negated)
        ++s;
    if (*s == '-') {
        setBit(bitmap, '-');
        ++s;
    }
    while (!endsPattern(*s) && *s != ']') {
        if (*s == '-' && !endsPattern(s[1])) {
            // A range between the raw characters around the '-'; the first
            // of them has been added on its own already.
            const signed char a = static_cast<signed char>(s[-1]);
            const signed char b = static_cast<signed char>(s[1]);
            const int low = a < b ? a : b;
            const int high = a < b ? b : a;
            for (int c = low + 1; c <= high; ++c)
                setBit(bitmap, static_cast<unsigned char>(c));
            s += 2;
        } else {
            setBit(bitmap, static_cast<unsigned char>(esc(&s)));
        }
    }
    if (*s == ']')
        ++s;
    if (negated)
        for (int i = 0; i < kClassBytes; ++i)
            bitmap[i] = static_cast<unsigned char>(~bitmap[i]);
    *p = s;
}

// Whether the compiled pattern matches an empty text (or the end of one).
bool matchesAtEnd(const unsigned char* pat)
{
    return pat[0] == EOL || (pat[0] == BOL && (pat[1] == 0 || (pat[1] == EOL && pat[2] == 0)));
}

// The first position at or after at, before end, where an attempt can
// succeed; end when there is none. Only the first token is looked at.
const char* nextCandidate(const unsigned char* pat, const char* at, const char* end)
{
    const unsigned char* first = *pat == PCLOSURE ? pat + 1 : pat;
    switch (*first) {
    case CLOSURE:
    case OPT:
    case BOL:
        return at;
    case EOL: {
        const void* hit = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        return hit ? static_cast<const char*>(hit) : end;
    }
    case ANY:
        while (at < end && *at == '\n')
            ++at;
        return at;
    case CCL:
        while (at < end && !testBit(first + 1, static_cast<unsigned char>(*at)))
            ++at;
        return at;
    default: {
        const void* hit = std::memchr(at, *first, static_cast<std::size_t>(end - at));
        return hit ? static_cast<const char*>(hit) : end;
    }
    }
}

} // namespace

int hex2bin(int c)
{
    return isDecimal(static_cast<char>(c)) ? (c & 15) : ((upperAscii(static_cast<char>(c)) - 55) & 15);
}

int oct2bin(int c)
{
    return c & 7;
}

int esc(const char** s)
{
    if (!s || !*s)
        return 0;
    const char* p = *s;
    if (*p != '\\') {
        *s = p + 1;
        return *p;
    }
    ++p; // behind the backslash
    int value = 0;
    switch (upperAscii(*p)) {
    case '\0': value = '\\'; break;  // nothing escaped: stay on the NUL
    case 'B': value = '\b'; ++p; break;
    case 'E': value = 27; ++p; break;
    case 'F': value = '\f'; ++p; break;
    case 'N': value = '\n'; ++p; break;
    case 'R': value = '\r'; ++p; break;
    case 'S': value = ' '; ++p; break;
    case 'T': value = '\t'; ++p; break;
    case 'X':
        ++p;
        for (int digits = 0; digits < 2 && isHex(*p); ++digits, ++p)
            value = value * 16 + hex2bin(*p);
        break;
    case '^':
        ++p;
        if (*p == '\0') {
            value = '^';
        } else {
            value = upperAscii(*p) - 64;
            ++p;
        }
        break;
    default:
        if (isOctal(*p)) {
            // The digit after the backslash only introduces the escape; the
            // next character counts whatever it is, then up to two octal digits.
            ++p;
            if (*p != '\0') {
                value = oct2bin(*p++);
                for (int digits = 0; digits < 2 && isOctal(*p); ++digits, ++p)
                    value = value * 8 + oct2bin(*p);
            }
        } else {
            value = *p++;
        }
        break;
    }
    *s = p;
    return value;
}

KZRegExp::KZRegExp(const char* pattern) : m_pattern(nullptr), m_status(0)
{
    gen_pattern(pattern);
}

KZRegExp::KZRegExp(const KZRegExp& other) : m_pattern(nullptr), m_status(0)
{
    copy_pattern(other);
}

KZRegExp& KZRegExp::operator=(const KZRegExp& other)
{
    if (this != &other) {
        delete[] m_pattern;
        m_pattern = nullptr;
        copy_pattern(other);
    }
    return *this;
}

KZRegExp& KZRegExp::operator=(const char* pattern)
{
    gen_pattern(pattern);
    return *this;
}

KZRegExp::~KZRegExp()
{
    delete[] m_pattern;
}

void KZRegExp::copy_pattern(const KZRegExp& other)
{
    m_status = other.m_status;
    if (!other.m_pattern)
        return;
    m_pattern = new (std::nothrow) unsigned char[kAllocation];
    if (!m_pattern) {
        m_status = StatusNoMemory;
        return;
    }
    std::memcpy(m_pattern, other.m_pattern, kAllocation);
}

int KZRegExp::status()
{
    const int s = m_status;
    m_status = 0;
    return s;
}

int KZRegExp::gen_pattern(const char* p)
{
    delete[] m_pattern;
    m_pattern = new (std::nothrow) unsigned char[kAllocation];
    if (!m_pattern)
        return m_status = StatusNoMemory;
    std::memset(m_pattern, 0, kAllocation);

    auto fail = [this](int status) {
        delete[] m_pattern;
        m_pattern = nullptr;
        return m_status = status;
    };
    if (!p || *p == '\0' || *p == '\n' || *p == '*' || *p == '+' || *p == '?')
        return fail(StatusIllegal);

    unsigned char* out = m_pattern;
    unsigned char* previous = nullptr; // the element a closure applies to
    int previousSize = 0;
    while (!endsPattern(*p)) {
        if (out - m_pattern >= kLastElementStart)
            return fail(StatusTooLong);
        unsigned char* const element = out;
        switch (*p) {
        case '^':
            ++p;
            *out++ = element == m_pattern ? static_cast<unsigned char>(BOL) : '^';
            break;
        case '$':
            ++p;
            *out++ = endsPattern(*p) ? static_cast<unsigned char>(EOL) : '$';
            break;
        case '.':
            ++p;
            *out++ = ANY;
            break;
        case '[':
            if (out - m_pattern > kLastClassStart)
                return fail(StatusTooLong);
            ++p;
            compileClass(&p, out);
            out += kClassTokenSize;
            break;
        case '*':
        case '+':
        case '?': {
            if (!previous || *previous == BOL || *previous == EOL || isClosure(*previous))
                return fail(StatusTooLong);
            const unsigned char token = *p == '*' ? CLOSURE : *p == '+' ? PCLOSURE : OPT;
            ++p;
            std::memmove(previous + 1, previous, static_cast<std::size_t>(previousSize));
            *previous = token;
            ++out;
            previousSize = 0; // a closure cannot take another closure
            continue;
        }
        default:
            *out++ = static_cast<unsigned char>(esc(&p));
            break;
        }
        previous = element;
        previousSize = static_cast<int>(out - element);
    }
    *out = 0;
    return m_status = StatusOk;
}

int KZRegExp::find(const std::string& text, unsigned long* matchLength, unsigned long start) const
{
    unsigned long length = 0;
    int offset = -1;
    if (m_pattern && start <= text.size()) {
        const char* const base = text.c_str();
        const char* const from = base + start;
        if (*from == '\0') {
            if (matchesAtEnd(m_pattern)) {
                length = 1;
                offset = static_cast<int>(start);
            }
        } else {
            const void* nul = std::memchr(from, '\0', text.size() - start);
            const char* const end = nul ? static_cast<const char*>(nul) : base + text.size();
            const bool anchored = m_pattern[0] == BOL;
            for (const char* at = from; at < end; ++at) {
                at = nextCandidate(m_pattern, at, end);
                if (at == end)
                    break;
                if (const char* last = patcmp(at, m_pattern, from)) {
                    length = static_cast<unsigned long>(last + 1 - at);
                    offset = static_cast<int>(at - base);
                    break;
                }
                if (anchored)
                    break; // the beginning of the line matches only at the search start
            }
        }
    }
    if (matchLength)
        *matchLength = length;
    return offset;
}
