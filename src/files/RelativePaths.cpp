// Moving a KZFileName between its absolute form, the form relative to the
// global base directory and the form parameterised by a directory symbol.
#include "KZFileName.h"

#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"
#include "../platform/NativeFiles.h"

#include <cstdlib>

namespace {

// The element of s at `from`, up to and including the next separator; the
// rest of s when there is none.
std::string getNextSubDir(const std::string& s, std::size_t from)
{
    const std::size_t separator = s.find_first_of(KZFileName::sm_dirSeparators, from);
    return separator == std::string::npos ? s.substr(from) : s.substr(from, separator + 1 - from);
}

std::size_t countSeparators(const std::string& s)
{
    std::size_t count = 0;
    for (char c : s)
        if (KZFileName::isDirSeparator(c))
            ++count;
    return count;
}

} // namespace

bool KZFileName::makeRelPath()
{
    if (!isAbsPath())
        return true;
    const KZFileName& base = GlobalFileEnvironment.getBaseDir();
    if (KZStringFunctions::upper(m_drive) != KZStringFunctions::upper(base.m_drive))
        return false;

    std::string full = compose();
    std::string basePath = base.getFullPath();
    // Skip the common elements by offset: erasing each from the front made
    // long names quadratic.
    std::size_t fullAt = 0, baseAt = 0;
    for (;;) {
        const std::string element = getNextSubDir(full, fullAt);
        const std::string baseElement = getNextSubDir(basePath, baseAt);
        const std::string key = getNormalizedString(element);
        if (key.empty() || key != getNormalizedString(baseElement))
            break;
        fullAt += element.size();
        baseAt += baseElement.size();
    }
    full.erase(0, fullAt);
    basePath.erase(0, baseAt);

    std::string relative;
    for (std::size_t level = countSeparators(basePath); level > 0; --level) {
        relative += "..";
        relative += sm_dirSeparatorChar;
    }
    relative += full;
    clear();
    parse(relative);
    return !isAbsPath();
}

bool KZFileName::makeAbsPath(bool useBaseDir)
{
    if (useBaseDir) {
        if (isAbsPath())
            return true;
        const std::string absolute = GlobalFileEnvironment.getBaseDir().compose() + compose();
        clear();
        parse(absolute);
        return isAbsPath();
    }

    std::string resolved;
    if (KZBasicServices::native::resolvedPath(CrossPlatformApi::fileSystemEncoding(compose()), resolved)) {
        clear();
        parse(CrossPlatformApi::internalEncoding(resolved));
    }
    return isAbsPath();
}

bool KZFileName::add(const KZFileName& other)
{
    if (!m_name.empty() || other.isAbsPath())
        return false;
    setFullPath(getFullPath() + other.m_dir);
    m_name = other.m_name;
    m_ext = other.m_ext;
    return true;
}

std::string KZFileName::asRelPathString() const
{
    KZFileName relative(*this);
    relative.makeRelPath();
    return relative.compose();
}

std::string KZFileName::asParmeterisedString(const std::string& symbolName) const
{
    KZFileName symbolDir;
    symbolDir.setFullPath(GlobalFileEnvironment.getSymbol(symbolName));
    std::string name = compose();
    if (symbolDir.compose().empty())
        return name;

    if (isAbsPath())
        symbolDir.makeAbsPath(true);
    else
        symbolDir.makeRelPath();

    const std::string nameKey = getNormalizedString(name);
    const std::string dirKey = getNormalizedString(symbolDir.compose());
    if (nameKey.compare(0, dirKey.size(), dirKey) != 0)
        return name;
    std::string parameterised;
    parameterised += KZFileEnvironment::sm_symbolOpenChar;
    parameterised += symbolName;
    parameterised += KZFileEnvironment::sm_symbolCloseChar;
    parameterised += sm_dirSeparatorChar;
    parameterised += name.substr(dirKey.size());
    return parameterised;
}
