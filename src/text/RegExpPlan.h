// The search plan: what find() knows about a compiled pattern before it reads
// the text, so that it skips the places where no attempt can succeed. The
// compiler derives the plan once and stores it behind the tokens; none of it
// ever changes a result.
#ifndef KZ_REGEXP_PLAN_H
#define KZ_REGEXP_PLAN_H

#include "LiteralScan.h"
#include "RegExpProgram.h"

#include <cstddef>
#include <cstring>

namespace kztext {

// Offsets and lengths count token bytes, which all fit an unsigned char.
struct SearchPlan {
    static constexpr std::size_t kMaxRequired = 4;

    bool anchored;                   // '^' first: tried once, at the search start
    bool matchesEmptyText;           // matches an empty text, or at the end of one
    bool leadingRun;                 // '*' or '+' first
    unsigned char prefixLength;      // the literal tokens the pattern begins with
    bool wholeLiteral;               // and nothing else
    unsigned char restAt;            // behind a leading run and its token; 0 for none
    unsigned char restLiteralLength; // the literal tokens rest begins with
    // Runs of literal tokens outside any closure: every match holds each.
    unsigned char requiredCount;
    unsigned char requiredAt[kMaxRequired];
    unsigned char requiredLength[kMaxRequired];
};

// The compiled block: the tokens, then the plan.
constexpr int kAllocation = kTokenBytes + static_cast<int>(sizeof(SearchPlan));

// Derives the plan of the token string at block and stores it behind it.
void storePlan(unsigned char* block);

inline SearchPlan planOf(const unsigned char* block)
{
    SearchPlan plan;
    std::memcpy(&plan, block + kTokenBytes, sizeof plan);
    return plan;
}

inline const char* literalAt(const unsigned char* pat, std::size_t offset)
{
    return reinterpret_cast<const char*>(pat + offset);
}

// Where in the text [from, end) the first match can begin, judged by the
// literals that every match holds: end when one of them is missing, else the
// first occurrence of the literal prefix (from when there is none). Every
// match begins with the prefix, so the other literals are looked for only
// behind its first occurrence, and no match begins before it.
inline const char* firstPossibleStart(const SearchPlan& plan, const unsigned char* pat, const char* from,
                                      const char* end)
{
    if (plan.prefixLength > 0) {
        from = findLiteral(from, static_cast<std::size_t>(end - from), literalAt(pat, 0), plan.prefixLength);
        if (!from)
            return end;
    }
    for (std::size_t i = 0; i < plan.requiredCount; ++i)
        if (plan.requiredAt[i] != 0 // not the prefix again
            && !findLiteral(from, static_cast<std::size_t>(end - from), literalAt(pat, plan.requiredAt[i]),
                            plan.requiredLength[i]))
            return end;
    return from;
}

// The first position at or after at, before end, where an attempt can
// succeed; end when there is none.
inline const char* nextCandidate(const SearchPlan& plan, const unsigned char* pat, const char* at, const char* end)
{
    if (plan.prefixLength >= 2) {
        const char* hit = findLiteral(at, static_cast<std::size_t>(end - at), literalAt(pat, 0), plan.prefixLength);
        return hit ? hit : end;
    }
    return withFirstRule(pat, [at, end](auto rule) { return rule.firstIn(at, end); });
}

// Where to try next after an attempt at at failed, reach being how far its
// leading '*' or '+' run went. That attempt has already tried the rest of the
// pattern at every position up to reach, so the starts inside the run (and
// at its end) cannot succeed either.
inline const char* nextAfterFailure(const SearchPlan& plan, const char* at, const char* reach)
{
    return plan.leadingRun && reach > at ? reach + 1 : at + 1;
}

} // namespace kztext

#endif // KZ_REGEXP_PLAN_H
