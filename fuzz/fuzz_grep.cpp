// kzbs grep's buffer search against trying each line on its own: both must
// find exactly the same lines. The first byte picks how the rest is read:
//  - raw: the bytes up to the first NUL are the pattern (token bytes
//    included), the rest the text, NULs and all;
//  - mapped: the bytes are mapped onto the characters that make the traps
//    (newlines, classes that take them, '^', '$', NULs in the text), so
//    that most patterns compile and most texts have many lines; read as
//    UTF-8, the text is mapped onto characters of one and two bytes that
//    Windows-1252 has or lacks, and a byte that is no UTF-8.
#include "FuzzSupport.h"
#include "KZRegExp.h"
#include "grep_encoding.h"
#include "line_search.h"

#include <cstdint>
#include <string>
#include <vector>

namespace {

std::string mapOnto(const std::string& bytes, const char* alphabet, std::size_t letters)
{
    std::string mapped;
    for (const char c : bytes)
        mapped += alphabet[static_cast<unsigned char>(c) % letters];
    return mapped;
}

std::string mapOntoUtf8(const std::string& bytes)
{
    static const char* const kUnits[] = {"a", "B", "\n", "\xC3\xA4", "\xC3\x84", "\xCE\xB1", "\xFF"};
    std::string mapped;
    for (const char c : bytes)
        mapped += kUnits[static_cast<unsigned char>(c) % (sizeof kUnits / sizeof kUnits[0])];
    return mapped;
}

// The offsets of the lines that match, each tried alone with its newline.
std::vector<std::size_t> lineByLine(const KZRegExp& re, const std::string& text)
{
    std::vector<std::size_t> found;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = text.find('\n', begin);
        if (end == std::string::npos)
            end = text.size();
        if (re.find(text.substr(begin, end - begin) + '\n', nullptr, 0) >= 0)
            found.push_back(begin);
        begin = end + 1;
    }
    return found;
}

// The matcher's reading of UTF-8 text: a line for each original line, each
// as many bytes as the original has characters.
std::string asWindows1252(const std::string& utf8)
{
    std::string converted;
    kzbs::appendUtf8AsWindows1252(utf8.data(), utf8.size(), converted);
    std::size_t from = 0, to = 0;
    for (;;) {
        const std::size_t end = utf8.find('\n', from), convertedEnd = converted.find('\n', to);
        FUZZ_CHECK((end == std::string::npos) == (convertedEnd == std::string::npos));
        const std::size_t length = (end == std::string::npos ? utf8.size() : end) - from;
        const std::size_t characters = (convertedEnd == std::string::npos ? converted.size() : convertedEnd) - to;
        FUZZ_CHECK(kzbs::utf8BytesOf(utf8.data() + from, length, characters) == length);
        FUZZ_CHECK(characters == 0 || kzbs::utf8BytesOf(utf8.data() + from, length, characters - 1) < length);
        if (end == std::string::npos)
            return converted;
        from = end + 1;
        to = convertedEnd + 1;
    }
}

void compare(const std::string& pattern, std::string text)
{
    KZRegExp re(pattern.c_str());
    if (re.status() != 0)
        return;
    if (!text.empty() && text.back() != '\n')
        text += '\n'; // the reader's promise: every line ends in a newline
    const std::vector<std::size_t> expected = lineByLine(re, text);

    // Bytes behind the lines, as a reused buffer has them, are never read as
    // lines: the pattern itself there would be a match.
    const std::size_t size = text.size();
    text += pattern;
    const std::string original = text;
    std::vector<std::size_t> found;
    kzbs::LineSearch search(re, pattern);
    search.forEachMatchingLine(&text[0], size, [&](kzbs::LineSpan line) {
        FUZZ_CHECK(text.compare(0, size, original, 0, size) == 0);
        FUZZ_CHECK(line.end < size && text[line.end] == '\n');
        FUZZ_CHECK(line.begin == 0 || text[line.begin - 1] == '\n');
        found.push_back(line.begin);
        return true;
    });
    FUZZ_CHECK(found == expected);
    FUZZ_CHECK(text == original);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const unsigned flags = input.byte();
    const bool mapped = flags & 1;
    std::string pattern = input.untilNul();
    std::string text = input.rest();
    if (mapped) {
        static const char kPatternChars[] = "ab.[]^-$*+?\\n\xDE";
        static const char kTextChars[] = "ab\n\n-\0^$";
        pattern = mapOnto(pattern, kPatternChars, sizeof kPatternChars - 1);
        text = flags & 2 ? mapOntoUtf8(text) : mapOnto(text, kTextChars, sizeof kTextChars - 1);
    }
    if (flags & 2)
        text = asWindows1252(text);
    if (flags & 4) {
        kzbs::foldCase(&pattern[0], pattern.size());
        kzbs::foldCase(&text[0], text.size());
    }
    compare(pattern, text);
    return 0;
}
