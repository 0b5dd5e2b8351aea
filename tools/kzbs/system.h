// What kzbs asks of the operating system beyond standard C++, one
// implementation per system: system_posix.cpp, system_windows.cpp.
#ifndef KZBS_SYSTEM_H
#define KZBS_SYSTEM_H

#include <cstddef>
#include <string>

namespace kzbs {
namespace sys {

// Standard streams as kzbs needs them: the default action for SIGPIPE (some
// shells leave it ignored), and on Windows binary mode, so that "\n" stays
// one byte and the output equals the POSIX output.
void prepareStandardStreams();

// The last `byte` in [data, data + size), nullptr if there is none (memrchr).
const char* findLast(const char* data, char byte, std::size_t size);

// Opens `path` for reading bytes as they are (binary mode on Windows), not
// inherited by programs kzbs starts; -1 with errno set when it fails.
int openForReading(const std::string& path);

// The file `path` names once its symbolic links are followed (the path
// itself when it is none); "" after too many links. Windows: the path.
std::string followLinks(std::string path);

// Permission bits of a new file (0666 less the umask).
unsigned newFileMode();

// Brings the finished temporary file to disk with `mode`, and with
// owner:group when keepOwner. Returns "" or what failed, for "cannot WHAT
// PATH: ..." with errno ("write", "keep the owner of").
std::string settle(const std::string& temporary, unsigned mode, bool keepOwner, unsigned owner, unsigned group);

// Puts `temporary` in the place of `target` in one step, replacing it, and
// brings that to disk; false with errno set when it fails.
bool replaceFile(const std::string& temporary, const std::string& target);

} // namespace sys
} // namespace kzbs

#endif // KZBS_SYSTEM_H
