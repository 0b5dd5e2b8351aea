// KZRegExp: compilation status, escapes, and find's offsets and lengths,
// checked by table and against an independent reference matcher.
#include "KZRegExp.h"

#include <gtest/gtest.h>

#include <bitset>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Found = std::pair<int, unsigned long>;   // offset and length

Found findIn(const KZRegExp& re, const std::string& text, unsigned long start)
{
    unsigned long length = 99;
    const int offset = re.find(text, &length, start);
    return {offset, length};
}

} // namespace

TEST(RegExpCompile, StatusCodes)
{
    const std::string x109(109, 'x');
    struct Case { std::string pattern; int status; } const cases[] = {
        {"abc", 0}, {"", 1}, {"*a", 1}, {"\nabc", 1}, {"a**", 3}, {"^*", 3}, {"a$?", 0},
        {"[abc", 0}, {"a\n**", 0},        // a newline ends the pattern
        {"\xAA*", 3},                     // a byte that reads back as a closure takes no closure
        {std::string(127, 'x'), 0}, {std::string(128, 'x'), 3},
        {x109 + "xx[a]", 0}, {x109 + "xxx[a]", 3}, {x109 + "[a]*", 0}, {x109 + "x[a]*", 3},
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
    KZRegExp a("b+"), b(a);
    a = "x";
    EXPECT_EQ(b.find("abbc", nullptr, 0), 1);
    EXPECT_EQ(a.find("abbc", nullptr, 0), -1);
    a = b;
    EXPECT_EQ(a.find("abbc", nullptr, 0), 1);
}

TEST(RegExpEscapes, EscReadsOneCharacter)
{
    struct Case { const char* in; int value, advance; } const cases[] = {
        {"a", 'a', 1},    {"\\t", '\t', 2},    {"\\T", '\t', 2},     {"\\b", 8, 2},      {"\\E", 27, 2},
        {"\\s", ' ', 2},  {"\\x41", 'A', 4},  {"\\x4g", 4, 3},     {"\\xg", 0, 2},     {"\\X7E7", '~', 4},
        {"\\^a", 1, 3},   {"\\^[", 27, 3},    {"\\0101", 'A', 5},  {"\\101", 1, 4},    {"\\1x7", 7, 4},
        {"\\7z12", 138, 5}, {"\\*", '*', 2},  {"\\", '\\', 1},     {"\\^", '^', 2},    {"\\0", 0, 2},
    };
    for (const Case& c : cases) {
        const char* p = c.in;
        EXPECT_EQ(esc(&p), c.value) << c.in;
        EXPECT_EQ(p - c.in, c.advance) << c.in;
    }
}

TEST(RegExpFind, OffsetsAndLengths)
{
    struct Case { const char* pattern; std::string text; unsigned long start; int offset; unsigned long length; };
    const Case cases[] = {
        {"^ab", "xab", 1, 1, 2},          // the search start is the beginning of the line
        {"x*", "abc", 0, 0, 1},           // empty match at the start reports 1
        {"$", "ab\n", 0, 2, 0},           // empty match after the start reports 0
        {"$", "", 0, 0, 1},
        {"^$", "", 0, 0, 1},
        {"$", "abc", 0, -1, 0},           // no attempt at the very end
        {"$", "abc", 3, 3, 1},
        {"[c-a]", "xa", 0, -1, 0},        // a reversed range lacks its lower end
        {"[a-]b", "_b]b", 0, 0, 1},       // the range takes the ']', so b joins the class
        {"d", "\xE4", 0, -1, 0},
        {"[d]", "\xE4", 0, 0, 1},         // class membership ignores the top bit
        {"a?ab", "ab", 0, -1, 0},         // '?' does not give back what it took
        {"\\x41B", "zAB", 0, 1, 2},
        {"a\\$", "a$", 0, 0, 2},
        {"abc", std::string("ab\0abc", 6), 0, -1, 0},  // the text ends at its NUL
        {"abc", std::string("ab\0abc", 6), 3, 3, 3},
        {"b", "abc", 9, -1, 0},           // a start past the end finds nothing
        {"[", "w", 0, -1, 0},             // an empty class at the pattern's end matches nothing
        {"[]x", "ax]x", 0, -1, 0},
        {"\\x", "abc", 1, 1, 1},          // no tokens at all: an empty match at the start
    };
    for (const Case& c : cases) {
        EXPECT_EQ(findIn(KZRegExp(c.pattern), c.text, c.start), Found(c.offset, c.length))
            << c.pattern << " in '" << c.text << "' from " << c.start;
    }
}

// --- differential test against a reference matcher -------------------------

namespace {

// An independent reading of the same language: elements with an optional
// closure, matched by index recursion.
struct RefElement {
    enum Kind { Literal, Any, Class, Bol, Eol } kind = Literal;
    char literal = 0, closure = 0;
    std::bitset<128> members;

    bool consumes(const std::string& text, std::size_t pos) const
    {
        if (pos >= text.size())
            return false;
        return kind == Literal ? text[pos] == literal
             : kind == Any     ? text[pos] != '\n'
             : kind == Class   && members[static_cast<unsigned char>(text[pos]) & 0x7F];
    }
};

std::vector<RefElement> refParse(const std::string& p)
{
    std::vector<RefElement> elements;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const char c = p[i];
        RefElement e;
        if (c == '*' || c == '+' || c == '?') {
            elements.back().closure = c;
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
            for (; j < p.size() && p[j] != ']'; ++j) {
                if (p[j] == '-' && j > i + 1 + negate && j + 1 < p.size()) {
                    // the character before the '-' is in already ("c-a" is b and c)
                    for (int m = std::min(p[j - 1], p[j + 1]) + 1; m <= std::max(p[j - 1], p[j + 1]); ++m)
                        e.members.set(static_cast<std::size_t>(m));
                    ++j;
                } else {
                    e.members.set(static_cast<unsigned char>(p[j]) & 0x7F);
                }
            }
            if (negate)
                e.members.flip();
            i = j;
        } else {
            e.literal = c;
        }
        elements.push_back(e);
    }
    return elements;
}

std::optional<std::size_t> refMatch(const std::vector<RefElement>& es, std::size_t index,
                                    const std::string& text, std::size_t pos, std::size_t start)
{
    if (index == es.size())
        return pos;
    const RefElement& e = es[index];
    if (e.kind == RefElement::Bol || e.kind == RefElement::Eol) {
        const bool at = e.kind == RefElement::Bol ? pos == start : pos == text.size() || text[pos] == '\n';
        return at ? refMatch(es, index + 1, text, pos, start) : std::nullopt;
    }
    if (e.closure == '?')
        return refMatch(es, index + 1, text, pos + e.consumes(text, pos), start);
    std::size_t most = 0;
    while (e.consumes(text, pos + most) && (e.closure || most == 0))
        ++most;
    for (std::size_t n = most + 1; n-- > (e.closure == '*' ? 0u : 1u);)
        if (auto end = refMatch(es, index + 1, text, pos + n, start))
            return end;
    return std::nullopt;
}

Found refFind(const std::string& pattern, const std::string& text, std::size_t start)
{
    const std::vector<RefElement> es = refParse(pattern);
    if (start >= text.size()) {
        const bool anchorsOnly = es[0].kind == RefElement::Eol ||
            (es[0].kind == RefElement::Bol && (es.size() == 1 || (es.size() == 2 && es[1].kind == RefElement::Eol)));
        return start == text.size() && anchorsOnly ? Found{static_cast<int>(start), 1} : Found{-1, 0};
    }
    for (std::size_t at = start; at < text.size(); ++at)
        if (auto end = refMatch(es, 0, text, at, start))
            return {static_cast<int>(at), *end == start ? 1 : *end - at};
    return {-1, 0};
}

std::string randomPattern(std::mt19937& rng)
{
    static const char* const kClasses[] = {"[ab]", "[^a]", "[a-c]", "[c-a]", "[-b]", "[^-]", "[b$]", "[^ab]"};
    std::string p = rng() % 4 ? "" : "^";
    for (int i = 0, n = 1 + static_cast<int>(rng() % 5); i < n; ++i) {
        const unsigned kind = rng() % 8;
        p += kind < 4 ? std::string(1, "abc"[rng() % 3])
           : kind < 5 ? std::string(".")
           : kind < 7 ? std::string(kClasses[rng() % 8])
           : std::string(1, p.empty() ? '$' : "$^"[rng() % 2]);   // literals when not at the ends
        if (rng() % 3 == 0)
            p += "*+?"[rng() % 3];
    }
    return rng() % 4 ? p : p + "$";
}

} // namespace

