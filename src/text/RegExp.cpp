// KZRegExp: compiling a pattern into its token string, and matching the
// tokens against a text with greedy, backtracking closures.
#include "KZRegExp.h"
#include "LiteralScan.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

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

bool isToken(unsigned char c)
{
    return c == BOL || c == EOL || c == ANY || c == CCL || isClosure(c);
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
// A character's value as esc returns it: signed, as char is on x86, also
// where char is unsigned (ARM Linux), so that 0xE4 reads as -28 everywhere.
int signedValue(char c) { return static_cast<signed char>(c); }
bool endsPattern(char c) { return c == '\0' || c == '\n'; }

// One token at *pos; see Match. A consuming match advances *pos. Nothing
// consumes the terminating NUL.
inline int omatch(const char** pos, const unsigned char* token, const char* start)
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

// One call of find(): the search start (the beginning-of-line position) and
// what backtracking has learnt. Whether the rest of a pattern matches at a
// position never depends on how the search got there, so once an attempt of
// it failed it is not tried again. Patterns such as "a*a*a*a*b" would
// otherwise take exponential time; ordinary searches never reach the point
// where the memo starts.
class Search {
public:
    // The text ends at its first NUL from start on; the memo measures it only
    // once it starts, so a search that never gets there never scans the text.
    Search(const unsigned char* pattern, const char* start) : start(start), m_pattern(pattern) {}

    const char* const start;

    bool knownToFail(const unsigned char* rest, const char* pos)
    {
        if (++m_backtracks <= kMemoAfter || m_failed.empty())
            return false;
        const std::vector<std::uint64_t>& row = m_failed[static_cast<std::size_t>(rest - m_pattern)];
        const std::size_t i = static_cast<std::size_t>(pos - start);
        return !row.empty() && ((row[i >> 6] >> (i & 63)) & 1u);
    }

    void noteFailure(const unsigned char* rest, const char* pos)
    {
        if (m_backtracks <= kMemoAfter)
            return;
        if (m_failed.empty())
            m_failed.resize(kAllocation);
        std::vector<std::uint64_t>& row = m_failed[static_cast<std::size_t>(rest - m_pattern)];
        if (row.empty()) {
            if (m_positions == 0)
                m_positions = std::strlen(start) + 1;
            row.assign((m_positions >> 6) + 1, 0);
        }
        const std::size_t i = static_cast<std::size_t>(pos - start);
        row[i >> 6] |= std::uint64_t(1) << (i & 63);
    }

private:
    static constexpr unsigned long kMemoAfter = 4096;

    const unsigned char* m_pattern;
    std::size_t m_positions = 0;
    unsigned long m_backtracks = 0;
    std::vector<std::vector<std::uint64_t>> m_failed; // per token offset, a bit per position
};

const char* patcmp(const char* str, const unsigned char* pat, Search& search, const char** reach = nullptr);

// A cheap test whether an attempt of the token string pat can get past its
// first token at a position; it saves the call where it cannot.
class FirstTokenFilter {
public:
    explicit FirstTokenFilter(const unsigned char* pat)
    {
        if (*pat == CCL)
            m_bitmap = pat + 1;
        else if (*pat != 0 && !isToken(*pat))
            m_literal = static_cast<char>(*pat);
    }

    bool mayMatchAt(const char* pos) const
    {
        if (m_bitmap)
            return *pos != '\0' && testBit(m_bitmap, static_cast<unsigned char>(*pos));
        return m_literal == '\0' || *pos == m_literal;
    }

private:
    const unsigned char* m_bitmap = nullptr;
    char m_literal = '\0'; // NUL: no cheap test
};

// The end of the longest run of characters matching token from str on: the
// same as calling omatch until it stops consuming, in a tight loop.
const char* runEnd(const char* str, const unsigned char* token)
{
    switch (*token) {
    case BOL:
    case EOL:
        return str; // anchors consume nothing
    case ANY:
        while (*str != '\0' && *str != '\n')
            ++str;
        return str;
    case CCL: {
        const unsigned char* const bitmap = token + 1;
        if (!testBit(bitmap, 0)) {
            // The text's NUL is no member and stops the run by itself.
            while (testBit(bitmap, static_cast<unsigned char>(*str)))
                ++str;
            return str;
        }
        while (*str != '\0' && testBit(bitmap, static_cast<unsigned char>(*str)))
            ++str;
        return str;
    }
    default: {
        const char c = static_cast<char>(*token);
        if (c != '\0')
            while (*str == c)
                ++str;
        return str;
    }
    }
}

// A '*' or '+' closure at pat (the token it repeats follows) and the rest of
// the pattern behind it, at str: the longest run first, then backing off one
// character at a time to where the repetition began. *reach receives the
// end of the longest run.
const char* matchClosure(const char* str, const unsigned char* pat, Search& search, const char** reach)
{
    const char* const start = search.start;
    const unsigned char* const token = pat + 1;
    const char* began = str;
    if (*token == BOL || *token == EOL) {
        // Only a stray token byte gets here: compiled closures never take anchors.
        if (*pat == PCLOSURE && omatch(&str, token, start) == NoMatch) {
            *reach = str;
            return nullptr;
        }
    } else {
        str = runEnd(str, token);
        if (*pat == PCLOSURE) {
            if (str == began) {
                *reach = str;
                return nullptr;
            }
            ++began; // the first repetition is required and is never given back
        }
    }
    *reach = str;
    const unsigned char* const rest = token + tokenSize(token);
    if (!*rest)
        return lastMatched(str, start);
    const FirstTokenFilter filter(rest);
    for (;; --str) {
        if (filter.mayMatchAt(str) && !search.knownToFail(rest, str)) {
            if (const char* end = patcmp(str, rest, search))
                return end;
            search.noteFailure(rest, str);
        }
        if (str == began)
            return nullptr;
    }
}

// Matches the token string pat at str; returns a pointer to the last
// character matched (never before start), or null. When pat begins with a
// '*' or '+' closure, *reach (if given) receives the end of its longest run.
const char* patcmp(const char* str, const unsigned char* pat, Search& search, const char** reach)
{
    const char* const start = search.start;
    const char* ignored = nullptr;
    if (*pat == CLOSURE || *pat == PCLOSURE)
        return matchClosure(str, pat, search, reach ? reach : &ignored);
    while (*pat) {
        if (*pat == OPT) {
            ++pat;
            omatch(&str, pat, start);
            pat += tokenSize(pat);
            continue;
        }
        if (*pat == CLOSURE || *pat == PCLOSURE)
            return matchClosure(str, pat, search, &ignored);
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

// The length of a token string made of literal characters only, else 0.
std::size_t wholeLiteralLength(const unsigned char* pat)
{
    std::size_t n = 0;
    while (pat[n] != 0 && !isToken(pat[n]))
        ++n;
    return pat[n] == 0 ? n : 0;
}

// The length of the run of literal tokens at pat.
std::size_t literalRunLength(const unsigned char* pat)
{
    std::size_t n = 0;
    while (pat[n] != 0 && !isToken(pat[n]))
        ++n;
    return n;
}

// A run of literal characters that every match contains (the literal prefix,
// or the literal right behind a leading '*' or '+' run), or null.
const char* requiredLiteral(const unsigned char* pat, std::size_t* length)
{
    if ((pat[0] == CLOSURE || pat[0] == PCLOSURE) && pat[1] != BOL && pat[1] != EOL && pat[1] != 0)
        pat += 1 + tokenSize(pat + 1);
    *length = literalRunLength(pat);
    return *length > 0 ? reinterpret_cast<const char*>(pat) : nullptr;
}

bool lacksRequiredLiteral(const unsigned char* pat, const char* from, std::size_t size)
{
    std::size_t length = 0;
    const char* const literal = requiredLiteral(pat, &length);
    return literal && !kztext::findLiteral(from, size, literal, length);
}

// What find() knows about a compiled pattern before it searches, so it can
// skip positions where no attempt can succeed. None of it changes a result.
struct SearchPlan {
    explicit SearchPlan(const unsigned char* pat)
    {
        anchored = pat[0] == BOL;
        leadingRun = pat[0] == CLOSURE || pat[0] == PCLOSURE;
        first = pat[0] == PCLOSURE ? pat + 1 : pat;
        while (pat[prefixLength] != 0 && !isToken(pat[prefixLength]))
            ++prefixLength;
        prefix = reinterpret_cast<const char*>(pat);
        if (leadingRun && pat[1] != BOL && pat[1] != EOL) {
            rest = pat + 1 + tokenSize(pat + 1);
            while (rest[restLiteralLength] != 0 && !isToken(rest[restLiteralLength]))
                ++restLiteralLength;
        }
        findRequiredLiterals(pat);
    }

    // Every match consumes each run of literal tokens outside any closure,
    // so a text lacking one of them holds no match at all. Up to four runs
    // are kept, longer ones first in the pattern order they were found.
    void findRequiredLiterals(const unsigned char* pat)
    {
        for (const unsigned char* t = pat; *t;) {
            if (!isToken(*t)) {
                const unsigned char* const begin = t;
                while (*t && !isToken(*t))
                    ++t;
                noteRequired(reinterpret_cast<const char*>(begin), static_cast<std::size_t>(t - begin));
                continue;
            }
            if (isClosure(*t))
                ++t; // the governed token is skipped below with its size
            if (*t)
                t += tokenSize(t);
        }
    }

    void noteRequired(const char* literal, std::size_t length)
    {
        if (requiredCount < kMaxRequired) {
            required[requiredCount] = literal;
            requiredLength[requiredCount++] = length;
            return;
        }
        for (std::size_t i = 0; i < kMaxRequired; ++i) {
            if (length > requiredLength[i]) {
                required[i] = literal;
                requiredLength[i] = length;
                return;
            }
        }
    }

    // An anchored pattern is tried once; the literal after a leading run is
    // searched for anyway: it is not tested here. Every match begins with a
    // literal prefix, so the other literals are looked for only behind its
    // first occurrence.
    bool cannotMatch(const char* from, const char* end) const
    {
        if (anchored)
            return false;
        if (prefixLength > 0) {
            from = kztext::findLiteral(from, static_cast<std::size_t>(end - from), prefix, prefixLength);
            if (!from)
                return true;
        }
        const char* const restLiteral = reinterpret_cast<const char*>(rest);
        for (std::size_t i = 0; i < requiredCount; ++i) {
            if (required[i] == prefix || required[i] == restLiteral)
                continue;
            if (!kztext::findLiteral(from, static_cast<std::size_t>(end - from), required[i], requiredLength[i]))
                return true;
        }
        return false;
    }

    // The first position at or after at, before end, where an attempt can
    // succeed; end when there is none.
    const char* nextCandidate(const char* at, const char* end) const
    {
        if (prefixLength >= 2) {
            const char* hit = kztext::findLiteral(at, static_cast<std::size_t>(end - at), prefix, prefixLength);
            return hit ? hit : end;
        }
        switch (*first) {
        case 0:   // no tokens at all (such as "\\x"): matches wherever it is tried
        case CLOSURE:
        case OPT:
        case BOL:
            return at;
        case EOL:
            return scanFor(at, end, '\n');
        case ANY:
            while (at < end && *at == '\n')
                ++at;
            return at;
        case CCL:
            if (testBit(first + 1, 0)) {
                // *end is a NUL, which this class takes: it stops the scan.
                while (!testBit(first + 1, static_cast<unsigned char>(*at)))
                    ++at;
                return at < end ? at : end;
            }
            while (at < end && !testBit(first + 1, static_cast<unsigned char>(*at)))
                ++at;
            return at;
        default:
            return scanFor(at, end, static_cast<char>(*first));
        }
    }

    // Where to try next after an attempt at at failed, reach being how far
    // its leading '*' or '+' run went. That attempt has already tried the
    // rest of the pattern at every position up to reach, so the starts
    // inside the run (and at its end) cannot succeed either.
    const char* nextAfterFailure(const char* at, const char* reach) const
    {
        return leadingRun && reach > at ? reach + 1 : at + 1;
    }

    static const char* scanFor(const char* at, const char* end, char c)
    {
        const void* hit = std::memchr(at, c, static_cast<std::size_t>(end - at));
        return hit ? static_cast<const char*>(hit) : end;
    }

    bool anchored = false;
    bool leadingRun = false;
    const unsigned char* first = nullptr;
    const char* prefix = nullptr;
    std::size_t prefixLength = 0;
    static constexpr std::size_t kMaxRequired = 4;
    const char* required[kMaxRequired] = {};
    std::size_t requiredLength[kMaxRequired] = {};
    std::size_t requiredCount = 0;
    const unsigned char* rest = nullptr;  // behind a leading '*' or '+' and its token
    std::size_t restLiteralLength = 0;    // literal tokens that rest begins with
};

// Whether c is one repetition of the closure token (ANY, CCL or a literal).
bool repeats(const unsigned char* token, char c)
{
    if (c == '\0')
        return false;
    switch (*token) {
    case BOL:
    case EOL:
        return false;
    case ANY:
        return c != '\n';
    case CCL:
        return testBit(token + 1, static_cast<unsigned char>(c));
    default:
        return c == static_cast<char>(*token);
    }
}

// The leftmost match for a pattern "run then literal", such as "[a-z]+ing":
// a leading '*' or '+' whose rest begins with a literal. Every match ends its
// run where the rest matches, so the rest's occurrences are searched first;
// the first place q where the rest matches fixes the leftmost start: the
// beginning of the run of repetitions that ends at q. Attempts further left
// cannot reach q (their run stops earlier) and found nothing before q.
// Returns the start (end for none) and sets *last as patcmp does.
const char* leftmostRunThenLiteral(const SearchPlan& plan, const unsigned char* pat, Search& search,
                                   const char* end, const char** last)
{
    const char* const from = search.start;
    const unsigned char* const token = pat + 1;
    const bool atLeastOnce = pat[0] == PCLOSURE;
    const char* const literal = reinterpret_cast<const char*>(plan.rest);
    for (const char* q = from + (atLeastOnce ? 1 : 0); q < end; ++q) {
        const char* hit = kztext::findLiteral(q, static_cast<std::size_t>(end - q), literal, plan.restLiteralLength);
        if (!hit)
            break;
        q = hit;
        if (!patcmp(q, plan.rest, search))
            continue;
        const char* runStart = q;
        while (runStart > from && repeats(token, runStart[-1]))
            --runStart;
        if (atLeastOnce && runStart == q)
            continue;
        if ((*last = patcmp(runStart, pat, search)) != nullptr)
            return runStart;
    }
    return end;
}

// The leftmost match by trying each candidate position in turn.
const char* leftmostByAttempts(const SearchPlan& plan, const unsigned char* pat, Search& search,
                               const char* end, const char** last)
{
    const char* const from = search.start;
    const char* at = plan.nextCandidate(from, end);
    while (at < end) {
        const char* reach = at;
        if ((*last = patcmp(at, pat, search, &reach)) != nullptr)
            return at;
        if (plan.anchored)
            break; // the beginning of the line matches only at the search start
        at = plan.nextAfterFailure(at, reach);
        if (at < end)
            at = plan.nextCandidate(at, end);
    }
    return end;
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
        return signedValue(*p);
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
            value = signedValue(upperAscii(*p)) - 64;
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
            value = signedValue(*p++);
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
        } else if (m_pattern[0] == BOL) {
            // Tried once, at the search start; the text's end is never needed.
            Search search(m_pattern, from);
            if (const char* last = patcmp(from, m_pattern, search)) {
                length = static_cast<unsigned long>(last + 1 - from);
                offset = static_cast<int>(start);
            }
        } else if (const std::size_t literal = wholeLiteralLength(m_pattern)) {
            // Literal characters only: the first occurrence is the match,
            // unless the text's NUL comes before it.
            const char* const hit = kztext::findLiteral(from, text.size() - start,
                                                        reinterpret_cast<const char*>(m_pattern), literal);
            if (hit && !std::memchr(from, '\0', static_cast<std::size_t>(hit - from))) {
                length = literal;
                offset = static_cast<int>(hit - base);
            }
        } else if (lacksRequiredLiteral(m_pattern, from, text.size() - start)) {
            // Not even in the whole text, so not before its NUL either: the
            // search is over before the text's end is looked for.
        } else {
            const void* nul = std::memchr(from, '\0', text.size() - start);
            const char* const end = nul ? static_cast<const char*>(nul) : base + text.size();
            const SearchPlan plan(m_pattern);
            Search search(m_pattern, from);
            const char* last = nullptr;
            const char* at = plan.cannotMatch(from, end) ? end
                             : plan.restLiteralLength > 0 ? leftmostRunThenLiteral(plan, m_pattern, search, end, &last)
                                                          : leftmostByAttempts(plan, m_pattern, search, end, &last);
            if (at < end) {
                length = static_cast<unsigned long>(last + 1 - at);
                offset = static_cast<int>(at - base);
            }
        }
    }
    if (matchLength)
        *matchLength = length;
    return offset;
}
