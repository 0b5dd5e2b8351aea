// Compiling a pattern into its token string (RegExpProgram.h), the escapes
// it reads, and the life of a compiled KZRegExp.
#include "KZRegExp.h"
#include "RegExpPlan.h"
#include "RegExpProgram.h"

#include <cstring>
#include <new>

using kztext::ANY;
using kztext::BOL;
using kztext::CCL;
using kztext::CLOSURE;
using kztext::EOL;
using kztext::kAllocation;
using kztext::kClassBytes;
using kztext::kClassTokenSize;
using kztext::kLastClassStart;
using kztext::kLastElementStart;
using kztext::OPT;
using kztext::PCLOSURE;

namespace {

void setBit(unsigned char* bitmap, unsigned char c)
{
    bitmap[(c & 0x7F) >> 3] |= static_cast<unsigned char>(1u << (c & 7));
}

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}
bool isDecimal(char c)
{
    return c >= '0' && c <= '9';
}
bool isHex(char c)
{
    return isDecimal(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
char upperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
// A character's value as esc returns it: signed, as char is on x86, also
// where char is unsigned (ARM Linux), so that 0xE4 reads as -28 everywhere.
int signedValue(char c)
{
    return static_cast<signed char>(c);
}
bool endsPattern(char c)
{
    return c == '\0' || c == '\n';
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
            // Signed on purpose: bytes from 0x80 order before ASCII in a
            // range, as they always have, whatever the platform's char.
            const int low = a < b ? a : b;  // NOLINT(bugprone-signed-char-misuse)
            const int high = a < b ? b : a; // NOLINT(bugprone-signed-char-misuse)
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
    case '\0': value = '\\'; break; // nothing escaped: stay on the NUL
    case 'B':
        value = '\b';
        ++p;
        break;
    case 'E':
        value = 27;
        ++p;
        break;
    case 'F':
        value = '\f';
        ++p;
        break;
    case 'N':
        value = '\n';
        ++p;
        break;
    case 'R':
        value = '\r';
        ++p;
        break;
    case 'S':
        value = ' ';
        ++p;
        break;
    case 'T':
        value = '\t';
        ++p;
        break;
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
            if (!previous || *previous == BOL || *previous == EOL || kztext::isClosure(*previous))
                return fail(StatusTooLong);
            const unsigned char token = *p == '*' ? CLOSURE : *p == '+' ? PCLOSURE : OPT;
            ++p;
            std::memmove(previous + 1, previous, static_cast<std::size_t>(previousSize));
            *previous = token;
            ++out;
            previousSize = 0; // a closure cannot take another closure
            continue;
        }
        default: *out++ = static_cast<unsigned char>(esc(&p)); break;
        }
        previous = element;
        previousSize = static_cast<int>(out - element);
    }
    *out = 0;
    kztext::storePlan(m_pattern);
    return m_status = StatusOk;
}
