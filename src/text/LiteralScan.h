// The matcher's literal search: where a run of literal characters first
// occurs in a text. It only ever reads inside the text it is given, and it
// picks the widest vector instructions the processor has at run time.
#ifndef KZ_LITERAL_SCAN_H
#define KZ_LITERAL_SCAN_H

#include <cstddef>

namespace kztext {

// The first occurrence of needle (length >= 1) in [text, text + size), or
// null. Bytes are compared exactly, NULs included.
const char* findLiteral(const char* text, std::size_t size, const char* needle, std::size_t length);

// The same on one chosen path, for the tests that hold every path to the
// byte-by-byte one. A path the processor lacks is not available.
enum class ScanPath { Bytes, Sse2, Avx2, Avx512 };
bool scanPathAvailable(ScanPath path);
const char* findLiteralOn(ScanPath path, const char* text, std::size_t size, const char* needle, std::size_t length);

} // namespace kztext

#endif // KZ_LITERAL_SCAN_H
