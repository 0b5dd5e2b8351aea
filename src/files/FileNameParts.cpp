// KZFileName: construction, the parts, composing them again, and the
// separator helpers.
#include "KZFileName.h"

#include "KZStringFunctions.h"

#include <cstring>

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

namespace {

char* put(char* out, const std::string& part)
{
    if (!part.empty())
        std::memcpy(out, part.data(), part.size());
    return out + part.size();
}

} // namespace

// Every name an application opens is composed, so the text is sized once and
// the parts are copied straight in.
std::string KZFileName::compose() const
{
    const std::size_t pathEnd = m_drive.size() + m_unc.size();
    const bool addSeparator = !m_dir.empty() && !isDirSeparator(m_dir.back());
    const std::size_t size =
        pathEnd + m_dir.size() + (addSeparator ? 1 : 0) + m_name.size() + (m_ext.empty() ? 0 : 1 + m_ext.size());
    std::string text(size, '\0');
    char* out = put(put(&text[0], m_drive), m_unc);
    out = put(out, m_dir);
    if (addSeparator)
        *out++ = sm_dirSeparatorChar;
    out = put(out, m_name);
    if (!m_ext.empty()) {
        *out++ = sm_extensionChar;
        put(out, m_ext);
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
