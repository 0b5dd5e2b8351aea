// kzbs grep and kzbs number: the library's pattern matcher and German
// number notation from the command line.
#include "checked.h"
#include "commands.h"
#include "file_io.h"
#include "grep_encoding.h"
#include "line_search.h"
#include "mapped_file.h"
#include "system.h"

#include "KZRegExp.h"
#include "KZStringFunctions.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <unistd.h>

namespace kzbs {

namespace {

const char* const kGrepUsage =
    "usage: kzbs grep [-i] [-v] [-c | -l | -q | -o] [-n] [--encoding ENC] PATTERN [FILE...]\n"
    "Prints the lines of the files (standard input without files, or for '-')\n"
    "in which the library's matcher finds PATTERN. With more than one file each\n"
    "line begins with its file's name and ':'.\n"
    "  -i, --ignore-case    ASCII letters and the German umlauts match in either\n"
    "                       case (ss stays ss); escapes such as \\x41 are not folded\n"
    "  -v, --invert-match   select the lines that do not match\n"
    "  -c, --count          print the number of selected lines of each file\n"
    "  -l, --files-with-matches  print the name of each file with a selected line\n"
    "  -q, --quiet          print nothing; exit 0 at the first selected line\n"
    "  -n, --line-number    prefix each line with its number\n"
    "  -o, --only-matching  print only the matched text, one match per line (a\n"
    "                       pattern that can match nothing, such as b*, reports\n"
    "                       an empty match as the one character at its position);\n"
    "                       with -v nothing\n"
    "  --encoding ENC       how files are read: auto (the default: a file that is\n"
    "                       valid UTF-8 is UTF-8, any other Windows-1252), utf-8,\n"
    "                       cp1252 or raw (bytes in, the same bytes out)\n"
    "  --raw                the same as --encoding raw, and the pattern is taken\n"
    "                       as bytes (which need not be UTF-8)\n"
    "Pattern: literals, '.', [a-z] [^...] classes, * + ? after one token,\n"
    "^ at the start, $ at the end, escapes such as \\t \\x41 \\^A. A pattern that\n"
    "begins with '-' follows '--': kzbs grep -- -x FILE.\n"
    "The matcher reads Windows-1252: the pattern (UTF-8) and the lines of a UTF-8\n"
    "file are converted to it for matching, and the original lines are printed;\n"
    "a character Windows-1252 lacks matches '.' and negated classes only.\n"
    "Classes compare the low seven bits of a character: [a-z] also matches\n"
    "a-umlaut and e-acute, [0-9] also superscript two and three and the degree\n"
    "sign. The matcher reads the bytes 0xA4 0xAA 0xAB 0xAE 0xBF 0xDB 0xDE\n"
    "(currency sign, ordinal a, left guillemet, registered sign, inverted '?',\n"
    "U-circumflex, thorn) as its tokens $ * + . ? [ ^: a pattern holding one of\n"
    "these characters is refused ('.' matches them); with --raw such bytes are\n"
    "the tokens.\n"
    "Exit status: 0 a line was selected, 1 none was, 2 an error occurred (also\n"
    "when lines were selected; with -q a selected line means 0).\n"
    "Examples:\n"
    "  kzbs grep -i -n 'm\xC3\xBCnchen' notes.txt    lines naming Munich, in any case\n"
    "  kzbs grep -c -v '^#' a.ini b.ini     lines that are no comment, per file\n";

const char* const kNumberUsage =
    "usage: kzbs number TEXT...\n"
    "Prints each number written with a decimal point in German notation:\n"
    "decimal comma and '.' grouping ('1234567.89' -> '1.234.567,89').\n"
    "Without TEXT, reads one number per line from standard input.\n"
    "A number is a sign, digits with at most one '.', then nothing or a blank\n"
    "and any text ('1234 EUR'). Anything else, or text that is not UTF-8,\n"
    "ends kzbs with exit status 2.\n"
    "Examples:\n"
    "  kzbs number 1234567.89               prints 1.234.567,89\n"
    "  cut -f2 prices.tsv | kzbs number     one number per line\n";

std::string compileError(int status, const std::string& pattern)
{
    switch (status) {
    case KZRegExp::StatusIllegal:
        return "illegal pattern '" + pattern + "': it is empty or begins with a newline, '*', '+' or '?'";
    case KZRegExp::StatusNoMemory: return "out of memory compiling pattern '" + pattern + "'";
    default:
        return "pattern '" + pattern + "' is too long (at most " + std::to_string(KZRegExp::maxpat - 1)
               + " compiled bytes) or puts a closure on an anchor or another closure";
    }
}

struct GrepOptions {
    bool ignoreCase = false;
    bool invert = false;
    bool count = false;
    bool filesWithMatches = false;
    bool quiet = false;
    bool lineNumbers = false;
    bool onlyMatching = false;
    bool raw = false;
    std::optional<std::string> encodingName;
    GrepEncoding encoding = GrepEncoding::Auto;
    bool anchored = false; // the pattern begins with '^': one match per line at most
    bool withFileName = false;
};

// One input being searched: its name for messages and prefixes, how its
// bytes are read, and how many of its lines were selected.
struct Input {
    std::string name;
    GrepEncoding encoding = GrepEncoding::Raw; // never Auto
    bool ascii = false;                        // known to be all ASCII
    unsigned long selected = 0;
};

class Grep {
public:
    Grep(const KZRegExp& re, const std::string& pattern, const GrepOptions& options)
        : m_re(re), m_lines(re, pattern), m_options(options)
    {
    }

