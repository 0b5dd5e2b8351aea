#include "system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace kzbs {
namespace sys {
namespace {

std::string folderOf(const std::string& path)
{
    const std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

void prepareStandardStreams()
{
    std::signal(SIGPIPE, SIG_DFL);
}

const char* findLast(const char* data, char byte, std::size_t size)
{
    return static_cast<const char*>(::memrchr(data, byte, size));
}

int openForReading(const std::string& path)
{
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

std::string followLinks(std::string path)
{
    for (int hops = 0; hops < 40; ++hops) {
        struct stat info {};
        if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
            return path;
        char link[PATH_MAX];
        const ssize_t length = ::readlink(path.c_str(), link, sizeof link);
        if (length <= 0 || static_cast<std::size_t>(length) >= sizeof link)
            return "";
        const std::string target(link, static_cast<std::size_t>(length));
        path = target[0] == '/' || path.find('/') == std::string::npos ? target : folderOf(path) + "/" + target;
    }
    return "";
}

unsigned newFileMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

std::string settle(const std::string& temporary, unsigned mode, bool keepOwner, unsigned owner, unsigned group)
{
    const int fd = ::open(temporary.c_str(), O_RDONLY);
    if (fd < 0)
        return "write";
    struct stat info {};
    std::string failed;
    if (::fstat(fd, &info) != 0 || ::fsync(fd) != 0 || ::fchmod(fd, mode) != 0)
        failed = "write";
    else if (keepOwner && (info.st_uid != owner || info.st_gid != group) && ::fchown(fd, owner, group) != 0)
        failed = "keep the owner of";
    const int error = errno;
    ::close(fd);
    errno = error;
    return failed;
}

bool replaceFile(const std::string& temporary, const std::string& target)
{
    if (std::rename(temporary.c_str(), target.c_str()) != 0)
        return false;
    // The rename itself reaches the disk with the folder.
    const int folder = ::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

} // namespace sys
} // namespace kzbs
