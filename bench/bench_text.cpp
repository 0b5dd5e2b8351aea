// The text utilities against their references: KZRegExp::find against RE2,
// PCRE2 (with its JIT), std::regex_search and POSIX regexec, line by line over
// the same 1 MiB text, five patterns, each asked for the match's position
// and length; findNoCase against strcasestr, and hash. KZRegExp reports
// `vs_re2` and `vs_pcre2`: its throughput over theirs on the same pattern,
// the three run alternately (SideBySide.h).
#include "KZRegExp.h"
#include "KZStringFunctions.h"

#include <benchmark/benchmark.h>
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#include <re2/re2.h>

#include "SideBySide.h"

#include <regex.h>
#include <string.h>

#include <functional>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kTextBytes = 1 << 20;

// Lines of words, numbers and the odd "error ... disk" sentence, so every
// pattern matches some lines and misses most.
const std::string& benchText()
{
    static const std::string text = [] {
        static const char* const kWords[] = {
            "the",    "quick", "brown", "fox",  "jumps",   "over",  "lazy",    "dog",    "running", "data",
            "system", "error", "file",  "disk", "reading", "value", "network", "string", "table",   "index",
        };
        std::mt19937 rng(4711);
        std::string t;
        while (t.size() < kTextBytes) {
            std::string line;
            while (line.size() < 64) {
                const unsigned r = rng() % 40;
                if (r < 34)
                    line += kWords[rng() % 20];
                else if (r < 36)
                    line += std::to_string(rng() % 10000) + "-" + std::to_string(rng() % 100);
                else
                    line += std::to_string(rng() % 100000);
                line += ' ';
            }
            if (rng() % 500 == 0)
                line += "needle";
            t += line + '\n';
        }
        t.resize(kTextBytes - 1);
        t += '\n';
        return t;
    }();
    return text;
}

const std::vector<std::string>& benchLines()
{
    static const std::vector<std::string> lines = [] {
        std::vector<std::string> result;
        const std::string& t = benchText();
        for (std::size_t at = 0; at < t.size();) {
            const std::size_t end = t.find('\n', at);
            result.push_back(t.substr(at, end - at));
            at = end + 1;
        }
        return result;
    }();
    return lines;
}

const char* const kPatterns[] = {
    "needle",        // a literal
    "[0-9]+-[0-9]+", // a class with closure
    "^the [a-z]+",   // anchored
    "error.*disk",   // '.*'
    "[a-z]+ing ",    // backtracks over every word
};

void reportLines(benchmark::State& state, long matched)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kTextBytes));
    state.counters["matching_lines"] = static_cast<double>(matched);
}

// One search of every line with each matcher, asking for the match's
// position and length; each returns the number of lines that matched.
long kzPass(const KZRegExp& re)
{
    long matched = 0;
    for (const std::string& line : benchLines()) {
        unsigned long length = 0;
        matched += re.find(line, &length, 0) >= 0;
        benchmark::DoNotOptimize(length);
    }
    return matched;
}

long re2Pass(const RE2& re)
{
    long matched = 0;
    for (const std::string& line : benchLines()) {
        re2::StringPiece match;
        matched += re.Match(line, 0, line.size(), RE2::UNANCHORED, &match, 1);
        benchmark::DoNotOptimize(match);
    }
    return matched;
}

// PCRE2 with its JIT; null when the pattern does not compile.
class Pcre2 {
public:
    explicit Pcre2(const char* pattern)
    {
        int error = 0;
        PCRE2_SIZE errorAt = 0;
        m_code =
            pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, 0, &error, &errorAt, nullptr);
        if (m_code && pcre2_jit_compile(m_code, PCRE2_JIT_COMPLETE) == 0)
            m_data = pcre2_match_data_create_from_pattern(m_code, nullptr);
    }
    ~Pcre2()
    {
        pcre2_match_data_free(m_data);
        pcre2_code_free(m_code);
    }
    Pcre2(const Pcre2&) = delete;
    Pcre2& operator=(const Pcre2&) = delete;
    bool ready() const { return m_data != nullptr; }

    long pass() const
    {
        long matched = 0;
        for (const std::string& line : benchLines()) {
            const int rc =
                pcre2_jit_match(m_code, reinterpret_cast<PCRE2_SPTR>(line.data()), line.size(), 0, 0, m_data, nullptr);
            matched += rc > 0;
            benchmark::DoNotOptimize(pcre2_get_ovector_pointer(m_data)[1]);
        }
        return matched;
    }

