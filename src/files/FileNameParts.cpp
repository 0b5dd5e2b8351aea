// KZFileName: construction, the parts, composing them again, and the
// separator helpers.
#include "KZFileName.h"

#include "KZStringFunctions.h"

const char KZFileName::sm_dirSeparators[3] = {'\\', '/', '\0'};
const char KZFileName::sm_extensionChar = '.';
char KZFileName::sm_dirSeparatorChar = '/';

KZFileName::KZFileName(const std::string& s)
{
    parse(s);
}

KZFileName::KZFileName(const char* s)
{
    if (s)
        parse(std::string(s));
}

void KZFileName::clear()
{
    m_unc.clear();
    m_drive.clear();
    m_dir.clear();
    m_name.clear();
    m_ext.clear();
}

void KZFileName::setFullPath(const std::string& s)
{
    std::string directory = GlobalFileEnvironment.expandString(s);
    clear();
    if (!directory.empty())
        addTrailingDirSeparator(directory);
    parse(directory);
}

std::string KZFileName::getFullPath() const
{
    std::string path;
    path.reserve(m_drive.size() + m_unc.size() + m_dir.size() + 1);
    path += m_drive;
    path += m_unc;
    if (!m_dir.empty()) {
        path += m_dir;
        addTrailingDirSeparator(path);
    }
    return path;
}

void KZFileName::setFileName(const std::string& s)
{
    const KZFileName file(s);
    setFullPath(getFullPath() + file.m_dir);
    m_name = file.m_name;
    m_ext = file.m_ext;
}

bool KZFileName::isUNCPath() const
{
    return !m_unc.empty();
}

bool KZFileName::isDrivePath() const
{
    return !m_drive.empty();
}

bool KZFileName::isAbsPath() const
{
    return isDrivePath() || isUNCPath() || (!m_dir.empty() && isDirSeparator(m_dir[0]));
}

bool KZFileName::isDriveRelPath() const
{
    return !m_drive.empty() && !m_dir.empty() && !isDirSeparator(m_dir[0]);
}

bool KZFileName::isValid() const
{
    if (!m_drive.empty() && !m_unc.empty())
        return false;
    return m_ext.empty() || !m_name.empty();
}

std::string KZFileName::compose() const
{
    std::string text;
    text.reserve(m_drive.size() + m_unc.size() + m_dir.size() + 1 + m_name.size() + 1 + m_ext.size());
    text += m_drive;
    text += m_unc;
    if (!m_dir.empty()) {
        text += m_dir;
        addTrailingDirSeparator(text);
    }
    text += m_name;
    if (!m_ext.empty()) {
        text += sm_extensionChar;
        text += m_ext;
    }
    return text;
}

std::string KZFileName::normalizedString() const
{
    std::string text = compose();
    for (char& c : text)
        if (isDirSeparator(c))
            c = '/';
    return text;
}

namespace {

// Sets the shared separator for one scope and puts the old one back even if
// composing throws.
class SeparatorScope {
public:
    explicit SeparatorScope(char separator) : m_saved(KZFileName::sm_dirSeparatorChar)
    {
        KZFileName::sm_dirSeparatorChar = separator;
    }
    ~SeparatorScope() { KZFileName::sm_dirSeparatorChar = m_saved; }
    SeparatorScope(const SeparatorScope&) = delete;
    SeparatorScope& operator=(const SeparatorScope&) = delete;

private:
    char m_saved;
};

} // namespace

std::string KZFileName::asString(char separator) const
{
    const SeparatorScope scope(separator);
    const KZFileName rewritten(compose());
    return rewritten.compose();
}

bool KZFileName::isDirSeparator(char c)
{
    return c == '\\' || c == '/';
}

bool KZFileName::hasTrailingDirSeparator(const std::string& s)
{
    return !s.empty() && isDirSeparator(s.back());
}

void KZFileName::addTrailingDirSeparator(std::string& s)
{
    if (!hasTrailingDirSeparator(s))
        s += sm_dirSeparatorChar;
}

void KZFileName::removeTrailingDirSeparator(std::string& s)
{
    while (hasTrailingDirSeparator(s))
        s.pop_back();
}

std::string KZFileName::getNormalizedString(const std::string& s)
{
    std::string key = s;
    KZStringFunctions::toUpper(key);
    for (char& c : key)
        if (isDirSeparator(c))
            c = sm_dirSeparatorChar;
    return key;
}
