// kzbs grep and kzbs number: the library's pattern matcher and German
// number notation from the command line.
#include "commands.h"
#include "file_io.h"
#include "line_search.h"

#include "KZRegExp.h"
#include "KZStringFunctions.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

namespace kzbs {

namespace {

const char* const kGrepUsage =
    "usage: kzbs grep [-n] [-o] [--raw] PATTERN [FILE...]\n"
    "Prints the lines of the files (standard input without files, or for '-')\n"
    "in which the library's matcher finds PATTERN.\n"
    "  -n, --line-number    prefix each line with its number\n"
    "  -o, --only-matching  print only the matched text, one match per line (a\n"
    "                       pattern that can match nothing, such as b*, reports\n"
    "                       an empty match as the one character at its position)\n"
    "  --raw                take pattern and files as bytes; by default the pattern\n"
    "                       comes from the terminal's UTF-8 and files are read as\n"
    "                       Windows-1252, the library's text encoding. Bytes\n"
    "                       0xA4 0xAA 0xAB 0xAE 0xBF 0xDB 0xDE in a pattern are\n"
    "                       read as the matcher's tokens (UTF-8 a-umlaut holds 0xA4)\n"
    "Pattern: literals, '.', [a-z] [^...] classes, * + ? after one token,\n"
    "^ at the start, $ at the end, escapes such as \\t \\x41 \\^A. A pattern that\n"
    "begins with '-' follows '--': kzbs grep -- -x FILE.\n"
    "Exit status: 0 a line matched, 1 none did, 2 an error occurred.\n";

const char* const kNumberUsage =
    "usage: kzbs number TEXT...\n"
    "Prints each number written with a decimal point in German notation:\n"
    "decimal comma and '.' grouping ('1234567.89' -> '1.234.567,89').\n"
    "Without TEXT, reads one number per line from standard input.\n"
    "A number is a sign, digits with at most one '.', then nothing or a blank\n"
    "and any text ('1234 EUR'). Anything else, or text that is not UTF-8,\n"
    "ends kzbs with exit status 2.\n";

std::string compileError(int status, const std::string& pattern)
{
    switch (status) {
    case KZRegExp::StatusIllegal:
        return "illegal pattern '" + pattern + "': it is empty or begins with a newline, '*', '+' or '?'";
    case KZRegExp::StatusNoMemory:
        return "out of memory compiling pattern '" + pattern + "'";
    default:
        return "pattern '" + pattern + "' is too long (at most " + std::to_string(KZRegExp::maxpat - 1) +
               " compiled bytes) or puts a closure on an anchor or another closure";
    }
}

struct GrepOptions {
    bool lineNumbers = false;
    bool onlyMatching = false;
    bool raw = false;
    bool anchored = false;      // the pattern begins with '^': one match per line at most
    bool withFileName = false;
};

class Grep {
public:
    Grep(const KZRegExp& re, const std::string& pattern, const GrepOptions& options)
        : m_re(re), m_lines(re, pattern), m_options(options)
    {
    }

    // Searches one stream; returns whether a line matched.
    bool search(std::istream& in, const std::string& name)
    {
        bool matched = false;
        unsigned long number = 1; // of the line at counted
        LineReader reader(in);
        while (reader.next()) {
            const std::string& block = reader.bytes();
            std::size_t counted = 0;
            m_lines.forEachMatchingLine(reader.bytes(), reader.size(), [&](LineSpan line) {
                if (m_options.lineNumbers) {
                    number += static_cast<unsigned long>(
                        std::count(block.begin() + counted, block.begin() + line.begin, '\n'));
                    counted = line.begin;
                }
                const std::string prefix = (m_options.withFileName ? name + ":" : std::string()) +
                                           (m_options.lineNumbers ? std::to_string(number) + ":" : std::string());
                if (m_options.onlyMatching) {
                    // The matcher sees the line with its newline, so '$'
                    // finds the end of every line, the last one included.
                    matched |= printMatches(block.substr(line.begin, line.end + 1 - line.begin), prefix);
                } else {
                    printLine(block.data() + line.begin, line.end - line.begin, prefix);
                    matched = true;
                }
            });
            if (m_options.lineNumbers)
                number += static_cast<unsigned long>(
                    std::count(block.begin() + counted, block.begin() + reader.size(), '\n'));
        }
        return matched;
    }

private:
    // line is followed by its newline.
    void printLine(const char* line, std::size_t length, const std::string& prefix)
    {
        if (!prefix.empty())
            std::cout << prefix;
        if (m_options.raw)
            std::cout.write(line, static_cast<std::streamsize>(length + 1));
        else
            std::cout << toTerminal(std::string(line, length)) << '\n';
    }

