// The buffer search of kzbs grep: candidates from the matcher over the
// buffer or a window of its lines, decided by the line around them.
#include "line_search.h"

#include "system.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <unistd.h>

namespace kzbs {

namespace {

bool hasAnyOf(const std::string& pattern, const char* bytes)
{
    return pattern.find_first_of(bytes) != std::string::npos;
}

// The beginning-of-line token: '^' first, and in a pattern taken as bytes
// the token's own byte anywhere.
constexpr char kLineStartToken = '\xDE';

// Whether a match may take a newline: a class holds it when negated or when
// a member's low seven bits are a newline's, which without an escape needs
// a control or 8-bit byte in it (the token byte of a class is one).
bool mayTakeNewline(const std::string& pattern)
{
    if (hasAnyOf(pattern, "\\\xDB"))
        return true;
    for (std::size_t at = pattern.find('['); at < pattern.size(); ++at) {
        const unsigned char c = static_cast<unsigned char>(pattern[at]);
        if (c < 0x20 || c >= 0x80 || (c == '[' && at + 1 < pattern.size() && pattern[at + 1] == '^'))
            return true;
    }
    return false;
}

} // namespace

bool LineReader::next()
{
    constexpr std::size_t kRead = 256 * 1024;
    // The unfinished line behind the last block begins this one.
    // (Moved within the buffer, which keeps its length: growing it again
    // would fill it with zeros first.)
    if (m_end > m_size)
        std::memmove(&m_buffer[0], m_buffer.data() + m_size, m_end - m_size);
    m_end -= m_size;
    m_size = 0;
    for (;;) {
        // Room for a read, the newline a last line may need, and the byte
        // behind the block that the search writes to.
        if (m_buffer.size() < m_end + kRead + 2)
            m_buffer.resize(m_end + kRead + 2);
        const ssize_t got = ::read(m_fd, &m_buffer[m_end], kRead);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            m_error = errno;
        if (got <= 0)
            break;
        const void* newline = sys::findLast(&m_buffer[m_end], '\n', static_cast<std::size_t>(got));
        m_end += static_cast<std::size_t>(got);
        if (newline) {
            m_size = static_cast<std::size_t>(static_cast<const char*>(newline) - m_buffer.data()) + 1;
            return true;
        }
    }
    if (m_end == 0 || m_error != 0)
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
    const bool needsTextEnd = hasAnyOf(pattern, "$\xA4") && mayTakeNewline(pattern);
    // A line start inside the pattern holds only where a search starts.
    const bool lineStartInside = pattern.find(kLineStartToken, 1) != std::string::npos;
    if (needsTextEnd || lineStartInside) {
        m_eachLine = true;
        return;
    }
    m_inLines = !mayTakeNewline(pattern);
    if (!pattern.empty() && (pattern[0] == '^' || pattern[0] == kLineStartToken)) {
        // Candidates come from the pattern without its '^': a match at a
        // line's start is a match of the rest there.
        const std::string rest = pattern.substr(1);
        m_anchored = true;
        m_eachLine = rest.empty() || rest[0] == '^' || rest[0] == kLineStartToken
                     || m_finder.gen_pattern(rest.c_str()) != KZRegExp::StatusOk;
    }
}

bool LineSearch::lineMatches(const char* text, std::size_t begin, std::size_t end)
{
    m_line.assign(text + begin, end - begin);
    m_line += '\n';
    return m_re.find(m_line, nullptr, 0) >= 0;
}

// The next candidate at or after scan.at: the start of a match in the
// buffer (matchEnd set behind it), or a NUL that ended find()'s text early
// (matchEnd 0). npos when the window holds neither; scan.at then moves
// behind the window.
std::size_t LineSearch::nextCandidate(Scan& scan, std::size_t& matchEnd)
{
    char* const text = scan.text;
    const std::size_t size = scan.size;
    std::size_t end = size;
    if (scan.windows && scan.window < size - scan.at) {
        const void* newline = std::memchr(text + scan.at + scan.window, '\n', size - scan.at - scan.window);
        if (newline)
            end = static_cast<std::size_t>(static_cast<const char*>(newline) - text) + 1;
    }
    matchEnd = 0;
    // find() counts offsets in an int: a longer window (a line of gigabytes)
    // is left to the line itself.
    if (end - scan.at > static_cast<std::size_t>(INT_MAX)) {
        scan.windows = true;
        return scan.at;
    }
    const char covered = text[end];
    text[end] = '\0';
    unsigned long length = 0;
    const int found = m_finder.find(text + scan.at, end - scan.at, &length, 0);
    const void* nul = found < 0 ? std::memchr(text + scan.at, '\0', end - scan.at) : nullptr;
    text[end] = covered;

    if (found >= 0) {
        const std::size_t at = scan.at + static_cast<std::size_t>(found);
        scan.window = std::min(2 * (at - scan.at), kLargestWindow);
        matchEnd = at + length;
        return at;
    }
    scan.window = std::min(std::max(2 * scan.window, kGrowFrom), kLargestWindow);
    if (nul) {
        // find() would look past each NUL to the next candidate and stop
        // at the NUL again: windows bound what it looks at.
        scan.windows = true;
        return static_cast<std::size_t>(static_cast<const char*>(nul) - text);
    }
    scan.at = end;
    return std::string::npos;
}

bool LineSearch::nextMatchingLine(Scan& scan, LineSpan& line)
{
    const char* const text = scan.text;
    const std::size_t size = scan.size;
    const bool eachLine = m_eachLine;
    while (scan.at < size) {
        std::size_t matchEnd = 0;
        std::size_t candidate = scan.at;
        if (!eachLine && scan.at >= scan.eachLineUntil) {
            candidate = nextCandidate(scan, matchEnd);
            if (candidate == std::string::npos)
                continue;
        }
        const void* before = candidate > scan.at ? sys::findLast(text + scan.at, '\n', candidate - scan.at) : nullptr;
        const std::size_t begin =
            before ? static_cast<std::size_t>(static_cast<const char*>(before) - text) + 1 : scan.at;
        const void* newline = std::memchr(text + candidate, '\n', size - candidate);
        const std::size_t end = newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - text) : size;
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
