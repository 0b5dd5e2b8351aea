// Parsing cleans the directory part in a fast pass for long directories
// without separator runs; it must give exactly what the plain rules give:
// the text up to the last separator, then removeRedundantDirSeperators().
// Random long names put runs, mixed separators and ".." on every side of
// the 16-byte blocks, under the default and under other separators.
#include "KZFileName.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

// The directory by the plain rules, for a text without drive, UNC prefix or
// symbols.
std::string plainDirectory(const std::string& text)
{
    const std::size_t last = text.find_last_of("\\/");
    if (last == std::string::npos)
        return std::string();
    std::string dir = text.substr(0, last + 1);
    KZFileName::removeRedundantDirSeperators(dir);
    return dir;
}

class SeparatorChar {
public:
    explicit SeparatorChar(char c) : m_saved(KZFileName::sm_dirSeparatorChar) { KZFileName::sm_dirSeparatorChar = c; }
    ~SeparatorChar() { KZFileName::sm_dirSeparatorChar = m_saved; }

private:
    char m_saved;
};

TEST(FileNameDirectory, LongDirectoriesAreCleanedAsThePlainRulesSay)
{
    std::mt19937 rng(3131);
    static const char* const kPieces[] = {"a", "Daten", "/", "\\", "//", ".", "..", "x.y", "Jahr2026", "\\\\/"};
    for (char separator : {'/', '\\', 'x'}) {
        const SeparatorChar scope(separator);
        for (int round = 0; round < 4000; ++round) {
            std::string text = "d";
            while (text.size() < 10 + rng() % 70) {
                // Mostly runs-free text, so the fast pass is taken often.
                const std::size_t piece = rng() % 4 == 0 ? rng() % 10 : (rng() % 2 ? 1 : 2 + rng() % 2);
                text += kPieces[piece];
            }
            text += rng() % 2 ? "/f.txt" : "\\g"; // a name, so no "." or ".." joins the directory
            const KZFileName name(text);
            ASSERT_EQ(name.getDir(), plainDirectory(text)) << "'" << text << "' with separator " << separator;
        }
    }
}

} // namespace