private:
    pcre2_code* m_code = nullptr;
    pcre2_match_data* m_data = nullptr;
};

void BM_RE2(benchmark::State& state)
{
    const RE2 re(kPatterns[state.range(0)]);
    long matched = 0;
    for (auto _ : state)
        matched = re2Pass(re);
    state.SetLabel(kPatterns[state.range(0)]);
    reportLines(state, matched);
}

void BM_PCRE2_JIT(benchmark::State& state)
{
    const Pcre2 re(kPatterns[state.range(0)]);
    if (!re.ready()) {
        state.SkipWithError("pcre2 compile or JIT failed");
        return;
    }
    long matched = 0;
    for (auto _ : state)
        matched = re.pass();
    state.SetLabel(kPatterns[state.range(0)]);
    reportLines(state, matched);
}

// KZRegExp with RE2 and PCRE2 run alternately on the same lines.
void BM_KZRegExp(benchmark::State& state)
{
    const char* const pattern = kPatterns[state.range(0)];
    const KZRegExp re(pattern);
    const RE2 re2(pattern);
    const Pcre2 pcre2(pattern);
    long matched = 0;
    bench::Peers peers = {{"re2", [&] { benchmark::DoNotOptimize(re2Pass(re2)); }}};
    if (pcre2.ready())
        peers.push_back({"pcre2", [&] { benchmark::DoNotOptimize(pcre2.pass()); }});
    bench::sideBySide(
        state, [&] { matched = kzPass(re); }, peers);
    state.SetLabel(pattern);
    reportLines(state, matched);
}

void BM_StdRegex(benchmark::State& state)
{
    const std::regex re(kPatterns[state.range(0)]);
    long matched = 0;
    for (auto _ : state) {
        matched = 0;
        std::smatch m;
        for (const std::string& line : benchLines())
            matched += std::regex_search(line, m, re);
    }
    state.SetLabel(kPatterns[state.range(0)]);
    reportLines(state, matched);
}

void BM_PosixRegexec(benchmark::State& state)
{
    regex_t re;
    if (regcomp(&re, kPatterns[state.range(0)], REG_EXTENDED) != 0) {
        state.SkipWithError("regcomp failed");
        return;
    }
    long matched = 0;
    for (auto _ : state) {
        matched = 0;
        regmatch_t m[1];
        for (const std::string& line : benchLines())
            matched += regexec(&re, line.c_str(), 1, m, 0) == 0;
    }
    regfree(&re);
    state.SetLabel(kPatterns[state.range(0)]);
    reportLines(state, matched);
}

const std::string kNeedle = "NeEdLe AND ThE hAyStAcK";

std::string noCaseHaystack()
{
    std::string h = benchText();
    h.replace(h.size() - 40, kNeedle.size(), "needle and the haystack");
    return h;
}

void BM_FindNoCase(benchmark::State& state)
{
    const std::string haystack = noCaseHaystack();
    for (auto _ : state)
        benchmark::DoNotOptimize(KZStringFunctions::findNoCase(haystack, kNeedle));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(haystack.size()));
}

void BM_Strcasestr(benchmark::State& state)
{
    const std::string haystack = noCaseHaystack();
    for (auto _ : state)
        benchmark::DoNotOptimize(strcasestr(haystack.c_str(), kNeedle.c_str()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(haystack.size()));
}

void BM_Hash(benchmark::State& state)
{
    const std::string& text = benchText();
    for (auto _ : state)
        benchmark::DoNotOptimize(KZStringFunctions::hash(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void BM_StdHash(benchmark::State& state)
{
    const std::string_view text = benchText();
    for (auto _ : state)
        benchmark::DoNotOptimize(std::hash<std::string_view>()(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

} // namespace

BENCHMARK(BM_KZRegExp)->DenseRange(0, 4)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RE2)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PCRE2_JIT)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StdRegex)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PosixRegexec)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindNoCase)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Strcasestr)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Hash)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StdHash)->Unit(benchmark::kMicrosecond);
