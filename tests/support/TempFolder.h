// A fresh folder per test, removed with its contents afterwards; file helpers.
// Names are UTF-8, as the library hands them to the file system, on every
// platform (std::filesystem makes them UTF-16 on Windows).
#ifndef KZBS_TESTS_TEMP_FOLDER_H
#define KZBS_TESTS_TEMP_FOLDER_H

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#ifdef _WIN32
#include <sys/utime.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>
#endif

namespace kzbs_test {

inline std::filesystem::path fsPath(const std::string& utf8)
{
    return std::filesystem::u8path(utf8);
}

// Under TMPDIR (TEMP on Windows), else /tmp; '/' separates on every platform.
struct TempFolder {
    std::string path;
    TempFolder()
    {
        std::error_code error;
        const std::string base = std::filesystem::temp_directory_path(error).generic_u8string();
        std::random_device random;
        for (int attempt = 0; attempt < 100 && path.empty(); ++attempt) {
            std::string name = (base.empty() ? std::string("/tmp") : base);
            if (name.back() != '/')
                name += '/';
            name += "kzbs-" + std::to_string(random() % 1000000000u);
            if (std::filesystem::create_directory(fsPath(name), error))
                path = name;
        }
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(fsPath(path), ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::string operator/(const std::string& name) const { return path + "/" + name; }
};

// mode: the permission bits (Windows keeps only whether the owner may write).
inline void writeFile(const std::string& path, const std::string& content, unsigned mode = 0644)
{
    std::ofstream(fsPath(path), std::ios::binary) << content;
    std::error_code ignored;
    std::filesystem::permissions(fsPath(path), static_cast<std::filesystem::perms>(mode & 07777), ignored);
}

inline std::string readFile(const std::string& path)
{
    std::ifstream in(fsPath(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline bool exists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::exists(fsPath(path), ignored);
}

inline bool setModificationTime(const std::string& path, std::time_t time)
{
#ifdef _WIN32
    struct _utimbuf times = {time, time};
    return ::_wutime(fsPath(path).c_str(), &times) == 0;
#else
    const struct utimbuf times = {time, time};
    return ::utime(path.c_str(), &times) == 0;
#endif
}

} // namespace kzbs_test

#endif // KZBS_TESTS_TEMP_FOLDER_H
