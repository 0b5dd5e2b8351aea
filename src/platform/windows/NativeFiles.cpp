// The file-name code's file-system calls on Windows: UTF-8 names become
// UTF-16 and go to the wide C runtime and Windows calls.
#include "../NativeFiles.h"

#include <filesystem>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

namespace KZBasicServices {
namespace native {
namespace {

std::wstring wide(const std::string& utf8)
{
    const int size = static_cast<int>(utf8.size());
    const int length = size ? ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0) : 0;
    std::wstring units(static_cast<size_t>(length > 0 ? length : 0), L'\0');
    if (length > 0)
        ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, &units[0], length);
    return units;
}

std::string utf8(const std::wstring& units)
{
    const int size = static_cast<int>(units.size());
    const int length = size ? ::WideCharToMultiByte(CP_UTF8, 0, units.data(), size, nullptr, 0, nullptr, nullptr) : 0;
    std::string bytes(static_cast<size_t>(length > 0 ? length : 0), '\0');
    if (length > 0)
        ::WideCharToMultiByte(CP_UTF8, 0, units.data(), size, &bytes[0], length, nullptr, nullptr);
    return bytes;
}

} // namespace

bool exists(const std::string& path)
{
    return ::_waccess(wide(path).c_str(), 0) == 0;
}

bool isWritable(const std::string& path)
{
    return ::_waccess(wide(path).c_str(), 2) == 0;
}

bool modificationTime(const std::string& path, std::time_t& time)
{
    struct _stat64 info;
    if (::_wstat64(wide(path).c_str(), &info) != 0)
        return false;
    time = static_cast<std::time_t>(info.st_mtime);
    return true;
}

// As realpath: "." and ".." resolved, no separator at the end but the
// root's. Links are not followed.
bool resolvedPath(const std::string& path, std::string& resolved)
{
    const std::wstring name = wide(path);
    if (::GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES)
        return false;
    const DWORD length = ::GetFullPathNameW(name.c_str(), 0, nullptr, nullptr);
    if (length == 0)
        return false;
    std::wstring full(length, L'\0');
    const DWORD written = ::GetFullPathNameW(name.c_str(), length, &full[0], nullptr);
    if (written == 0 || written >= length)
        return false;
    full.resize(written);
    while (full.size() > 3 && (full.back() == L'\\' || full.back() == L'/'))
        full.pop_back();
    resolved = utf8(full);
    return true;
}

std::ifstream openForReading(const std::string& path, std::ios::openmode mode)
{
    return std::ifstream(std::filesystem::path(wide(path)), mode);
}

} // namespace native
} // namespace KZBasicServices
