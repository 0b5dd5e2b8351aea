// KZRegExp: compilation status, escapes, and find's offsets and lengths,
// checked by table and against an independent reference matcher.
#include "KZRegExp.h"

#include <gtest/gtest.h>

#include <bitset>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

struct Found {
    int offset;
    unsigned long length;
};

Found findIn(const char* pattern, const std::string& text, unsigned long start = 0)
{
    KZRegExp re(pattern);
    Found f{-2, 99};
    f.offset = re.find(text, &f.length, start);
    return f;
}

} // namespace

TEST(RegExpCompile, StatusCodes)
{
    struct Case {
        std::string pattern;
        int status;
    } const cases[] = {
        {"abc", 0}, {"", 1}, {"*a", 1}, {"+a", 1}, {"?a", 1}, {"\nabc", 1},
        {"a**", 3}, {"a+?", 3}, {"^*", 3}, {"a$?", 0},   // '$' not last: a literal
        {std::string(200, 'x'), 3}, {std::string(127, 'x'), 0}, {std::string(128, 'x'), 3},
        {std::string(110, 'x') + "[a-z]", 0}, {std::string(111, 'x') + "[a]", 0},
        {std::string(112, 'x') + "[a]", 3}, {std::string(110, 'x') + "[a]*", 3},
        {std::string(109, 'x') + "[a]*", 0}, {"[abc", 0}, {"a\n**", 0},  // newline ends it
        {"\xAA*", 3},   // a byte that reads back as a closure takes no closure
    };
    for (const Case& c : cases) {
        KZRegExp re(c.pattern.c_str());
        const KZRegExp copy(re);
        EXPECT_EQ(re.status(), c.status) << c.pattern;
        EXPECT_EQ(re.status(), 0) << "status() clears it";
        if (c.status != 0) {   // a failed pattern finds nothing, even once its status is read
            EXPECT_EQ(re.find("a**x", nullptr, 0), -1) << c.pattern;
            EXPECT_EQ(copy.find("", nullptr, 0), -1) << c.pattern;
        }
    }
    KZRegExp re("a");
    EXPECT_EQ(re.gen_pattern(nullptr), 1);
}

TEST(RegExpCompile, CopiesAndReassignmentAreIndependent)
{
    KZRegExp a("b+");
    KZRegExp b(a);
    a = "x";
    KZRegExp& self = b;
    b = self;
    EXPECT_EQ(b.find("abbc", nullptr, 0), 1);
    EXPECT_EQ(a.find("abbc", nullptr, 0), -1);
    a = b;
    EXPECT_EQ(a.find("abbc", nullptr, 0), 1);
}

TEST(RegExpEscapes, EscReadsOneCharacter)
{
    struct Case {
        const char* in;
        int value;
        int advance;
    } const cases[] = {
        {"a", 'a', 1},      {"\\t", '\t', 2},    {"\\T", '\t', 2},   {"\\n", '\n', 2},
        {"\\b", 8, 2},      {"\\E", 27, 2},      {"\\f", 12, 2},     {"\\r", 13, 2},
        {"\\s", ' ', 2},    {"\\x41", 'A', 4},   {"\\x4g", 4, 3},    {"\\xg", 0, 2},
        {"\\X7e7", '~', 4}, {"\\^A", 1, 3},      {"\\^a", 1, 3},     {"\\^[", 27, 3},
        {"\\0101", 'A', 5}, {"\\101", 1, 4},     {"\\1x7", 7, 4},    {"\\7z12", 138, 5},
        {"\\*", '*', 2},    {"\\\\", '\\', 2},   {"\\", '\\', 1},    {"\\^", '^', 2},
        {"\\0", 0, 2},
    };
    for (const Case& c : cases) {
        const char* p = c.in;
        EXPECT_EQ(esc(&p), c.value) << c.in;
        EXPECT_EQ(p - c.in, c.advance) << c.in;
    }
    EXPECT_EQ(hex2bin('f'), 15);
    EXPECT_EQ(hex2bin('A'), 10);
    EXPECT_EQ(hex2bin('9'), 9);
    EXPECT_EQ(oct2bin('7'), 7);
}

