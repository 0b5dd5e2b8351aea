// What the file system says about the file a KZFileName names. Every name is
// converted to the file system's UTF-8 before it is handed over.
#include "KZFileName.h"

#include "CrossPlatformApi.h"

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string systemName(const std::string& name)
{
    return CrossPlatformApi::fileSystemEncoding(name);
}

} // namespace

bool KZFileName::exists() const
{
    if (m_name.empty()) {
        if (m_dir.empty())
            return false;
        std::string directory = getFullPath();
        if (hasTrailingDirSeparator(directory))
            directory.pop_back();
        return ::access(systemName(directory).c_str(), F_OK) == 0;
    }
    std::ifstream file(systemName(compose()));
    return file.is_open();
}

bool KZFileName::isWritable() const
{
    if (m_name.empty() || !isValid() || !exists())
        return false;
    return ::access(systemName(compose()).c_str(), W_OK) == 0;
}

KZTime KZFileName::getFileTime() const
{
    KZTime time;
    time.set_time_t(-1); // the null time, which a missing file keeps
    struct stat info;
    if (::stat(systemName(compose()).c_str(), &info) == 0)
        time.set_time_t(static_cast<long>(info.st_mtime));
    return time;
}
