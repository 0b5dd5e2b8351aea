// Splitting a text into the five parts of a KZFileName, and the cleaning of
// the directory part that goes with it.
#include "KZFileName.h"

namespace {

bool isDotOrDotDot(const char* text, std::size_t length)
{
    return (length == 1 && text[0] == '.') || (length == 2 && text[0] == '.' && text[1] == '.');
}

// True when s already has one current separator wherever it has any, so the
// rewrite of separator runs would not change it.
bool hasCleanSeparators(const std::string& s)
{
    bool previousWasSeparator = false;
    for (char c : s) {
        const bool separator = KZFileName::isDirSeparator(c);
        if (separator && (previousWasSeparator || c != KZFileName::sm_dirSeparatorChar))
            return false;
        previousWasSeparator = separator;
    }
    return true;
}

} // namespace

void KZFileName::parse(const std::string& s)
{
    // Expansion leaves a text without '<' as it is; skipping it saves a copy.
    std::string expanded;
    const bool hasSymbols = s.find(KZFileEnvironment::sm_symbolOpenChar) != std::string::npos;
    if (hasSymbols)
        expanded = GlobalFileEnvironment.expandString(s);
    const std::string& work = hasSymbols ? expanded : s;

    // The parts are cut from `work` left to right; `begin` is where the rest starts.
    std::size_t begin = 0;
    const std::size_t colon = work.find(':');
    if (colon != std::string::npos) {
        m_unc.clear();
        m_drive.assign(work, 0, colon + 1);
        begin = colon + 1;
    } else if (!work.empty() && work[0] == '\\') {
        m_drive.clear();
        const std::size_t end = work.find_first_of(sm_dirSeparators, 2);
        if (end == std::string::npos) {
            m_unc = work;
            begin = work.size();
        } else {
            m_unc.assign(work, 0, end + 1);
            begin = end + 1;
        }
    }

    const std::size_t lastSeparator = work.find_last_of(sm_dirSeparators);
    if (lastSeparator != std::string::npos && lastSeparator >= begin) {
        m_dir.assign(work, begin, lastSeparator + 1 - begin);
        removeRedundantDirSeperators(m_dir);
        begin = lastSeparator + 1;
    }

    if (isDotOrDotDot(work.data() + begin, work.size() - begin)) {
        m_dir.append(work, begin, std::string::npos);
        m_name.clear();
        m_ext.clear();
        return;
    }

    const std::size_t dot = work.rfind(sm_extensionChar);
    if (dot != std::string::npos && dot >= begin) {
        m_name.assign(work, begin, dot - begin);
        m_ext.assign(work, dot + 1, std::string::npos);
    } else {
        m_name.assign(work, begin, std::string::npos);
        m_ext.clear();
    }
}

void KZFileName::removeRedundantDirSeperators(std::string& s)
{
    if (!hasCleanSeparators(s)) {
        std::string cleaned;
        cleaned.reserve(s.size());
        bool previousWasSeparator = false;
        for (char c : s) {
            const bool separator = isDirSeparator(c);
            if (!separator)
                cleaned += c;
            else if (!previousWasSeparator)
                cleaned += sm_dirSeparatorChar;
            previousWasSeparator = separator;
        }
        s.swap(cleaned);
    }
    removeRedundantPathElements(s);
}

void KZFileName::removeRedundantPathElements(std::string& s)
{
    static const char parent[] = "/..";
    const std::size_t parentLength = sizeof parent - 1;

    const bool relative = !s.empty() && !isDirSeparator(s[0]);
    std::size_t searchStart = 0;
    std::size_t found = s.find(parent, searchStart, parentLength);
    while (found != std::string::npos) {
        const std::string left = getLeftDir(s, found);
        if (left.empty())
            searchStart = found + parentLength;
        else
            s.erase(found - left.size(), left.size() + parentLength);
        found = s.find(parent, searchStart, parentLength);
    }
    if (relative && !s.empty() && isDirSeparator(s[0]))
        s.erase(0, 1);
}

std::string KZFileName::getLeftDir(const std::string& s, unsigned long pos)
{
    if (pos == 0)
        return std::string();
    const std::size_t separator = s.rfind(sm_dirSeparatorChar, pos - 1);
    const std::string element = separator == std::string::npos ? s.substr(0, pos)
                                                                : s.substr(separator, pos - separator);
    if (element == "/.." || element == ".." || element == "./")
        return std::string();
    return element;
}
