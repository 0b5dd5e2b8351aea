// KZRegExp: compilation status, escapes, and find's offsets and lengths,
// checked by table and against an independent reference matcher.
#include "KZRegExp.h"
#include "ReferenceRegExp.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Found = std::pair<int, unsigned long>; // offset and length

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
    struct Case {
        std::string pattern;
        int status;
    } const cases[] = {
        {"abc", 0},
        {"", 1},
        {"*a", 1},
        {"\nabc", 1},
        {"a**", 3},
        {"^*", 3},
        {"a$?", 0},
        {"[abc", 0},
        {"a\n**", 0}, // a newline ends the pattern
        {"\xAA*", 3}, // a byte that reads back as a closure takes no closure
        {std::string(127, 'x'), 0},
        {std::string(128, 'x'), 3},
        {x109 + "xx[a]", 0},
        {x109 + "xxx[a]", 3},
        {x109 + "[a]*", 0},
        {x109 + "x[a]*", 3},
    };
    for (const Case& c : cases) {
        KZRegExp re(c.pattern.c_str());
        const KZRegExp copy(re);
        EXPECT_EQ(re.status(), c.status) << c.pattern;
        EXPECT_EQ(re.status(), 0) << "status() clears it";
        if (c.status != 0) { // a failed pattern finds nothing, even once its status is read
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
    struct Case {
        const char* in;
        int value, advance;
    } const cases[] = {
        {"a", 'a', 1},
        {"\\t", '\t', 2},
        {"\\T", '\t', 2},
        {"\\b", 8, 2},
        {"\\E", 27, 2},
        {"\\s", ' ', 2},
        {"\\x41", 'A', 4},
        {"\\x4g", 4, 3},
        {"\\xg", 0, 2},
        {"\\X7E7", '~', 4},
        {"\\^a", 1, 3},
        {"\\^[", 27, 3},
        {"\\0101", 'A', 5},
        {"\\101", 1, 4},
        {"\\1x7", 7, 4},
        {"\\7z12", 138, 5},
        {"\\*", '*', 2},
        {"\\", '\\', 1},
        {"\\^", '^', 2},
        {"\\0", 0, 2},
        // Latin-1 bytes read as signed char on every platform.
        {"\xE4", -28, 1},
        {"\\\xE4", -28, 2},
        {"\\^\xE4", -92, 3},
    };
    for (const Case& c : cases) {
        const char* p = c.in;
        EXPECT_EQ(esc(&p), c.value) << c.in;
        EXPECT_EQ(p - c.in, c.advance) << c.in;
    }
}

TEST(RegExpFind, OffsetsAndLengths)
{
    struct Case {
        const char* pattern;
        std::string text;
        unsigned long start;
        int offset;
        unsigned long length;
    };
    const Case cases[] = {
        {"^ab", "xab", 1, 1, 2}, // the search start is the beginning of the line
        {"x*", "abc", 0, 0, 1},  // empty match at the start reports 1
        {"$", "ab\n", 0, 2, 0},  // empty match after the start reports 0
        {"$", "", 0, 0, 1},
        {"^$", "", 0, 0, 1},
        {"$", "abc", 0, -1, 0}, // no attempt at the very end
        {"$", "abc", 3, 3, 1},
        {"[c-a]", "xa", 0, -1, 0},  // a reversed range lacks its lower end
        {"[a-]b", "_b]b", 0, 0, 1}, // the range takes the ']', so b joins the class
        {"d", "\xE4", 0, -1, 0},
        {"[d]", "\xE4", 0, 0, 1}, // class membership ignores the top bit
        {"a?ab", "ab", 0, -1, 0}, // '?' does not give back what it took
        {"\\x41B", "zAB", 0, 1, 2},
        {"a\\$", "a$", 0, 0, 2},
        {"abc", std::string("ab\0abc", 6), 0, -1, 0}, // the text ends at its NUL
        {"abc", std::string("ab\0abc", 6), 3, 3, 3},
        {"b", "abc", 9, -1, 0}, // a start past the end finds nothing
        {"[", "w", 0, -1, 0},   // an empty class at the pattern's end matches nothing
        {"[]x", "ax]x", 0, -1, 0},
        {"\\x", "abc", 1, 1, 1}, // no tokens at all: an empty match at the start
    };
    for (const Case& c : cases) {
        EXPECT_EQ(findIn(KZRegExp(c.pattern), c.text, c.start), Found(c.offset, c.length))
            << c.pattern << " in '" << c.text << "' from " << c.start;
    }
}

// --- differential test against the reference matcher (tests/support) ------

namespace {

using refregexp::refFind;

std::string randomPattern(std::mt19937& rng)
{
    static const char* const kClasses[] = {"[ab]", "[^a]", "[a-c]", "[c-a]", "[-b]", "[^-]", "[b$]", "[^ab]"};
    std::string p = rng() % 4 ? "" : "^";
    for (int i = 0, n = 1 + static_cast<int>(rng() % 5); i < n; ++i) {
        const unsigned kind = rng() % 8;
        p += kind < 4   ? std::string(1, "abc"[rng() % 3])
             : kind < 5 ? std::string(".")
             : kind < 7 ? std::string(kClasses[rng() % 8])
                        : std::string(1, p.empty() ? '$' : "$^"[rng() % 2]); // literals when not at the ends
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
        } else { // dense closures over a long run: much giving back and retrying
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
    EXPECT_GT(matches, 1000); // the generator must produce plenty of matches
}

TEST(RegExpFind, NestedClosuresStayFast)
{
    std::string nested;
    for (int i = 0; i < 30; ++i)
        nested += "a*";
    EXPECT_EQ(KZRegExp((nested + "c").c_str()).find(std::string(300, 'a'), nullptr, 0), -1);
}

// find() over a char buffer answers as over a string of the same bytes; a
// NUL ends the text for matching even where a match follows it, and the
// memo of a long backtracking search stays inside the buffer.
TEST(RegExpFind, BufferSearchAnswersAsStringSearch)
{
    const struct {
        const char* pattern;
        std::string text;
        unsigned long start;
    } cases[] = {
        {"b+c", std::string("abbc\0bc", 7), 0},
        {"b+c", std::string("a\0bbc", 5), 0},
        {"x.*z", std::string("x\0z xyz", 7), 1},
        {"[a-z]+ing ", "the running dog\n", 0},
        {"^the", "x the\n", 2},
        {"needle", std::string("hay\0needle", 10), 0},
        {"$", "", 0},
        {"a*a*a*a*a*a*b", std::string(5000, 'a') + std::string("\0b", 2), 0},
    };
    for (const auto& c : cases) {
        const KZRegExp re(c.pattern);
        unsigned long fromString = 9, fromBuffer = 9;
        // A larger buffer, its window ended by a NUL as the caller promises.
        std::string buffer = "pre" + c.text + '\0' + "tail";
        EXPECT_EQ(re.find(buffer.data() + 3, c.text.size(), &fromBuffer, c.start),
                  re.find(c.text, &fromString, c.start))
            << c.pattern;
        EXPECT_EQ(fromBuffer, fromString) << c.pattern;
    }
    unsigned long length = 9;
    EXPECT_EQ(KZRegExp("a").find(nullptr, 0, &length, 0), -1);
    EXPECT_EQ(length, 0u);
}
