// Directory symbol files and the expansion of symbols on arbitrary bytes.
// The input up to its first NUL is a symbol file, the rest a text.
// Properties:
//  - the table read is exactly the file's white-space separated tokens, each
//    split at its first '=' (later ones win), and the result is true only
//    when the file ends right after a token;
//  - expansion never grows a text by more than its documented bound, and it
//    agrees with a plain in-place expansion wherever that one is cheap;
//  - listing the table and composing names from it never fails.
#include "FuzzSupport.h"
#include "KZFileEnvironment.h"
#include "KZFileName.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>

namespace {

constexpr std::size_t kMaxListed = 8;

bool isSpace(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

KZFileEnvironment::SymbolTable referenceTable(const std::string& file)
{
    KZFileEnvironment::SymbolTable table;
    std::size_t at = 0;
    while (at < file.size()) {
        while (at < file.size() && isSpace(file[at]))
            ++at;
        std::size_t end = at;
        while (end < file.size() && !isSpace(file[end]))
            ++end;
        if (end > at) {
            const std::string token = file.substr(at, end - at);
            const std::size_t equals = token.find('=');
            if (equals == std::string::npos)
                table[token] = token;
            else
                table[token.substr(0, equals)] = token.substr(equals + 1);
        }
        at = end;
    }
    return table;
}

// Expansion as the header describes it, replacing each reference in place
// and scanning on from the start of the value. Its cost is the number of
// substitutions times the text's length, so it gives up (nullopt) beyond a
// budget of bytes moved; the library must agree wherever it finishes.
std::optional<std::string> referenceExpansion(const KZFileEnvironment::SymbolTable& table, const std::string& text,
                                              std::size_t maxGrowth)
{
    constexpr std::size_t kBudget = 1u << 21;
    std::size_t moved = 0;
    std::string result = text;
    const std::size_t maxLength = text.size() + maxGrowth;
    std::size_t open = result.find('<');
    for (unsigned n = 0; open != std::string::npos && n < KZFileEnvironment::kMaxExpansions; ++n) {
        if (result.size() > maxLength)
            break;
        const std::size_t close = result.find('>', open);
        if (close == std::string::npos)
            break;
        const auto entry = table.find(result.substr(open + 1, close - open - 1));
        result.replace(open, close - open + 1, entry == table.end() ? std::string() : entry->second);
        moved += result.size() - open;
        if (moved > kBudget)
            return std::nullopt;
        open = result.find('<', open);
    }
    return result;
}

// Self-referring tables are the fuzzer's daily fare; each of them grows a
// name to the bound, so a low one keeps runs fast and still reaches it.
constexpr std::size_t kFuzzMaxGrowth = 4096;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const std::string file = input.untilNul();
    const std::string text = input.rest();

    KZFileEnvironment environment;
    environment.setMaxGrowth(kFuzzMaxGrowth);
    std::istringstream in(file);
    const bool complete = environment.readSymbolsFromFile(in);
    FUZZ_CHECK(complete == (!file.empty() && !isSpace(file.back())));
    const KZFileEnvironment::SymbolTable& table = environment.getSymbols();
    FUZZ_CHECK(table == referenceTable(file));

    std::size_t longestValue = 0;
    for (const auto& entry : table)
        longestValue = std::max(longestValue, entry.second.size());
    const std::string expanded = environment.expandString(text);
    FUZZ_CHECK(expanded.size() <= text.size() + kFuzzMaxGrowth + longestValue);
    const std::optional<std::string> expected = referenceExpansion(table, text, kFuzzMaxGrowth);
    FUZZ_CHECK(!expected || expanded == *expected);

    // The same table as the global one: names expand through it, and the
    // listing parses every value.
    KZFileName::GlobalFileEnvironment = environment;
    const KZFileName name(text);
    name.asParmeterisedString(table.empty() ? std::string("X") : table.begin()->first);
    // Listing parses every value, each of which may expand to the growth
    // bound: small tables are enough to cover it and keep runs fast.
    if (table.size() <= kMaxListed) {
        const std::string listing = KZFileName::GlobalFileEnvironment.symbolsAsString();
        FUZZ_CHECK(table.empty() == listing.empty());
    }
    KZFileName::GlobalFileEnvironment = KZFileEnvironment();
    return 0;
}
