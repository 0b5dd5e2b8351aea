// What the file system says about the file a KZFileName names. Every name is
// converted to the file system's UTF-8 before it is handed over.
#include "KZFileName.h"

#include "CrossPlatformApi.h"
#include "../platform/NativeFiles.h"

namespace native = KZBasicServices::native;

namespace {

std::string systemName(const std::string& name)
{
    return CrossPlatformApi::fileSystemEncoding(name);
}

} // namespace

bool KZFileName::exists() const
{
    if (m_name.empty()) {
        if (m_dir.empty())
            return false;
        std::string directory = getFullPath();
        if (hasTrailingDirSeparator(directory))
            directory.pop_back();
        return native::exists(systemName(directory));
    }
    return native::openForReading(systemName(compose())).is_open();
}

bool KZFileName::isWritable() const
{
    if (m_name.empty() || !isValid() || !exists())
        return false;
    return native::isWritable(systemName(compose()));
}

KZTime KZFileName::getFileTime() const
{
    KZTime time;
    time.set_time_t(-1); // the null time, which a missing file keeps
    std::time_t modified;
    if (native::modificationTime(systemName(compose()), modified))
        time.set_time_t(static_cast<long>(modified));
    return time;
}
