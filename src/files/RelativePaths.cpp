// Moving a KZFileName between its absolute form, the form relative to the
// global base directory and the form parameterised by a directory symbol.
#include "KZFileName.h"

#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"

#include <climits>
#include <cstdlib>

namespace {

// The first element of s, up to and including its first separator; all of s
// when it has none.
std::string getNextSubDir(const std::string& s)
{
    const std::size_t separator = s.find_first_of(KZFileName::sm_dirSeparators);
    return separator == std::string::npos ? s : s.substr(0, separator + 1);
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
    for (;;) {
        const std::string element = getNextSubDir(full);
        const std::string baseElement = getNextSubDir(basePath);
        const std::string key = getNormalizedString(element);
        if (key.empty() || key != getNormalizedString(baseElement))
            break;
        full.erase(0, element.size());
        basePath.erase(0, baseElement.size());
    }

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

    char resolved[PATH_MAX];
    if (::realpath(CrossPlatformApi::fileSystemEncoding(compose()).c_str(), resolved)) {
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
    const std::string name = compose();
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
