// A fresh folder per test, removed with its contents afterwards; file helpers.
#ifndef KZBS_TESTS_TEMP_FOLDER_H
#define KZBS_TESTS_TEMP_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kzbs_test {

struct TempFolder {
    std::string path = std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") + "/kzbs-XXXXXX";
    TempFolder() { if (!::mkdtemp(&path[0])) path.clear(); }
    ~TempFolder() { std::error_code ignored; std::filesystem::remove_all(path, ignored); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::string operator/(const std::string& name) const { return path + "/" + name; }
};

inline void writeFile(const std::string& path, const std::string& content, mode_t mode = 0644)
{
    std::ofstream(path, std::ios::binary) << content;
    ::chmod(path.c_str(), mode);
}

inline std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

} // namespace kzbs_test

#endif // KZBS_TESTS_TEMP_FOLDER_H
