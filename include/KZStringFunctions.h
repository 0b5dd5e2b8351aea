// KZStringFunctions.h - text utilities: string functions and no-case
// comparators, number and text conversions, a stream buffer over fixed
// memory (FixedSizeMemoryBuf), and the assertion handler. The pattern
// matcher has its own header, KZRegExp.h.
//
// All text is 8-bit: std::string of signed char, Latin-1/Windows-1252 in
// practice. Case folding changes the ASCII letters only, whatever the locale:
// a byte 0x80-0xFF is a negative char and comes back unchanged, so umlauts
// keep their case. The no-case comparisons (strcasecmp) follow the C locale;
// the library never sets one.
// Nothing here throws on purpose; the two exceptions (expand with a fill of
// 0x80 or above, formatDoubleToString asked to pad) are std::length_error and
// are documented at the functions.
// Threads: every function is re-entrant except KZStringFunctions::intToString,
// which formats into one static buffer shared by all callers; a
// FixedSizeMemoryBuf, like any stream buffer, belongs to one thread at a time.
// Where a caller breaks a precondition (a buffer too small, a search text that
// is empty, a stream holding NUL bytes), the function takes the safe way
// described at it instead of reading or writing out of bounds.
// Linux: long has 64 bits here, so ltoa writes values beyond 32 bits in full.
// Windows: long has 32 bits there, so no long lies beyond them (see ltoa).
#ifndef KZ_STRING_FUNCTIONS_H
#define KZ_STRING_FUNCTIONS_H

#include "KZExport.h"

#include <cstddef>
#include <iosfwd>
#include <streambuf>
#include <string>

// --- String functions -------------------------------------------------------

// Static functions over byte strings: runs of a character, stripping,
// padding, case folding, no-case comparison and search, replacement, hashing,
// line and whole-stream reading, and XML escaping.
class KZBS_API KZStringFunctions {
public:
    enum StripType { StripLeading = 0, StripTrailing = 1, StripBoth = 2 };

    // First position of s whose character differs from c; end() when every
    // character equals c or s is empty.
    static std::string::const_iterator findFirstDifferent(const std::string& s, char c);

    // Scanning backwards from the end, never past first: the position just
    // behind the last character that differs from c. end() when the last
    // character differs; first when s is empty, first is end(), or every
    // character from first on equals c.
    static std::string::const_iterator findLastDifferent(const std::string& s, char c,
                                                         std::string::const_iterator first);

    // s without the run of c at the front, the end, or both. A text made only
    // of c strips to "". Any type value other than the three gives "" for a
    // non-empty s (kept for compatibility).
    static std::string strip(const std::string& s, StripType type, char c);

    // Cuts s to width characters, or pads it. Padding is deliberately odd and
    // kept for compatibility: the roles are exchanged, so the pad holds
    // (fill as signed char) bytes, each of value (width - length) mod 256:
    // expand("abc", 5, 'A') is "abc" plus 65 bytes of value 2. A fill of 0x80
    // or above asks for an impossible length and throws std::length_error.
    static std::string expand(const std::string& s, unsigned int width, char fill);

    // 32-bit hash: per byte, rotate left by 7 and XOR the sign-extended byte
    // ("A" is 0x41, "AB" 0x20C2). nullptr and "" give 0. The string form
    // hashes up to the first NUL.
    static int hash(const char* text);
    static int hash(const std::string& s);

    // toupper(a) == toupper(b), ASCII letters folded only.
    static bool nocase_compare(char a, char b);

    // Index of the first no-case occurrence of needle, or -1. An empty needle
    // is found at 0 in a non-empty haystack; an empty haystack gives -1.
    static int findNoCase(const std::string& haystack, const std::string& needle);
    static bool containsNoCase(const std::string& haystack, const std::string& needle);

