// Splitting a text into the five parts of a KZFileName, and the cleaning of
// the directory part that goes with it.
#include "KZFileName.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Parsing runs for every name an application touches, so the scans below are
// written out by hand instead of using the set searches of std::string,
// which test each character against the set with a library call.
namespace {

inline bool isSeparator(char c)
{
    return c == '\\' || c == '/';
}

// The first c in s, or npos: memchr itself, as string::find is a call around
// the same call and names are short.
std::size_t findChar(const std::string& s, char c)
{
    const void* at = std::memchr(s.data(), c, s.size());
    return at ? static_cast<std::size_t>(static_cast<const char*>(at) - s.data()) : std::string::npos;
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

// dir = text[0, length) with every run of separators written as one current
// separator, in one pass (the directory of a parsed name is cleaned this way
// every time). Returns whether a separator is followed by "..": only then can
// the text hold a "/.." for removeRedundantPathElements to fold.
bool assignCollapsedDirectory(std::string& dir, const char* text, std::size_t length)
{
    const char current = KZFileName::sm_dirSeparatorChar;
    dir.resize(length);
    char* const out = &dir[0];
    std::size_t written = 0;
    bool previousWasSeparator = false, parentReference = false;
    for (std::size_t i = 0; i < length; ++i) {
        const char c = text[i];
        if (!isSeparator(c)) {
            out[written++] = c;
            previousWasSeparator = false;
            continue;
        }
        if (!previousWasSeparator)
            out[written++] = current;
        previousWasSeparator = true;
        parentReference = parentReference || (i + 2 < length && text[i + 1] == '.' && text[i + 2] == '.');
    }
    dir.resize(written);
    return parentReference;
}

#if defined(__SSE2__)

// dir = text[0, length) with every separator written as the current one, for
// a text of at least 16 bytes: 16 bytes at a time, the last block overlapping
// the one before so that nothing outside the text is read (its bytes before
// the overlap are written twice, the same both times). Blocks are read from
// the text, not from dir, so no load waits for the copy's stores. Returns
// false, and dir is to be redone, when the text has a separator run; *dotDot
// tells whether it holds a "..", which a "/.." to fold needs.
bool assignRewrittenDirectory(std::string& dir, const char* text, std::size_t length, bool* dotDot)
{
    dir.assign(text, length);
    char* const out = &dir[0];
    const __m128i backslash = _mm_set1_epi8('\\'), slash = _mm_set1_epi8('/'), dot = _mm_set1_epi8('.');
    const __m128i replacement = _mm_set1_epi8(KZFileName::sm_dirSeparatorChar);
    unsigned runs = 0, dots = 0;
    // A block at `at` whose bits below `seen` were looked at already; the
    // byte before the block is paired with its first one by reading it again.
    const auto block = [&](std::size_t at, unsigned seen) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
        const __m128i isSep = _mm_or_si128(_mm_cmpeq_epi8(v, backslash), _mm_cmpeq_epi8(v, slash));
        const unsigned sep = static_cast<unsigned>(_mm_movemask_epi8(isSep));
        const unsigned dotBits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, dot)));
        const unsigned before = at > 0 ? 1u : 0u;
        const unsigned sepBefore = before && isSeparator(text[at - 1]) ? 1u : 0u;
        const unsigned dotBefore = before && text[at - 1] == '.' ? 1u : 0u;
        const unsigned fresh = ~0u << seen;
        runs |= sep & fresh & (sep << 1 | sepBefore);
        dots |= dotBits & fresh & (dotBits << 1 | dotBefore);
        if (sep != 0)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at),
                             _mm_or_si128(_mm_and_si128(isSep, replacement), _mm_andnot_si128(isSep, v)));
    };
    std::size_t i = 0;
    for (; i + 16 <= length; i += 16)
        block(i, 0);
    if (i < length)
        block(length - 16, static_cast<unsigned>(i - (length - 16)));
    *dotDot = dots != 0;
    return runs == 0;
}

#endif

// The same as assigning the text and removeRedundantDirSeperators().
void assignCleanDirectory(std::string& dir, const char* text, std::size_t length)
{
#if defined(__SSE2__)
    bool dotDot = false;
    if (length >= 16 && assignRewrittenDirectory(dir, text, length, &dotDot)) {
        if (dotDot)
            KZFileName::removeRedundantPathElements(dir);
        return;
    }
#endif
    if (assignCollapsedDirectory(dir, text, length))
        KZFileName::removeRedundantPathElements(dir);
}

} // namespace

void KZFileName::parse(const std::string& s)
{
    // Expansion leaves a text without '<' as it is; skipping it saves a copy.
    std::string expanded;
    const bool hasSymbols = findChar(s, KZFileEnvironment::sm_symbolOpenChar) != std::string::npos;
    if (hasSymbols)
        expanded = GlobalFileEnvironment.expandString(s);
    const std::string& work = hasSymbols ? expanded : s;

    // The parts are cut from `work` left to right; `begin` is where the rest starts.
    std::size_t begin = 0;
    const std::size_t colon = findChar(work, ':');
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
        assignCleanDirectory(m_dir, work.data() + begin, lastSeparator + 1 - begin);
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
    std::string element = separator == std::string::npos ? s.substr(0, pos) : s.substr(separator, pos - separator);
    if (element == "/.." || element == ".." || element == "./")
        return std::string();
    return element;
}
