// A fresh folder per test, removed with its contents afterwards, and small
// file and environment helpers for the platform tests.
#ifndef KZBS_TESTS_PLATFORM_TEMP_FOLDER_H
#define KZBS_TESTS_PLATFORM_TEMP_FOLDER_H

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kzbs_test {

class TempFolder {
public:
    TempFolder() : m_path(std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") + "/kzbs-XXXXXX")
    {
        if (!::mkdtemp(&m_path[0]))
            m_path.clear();
    }
    ~TempFolder() { std::system(("rm -rf '" + m_path + "'").c_str()); }
    const std::string& path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

inline void writeFile(const std::string& path, const std::string& content, mode_t mode = 0644)
{
    std::ofstream(path, std::ios::binary) << content;
    ::chmod(path.c_str(), mode);
}

inline std::string readFile(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

inline bool exists(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

// Sets (nullptr: unsets) an environment variable for the scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : m_name(name), m_had(std::getenv(name))
    {
        m_old = m_had ? std::getenv(name) : "";
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~ScopedEnv() { m_had ? ::setenv(m_name.c_str(), m_old.c_str(), 1) : ::unsetenv(m_name.c_str()); }

private:
    std::string m_name;
    bool m_had;
    std::string m_old;
};

} // namespace kzbs_test

#endif