    // CrossPlatformApi::strCmpNoCase (strcasecmp): equality, and the
    // comparison's result unchanged (negative, 0, positive).
    static bool equalsNoCase(const char* a, const char* b);
    static bool equalsNoCase(const std::string& a, const std::string& b);
    static int compareNoCase(const char* a, const char* b);
    static int compareNoCase(const std::string& a, const std::string& b);

    // strncmp of both texts from offset pos, at most n characters; a text not
    // longer than pos takes part as "". Stops at a NUL byte.
    static int compare(const std::string& s1, const std::string& s2, std::size_t pos, std::size_t n);

    // atoi: leading blanks and a sign accepted, stops at the first non-digit,
    // 0 if there is none. A value beyond int is clamped to INT_MIN/INT_MAX.
    static int stringToInt(const std::string& s);

    // Decimal text of i. Formats into one static buffer: not thread-safe.
    static std::string intToString(int i);

    // Replaces the first occurrence of search in s; false and s untouched if
    // there is none (an empty search is found at 0).
    static bool replace(std::string& s, const std::string& search, const std::string& replacement);

    // Replaces every occurrence of search, continuing behind each inserted
    // replacement, so replaced text is never searched again. Returns whether
    // anything was replaced; false at once when search equals replacement.
    // An empty search text matches nowhere: false, s untouched.
    static bool replaceAll(std::string& s, const std::string& search, const std::string& replacement);

    // One line of at most 511 characters, newline consumed and not stored (a
    // CR before it stays). Returns false and leaves line alone when the read
    // sets any stream state bit: a last line without newline is lost, and a
    // longer line fails. Text after a NUL byte in a line is not stored.
    static bool readLine(std::istream& in, std::string& line);

    // The rest of the stream into text; returns the number of characters read,
    // or -1 (text empty) when the stream's state was not good to begin with.
    // NUL bytes are skipped: neither stored nor counted.
    static int readFromFile(std::istream& in, std::string& text);

    // Case folding in place and as copies; ASCII letters only, whatever the
    // locale (umlauts keep their case).
    static void toLower(std::string& s);
    static void toUpper(std::string& s);
    static std::string lower(const std::string& s);
    static std::string upper(const std::string& s);

    static void reverse(std::string& s);

    // & < > " ' as XML entities; every other byte copied unchanged.
    static std::string translateSpecialCharsToXml(const std::string& s);
};

// Orderings without regard to case (strCmpNoCase), for sorted containers.
struct KZBS_API KZStringLessNoCase {
    bool operator()(const std::string& a, const std::string& b) const;
};
struct KZBS_API KZStringGreaterNoCase {
    bool operator()(const std::string& a, const std::string& b) const;
};

// --- Number and text conversions -------------------------------------------

// Writes value as text plus NUL into buffer and returns buffer. Radix 16 gives
// lower-case hexadecimal, 8 octal, anything else decimal; no prefix, no
// padding. In hexadecimal and octal a negative value is its 32-bit two's
// complement (-28 in radix 16 is "ffffffe4"); decimal has a leading '-'.
// The buffer is not checked: 12 bytes are always enough. A null buffer
// writes nothing and returns nullptr.
KZBS_API char* itoa(int value, char* buffer, int radix);

// As itoa for a long. Values in the 32-bit range give exactly the text itoa
// gives (so texts match those written where long had 32 bits); a long beyond
// that range is written in full, which may take up to 23 bytes (octal).
// Windows (32-bit long): ltoa(LONG_MIN, b, 8) is "20000000000", not "1000000000000000000000".
KZBS_API char* ltoa(long value, char* buffer, int radix);

// Bounded forms: write only if the text and its NUL fit into size bytes.
// Return 0 on success, EINVAL for a null buffer or size 0, ERANGE when the
// buffer is too small (buffer then holds the empty text).
// Windows (32-bit long): ltoa_s never needs more than 12 bytes, as itoa_s.
KZBS_API int itoa_s(int value, char* buffer, std::size_t size, int radix);
KZBS_API int ltoa_s(long value, char* buffer, std::size_t size, int radix);

