// Files as kzbs reads and writes them: a file to read is checked before it
// is opened, so a folder or a device is named as what it is; a file to
// write is replaced whole or not at all.
#ifndef KZBS_FILE_IO_H
#define KZBS_FILE_IO_H

#include <functional>
#include <ostream>
#include <string>

namespace kzbs {

// Why `path` cannot be read as a file ("PATH: no such file", "PATH: is a
// directory", "PATH: is not a regular file", ...), or "" when it can. Pipes
// count as files: kzbs grep PATTERN <(command) works.
std::string unreadable(const std::string& path);

// The whole of `path` (a file unreadable() passed); false with `error` set
// when reading failed.
bool readWholeFile(const std::string& path, std::string& data, std::string& error);

// Replaces a regular file by a new version, or creates it. The new version is
// written to a temporary file beside the target, flushed to disk, given the
// target's permissions and owner and renamed over it, so a reader sees the
// old file or the new one and a failure leaves the old one whole. A symbolic
// link stays one: the file it points to is replaced.
class FileReplacement {
public:
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Empty while all goes well; else the reason, for "kzbs: ...".
    const std::string& error() const { return m_error; }
    // Whether the target existed (with the contents it had).
    bool existed() const { return m_existed; }
    // The temporary file, for writers that need a name.
    const std::string& temporary() const { return m_temporary; }

    // Writes the new version through `emit`, which returns false on failure.
    bool write(const std::function<bool(std::ostream&)>& emit);
    // Puts the new version (written to temporary()) in the target's place.
    bool commit();

private:
    bool failWith(const std::string& message);

    std::string m_path;      // as given, for messages
    std::string m_target;    // the file replaced: m_path with links followed
    std::string m_temporary; // empty once renamed or removed
    std::string m_error;
    bool m_existed = false;
    unsigned m_mode = 0;
    unsigned m_owner = 0, m_group = 0;
};

} // namespace kzbs

#endif // KZBS_FILE_IO_H
