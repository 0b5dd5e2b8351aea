// find() skips ahead to a pattern's literals before it tries a match; these
// cases put the literals where a skip can go wrong: behind long runs of
// non-matching text, at the very end, behind the text's NUL, behind the
// search start, and after anchors, classes and closures.
#include "KZRegExp.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kPad(100, '-');

struct Case {
    const char* pattern;
    std::string text;
    unsigned long start;
    int offset;
    unsigned long length;
};

TEST(RegExpSkip, LiteralsFarIntoTheText)
{
    const Case cases[] = {
        {"needle", kPad + "needle", 0, 100, 6}, // at the very end
        {"needle", kPad + "needl", 0, -1, 0},   // nothing but a near miss
        {"needle", kPad + "neeedle needle", 0, 108, 6},
        {"needle", "needle" + kPad + "needle", 1, 106, 6},            // the first one lies before start
        {"needle", kPad + std::string(1, '\0') + "needle", 0, -1, 0}, // behind the text's NUL
        {"needle", kPad + "needle" + std::string(1, '\0'), 0, 100, 6},
        {"x", kPad + kPad + "x", 0, 200, 1},
        {"^needle", kPad + "needle", 100, 100, 6}, // the line begins at start
        {"^needle", kPad + "needle", 0, -1, 0},
        {"needle$", kPad + "needle\nmore", 0, 100, 6},
        {"needle$", kPad + "needle more", 0, -1, 0},
        {"[0-9]+-[0-9]+", kPad + "12-34", 0, 100, 5},
        {"[0-9]+-[0-9]+", kPad + "12- 34", 0, -1, 0},
        {"[a-z]+ing ", kPad + "12 running  x", 0, 103, 8},
        {"[a-z]+ing ", kPad + "running", 0, -1, 0}, // the rest's literal never comes
        {"a*needle", kPad + "aaneedle", 0, 100, 8},
        {"a+needle", kPad + "aa" + std::string(1, '\0') + "needle", 0, -1, 0}, // the literal only behind the NUL
        {"[0-9]+:", kPad + "12 34", 0, -1, 0},                                 // the literal nowhere
        {"error.*disk", kPad + "disk" + std::string(1, '\0') + "error disk", 0, -1, 0},
        {"error.*disk", kPad + "error on the disk", 0, 100, 17},
        {"error.*disk", kPad + "disk error", 0, -1, 0},  // both literals, wrong order
        {"error.*disk", kPad + "error\ndisk", 0, -1, 0}, // '.' stops at the newline
        {"[xy]abc", kPad + "zabc yabc", 0, 105, 4},
        {"ab?c", kPad + "ac abc", 0, 100, 2},
        {"[^-]x", kPad + "ax", 0, 100, 2},                     // a class that holds NUL's bit
        {"[^-]", kPad + std::string(1, '\0') + "b", 0, -1, 0}, // ... still stops at the text's NUL
        {"[^ ]+ing", kPad + " sing", 0, 101, 4},
        {"$", kPad + "\n", 0, 100, 0},
        {"a.b.c.d.eee", kPad + "a1b2c3d4eee", 0, 100, 11}, // more literals than the plan keeps
        {"a.b.c.d.eee", kPad + "a1b2c3d4ee", 0, -1, 0},
        {"\xAB\xAA", kPad + "\xAA\xAA", 0, 100, 2}, // '+' over a stray closure byte, a literal
    };
    for (const Case& c : cases) {
        const KZRegExp re(c.pattern);
        unsigned long length = 99;
        EXPECT_EQ(re.find(c.text, &length, c.start), c.offset) << c.pattern << " in text of " << c.text.size();
        EXPECT_EQ(length, c.length) << c.pattern;
    }
}

} // namespace
