// A regular file mapped into memory for kzbs grep: the search reads the page
// cache where it is, instead of a copy that read() would make. The mapping
// is private and writable (a write copies one page, the file never
// changes), and two zero bytes follow the file's last one, so that a last
// line without its newline can get one and the search can put its NUL
// behind it.
#ifndef KZBS_MAPPED_FILE_H
#define KZBS_MAPPED_FILE_H

#include <cstddef>

namespace kzbs {

class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    // Maps the file open at fd; false when it is no regular file (a pipe, a
    // terminal), is not read from its start, or cannot be mapped, which
    // leaves reading it to the caller.
    bool map(int fd);

    // The file's bytes, data()[size()] and data()[size() + 1] being zero and
    // writable.
    char* data() { return m_data; }
    std::size_t size() const { return m_size; }

private:
    char m_empty[2] = {0, 0};
    char* m_data = m_empty;
    std::size_t m_size = 0;
    void* m_mapping = nullptr;
    std::size_t m_mapped = 0;
};

} // namespace kzbs

#endif // KZBS_MAPPED_FILE_H
