// The few file-system calls of the file-name code, on file-system (UTF-8)
// names, one implementation per operating system (posix/, windows/): POSIX
// takes the bytes as they are, Windows takes UTF-16.
#ifndef KZ_PLATFORM_NATIVE_FILES_H
#define KZ_PLATFORM_NATIVE_FILES_H

#include <ctime>
#include <fstream>
#include <string>

namespace KZBasicServices {
namespace native {

bool exists(const std::string& path);
bool isWritable(const std::string& path);
// False when the file cannot be asked.
bool modificationTime(const std::string& path, std::time_t& time);
// The absolute name with every link resolved; false when the file is missing.
bool resolvedPath(const std::string& path, std::string& resolved);
std::ifstream openForReading(const std::string& path, std::ios::openmode mode = std::ios::in);

} // namespace native
} // namespace KZBasicServices

#endif // KZ_PLATFORM_NATIVE_FILES_H
