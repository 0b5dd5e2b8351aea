// A fresh folder under /tmp, removed with its contents at the end of the test.
// Paths in it are UTF-8, the file system's encoding.
#ifndef KZBS_TESTS_FILES_TEMP_FOLDER_H
#define KZBS_TESTS_FILES_TEMP_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace kzbs_test {

class TempFolder {
public:
    TempFolder() { char name[] = "/tmp/kzbs-files-XXXXXX"; m_path = ::mkdtemp(name) ? name : "/nonexistent"; }
    ~TempFolder() { std::error_code ignored; std::filesystem::remove_all(m_path, ignored); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return m_path; }
    std::string operator/(const std::string& relative) const { return m_path + "/" + relative; }
    void makeFile(const std::string& relative, const std::string& content = "x") const
    {
        std::ofstream(*this / relative, std::ios::binary) << content;
    }

private:
    std::string m_path;
};

} // namespace kzbs_test

#endif // KZBS_TESTS_FILES_TEMP_FOLDER_H