    // Searches the lines of one input, given in blocks of whole lines by
    // next(char*& data, std::size_t& size); data[size] may be written to.
    // Returns whether a line was selected.
    template <class NextBlock>
    bool search(Input& input, NextBlock next)
    {
        m_input = &input;
        m_number = 1;
        m_fileDone = false;
        char* data = nullptr;
        std::size_t size = 0;
        while (!m_fileDone && next(data, size))
            searchBlock(data, size);
        if (m_options.count && !m_options.quiet && !m_options.filesWithMatches)
            std::cout << (m_options.withFileName ? input.name + ":" : "") << input.selected << '\n';
        const bool selected = input.selected > 0;
        // -l is done with a file at its first line, -q with everything.
        m_stopped = m_options.quiet && selected;
        return selected;
    }

    // -q found its line: nothing more needs to be read.
    bool finished() const { return m_stopped; }

private:
    // One block of whole lines, original[0, size), each ending in a newline.
    void searchBlock(char* original, std::size_t size)
    {
        m_original = original;
        m_originalSize = size;
        char* text = original;
        std::size_t textSize = size;
        m_converted = m_input->encoding == GrepEncoding::Utf8 && !m_input->ascii && !scanUtf8(original, size).ascii;
        if (m_converted || m_options.ignoreCase) {
            m_text.clear();
            if (m_converted)
                appendUtf8AsWindows1252(original, size, m_text);
            else
                m_text.assign(original, size);
            textSize = m_text.size();
            m_text += '\0'; // the byte behind the lines that the search writes to
            text = &m_text[0];
            if (m_options.ignoreCase)
                foldCase(text, textSize);
        }
        m_matcherText = text;
        m_textSize = textSize;
        m_textAt = m_originalAt = 0;
        if (m_options.invert) {
            std::size_t next = 0;
            m_lines.forEachMatchingLine(text, textSize, [&](LineSpan line) {
                next = selectLinesBetween(next, line.begin) ? line.end + 1 : std::string::npos;
                return next != std::string::npos;
            });
            if (next != std::string::npos)
                selectLinesBetween(next, textSize);
        } else {
            m_lines.forEachMatchingLine(text, textSize, [&](LineSpan line) { return select(line.begin, line.end); });
        }
        if (m_options.lineNumbers)
            moveTo(textSize);
    }

    // -v: selects the lines in text[begin, end); false when the search ends.
    bool selectLinesBetween(std::size_t begin, std::size_t end)
    {
        while (begin < end) {
            const std::size_t newline = lineEnd(m_matcherText, m_textSize, begin);
            if (!select(begin, newline))
                return false;
            begin = newline + 1;
        }
        return true;
    }

    // The newline ending the line at `at` of text[0, size): every line of a
    // block has one.
    static std::size_t lineEnd(const char* text, std::size_t size, std::size_t at)
    {
        const void* newline = std::memchr(text + at, '\n', size - at);
        return newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - text) : size;
    }

