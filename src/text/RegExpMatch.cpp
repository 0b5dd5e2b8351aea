// Matching at a position: a backtracking walk over the tokens, with the
// memo of Search bounding its cost.
#include "RegExpMatch.h"
#include "RegExpProgram.h"

#include <cstring>

namespace kztext {

bool Search::knownToFail(const unsigned char* rest, const char* pos)
{
    if (++m_backtracks <= kMemoAfter || m_failed.empty())
        return false;
    const std::vector<std::uint64_t>& row = m_failed[static_cast<std::size_t>(rest - m_pattern)];
    const std::size_t i = static_cast<std::size_t>(pos - start);
    return !row.empty() && ((row[i >> 6] >> (i & 63)) & 1u);
}

void Search::noteFailure(const unsigned char* rest, const char* pos)
{
    if (m_backtracks <= kMemoAfter)
        return;
    if (m_failed.empty())
        m_failed.resize(kTokenBytes);
    std::vector<std::uint64_t>& row = m_failed[static_cast<std::size_t>(rest - m_pattern)];
    if (row.empty()) {
        if (m_positions == 0)
            m_positions = static_cast<std::size_t>(m_end - start) + 1;
        row.assign((m_positions >> 6) + 1, 0);
    }
    const std::size_t i = static_cast<std::size_t>(pos - start);
    row[i >> 6] |= std::uint64_t(1) << (i & 63);
}

namespace {

enum Match { NoMatch = 0, MatchedEmpty = 1, MatchedChar = 2 };

// One token at *pos; see Match. A consuming match advances *pos.
inline Match matchOne(const char** pos, const unsigned char* token, const char* start)
{
    switch (*token) {
    case EOL: return AtEndOfLine{}(**pos) ? MatchedEmpty : NoMatch;
    case BOL: return *pos == start ? MatchedEmpty : NoMatch;
    default:
        if (!takes(token, **pos))
            return NoMatch;
        ++*pos;
        return MatchedChar;
    }
}

const char* lastMatched(const char* pos, const char* start)
{
    return pos > start ? pos - 1 : start;
}

// The rest of the pattern tried at each position from str back to began,
// skipping those where its first token cannot match.
template <class FirstRule>
const char* backOff(const char* str, const char* began, const unsigned char* rest, Search& search, FirstRule mayBegin)
{
    for (;; --str) {
        if (mayBegin(*str) && !search.knownToFail(rest, str)) {
            if (const char* end = matchAt(str, rest, search))
                return end;
            search.noteFailure(rest, str);
        }
        if (str == began)
            return nullptr;
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
        if (*pat == PCLOSURE && matchOne(&str, token, start) == NoMatch) {
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
    return withFirstRule(rest, [&](auto mayBegin) { return backOff(str, began, rest, search, mayBegin); });
}

} // namespace

const char* matchAt(const char* str, const unsigned char* pat, Search& search, const char** reach)
{
    const char* const start = search.start;
    const char* ignored = nullptr;
    if (*pat == CLOSURE || *pat == PCLOSURE)
        return matchClosure(str, pat, search, reach ? reach : &ignored);
    while (*pat) {
        if (*pat == OPT) {
            ++pat;
            matchOne(&str, pat, start);
            pat += tokenSize(pat);
            continue;
        }
        if (*pat == CLOSURE || *pat == PCLOSURE)
            return matchClosure(str, pat, search, &ignored);
        if (matchOne(&str, pat, start) == NoMatch)
            return nullptr;
        pat += tokenSize(pat);
    }
    return lastMatched(str, start);
}

} // namespace kztext
