#include "../NativeFiles.h"

#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace KZBasicServices {
namespace native {

bool exists(const std::string& path)
{
    return ::access(path.c_str(), F_OK) == 0;
}

bool isWritable(const std::string& path)
{
    return ::access(path.c_str(), W_OK) == 0;
}

bool modificationTime(const std::string& path, std::time_t& time)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0)
        return false;
    time = info.st_mtime;
    return true;
}

bool resolvedPath(const std::string& path, std::string& resolved)
{
    char buffer[PATH_MAX];
    if (!::realpath(path.c_str(), buffer))
        return false;
    resolved = buffer;
    return true;
}

std::ifstream openForReading(const std::string& path, std::ios::openmode mode)
{
    return std::ifstream(path, mode);
}

} // namespace native
} // namespace KZBasicServices
