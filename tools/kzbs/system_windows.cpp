// kzbs on Windows: names are the program's narrow (ANSI code page) texts, as
// the C runtime's own calls take them.
#include "system.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cerrno>
#include <cstdio>

namespace kzbs {
namespace sys {

void prepareStandardStreams()
{
    for (std::FILE* stream : {stdin, stdout, stderr})
        ::_setmode(::_fileno(stream), _O_BINARY);
}

const char* findLast(const char* data, char byte, std::size_t size)
{
    for (std::size_t i = size; i > 0; --i)
        if (data[i - 1] == byte)
            return data + i - 1;
    return nullptr;
}

int openForReading(const std::string& path)
{
    return ::_open(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

std::string followLinks(std::string path)
{
    return path;
}

unsigned newFileMode()
{
    return 0666;
}

// Windows keeps of the mode only whether the owner may write; owners stay.
std::string settle(const std::string& temporary, unsigned mode, bool, unsigned, unsigned)
{
    const int fd = ::_open(temporary.c_str(), _O_RDWR | _O_BINARY);
    if (fd < 0)
        return "write";
    const bool ok = ::_commit(fd) == 0;
    const int error = errno;
    ::_close(fd);
    if (!ok || ::_chmod(temporary.c_str(), (mode & 0200) ? _S_IREAD | _S_IWRITE : _S_IREAD) != 0) {
        errno = ok ? errno : error;
        return "write";
    }
    return "";
}

bool replaceFile(const std::string& temporary, const std::string& target)
{
    if (::MoveFileExA(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    errno = ::GetLastError() == ERROR_ACCESS_DENIED ? EACCES : EIO;
    return false;
}

} // namespace sys
} // namespace kzbs
