// Splitting a text into the five parts of a KZFileName, and the cleaning of
// the directory part that goes with it.
#include "KZFileName.h"

// Parsing runs for every name an application touches, so the scans below are
// written out by hand instead of using the set searches of std::string,
// which test each character against the set with a library call.
namespace {

inline bool isSeparator(char c)
{
    return c == '\\' || c == '/';
}

bool isDotOrDotDot(const char* text, std::size_t length)
{
    return (length == 1 && text[0] == '.') || (length == 2 && text[0] == '.' && text[1] == '.');
}

// The last separator at or after `from`, or npos.
std::size_t findLastSeparator(const std::string& s, std::size_t from)
{
    for (std::size_t i = s.size(); i > from; --i)
        if (isSeparator(s[i - 1]))
            return i - 1;
    return std::string::npos;
}

// The first separator at or after `from`, or npos.
std::size_t findFirstSeparator(const std::string& s, std::size_t from)
{
    for (std::size_t i = from; i < s.size(); ++i)
        if (isSeparator(s[i]))
            return i;
    return std::string::npos;
}

// The first "/.." at or after `from`, or npos.
std::size_t findParentReference(const std::string& s, std::size_t from)
{
    for (std::size_t i = from; i + 2 < s.size(); ++i)
        if (s[i] == '/' && s[i + 1] == '.' && s[i + 2] == '.')
            return i;
    return std::string::npos;
}

// The first position where collapsing separator runs into one current
// separator would change s, or s.size() when it would not.
std::size_t firstUncleanSeparator(const std::string& s)
{
    const char current = KZFileName::sm_dirSeparatorChar;
    for (std::size_t i = 0; i < s.size(); ++i)
        if (isSeparator(s[i]) && (s[i] != current || (i + 1 < s.size() && isSeparator(s[i + 1]))))
            return i;
    return s.size();
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
        const std::size_t end = findFirstSeparator(work, 2);
        if (end == std::string::npos) {
            m_unc = work;
            begin = work.size();
        } else {
            m_unc.assign(work, 0, end + 1);
            begin = end + 1;
        }
    }

    const std::size_t lastSeparator = findLastSeparator(work, begin);
    if (lastSeparator != std::string::npos) {
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
    // Collapsing runs only ever shortens the text, so it is done in place,
    // starting where the first change is due.
    std::size_t written = firstUncleanSeparator(s);
    bool previousWasSeparator = false;
    for (std::size_t read = written; read < s.size(); ++read) {
        const char c = s[read];
        const bool separator = isSeparator(c);
        if (!separator)
            s[written++] = c;
        else if (!previousWasSeparator)
            s[written++] = sm_dirSeparatorChar;
        previousWasSeparator = separator;
    }
    s.resize(written);
    removeRedundantPathElements(s);
}

void KZFileName::removeRedundantPathElements(std::string& s)
{
    const std::size_t parentLength = 3; // "/.."
    const bool relative = !s.empty() && !isSeparator(s[0]);
    if (findParentReference(s, 0) != std::string::npos) {
        // The text is rebuilt from left to right: each "/.." is looked at when
        // its last character arrives, and a fold cuts the rebuilt text back to
        // where the folded element began, so that the text after it need not
        // move (folding in place moved it once per fold). A "/.." whose
        // element is never cancelled stays, and the search goes on behind it.
        std::string folded;
        folded.reserve(s.size());
        std::size_t searchStart = 0;
        for (const char c : s) {
            folded += c;
            const std::size_t size = folded.size();
            if (size < parentLength || folded.compare(size - parentLength, parentLength, "/..") != 0)
                continue;
            const std::size_t found = size - parentLength;
            if (found < searchStart)
                continue;
            const std::string left = getLeftDir(folded, found);
            if (left.empty())
                searchStart = size;
            else
                folded.resize(found - left.size());
        }
        s.swap(folded);
    }
    if (relative && !s.empty() && isSeparator(s[0]))
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