// Hexadecimal text of value as ltoa(value, ..., 16) gives it, with "0x" in
// front when withPrefix is set: lTohex(255, true) is "0xff".
// Windows (32-bit long): lTohex(LONG_MAX, false) is "7fffffff", not "7fffffffffffffff".
KZBS_API std::string lTohex(long value, bool withPrefix);

// Fixed-point text of value: printf "%.*f" with precision digits, the first
// '.' replaced by decimalChar (unless NUL), then thousandsChar (unless NUL)
// inserted every three places left of the last decimalChar, ((p - 4) / 3) + 1
// times where p is that position. Two properties are kept for compatibility:
// without a decimal separator the groups count from one place right of the
// end (1234567, precision 0 gives "12.345.67"), and a minus sign counts as a
// digit (-123.5 gives "-.123,5"). Zero, negative zero included, prints as
// positive zero. The text follows the C library's numeric locale.
// width: a width not greater than the text's length returns the text; a
// larger width is never honoured and throws std::length_error, as it always
// has (callers pass 0).
KZBS_API std::string formatDoubleToString(double value, unsigned short precision, unsigned short width,
                                          char decimalChar, char thousandsChar);

// A number written with a decimal point in German notation: the last '.'
// becomes ','; with group set, '.' is inserted every three digits left of the
// decimal comma (or of the last digit), never separating a sign or a word
// from the number: "1234567.89" -> "1.234.567,89", "1234 EUR" -> "1.234 EUR".
KZBS_API std::string reformatNumString(const std::string& text, bool group);

// One-line form of a text: CR -> "\r", LF -> "\n", backslash -> two
// backslashes; every other byte, tab included, unchanged. A null text gives "".
KZBS_API std::string c2txt(const char* text);

// The inverse reading: "\r", "\t", "\n" and a doubled backslash are decoded,
// a backslash before any other character is dropped. A lone backslash at the
// very end has nothing to escape and is kept as a backslash.
KZBS_API std::string txt2c(const std::string& text);

// --- Stream buffer over fixed memory ----------------------------------------

// Lets the standard stream classes read and write one fixed block of memory:
// the get area and the put area both cover the whole block and advance
// independently (reading starts at the beginning whatever was written).
// It cannot grow and cannot seek: a read at the end reports end of file, a
// write into a full block fails (the stream sets its bad bit), seeking gives
// position -1. Every virtual operation but the destructor is the standard
// stream buffer's own.
class KZBS_API FixedSizeMemoryBuf : public std::basic_streambuf<char> {
public:
    // Over memory the caller owns and keeps alive; it is never released here.
    // A null memory gives an empty block whatever size says.
    FixedSizeMemoryBuf(char* memory, unsigned long size);

    // Over a block of size bytes owned by the buffer, not initialised. When
    // the block cannot be allocated the buffer is empty instead of throwing.
    explicit FixedSizeMemoryBuf(unsigned long size);

    ~FixedSizeMemoryBuf() override;

    FixedSizeMemoryBuf(const FixedSizeMemoryBuf&) = delete;
    FixedSizeMemoryBuf& operator=(const FixedSizeMemoryBuf&) = delete;

private:
    void coverBlock(char* memory, unsigned long size);

    char* m_owned; // the block allocated by the size constructor, else null
};

// --- Assertions and error texts --------------------------------------------

// The run-time end of the applications' assertion macro. A true condition
// returns true at once. Otherwise a message box titled "ASSERTION" shows the
// expression and its source position, and the user chooses: "Abbrechen" ends
// the process with status 99, "Weiter" returns true, "Wiederholen" returns
// false (the macro then breaks into the debugger).
KZBS_API bool processAssertion(bool condition, const char* file, int line, const char* expression);

// The text for an operating-system error code; on this platform one fixed
// German sentence, whatever the code.
KZBS_API std::string getErrorMsgForErrorCode(unsigned long code);

#endif // KZ_STRING_FUNCTIONS_H
