// The buffer search of kzbs grep: candidates from the matcher over a window
// of lines, decided by the line around them.
#include "line_search.h"

#include "system.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace kzbs {

namespace {

bool hasAnyOf(const std::string& pattern, const char* bytes)
{
    return pattern.find_first_of(bytes) != std::string::npos;
}

// The beginning-of-line token: '^' first, and in a pattern taken as bytes
// the token's own byte anywhere.
constexpr char kLineStartToken = '\xDE';

} // namespace

bool LineReader::next()
{
    constexpr std::size_t kRead = 256 * 1024;
    // The unfinished line behind the last block begins this one.
    // (Moved within the buffer, which keeps its length: growing it again
    // would fill it with zeros first.)
    std::memmove(&m_buffer[0], m_buffer.data() + m_size, m_end - m_size);
    m_end -= m_size;
    m_size = 0;
    while (m_in) {
        if (m_buffer.size() < m_end + kRead + 1)
            m_buffer.resize(m_end + kRead + 1);
        m_in.read(&m_buffer[m_end], static_cast<std::streamsize>(kRead));
        const std::size_t got = static_cast<std::size_t>(m_in.gcount());
        const char* newline = got > 0 ? sys::findLast(&m_buffer[m_end], '\n', got) : nullptr;
        m_end += got;
        if (newline) {
            m_size = static_cast<std::size_t>(static_cast<const char*>(newline) - m_buffer.data()) + 1;
            return true;
        }
    }
    if (m_end == 0)
        return false;
    m_buffer[m_end++] = '\n';
    m_size = m_end;
    return true;
}

LineSearch::LineSearch(const KZRegExp& re, const std::string& pattern) : m_re(re), m_finder(re)
{
    // A newline taken by an escape or a class, then '$' at the text's end:
    // the line alone has that end right behind its newline, the buffer has
    // the next line there. Such a line can match alone and not in the buffer.
    const bool needsTextEnd = hasAnyOf(pattern, "$\xA4") && hasAnyOf(pattern, "\\[\xDB");
    // A line start inside the pattern holds only where a search starts.
    const bool lineStartInside = pattern.find(kLineStartToken, 1) != std::string::npos;
    if (needsTextEnd || lineStartInside) {
        m_eachLine = true;
        return;
    }
    if (!pattern.empty() && (pattern[0] == '^' || pattern[0] == kLineStartToken)) {
        // Candidates come from the pattern without its '^': a match at a
        // line's start is a match of the rest there.
        const std::string rest = pattern.substr(1);
        m_anchored = true;
        m_eachLine = rest.empty() || rest[0] == '^' || rest[0] == kLineStartToken ||
                     m_finder.gen_pattern(rest.c_str()) != KZRegExp::StatusOk;
    }
}

bool LineSearch::lineMatches(const std::string& text, std::size_t begin, std::size_t end)
{
    m_line.assign(text, begin, end - begin);
    m_line += '\n';
    return m_re.find(m_line, nullptr, 0) >= 0;
}

// The next candidate at or after scan.at: the start of a match in the
// buffer (matchEnd set behind it), or a NUL that ended find()'s text early
// (matchEnd 0). npos when the window holds neither; scan.at then moves
// behind the window.
std::size_t LineSearch::nextCandidate(Scan& scan, std::size_t& matchEnd)
{
    std::string& text = scan.text;
    const std::size_t size = scan.size;
    std::size_t end = size;
    if (scan.window < size - scan.at) {
        const void* newline = std::memchr(&text[scan.at + scan.window], '\n', size - scan.at - scan.window);
        if (newline)
            end = static_cast<std::size_t>(static_cast<const char*>(newline) - text.data()) + 1;
    }
    const bool marked = end < text.size();
    const char covered = marked ? text[end] : '\0';
    if (marked)
        text[end] = '\0';
    unsigned long length = 0;
    const int found = m_finder.find(text, &length, static_cast<unsigned long>(scan.at));
    const void* nul = found < 0 ? std::memchr(&text[scan.at], '\0', end - scan.at) : nullptr;
    if (marked)
        text[end] = covered;

    if (found >= 0) {
        const std::size_t at = static_cast<std::size_t>(found);
        scan.window = std::min(2 * (at - scan.at), kLargestWindow);
        matchEnd = at + length;
        return at;
    }
    scan.window = std::min(std::max(2 * scan.window, kGrowFrom), kLargestWindow);
    matchEnd = 0;
    if (nul)
        return static_cast<std::size_t>(static_cast<const char*>(nul) - text.data());
    scan.at = end;
    return std::string::npos;
}

bool LineSearch::nextMatchingLine(Scan& scan, LineSpan& line)
{
    const std::string& text = scan.text;
    const std::size_t size = scan.size;
    // find() counts offsets in an int.
    const bool eachLine = m_eachLine || text.size() > static_cast<std::size_t>(INT_MAX);
    while (scan.at < size) {
        std::size_t matchEnd = 0;
        std::size_t candidate = scan.at;
        if (!eachLine && scan.at >= scan.eachLineUntil) {
            candidate = nextCandidate(scan, matchEnd);
            if (candidate == std::string::npos)
                continue;
        }
        const char* before = candidate > scan.at ? sys::findLast(&text[scan.at], '\n', candidate - scan.at) : nullptr;
        const std::size_t begin =
            before ? static_cast<std::size_t>(static_cast<const char*>(before) - text.data()) + 1 : scan.at;
        const void* newline = std::memchr(&text[candidate], '\n', size - candidate);
        const std::size_t end = newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - text.data()) : size;
        scan.at = end + 1;
        // A match that ran across lines says little about them: they are tried
        // one by one, so the next search does not run across them again.
        if (matchEnd > scan.at)
            scan.eachLineUntil = std::max(scan.eachLineUntil, matchEnd);
        // A match of the pattern itself that ends by the line's newline is
        // one the line has alone; anything else is decided by the line.
        const bool matchInLine = !m_anchored && matchEnd != 0 && matchEnd <= end + 1;
        if (matchInLine || lineMatches(text, begin, end)) {
            line = {begin, end};
            return true;
        }
    }
    return false;
}

} // namespace kzbs
