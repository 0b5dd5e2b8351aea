// A fresh folder for one test, removed with everything in it afterwards, and
// small file helpers for the platform tests.
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
    TempFolder()
    {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/kzbs-platform-XXXXXX";
        if (::mkdtemp(&pattern[0]))
            m_path = pattern;
    }
    ~TempFolder()
    {
        if (!m_path.empty())
            std::system(("rm -rf '" + m_path + "'").c_str());
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

inline void writeFile(const std::string& path, const std::string& content, mode_t mode = 0644)
{
    { std::ofstream(path, std::ios::binary) << content; }
    ::chmod(path.c_str(), mode);
}

inline std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline bool exists(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

// Sets (or with nullptr unsets) an environment variable for the scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : m_name(name)
    {
        if (const char* old = std::getenv(name)) {
            m_hadOld = true;
            m_old = old;
        }
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~ScopedEnv() { m_hadOld ? ::setenv(m_name.c_str(), m_old.c_str(), 1) : ::unsetenv(m_name.c_str()); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string m_name;
    bool m_hadOld = false;
    std::string m_old;
};

} // namespace kzbs_test

#endif