TEST(RegExpFind, OffsetsAndLengths)
{
    struct Case {
        const char* pattern;
        std::string text;
        unsigned long start;
        int offset;
        unsigned long length;
    } const cases[] = {
        {"a+b", "xaaab", 0, 1, 4},
        {"^ab", "xab", 1, 1, 2},          // the search start is the beginning of the line
        {"^ab", "xab", 0, -1, 0},
        {"x*", "abc", 0, 0, 1},           // empty match at the start reports 1
        {"a$", "ba", 0, 1, 1},
        {"$", "", 0, 0, 1},
        {"^$", "", 0, 0, 1},
        {"a", "", 0, -1, 0},
        {"$", "abc", 0, -1, 0},           // no attempt at the very end
        {"$", "abc", 3, 3, 1},
        {"$", "ab\n", 0, 2, 0},           // empty match after the start reports 0
        {"[^a]", "a\n", 0, 1, 1},
        {"[a-c]", "xb", 0, 1, 1},
        {"[c-a]", "xa", 0, -1, 0},        // a reversed range lacks its lower end
        {"[-x]", "a-", 0, 1, 1},
        {"[a-]b", "_b]b", 0, 0, 1},       // the range takes the ']', so b joins the class
        {"d", "\xE4", 0, -1, 0},
        {"[d]", "\xE4", 0, 0, 1},         // class membership ignores the top bit
        {"a.*c", "abcbc\nc", 0, 0, 5},
        {"a?ab", "ab", 0, -1, 0},         // '?' does not give back what it took
        {"[0-9]+x", "12 345x", 0, 3, 4},
        {"\\x41B", "zAB", 0, 1, 2},
        {"\\^A", std::string("z\x01", 2), 0, 1, 1},
        {"\\t", "a\tb", 0, 1, 1},
        {"a\\$", "a$", 0, 0, 2},
        {"b^", "ab^", 0, 1, 2},
        {"abc", std::string("ab\0abc", 6), 0, -1, 0},  // the text ends at its NUL
        {"abc", std::string("ab\0abc", 6), 3, 3, 3},
        {"b", "abc", 9, -1, 0},           // a start past the end finds nothing
        {"[", "w", 0, -1, 0},             // an empty class matches nothing
        {"[]x", "ax]x", 0, -1, 0},
    };
    for (const Case& c : cases) {
        const Found f = findIn(c.pattern, c.text, c.start);
        EXPECT_EQ(f.offset, c.offset) << c.pattern << " in '" << c.text << "' from " << c.start;
        EXPECT_EQ(f.length, c.length) << c.pattern << " in '" << c.text << "' from " << c.start;
    }
}

// --- differential test against a reference matcher -------------------------

namespace {

// An independent reading of the same language, straight from the pattern
// text: elements with an optional closure, matched by index recursion.
struct RefElement {
    enum Kind { Literal, Any, Class, Bol, Eol } kind = Literal;
    char literal = 0;
    std::bitset<128> members;
    char closure = 0;   // 0, '*', '+' or '?'

    bool consumes(const std::string& text, std::size_t pos) const
    {
        if (pos >= text.size())
            return false;
        const unsigned char c = static_cast<unsigned char>(text[pos]);
        switch (kind) {
        case Literal: return text[pos] == literal;
        case Any: return c != '\n';
        case Class: return members[c & 0x7F];
        default: return false;
        }
    }
};

std::vector<RefElement> refParse(const std::string& p)
{
    std::vector<RefElement> elements;
    for (std::size_t i = 0; i < p.size();) {
        const char c = p[i];
        RefElement e;
        if (c == '*' || c == '+' || c == '?') {
            elements.back().closure = c;
            ++i;
            continue;
        }
        if (c == '^' && i == 0) {
            e.kind = RefElement::Bol;
        } else if (c == '$' && i + 1 == p.size()) {
            e.kind = RefElement::Eol;
        } else if (c == '.') {
            e.kind = RefElement::Any;
        } else if (c == '[') {
            e.kind = RefElement::Class;
            std::size_t j = i + 1;
            const bool negate = j < p.size() && p[j] == '^';
            j += negate;
            if (j < p.size() && p[j] == '-')
                e.members.set('-'), ++j;
            for (; j < p.size() && p[j] != ']'; ++j) {
                if (p[j] == '-' && j + 1 < p.size()) {
                    const int lo = std::min(p[j - 1], p[j + 1]), hi = std::max(p[j - 1], p[j + 1]);
                    // the character before the '-' is in already; a range
                    // never adds its lower end itself ("c-a" is b and c)
                    for (int m = lo + 1; m <= hi; ++m)
                        e.members.set(static_cast<std::size_t>(m));
                    ++j;
                } else {
                    e.members.set(static_cast<unsigned char>(p[j]) & 0x7F);
                }
            }
            if (negate)
                e.members.flip();
            i = j;   // at ']' or the end; the ++i below steps over ']'
        } else {
            e.literal = c;
        }
        ++i;
        elements.push_back(e);
    }
    return elements;
}

std::optional<std::size_t> refMatch(const std::vector<RefElement>& elements, std::size_t index,
                                    const std::string& text, std::size_t pos, std::size_t start)
{
    if (index == elements.size())
        return pos;
    const RefElement& e = elements[index];
    if (e.kind == RefElement::Bol)
        return pos == start ? refMatch(elements, index + 1, text, pos, start) : std::nullopt;
    if (e.kind == RefElement::Eol)
        return pos == text.size() || text[pos] == '\n' ? refMatch(elements, index + 1, text, pos, start)
                                                       : std::nullopt;
    if (e.closure == '?')
        return refMatch(elements, index + 1, text, pos + (e.consumes(text, pos) ? 1 : 0), start);
    std::size_t most = 0;
    while (e.consumes(text, pos + most) && (e.closure || most == 0))
        ++most;
    const std::size_t least = e.closure == '*' ? 0 : 1;
    for (std::size_t n = most; n + 1 > least && n <= most; --n)
        if (auto end = refMatch(elements, index + 1, text, pos + n, start))
            return end;
    return std::nullopt;
}

Found refFind(const std::string& pattern, const std::string& text, std::size_t start)
{
    const std::vector<RefElement> elements = refParse(pattern);
    if (start >= text.size()) {
        const bool emptyOk = start == text.size() &&
            (elements[0].kind == RefElement::Eol ||
             (elements[0].kind == RefElement::Bol &&
              (elements.size() == 1 || (elements.size() == 2 && elements[1].kind == RefElement::Eol))));
        return emptyOk ? Found{static_cast<int>(start), 1} : Found{-1, 0};
    }
    for (std::size_t at = start; at < text.size(); ++at)
        if (auto end = refMatch(elements, 0, text, at, start))
            return {static_cast<int>(at), *end == start ? 1 : *end - at};
    return {-1, 0};
}

std::string randomPattern(std::mt19937& rng)
{
    auto pick = [&rng](const char* choices) {
        const std::string s = choices;
        return s[std::uniform_int_distribution<std::size_t>(0, s.size() - 1)(rng)];
    };
    static const char* const kClasses[] = {"[ab]", "[^a]", "[a-c]", "[c-a]", "[-b]", "[^-]", "[b$]", "[^ab]"};
    std::string p;
    if (rng() % 4 == 0)
        p += '^';
    const int elements = 1 + static_cast<int>(rng() % 5);
    for (int i = 0; i < elements; ++i) {
        const unsigned kind = rng() % 8;
        if (kind < 4)
            p += pick("abc");
        else if (kind < 5)
            p += '.';
        else if (kind < 7)
            p += kClasses[rng() % 8];
        else
            p += p.empty() ? '$' : pick("$^");   // literals when not at the ends
        if (rng() % 3 == 0)
            p += pick("*+?");
    }
    if (rng() % 4 == 0)
        p += '$';
    return p;
}

} // namespace

