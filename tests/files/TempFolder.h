// A fresh folder under /tmp for tests that touch the file system, removed
// with everything in it at the end of the test. Paths are UTF-8 (the file
// system's encoding).
#ifndef KZBS_TESTS_FILES_TEMP_FOLDER_H
#define KZBS_TESTS_FILES_TEMP_FOLDER_H

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace kzbs_test {

class TempFolder {
public:
    TempFolder()
    {
        char name[] = "/tmp/kzbs-files-XXXXXX";
        if (::mkdtemp(name))
            m_path = name;
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return m_path; }
    std::string realPath() const { return std::filesystem::canonical(m_path).string(); }
    std::string operator/(const std::string& relative) const { return m_path + "/" + relative; }

    void makeDir(const std::string& relative) const { std::filesystem::create_directories(*this / relative); }
    void makeFile(const std::string& relative, const std::string& content = "x") const
    {
        std::ofstream(*this / relative, std::ios::binary) << content;
    }
    void makeLink(const std::string& target, const std::string& link) const
    {
        std::filesystem::create_symlink(*this / target, *this / link);
    }

private:
    std::string m_path;
};

} // namespace kzbs_test

#endif // KZBS_TESTS_FILES_TEMP_FOLDER_H