    bool printMatches(const std::string& text, const std::string& prefix)
    {
        bool matched = false;
        unsigned long start = 0;
        while (start < text.size()) {
            unsigned long length = 0;
            const int at = m_re.find(text, &length, start);
            if (at < 0)
                break;
            matched = true;
            std::string piece = text.substr(static_cast<std::size_t>(at), length);
            if (!piece.empty() && piece.back() == '\n')
                piece.pop_back();
            if (!piece.empty())
                std::cout << prefix << forTerminal(piece) << '\n';
            if (m_options.anchored)
                break;
            start = static_cast<unsigned long>(at) + (length > 0 ? length : 1);
        }
        return matched;
    }

    std::string forTerminal(const std::string& text) const
    {
        return m_options.raw ? text : toTerminal(text);
    }

    const KZRegExp& m_re;
    LineSearch m_lines;
    GrepOptions m_options;
};

int grep(const std::vector<std::string>& words, GrepOptions options)
{
    if (words.empty()) {
        std::cerr << kGrepUsage;
        return fail("grep needs a PATTERN");
    }
    const std::string pattern = options.raw ? words[0] : fromTerminal(words[0]);
    KZRegExp re(pattern.c_str());
    if (const int status = re.status())
        return fail(compileError(status, words[0]));
    options.anchored = pattern[0] == '^';

    std::vector<std::string> files(words.begin() + 1, words.end());
    if (files.empty())
        files.push_back("-");
    options.withFileName = files.size() > 1;

    Grep grep(re, pattern, options);
    bool matched = false;
    bool failed = false;
    for (const std::string& file : files) {
        const std::string name = file == "-" ? "(standard input)" : file;
        if (file == "-") {
            matched |= grep.search(std::cin, name);
            if (std::cin.bad()) {
                fail("cannot read standard input");
                failed = true;
            }
            continue;
        }
        const std::string problem = unreadable(file);
        std::ifstream in(file, std::ios::binary);
        if (!problem.empty() || !in) {
            fail(problem.empty() ? file + ": " + std::strerror(errno) : problem);
            failed = true;
            continue;
        }
        matched |= grep.search(in, name);
        if (in.bad()) {
            fail(file + ": read error");
            failed = true;
        }
    }
    return failed ? 2 : matched ? 0 : 1;
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

std::string germanNumber(const std::string& utf8, const std::string& where)
{
    if (!isUtf8(utf8))
        throw InputError(where + "'" + printable(utf8) + "' is not valid UTF-8, the encoding kzbs reads");
    if (!isNumber(utf8))
        throw InputError(where + "'" + printable(utf8) + "' is not a number such as 1234.5, -12 or 1234 EUR");
    return toTerminal(reformatNumString(fromTerminal(utf8), true));
}

int number(const std::vector<std::string>& words)
{
    if (words.empty()) {
        std::string line;
        for (unsigned long number = 1; std::getline(std::cin, line); ++number)
            std::cout << germanNumber(line, "line " + std::to_string(number) + " of standard input: ") << '\n';
        if (std::cin.bad())
            return fail("cannot read standard input");
        return 0;
    }
    // Check every word before printing any, so bad input never leaves half an answer.
    std::vector<std::string> numbers;
    numbers.reserve(words.size());
    for (const std::string& word : words)
        numbers.push_back(germanNumber(word, ""));
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
    grepCommand.add_flag("-n,--line-number", grepRequest->options.lineNumbers);
    grepCommand.add_flag("-o,--only-matching", grepRequest->options.onlyMatching);
    grepCommand.add_flag("--raw", grepRequest->options.raw);
    program.addWords(grepCommand, grepRequest->words);

    auto numberWords = std::make_shared<std::vector<std::string>>();
    CLI::App& numberCommand = program.add("number", "numbers in German notation", kNumberUsage,
                                          [numberWords] { return number(*numberWords); });
    program.addWords(numberCommand, *numberWords);
}

} // namespace kzbs