    // Moves to the line that begins at text offset `begin` (at or behind the
    // current one), keeping the original offset and the line number.
    void moveTo(std::size_t begin)
    {
        if (!m_converted) {
            if (m_options.lineNumbers)
                m_number +=
                    static_cast<unsigned long>(std::count(m_matcherText + m_textAt, m_matcherText + begin, '\n'));
            m_textAt = m_originalAt = begin;
            return;
        }
        while (m_textAt < begin) {
            m_textAt = lineEnd(m_matcherText, m_textSize, m_textAt) + 1;
            m_originalAt = lineEnd(m_original, m_originalSize, m_originalAt) + 1;
            ++m_number;
        }
    }

    // The line text[begin, end) is selected; false when the search ends.
    bool select(std::size_t begin, std::size_t end)
    {
        ++m_input->selected;
        if (m_options.quiet || m_options.filesWithMatches) {
            if (!m_options.quiet)
                std::cout << m_input->name << '\n';
            m_fileDone = true;
            return false;
        }
        if (m_options.count)
            return true;
        moveTo(begin);
        const std::size_t originalEnd = m_converted ? lineEnd(m_original, m_originalSize, m_originalAt) : end;
        if (m_options.onlyMatching) {
            if (!m_options.invert)
                printMatches(begin, end, m_originalAt, originalEnd);
            return true;
        }
        printPrefix();
        printLine(m_original + m_originalAt, originalEnd - m_originalAt);
        return true;
    }

    // Lines go straight to the output's buffer: std::cout's formatting
    // costs more than the search on a file where most lines match. (The
    // buffer keeps the first write error for the end of the command.)
    void put(const char* bytes, std::size_t length) { m_out->sputn(bytes, static_cast<std::streamsize>(length)); }

    void printPrefix()
    {
        if (m_options.withFileName) {
            put(m_input->name.data(), m_input->name.size());
            m_out->sputc(':');
        }
        if (m_options.lineNumbers) {
            char digits[24];
            const auto written = std::to_chars(digits, digits + sizeof digits, m_number);
            put(digits, static_cast<std::size_t>(written.ptr - digits));
            m_out->sputc(':');
        }
    }

    // Original bytes as the terminal gets them, and a newline.
    void printLine(const char* bytes, std::size_t length)
    {
        if (m_input->encoding == GrepEncoding::Cp1252) {
            m_printed.clear();
            appendWindows1252AsUtf8(bytes, length, m_printed);
            m_printed += '\n';
            put(m_printed.data(), m_printed.size());
        } else if (bytes[length] == '\n') {
            put(bytes, length + 1);
        } else {
            put(bytes, length);
            m_out->sputc('\n');
        }
    }

    // -o: the matches in the line text[begin, end), printed from the
    // original line [originalBegin, originalEnd).
    void printMatches(std::size_t begin, std::size_t end, std::size_t originalBegin, std::size_t originalEnd)
    {
        // The matcher sees the line with its newline, so '$' finds the end
        // of every line, the last one included.
        m_line.assign(m_matcherText + begin, end + 1 - begin);
        const char* const original = m_original + originalBegin;
        const std::size_t originalLength = originalEnd - originalBegin;
        unsigned long start = 0;
        while (start < m_line.size()) {
            unsigned long length = 0;
            const int at = m_re.find(m_line, &length, start);
            if (at < 0)
                break;
            std::size_t from = static_cast<std::size_t>(at);
            std::size_t to = std::min<std::size_t>(from + length, end - begin); // without the newline
            if (m_converted) {
                from = utf8BytesOf(original, originalLength, from);
                to = utf8BytesOf(original, originalLength, to);
            }
            if (to > from) {
                printPrefix();
                printLine(original + from, to - from);
            }
            if (m_options.anchored)
                break;
            start = static_cast<unsigned long>(at) + (length > 0 ? length : 1);
        }
    }

    const KZRegExp& m_re;
    LineSearch m_lines;
    const GrepOptions m_options;
    std::streambuf* const m_out = std::cout.rdbuf();
    Input* m_input = nullptr;
    bool m_stopped = false;  // -q: everything is done
    bool m_fileDone = false; // -l, -q: the input is done