TEST(RegExpFind, AgreesWithReferenceMatcher)
{
    std::mt19937 rng(20261122);
    int compared = 0;
    for (int i = 0; i < 6000; ++i) {
        const std::string pattern = randomPattern(rng);
        std::string text;
        const std::size_t length = rng() % 12;
        for (std::size_t j = 0; j < length; ++j)
            text += "abcab\n$^"[rng() % 8];
        const std::size_t start = rng() % (text.size() + 1);
        KZRegExp re(pattern.c_str());
        ASSERT_EQ(re.status(), 0) << pattern;
        Found got{-2, 99};
        got.offset = re.find(text, &got.length, start);
        const Found want = refFind(pattern, text, start);
        ASSERT_EQ(got.offset, want.offset) << "pattern '" << pattern << "' text '" << text << "' from " << start;
        ASSERT_EQ(got.length, want.length) << "pattern '" << pattern << "' text '" << text << "' from " << start;
        compared += got.offset >= 0;
    }
    EXPECT_GT(compared, 1000);   // the generator must produce plenty of matches
}

TEST(RegExpFind, HeavyBacktrackingStaysExactAndFinishes)
{
    // Dense closures over a long run make the matcher give back and retry
    // a great deal; the answers must still be the reference's.
    std::mt19937 rng(7);
    for (int i = 0; i < 300; ++i) {
        std::string pattern;
        for (int e = 0, n = 4 + static_cast<int>(rng() % 3); e < n; ++e)
            pattern += std::string(rng() % 4 ? "a" : "[ab]") + "*+?"[rng() % 3 == 0 ? 1 : 0];
        pattern += rng() % 2 ? "b" : "ab$";
        std::string text(10 + rng() % 10, 'a');
        if (rng() % 2)
            text[rng() % text.size()] = 'b';
        KZRegExp re(pattern.c_str());
        Found got{-2, 99};
        got.offset = re.find(text, &got.length, 0);
        const Found want = refFind(pattern, text, 0);
        ASSERT_EQ(got.offset, want.offset) << pattern << " in " << text;
        ASSERT_EQ(got.length, want.length) << pattern << " in " << text;
    }
    std::string nested;
    for (int i = 0; i < 30; ++i)
        nested += "a*";
    KZRegExp re((nested + "c").c_str());
    EXPECT_EQ(re.find(std::string(300, 'a'), nullptr, 0), -1);
}
