// The text utilities against their standard references: KZRegExp::find
// against std::regex_search and POSIX regexec (line by line over the same
// 1 MiB text, five patterns), findNoCase against strcasestr, and hash.
#include "KZRegExp.h"
#include "KZStringFunctions.h"

#include <benchmark/benchmark.h>

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
            "the", "quick", "brown", "fox", "jumps", "over", "lazy", "dog", "running", "data",
            "system", "error", "file", "disk", "reading", "value", "network", "string", "table", "index",
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
    "needle",              // a literal
    "[0-9]+-[0-9]+",       // a class with closure
    "^the [a-z]+",         // anchored
    "error.*disk",         // '.*'
    "[a-z]+ing ",          // backtracks over every word
};

void reportLines(benchmark::State& state, long matched)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kTextBytes));
    state.counters["matching_lines"] = static_cast<double>(matched);
}

void BM_KZRegExp(benchmark::State& state)
{
    const KZRegExp re(kPatterns[state.range(0)]);
    long matched = 0;
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : benchLines()) {
            unsigned long length = 0;
            matched += re.find(line, &length, 0) >= 0;
            benchmark::DoNotOptimize(length);
        }
    }
    state.SetLabel(kPatterns[state.range(0)]);
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

BENCHMARK(BM_KZRegExp)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdRegex)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PosixRegexec)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindNoCase)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Strcasestr)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Hash)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StdHash)->Unit(benchmark::kMicrosecond);
