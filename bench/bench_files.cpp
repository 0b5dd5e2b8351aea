// Parsing and composing typical file names with KZFileName, against
// std::filesystem::path doing the equivalent decomposition (parent path, stem,
// extension) and composition in the same program. KZFileName reports
// `vs_std_filesystem`: its names per second over std::filesystem's for the
// same kind of name, the two run alternately (SideBySide.h).
#include "KZFileName.h"

#include <benchmark/benchmark.h>

#include "SideBySide.h"

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kNames = 1000000;

enum Kind { Windows, Unix, WithSymbols, Mixed };

std::string nameOf(Kind kind, std::size_t i)
{
    const std::string n = std::to_string(i);
    switch (kind == Mixed ? static_cast<Kind>(i % 3) : kind) {
    case Windows: return "C:\\Programme\\Kalender\\Daten\\Jahr" + n + "\\termine" + n + ".dat";
    case Unix: return "/home/user/.local/share/kalender/jahr" + n + "/termine" + n + ".tar.gz";
    default: return "<DATA>/jahr" + n + "/termine" + n + ".dat";
    }
}

const std::vector<std::string>& names(Kind kind)
{
    static std::vector<std::string> all[4];
    std::vector<std::string>& list = all[kind];
    if (list.empty()) {
        list.reserve(kNames);
        for (std::size_t i = 0; i < kNames; ++i)
            list.push_back(nameOf(kind, i));
    }
    return list;
}

void setUpSymbols()
{
    KZFileEnvironment& env = KZFileName::getGlobalFileEnvironment();
    env = KZFileEnvironment();
    env.setBaseDir("/opt/kalender");
    std::istringstream symbols("ROOT=/opt/kalender DATA=<ROOT>/Daten");
    env.readSymbolsFromFile(symbols);
}

void stdFilesystemPass(const std::vector<std::string>& list)
{
    for (const std::string& text : list) {
        const std::filesystem::path path(text);
        const std::filesystem::path dir = path.parent_path();
        const std::filesystem::path stem = path.stem();
        const std::filesystem::path ext = path.extension();
        benchmark::DoNotOptimize(stem.native().size() + ext.native().size());
        std::string composed = (dir / stem).native() + ext.native();
        benchmark::DoNotOptimize(composed);
    }
}

void kzFileNamePass(const std::vector<std::string>& list)
{
    for (const std::string& text : list) {
        const KZFileName name(text);
        benchmark::DoNotOptimize(name.getName().size() + name.getExt().size());
        std::string composed = name.compose();
        benchmark::DoNotOptimize(composed);
    }
}

void BM_StdFilesystem(benchmark::State& state)
{
    const auto& list = names(static_cast<Kind>(state.range(0)));
    for (auto _ : state)
        stdFilesystemPass(list);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * list.size()));
}

// KZFileName with std::filesystem run alternately on the same names.
void BM_KZFileName(benchmark::State& state)
{
    setUpSymbols();
    const auto& list = names(static_cast<Kind>(state.range(0)));
    bench::sideBySide(state, [&] { kzFileNamePass(list); }, {{"std_filesystem", [&] { stdFilesystemPass(list); }}});
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * list.size()));
}

void kinds(benchmark::internal::Benchmark* b)
{
    b->ArgNames({"kind"})->Arg(Windows)->Arg(Unix)->Arg(WithSymbols)->Arg(Mixed)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(BM_KZFileName)->Apply(kinds)->UseManualTime();
BENCHMARK(BM_StdFilesystem)->Apply(kinds);
