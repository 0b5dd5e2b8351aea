// Runs a fuzz target's entry point on every file of the given corpus folders
// (or on the given files), in name order, without libFuzzer: the test suite
// builds each target with this main, so a past finding that comes back
// fails the normal build's tests. A property violation aborts, as it does
// under the fuzzer.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> inputsOf(const std::filesystem::path& path)
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        for (const auto& entry : std::filesystem::directory_iterator(path, error))
            if (entry.is_regular_file())
                files.push_back(entry.path());
    } else if (std::filesystem::is_regular_file(path, error)) {
        files.push_back(path);
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const std::vector<std::filesystem::path> files = inputsOf(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "replay: no inputs in %s\n", argv[i]);
            return 1;
        }
        for (const auto& file : files) {
            std::ifstream in(file, std::ios::binary);
            const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            std::fprintf(stderr, "replay: %s (%zu bytes)\n", file.string().c_str(), bytes.size());
            std::fflush(stderr);
            // A copy of exactly the input's size, so that a read past its end
            // is seen by AddressSanitizer as it would be under the fuzzer.
            std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
            static std::uint8_t none;
            LLVMFuzzerTestOneInput(data.empty() ? &none : data.data(), data.size());
            ++replayed;
        }
    }
    std::printf("replayed %zu inputs\n", replayed);
    return replayed ? 0 : 1;
}