TEST(RegExpFind, AgreesWithReferenceMatcher)
{
    std::mt19937 rng(20261122);
    int matches = 0;
    for (int i = 0; i < 6300; ++i) {
        std::string pattern, text;
        if (i < 6000) {
            pattern = randomPattern(rng);
            for (std::size_t j = 0, n = rng() % 12; j < n; ++j)
                text += "abcab\n$^"[rng() % 8];
        } else {   // dense closures over a long run: much giving back and retrying
            for (unsigned e = 0, n = 4 + rng() % 3; e < n; ++e)
                pattern += std::string(rng() % 4 ? "a" : "[ab]") + (rng() % 3 ? '*' : '+');
            pattern += rng() % 2 ? "b" : "ab$";
            text.assign(10 + rng() % 10, 'a');
            text[rng() % text.size()] = "ab"[rng() % 2];
        }
        const std::size_t start = rng() % (text.size() + 1);
        KZRegExp re(pattern.c_str());
        ASSERT_EQ(re.status(), 0) << pattern;
        const Found got = findIn(re, text, start), want = refFind(pattern, text, start);
        ASSERT_EQ(got, want) << "'" << pattern << "' in '" << text << "' from " << start;
        matches += got.first >= 0;
    }
    EXPECT_GT(matches, 1000);   // the generator must produce plenty of matches
}

TEST(RegExpFind, NestedClosuresStayFast)
{
    std::string nested;
    for (int i = 0; i < 30; ++i)
        nested += "a*";
    EXPECT_EQ(KZRegExp((nested + "c").c_str()).find(std::string(300, 'a'), nullptr, 0), -1);
}
