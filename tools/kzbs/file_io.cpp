#include "file_io.h"

#include "system.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace kzbs {

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

FileReplacement::FileReplacement(const std::string& path) : m_path(path), m_target(sys::followLinks(path))
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
        m_mode = sys::newFileMode();
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
    const std::string unsettled = sys::settle(m_temporary, m_mode, m_existed, m_owner, m_group);
    if (!unsettled.empty())
        return failed(unsettled);
    if (!sys::replaceFile(m_temporary, m_target))
        return failed("replace");
    m_temporary.clear();
    return true;
}

} // namespace kzbs
