// KZRegExp.h - a small compiled pattern matcher of the classic compact kind.
//
// A pattern is compiled once into a token string of at most maxpat (128)
// bytes; find() then searches a text for the leftmost match from an offset,
// each token matched greedily, closures backtracking. The language:
//   c        a literal character (read with esc(), so "\t", "\x41", "\^A" work)
//   .        any character except newline
//   [...]    a class: ranges "a-z", negation "[^...]", a '-' first is literal;
//            an unterminated class runs to the end of the pattern
//   ^        at the very start: the beginning of the line, which is the
//            search start offset; elsewhere a literal '^'
//   $        as the last character: a newline or the end of the text,
//            consuming nothing; elsewhere a literal '$'
//   * + ?    zero or more, one or more, zero or one of the token before
// There are no groups, alternation or captures. A newline ends the pattern.
//
// Invariants kept for compatibility with stored patterns and callers:
// - Tokens are metacharacters with the top bit set (0xDE ^, 0xA4 $, 0xAE .,
//   0xDB [, 0xAA *, 0xAB +, 0xBF ?), so a pattern byte of one of these values
//   is read back as that token; class membership ignores a character's top
//   bit (0xE4 is a member whenever 'd' is). Case matters everywhere.
// - A range is taken between the raw characters around the '-', in either
//   order, but only the character before the '-' is added on its own: a
//   reversed range "c-a" holds b and c, not a. "[a-]" takes ']' as the end
//   of its range, so the class runs on.
// - '?' tries its token once and never backtracks: "a?ab" does not match "ab".
// - The text is read as a C string: matching stops at its first NUL byte
//   from the start offset on.
// - Match lengths: an empty match at the search start reports length 1, an
//   empty match further on reports length 0. No attempt is made at the very
//   end of a non-empty text ("$" finds nothing in "abc"); on an empty text (or
//   at its end) only "$", "^" and "^$" match, with length 1.
//
// Safety where callers break a rule: find() on a pattern that did not
// compile (status 1, 2 or 3, also after status() cleared it) finds nothing;
// a start offset past the end of the text finds nothing; no token consumes
// the text's terminating NUL; a backslash, "\^" or an octal escape at the
// very end of a pattern, and a '-' ending the pattern inside a class, stand
// for themselves (the octal escape for 0) instead of reading past the end.
//
// Cost: find() remembers, within one call, where the rest of a pattern has
// failed, so even many nested closures ("a*a*a*a*b") take polynomial time.
//
// Threads: a compiled KZRegExp may be used by several threads for find() at
// once; compiling (constructors, assignment, gen_pattern) and status() change
// the object.
//
// Bounds on untrusted patterns and texts: compiling reads the pattern up to
// its NUL or newline, or until the token string is full, in time linear in
// what it reads, and allocates one block of fixed size (maxpat, room for a
// class token, and what find() learns from the tokens beforehand). find()
// matches the text up to its first NUL from the start offset (looking for
// candidates it may read on to the text's end, never past it) and allocates
// nothing for an ordinary search; one that backtracks more than a few
// thousand times records where the rest of the pattern failed, at most one
// bit per compiled byte and text position (about 18 bytes per text
// character), and never tries that rest at that position again, so its time
// grows at worst with the square of the text's length times the tokens,
// never exponentially.
#ifndef KZ_REGEXP_H
#define KZ_REGEXP_H

#include "KZExport.h"

#include <cstddef>
#include <string>

class KZBS_API KZRegExp {
public:
    // Size of every compiled token string, its terminator included.
    static constexpr int maxpat = 128;

    // Status codes of a compilation.
    enum { StatusOk = 0, StatusIllegal = 1, StatusNoMemory = 2, StatusTooLong = 3 };

    KZRegExp(const char* pattern);
    KZRegExp(const KZRegExp& other);
    KZRegExp& operator=(const KZRegExp& other);
    KZRegExp& operator=(const char* pattern);
    ~KZRegExp();

    // Compiles pattern, replacing the current one; returns the new status and
    // stores it: 0 success; 1 illegal (empty, null, or beginning with newline,
    // '*', '+' or '?'); 2 out of memory; 3 too long for maxpat, or a closure
    // applied to an anchor or to another closure ("a**", "^*").
    int gen_pattern(const char* pattern);

    // The stored status; reading it resets it to 0.
    int status();

    // Offset of the leftmost match in text at or after start, -1 for none;
    // *matchLength receives its length (0 when there is none; a null
    // matchLength is allowed). Among matches at one offset the longest
    // greedy one wins.
    int find(const std::string& text, unsigned long* matchLength, unsigned long start) const;

    // The same search in text[0, size), for text held outside a string (a
    // mapped file, one window of a large buffer): text[size] must be a NUL,
    // as c_str() of a string of that size has it. A null text finds nothing.
    int find(const char* text, std::size_t size, unsigned long* matchLength, unsigned long start) const;

private:
    void copy_pattern(const KZRegExp& other);

    unsigned char* m_pattern; // the compiled tokens; null when the last compilation failed
    int m_status;
};

// Reads one possibly escaped character at *s and advances *s behind it.
// After a backslash (letters in either case): b backspace, e escape, f form
// feed, n newline, r return, s space, t tab; x and up to two hex digits;
// ^c the control character toupper(c) - 64; an octal digit d starts an octal
// escape in which d itself is skipped ("\0101" is 'A', "\101" is 1); any
// other character stands for itself. A backslash at the end is a backslash.
KZBS_API int esc(const char** s);

// The value of one hexadecimal digit (c & 15 for a decimal digit, else
// (toupper(c) - 55) & 15), and of one octal digit (c & 7).
KZBS_API int hex2bin(int c);
KZBS_API int oct2bin(int c);

#endif // KZ_REGEXP_H
