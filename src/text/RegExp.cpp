// KZRegExp::find: the search plan decides where to attempt a match, and
// matching at a position (RegExpMatch.h) decides whether one is there.
#include "KZRegExp.h"
#include "LiteralScan.h"
#include "RegExpMatch.h"
#include "RegExpPlan.h"

#include <cstring>

namespace kztext {

namespace {

// The leftmost match for a pattern "run then literal", such as "[a-z]+ing":
// a leading '*' or '+' whose rest begins with a literal. Every match ends its
// run where the rest matches, so the rest's occurrences are searched first;
// the first place q where the rest matches fixes the leftmost start: the
// beginning of the run of repetitions that ends at q. Attempts further left
// cannot reach q (their run stops earlier) and found nothing before q.
// Returns the start (end for none) and sets *last as matchAt does.
const char* leftmostRunThenLiteral(const SearchPlan& plan, const unsigned char* pat, Search& search, const char* end,
                                   const char** last)
{
    const char* const from = search.start;
    const unsigned char* const token = pat + 1;
    const bool atLeastOnce = pat[0] == PCLOSURE;
    const unsigned char* const rest = pat + plan.restAt;
    for (const char* q = from + (atLeastOnce ? 1 : 0); q < end; ++q) {
        const char* hit = findLiteral(q, static_cast<std::size_t>(end - q), literalAt(rest, 0), plan.restLiteralLength);
        if (!hit)
            break;
        q = hit;
        if (!matchAt(q, rest, search))
            continue;
        const char* const runStart = runBegin(from, q, token);
        if (atLeastOnce && runStart == q)
            continue;
        if ((*last = matchAt(runStart, pat, search)) != nullptr)
            return runStart;
    }
    return end;
}

// The leftmost match by trying each candidate position in turn, from first
// on (no match begins before it).
const char* leftmostByAttempts(const SearchPlan& plan, const unsigned char* pat, Search& search, const char* first,
                               const char* end, const char** last)
{
    const char* at = nextCandidate(plan, pat, first, end);
    while (at < end) {
        const char* reach = at;
        if ((*last = matchAt(at, pat, search, &reach)) != nullptr)
            return at;
        if (plan.anchored)
            break; // the beginning of the line matches only at the search start
        at = nextAfterFailure(plan, at, reach);
        if (at < end)
            at = nextCandidate(plan, pat, at, end);
    }
    return end;
}

// Both find() calls: the search in text[0, size), text[size] being a NUL.
// (One function inlined into both, so that the string's find() costs no
// call through the library's exported symbol.)
inline int findIn(const unsigned char* pattern, const char* text, std::size_t size, unsigned long* matchLength,
                  unsigned long start)
{
    unsigned long length = 0;
    int offset = -1;
    if (pattern && text && start <= size) {
        const char* const base = text;
        const char* const from = base + start;
        const SearchPlan plan = planOf(pattern);
        if (*from == '\0') {
            if (plan.matchesEmptyText) {
                length = 1;
                offset = static_cast<int>(start);
            }
        } else if (plan.anchored) {
            // Tried once, at the search start; the text's end is never needed.
            Search search(pattern, from, base + size);
            if (const char* last = matchAt(from, pattern, search)) {
                length = static_cast<unsigned long>(last + 1 - from);
                offset = static_cast<int>(start);
            }
        } else if (plan.wholeLiteral) {
            // Literal characters only: the first occurrence is the match,
            // unless the text's NUL comes before it.
            const char* const hit = findLiteral(from, size - start, literalAt(pattern, 0), plan.prefixLength);
            if (hit && !std::memchr(from, '\0', static_cast<std::size_t>(hit - from))) {
                length = plan.prefixLength;
                offset = static_cast<int>(hit - base);
            }
        } else if (const char* first = firstPossibleStart(plan, pattern, from, base + size); first == base + size) {
            // Not even in the whole text, so not before its NUL either: the
            // search is over before the text's end is looked for.
        } else {
            // The text ends at its first NUL, but no match crosses a NUL: the
            // leftmost match in the whole text is the answer when no NUL
            // comes before it, so only that stretch is looked at for one.
            const char* const end = base + size;
            Search search(pattern, from, end);
            const char* last = nullptr;
            const char* const at = plan.restLiteralLength > 0
                                       ? leftmostRunThenLiteral(plan, pattern, search, end, &last)
                                       : leftmostByAttempts(plan, pattern, search, first, end, &last);
            if (at < end && !std::memchr(from, '\0', static_cast<std::size_t>(at - from))) {
                length = static_cast<unsigned long>(last + 1 - at);
                offset = static_cast<int>(at - base);
            }
        }
    }
    if (matchLength)
        *matchLength = length;
    return offset;
}

} // namespace

} // namespace kztext

int KZRegExp::find(const std::string& text, unsigned long* matchLength, unsigned long start) const
{
    return kztext::findIn(m_pattern, text.c_str(), text.size(), matchLength, start);
}

int KZRegExp::find(const char* text, std::size_t size, unsigned long* matchLength, unsigned long start) const
{
    return kztext::findIn(m_pattern, text, size, matchLength, start);
}
