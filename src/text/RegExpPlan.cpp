// Deriving the search plan from the tokens, once, when a pattern compiles.
#include "RegExpPlan.h"

#include <cstring>

namespace kztext {

namespace {

// Keeps up to kMaxRequired runs, a longer one replacing the first shorter.
void noteRequired(SearchPlan& plan, std::size_t at, std::size_t length)
{
    if (plan.requiredCount < SearchPlan::kMaxRequired) {
        plan.requiredAt[plan.requiredCount] = static_cast<unsigned char>(at);
        plan.requiredLength[plan.requiredCount++] = static_cast<unsigned char>(length);
        return;
    }
    for (std::size_t i = 0; i < SearchPlan::kMaxRequired; ++i) {
        if (length > plan.requiredLength[i]) {
            plan.requiredAt[i] = static_cast<unsigned char>(at);
            plan.requiredLength[i] = static_cast<unsigned char>(length);
            return;
        }
    }
}

// Every match consumes each run of literal tokens outside any closure.
void findRequiredLiterals(SearchPlan& plan, const unsigned char* pat)
{
    for (std::size_t t = 0; pat[t];) {
        if (const std::size_t length = literalRunLength(pat + t)) {
            noteRequired(plan, t, length);
            t += length;
            continue;
        }
        if (isClosure(pat[t]))
            ++t; // the governed token is skipped below with its size
        if (pat[t])
            t += static_cast<std::size_t>(tokenSize(pat + t));
    }
}

} // namespace

void storePlan(unsigned char* block)
{
    const unsigned char* const pat = block;
    SearchPlan plan{};
    plan.anchored = pat[0] == BOL;
    plan.matchesEmptyText = pat[0] == EOL || (pat[0] == BOL && (pat[1] == 0 || (pat[1] == EOL && pat[2] == 0)));
    plan.leadingRun = pat[0] == CLOSURE || pat[0] == PCLOSURE;
    const std::size_t prefix = literalRunLength(pat);
    plan.prefixLength = static_cast<unsigned char>(prefix);
    plan.wholeLiteral = prefix > 0 && pat[prefix] == 0;
    if (plan.leadingRun && pat[1] != BOL && pat[1] != EOL) {
        const std::size_t rest = 1 + static_cast<std::size_t>(tokenSize(pat + 1));
        plan.restLiteralLength = static_cast<unsigned char>(literalRunLength(pat + rest));
        plan.restAt = static_cast<unsigned char>(rest);
    }
    findRequiredLiterals(plan, pat);
    std::memcpy(block + kTokenBytes, &plan, sizeof plan);
}

} // namespace kztext
