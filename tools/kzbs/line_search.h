// Finding the lines of a buffer in which a pattern matches, the way fast
// search tools do: the matcher runs over the buffer to find a candidate, and
// only the line around it is tried on its own. The answers are exactly those
// of trying each line by itself, with its newline, as kzbs grep always has.
//
// The buffer is not one text to the matcher: its find() stops at a NUL byte,
// a class such as [^x] runs across newlines, '^' holds only at the search
// start and '$' after a consumed newline only at the text's end. So a match
// in the buffer is only a candidate; the line around it decides. What makes
// this exact: a match in a line alone is a match in the buffer too, at the
// same place, as long as nothing in the pattern can take a newline and then
// need the end of the text. A pattern that could is tried line by line.
//
// Most patterns cannot take a newline at all (no negated class, no escape,
// no control or 8-bit byte in a class): their matches lie inside one line,
// and find() searches the rest of the buffer in one call. The others, and a
// buffer from its first NUL on, are searched in windows (see Scan).
#ifndef KZBS_LINE_SEARCH_H
#define KZBS_LINE_SEARCH_H

#include "KZRegExp.h"

#include <cstddef>
#include <string>

namespace kzbs {

// One line of a buffer: [begin, end), end being its newline's offset.
struct LineSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// A file descriptor read in large blocks of whole lines (256 KB reads, more
// for a longer line), into one buffer that is reused.
class LineReader {
public:
    explicit LineReader(int fd) : m_fd(fd) {}

    // Reads the next block; false at the end of the input or on an error
    // (error() then holds errno). Its lines are data()[0, size()), each
    // ending in a newline: a last line without one gets one. data()[size()]
    // may be written, as LineSearch does.
    bool next();

    char* data() { return &m_buffer[0]; }
    std::size_t size() const { return m_size; }
    int error() const { return m_error; }

private:
    int m_fd;
    int m_error = 0;
    std::string m_buffer;
    std::size_t m_size = 0; // the block's whole lines
    std::size_t m_end = 0;  // what has been read into the buffer
};

class LineSearch {
public:
    // re compiled from pattern without errors; both must outlive the search.
    LineSearch(const KZRegExp& re, const std::string& pattern);

    // Calls visit(LineSpan) for each line of text[0, size) in which the
    // pattern matches, in order, until it returns false; each line there ends
    // in a newline. The lines between two visits are those that do not
    // match. text[size] must be writable: it is a NUL during the search, and
    // windows put theirs into the text (restored before each visit).
    template <class Visit>
    void forEachMatchingLine(char* text, std::size_t size, Visit visit)
    {
        struct Restore {
            char* at;
            char byte;
            ~Restore() { *at = byte; }
        } const restore{text + size, text[size]};
        text[size] = '\0';
        Scan scan(text, size);
        scan.windows = !m_inLines;
        LineSpan line;
        while (nextMatchingLine(scan, line))
            if (!visit(line))
                return;
    }

    // Whether the line [begin, end) of text matches when tried on its own.
    bool lineMatches(const char* text, std::size_t begin, std::size_t end);

private:
    // Where a search through one buffer stands.
    struct Scan {
        Scan(char* text, std::size_t size) : text(text), size(size) {}

        char* const text;
        const std::size_t size;
        std::size_t at = 0;                // the start of the first line not yet decided
        std::size_t window = kFirstWindow; // how far find() may look ahead
        std::size_t eachLineUntil = 0;     // lines before this are tried one by one
        bool windows = false;              // searched in windows, not all at once
    };

    // find() reads its text up to the end, or to a NUL, before it starts
    // matching, so the buffer is searched in windows of whole lines, each
    // ended by a NUL put over the next line's first byte: large where
    // matches are rare, small where they are dense.
    static constexpr std::size_t kFirstWindow = 64 * 1024;
    static constexpr std::size_t kGrowFrom = 4096;
    static constexpr std::size_t kLargestWindow = 4 * 1024 * 1024;

    bool nextMatchingLine(Scan& scan, LineSpan& line);
    std::size_t nextCandidate(Scan& scan, std::size_t& matchEnd);

    const KZRegExp& m_re;
    KZRegExp m_finder;       // the pattern without a leading '^', or the pattern
    bool m_anchored = false; // m_finder drops the pattern's '^'
    bool m_eachLine = false; // no buffer search: every line is tried
    bool m_inLines = false;  // no match can take a newline
    std::string m_line;      // a line with its newline, as find() sees it alone
};

} // namespace kzbs

#endif // KZBS_LINE_SEARCH_H