    // The block being searched: the original bytes and those the matcher
    // reads (the same, or m_text converted and folded), each with the offset
    // of the line reached; the number of that line.
    const char* m_original = nullptr;
    const char* m_matcherText = nullptr;
    std::size_t m_originalSize = 0, m_textSize = 0;
    bool m_converted = false; // the two differ in length
    std::size_t m_textAt = 0, m_originalAt = 0;
    unsigned long m_number = 1;

    std::string m_text, m_line, m_printed;
};

// Reads what is left of the input at fd; false with errno set on an error.
bool readAll(int fd, std::string& bytes)
{
    char buffer[1 << 16];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0;
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
}

// An input's bytes whole, as one block of lines: a last line without its
// newline gets one, and the byte behind it may be written to.
template <class Bytes>
auto wholeBlock(Bytes& bytes, std::size_t size)
{
    return [&bytes, size, given = false](char*& data, std::size_t& length) mutable {
        if (given || size == 0)
            return false;
        given = true;
        data = &bytes[0];
        length = size;
        return true;
    };
}

void decideEncoding(Input& input, const char* data, std::size_t size)
{
    const Utf8Scan scan = scanUtf8(data, size);
    input.encoding = scan.valid ? GrepEncoding::Utf8 : GrepEncoding::Cp1252;
    input.ascii = scan.ascii;
}

// Searches one input named on the command line; false when it could not
// be read. A regular file is mapped, so that an invalid UTF-8 byte far down
// decides its encoding before the first line is printed; other input is
// read in blocks, or whole when its encoding is to be decided.
bool searchInput(Grep& grep, const std::string& file, const GrepOptions& options, Input& input)
{
    input.name = file == "-" ? "(standard input)" : file;
    input.encoding = options.encoding;
    const auto readError = [&](int error) {
        errno = error;
        return !fail(file == "-" ? "cannot read standard input: " + std::string(std::strerror(error))
                                 : file + ": " + std::strerror(error));
    };
    int fd = 0;
    if (file != "-") {
        const std::string problem = unreadable(file);
        if (!problem.empty())
            return !fail(problem);
        fd = sys::openForReading(file);
        if (fd < 0)
            return !fail(file + ": " + std::strerror(errno));
    }
    struct Closer {
        int fd;
        ~Closer()
        {
            if (fd > 0)
                ::close(fd);
        }
    } const closer{fd};

    MappedFile mapped;
    if (mapped.map(fd)) {
        std::size_t size = mapped.size();
        char* const data = mapped.data();
        if (size > 0 && data[size - 1] != '\n')
            data[size++] = '\n';
        if (input.encoding == GrepEncoding::Auto)
            decideEncoding(input, data, size);
        // Blocks of a few megabytes, so that a converted copy stays small.
        constexpr std::size_t kBlock = 8 << 20;
        std::size_t at = 0;
        grep.search(input, [&](char*& block, std::size_t& length) {
            if (at >= size)
                return false;
            std::size_t end = size;
            if (size - at > kBlock)
                end = static_cast<std::size_t>(
                          static_cast<const char*>(std::memchr(data + at + kBlock, '\n', size - at - kBlock)) - data)
                      + 1;
            block = data + at;
            length = end - at;
            at = end;
            return true;
        });
        return true;
    }
    if (input.encoding == GrepEncoding::Auto) {
        std::string bytes;
        if (!readAll(fd, bytes))
            return readError(errno);
        decideEncoding(input, bytes.data(), bytes.size());
        const std::size_t size = bytes.size() + (!bytes.empty() && bytes.back() != '\n');
        bytes.resize(size + 1, '\n');
        bytes.back() = '\0';
        grep.search(input, wholeBlock(bytes, size));
        return true;
    }
    LineReader reader(fd);
    grep.search(input, [&reader](char*& block, std::size_t& length) {
        if (!reader.next())
            return false;
        block = reader.data();
        length = reader.size();
        return true;
    });
    return reader.error() == 0 || readError(reader.error());
}

int grep(const std::vector<std::string>& words, GrepOptions options)
{
    if (words.empty()) {
        std::cerr << kGrepUsage;
        return fail("grep needs a PATTERN");
    }
    if (options.encodingName && !parseGrepEncoding(*options.encodingName, options.encoding))
        return fail("unknown encoding '" + printable(*options.encodingName)
                    + "' (see kzbs grep --help): auto, utf-8, cp1252 or raw");
    if (options.raw && options.encodingName && options.encoding != GrepEncoding::Raw)
        return fail("--raw reads files as bytes, --encoding " + *options.encodingName + " does not: give one");
    if (options.raw)
        options.encoding = GrepEncoding::Raw;
    std::string pattern = words[0];
    if (options.encoding != GrepEncoding::Raw) {
        const std::string problem = patternFromUtf8(words[0], pattern);
        if (!problem.empty())
            return fail(problem);
    }
    if (options.ignoreCase)
        foldCase(&pattern[0], pattern.size());
    KZRegExp re(pattern.c_str());
    if (const int status = re.status())
        return fail(compileError(status, words[0]));
    options.anchored = pattern[0] == '^';

    std::vector<std::string> files(words.begin() + 1, words.end());
    if (files.empty())
        files.push_back("-");
    options.withFileName = files.size() > 1;

    Grep grep(re, pattern, options);
    bool selected = false;
    bool failed = false;
    for (const std::string& file : files) {
        Input input;
        failed |= !searchInput(grep, file, options, input);
        selected |= input.selected > 0;
        if (grep.finished())
            return 0;
    }
    return failed ? 2 : selected ? 0 : 1;
}

// A number as the conversion takes it: a sign, digits with at most one
// decimal point, then nothing or a blank and any text (a unit: "1234 EUR").
bool isNumber(const std::string& text)
{
    std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const std::size_t end = std::min(text.find(' '), text.size());
    bool digit = false, point = false;
    for (; at < end; ++at) {
        if (text[at] == '.' && !point)
            point = true;
        else if (text[at] >= '0' && text[at] <= '9')
            digit = true;
        else
            return false;
    }
    return digit;
}

// A number word in the German form, or why the word is none.
Checked<std::string> germanNumber(const std::string& utf8, const std::string& where)
{
    if (!isUtf8(utf8))
        return refuse(where + "'" + printable(utf8) + "' is not valid UTF-8, the encoding kzbs reads");
    if (!isNumber(utf8))
        return refuse(where + "'" + printable(utf8) + "' is not a number such as 1234.5, -12 or 1234 EUR");
    return toTerminal(reformatNumString(fromTerminal(utf8), true));
}

int number(const std::vector<std::string>& words)
{
    if (words.empty()) {
        std::string line;
        for (unsigned long number = 1; std::getline(std::cin, line); ++number)
            std::cout << germanNumber(line, "line " + std::to_string(number) + " of standard input: ").value() << '\n';
        if (std::cin.bad())
            return fail("cannot read standard input");
        return 0;
    }
    // Check every word before printing any, so bad input never leaves half an answer.
    std::vector<std::string> numbers;
    numbers.reserve(words.size());
    for (const std::string& word : words)
        numbers.push_back(germanNumber(word, "").value());
    for (const std::string& number : numbers)
        std::cout << number << '\n';
    return 0;
}

} // namespace

