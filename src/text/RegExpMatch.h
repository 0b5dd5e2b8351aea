// Matching a compiled pattern at one position of a text: each token greedily,
// '*' and '+' giving back one character at a time until the rest of the
// pattern matches. Where to try is the search plan's business (RegExpPlan.h).
#ifndef KZ_REGEXP_MATCH_H
#define KZ_REGEXP_MATCH_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kztext {

// One call of find(): the search start (the beginning-of-line position) and
// what backtracking has learnt. Whether the rest of a pattern matches at a
// position never depends on how the search got there, so once an attempt of
// it failed it is not tried again. Patterns such as "a*a*a*a*b" would
// otherwise take exponential time; ordinary searches never reach the point
// where the memo starts.
class Search {
public:
    // The text is [start, end), end being a NUL; matching stops at the first
    // NUL, wherever it is. The memo is sized only once it starts.
    Search(const unsigned char* pattern, const char* start, const char* end)
        : start(start), m_pattern(pattern), m_end(end)
    {
    }

    const char* const start;

    bool knownToFail(const unsigned char* rest, const char* pos);
    void noteFailure(const unsigned char* rest, const char* pos);

private:
    static constexpr unsigned long kMemoAfter = 4096;

    const unsigned char* m_pattern;
    const char* m_end;
    std::size_t m_positions = 0;
    unsigned long m_backtracks = 0;
    std::vector<std::vector<std::uint64_t>> m_failed; // per token offset, a bit per position
};

// Matches the token string pat at str; returns a pointer to the last
// character matched (never before the search start), or null. When pat
// begins with a '*' or '+' closure, *reach (if given) receives the end of its
// longest run.
const char* matchAt(const char* str, const unsigned char* pat, Search& search, const char** reach = nullptr);

} // namespace kztext

#endif // KZ_REGEXP_MATCH_H
