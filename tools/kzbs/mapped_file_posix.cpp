// Mapping a file with two zero bytes behind it: an anonymous mapping one page
// longer than the file is reserved first and the file mapped over its start.
// The rest of the file's last page reads as zeros; when the file fills that
// page exactly, the reserved page behind it holds the zeros.
#include "mapped_file.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kzbs {

MappedFile::~MappedFile()
{
    if (m_mapping)
        ::munmap(m_mapping, m_mapped);
}

bool MappedFile::map(int fd)
{
    struct stat info {};
    // A file read from elsewhere than its start (standard input after a
    // shell read a line of it) is read from where it stands.
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size < 0 || ::lseek(fd, 0, SEEK_CUR) != 0)
        return false;
    const std::size_t size = static_cast<std::size_t>(info.st_size);
    if (size == 0)
        return true; // m_empty
    const std::size_t page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t filePages = (size + page - 1) / page * page;
    if (filePages < size || filePages + page < filePages)
        return false;
    void* reserved = ::mmap(nullptr, filePages + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (reserved == MAP_FAILED)
        return false;
    // Mapped for reading and populated (one call faults in what the search
    // reads anyway), then made writable: populating a writable private
    // mapping would copy every page, a write later copies only its own.
    int flags = MAP_PRIVATE | MAP_FIXED;
#ifdef MAP_POPULATE
    flags |= MAP_POPULATE;
#endif
    if (::mmap(reserved, size, PROT_READ, flags, fd, 0) == MAP_FAILED
        || ::mprotect(reserved, size, PROT_READ | PROT_WRITE) != 0) {
        ::munmap(reserved, filePages + page);
        return false;
    }
    m_mapping = reserved;
    m_mapped = filePages + page;
    m_data = static_cast<char*>(reserved);
    m_size = size;
    return true;
}

} // namespace kzbs