void addTextCommands(Program& program)
{
    struct GrepRequest {
        GrepOptions options;
        std::vector<std::string> words;
    };
    auto grepRequest = std::make_shared<GrepRequest>();
    CLI::App& grepCommand = program.add("grep", "lines matching a pattern of the library's matcher", kGrepUsage,
                                        [grepRequest] { return grep(grepRequest->words, grepRequest->options); });
    GrepOptions& options = grepRequest->options;
    grepCommand.add_flag("-i,--ignore-case", options.ignoreCase);
    grepCommand.add_flag("-v,--invert-match", options.invert);
    grepCommand.add_flag("-c,--count", options.count);
    grepCommand.add_flag("-l,--files-with-matches", options.filesWithMatches);
    grepCommand.add_flag("-q,--quiet,--silent", options.quiet);
    grepCommand.add_flag("-n,--line-number", options.lineNumbers);
    grepCommand.add_flag("-o,--only-matching", options.onlyMatching);
    grepCommand.add_flag("--raw", options.raw);
    addOptional(grepCommand, "--encoding", options.encodingName);
    program.addWords(grepCommand, grepRequest->words);

    auto numberWords = std::make_shared<std::vector<std::string>>();
    CLI::App& numberCommand = program.add("number", "numbers in German notation", kNumberUsage,
                                          [numberWords] { return number(*numberWords); });
    program.addWords(numberCommand, *numberWords);
}

} // namespace kzbs
