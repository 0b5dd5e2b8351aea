#include "file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace kzbs {

namespace {

std::string folderOf(const std::string& path)
{
    const std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

// The file `path` names once its symbolic links are followed (the path
// itself when it is none); "" after too many links.
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

mode_t umaskedMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

std::string unreadable(const std::string& path)
{
    if (path.empty())
        return "a file name is empty";
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return path + (errno == ENOENT ? std::string(": no such file") : ": " + std::string(std::strerror(errno)));
    if (S_ISDIR(info.st_mode))
        return path + ": is a directory";
    if (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode))
        return path + ": is a device, not a file";
    if (::access(path.c_str(), R_OK) != 0)
        return path + ": " + std::strerror(errno);
    return "";
}

bool readWholeFile(const std::string& path, std::string& data, std::string& error)
{
    std::ifstream in(path, std::ios::binary);
    data.assign(std::istreambuf_iterator<char>(in), {});
    if (in.bad() || !in.is_open()) {
        error = "cannot read " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

FileReplacement::FileReplacement(const std::string& path) : m_path(path), m_target(followLinks(path))
{
    if (m_target.empty()) {
        failWith(path + ": too many levels of symbolic links");
        return;
    }
    struct stat info {};
    if (::stat(m_target.c_str(), &info) == 0) {
        if (!S_ISREG(info.st_mode)) {
            failWith(path + " is not a regular file; kzbs replaces regular files only");
            return;
        }
        m_existed = true;
        m_mode = info.st_mode & 07777;
        m_owner = info.st_uid;
        m_group = info.st_gid;
    } else if (errno != ENOENT) {
        failWith("cannot write " + path + ": " + std::strerror(errno));
        return;
    } else {
        m_mode = umaskedMode();
    }
    std::string temporary = m_target + ".kzbs-XXXXXX";
    const int fd = ::mkstemp(&temporary[0]);
    if (fd < 0) {
        failWith("cannot create a file beside " + path + ": " + std::strerror(errno));
        return;
    }
    ::close(fd);
    m_temporary = temporary;
}

FileReplacement::~FileReplacement()
{
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

bool FileReplacement::failWith(const std::string& message)
{
    if (m_error.empty())
        m_error = message;
    return false;
}

bool FileReplacement::write(const std::function<bool(std::ostream&)>& emit)
{
    if (!m_error.empty())
        return false;
    std::ofstream out(m_temporary, std::ios::binary | std::ios::trunc);
    errno = 0;
    bool ok = out.is_open() && emit(out);
    out.close();
    ok = ok && !out.fail();
    if (!ok)
        return failWith("cannot write " + m_path + (errno ? std::string(": ") + std::strerror(errno) : ""));
    return true;
}

bool FileReplacement::commit()
{
    if (!m_error.empty())
        return false;
    const auto failed = [&](const std::string& what) {
        return failWith("cannot " + what + " " + m_path + ": " + std::strerror(errno));
    };
    const int fd = ::open(m_temporary.c_str(), O_RDONLY);
    if (fd < 0)
        return failed("write");
    struct stat info {};
    bool ok = ::fstat(fd, &info) == 0 && ::fsync(fd) == 0 && ::fchmod(fd, m_mode) == 0;
    if (!ok) {
        failed("write");
    } else if (m_existed && (info.st_uid != m_owner || info.st_gid != m_group)
               && ::fchown(fd, m_owner, m_group) != 0) {
        failed("keep the owner of");
        ok = false;
    }
    ::close(fd);
    if (!ok)
        return false;
    if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        return failed("replace");
    m_temporary.clear();
    // The rename itself reaches the disk with the folder.
    const int folder = ::open(folderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

} // namespace kzbs
