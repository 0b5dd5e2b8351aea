// Text as kzbs grep hands it to the matcher: the library's matcher reads
// 8-bit Windows-1252, files and terminals mostly hold UTF-8. A UTF-8 line is
// converted for matching, one byte per character, and the original line is
// what gets printed; so offsets in the converted text count characters of
// the original.
#ifndef KZBS_GREP_ENCODING_H
#define KZBS_GREP_ENCODING_H

#include <cstddef>
#include <string>

namespace kzbs {

enum class GrepEncoding {
    Auto, // a file that is valid UTF-8 is UTF-8, any other Windows-1252
    Utf8,
    Cp1252,
    Raw, // bytes in, the same bytes out; the pattern taken as bytes too
};

// "auto", "utf-8" (or "utf8"), "cp1252" (or "windows-1252"), "raw"; false
// for anything else.
bool parseGrepEncoding(const std::string& name, GrepEncoding& encoding);

// What a scan of bytes found: whether they are UTF-8, and whether all ASCII
// (then UTF-8 and Windows-1252 read them alike and nothing is converted).
struct Utf8Scan {
    bool valid = true;
    bool ascii = true;
};
Utf8Scan scanUtf8(const char* data, std::size_t size);

// The byte that stands for a character Windows-1252 has not (and for a byte
// that is not UTF-8): one the encoding leaves unassigned, so it matches only
// '.', a negated class or itself.
constexpr char kNotInWindows1252 = '\x81';

// Appends the Windows-1252 reading of the UTF-8 bytes data[0, size) to out:
// one byte per character (kNotInWindows1252 where there is none) and one per
// byte that is not UTF-8. Newlines stay where the lines are.
void appendUtf8AsWindows1252(const char* data, std::size_t size, std::string& out);

// Appends the Windows-1252 bytes data[0, size) to out as UTF-8, as kzbs
// prints library text: a NUL stays a NUL, the five unassigned bytes become
// the C1 controls of the same number.
void appendWindows1252AsUtf8(const char* data, std::size_t size, std::string& out);

// The length in bytes of the first `characters` characters of the UTF-8
// bytes data[0, size), counted as appendUtf8AsWindows1252 counts them.
std::size_t utf8BytesOf(const char* data, std::size_t size, std::size_t characters);

// -i: ASCII letters and the German umlauts of Windows-1252 to lower case, in
// place. Every other byte (ss, accented letters, the matcher's token bytes)
// stays; the length never changes.
void foldCase(char* data, std::size_t size);

// The pattern given on the command line (UTF-8) as the matcher reads it, in
// `pattern`. Returns "" or, when a character has no Windows-1252 byte or
// would be read back as one of the matcher's tokens, why not.
std::string patternFromUtf8(const std::string& utf8, std::string& pattern);

} // namespace kzbs

#endif // KZBS_GREP_ENCODING_H
