// KZFileHeader.h - the persistent formats of the applications' binary files:
// stored strings, 16-bit version words and the versioned file header.
//
// Invariants: every multi-byte number on disk is little-endian, whatever the
// host's byte order. A stored string is a 32-bit length L (characters + 1),
// the characters and a NUL. A version word is major * 100 + minor.
// Nothing here throws on purpose; the one exception that can escape is the
// standard out-of-memory exception when a damaged stored length asks for more
// memory than the system gives (see readString).
// Bounds on damaged or hostile streams: readStringFromStream takes at most
// maxLen bytes of memory and stream; readString takes what the stored length
// says, up to 2 GiB - 1 (a larger length reads as negative and is refused),
// so a reader of untrusted files uses readStringFromStream with a maxLen it
// can afford. KZFileHeader::read reads at most 127 + 1 + 5 bytes and keeps a
// 128-byte buffer.
// Threads: no shared state; one object or stream is used by one thread at a time.
#ifndef KZ_FILE_HEADER_H
#define KZ_FILE_HEADER_H

#include "KZExport.h"

#include <cstdint>
#include <iosfwd>
#include <string>

// --- Stored strings ----------------------------------------------------------
//
//   offset 0, 4 bytes: L = number of bytes that follow = characters + 1
//   offset 4, L bytes: the characters, then one NUL
//
// An empty string is stored as 01 00 00 00 00. Readers take the first L - 1
// bytes as the text, whatever the last byte holds, and keep NUL bytes inside it.

// Writes the stored form of `s`. True if `out` is neither failed nor bad
// afterwards. A string too long for the 32-bit length (4 GiB and more) is not
// written: `out` gets its failure state and the result is false.
KZBS_API bool writeString(const std::string& s, std::ostream& out);

// Reads one stored string into `s`. False, with `s` unchanged, when the length
// cannot be read or is 0 or negative (as a signed 32-bit number). Otherwise `s`
// is assigned L - 1 bytes and the result tells whether the stream stayed good:
// after a short read `s` holds the bytes that arrived padded with NUL bytes to
// L - 1. The data is read in pieces, so a damaged length on a short stream
// reads what is there before it asks for memory; the padding still needs
// L - 1 bytes, and if the system cannot give them std::bad_alloc propagates.
KZBS_API bool readString(std::string& s, std::istream& in);

// Reads one stored string, taking at most `maxLen` bytes of its data: `s` gets
// min(L, maxLen) - 1 bytes (padded with NUL bytes after a short read) and the
// rest of a longer string stays unread in the stream. Returns L, the stored
// length, also when it exceeded `maxLen` or the data came up short; returns 0
// with `s` unchanged when nothing is to be taken (L or maxLen is 0), when the
// length cannot be read, or when min(L, maxLen) is 2^31 or more. The four
// length bytes are consumed in every case. L comes back as an int, so a
// damaged length of 2^31 or more reads as a negative number.
KZBS_API int readStringFromStream(std::istream& in, std::string& s, unsigned int maxLen);

// Deliberately not the stored size: 1 for every string (the truth value of the
// 32-bit sum length + 5 being non-zero). Callers that need the number of bytes
// writeString produces compute length + 5 themselves.
KZBS_API std::uint32_t getBinaryStoreSize(const std::string& s);

// --- Version words -----------------------------------------------------------

// "%d.%02d" of version / 100 and version % 100: 205 -> "2.05", 7 -> "0.07",
// 65535 -> "655.35".
KZBS_API std::string wordToVersionString(unsigned short version);

// The integer at the start of `text` times 100, plus the integer right behind
// the first '.', reduced to 16 bits; both integers are read as atoi reads them
// (leading blanks and a sign, up to the first non-digit, none gives 0). The
// minor part is taken as written: "2.5" is 205, "2.50" is 250, "1.123" is 223.
// Numbers beyond the int range do not overflow: they are clamped as strtol
// clamps them and then wrap to 16 bits.
KZBS_API unsigned short versionStringToWord(std::string text);

// --- The file header -----------------------------------------------------------
//
// The first bytes of an application's binary file, k being the length of the
// concrete class's type identifier:
//
//   offset 0      k bytes  type identifier
//   offset k      1 byte   NUL
//   offset k + 1  2 bytes  version word 1
//   offset k + 3  2 bytes  version word 2
//   offset k + 5  1 byte   flag, meaning defined by the concrete class
//
// A concrete class supplies getFileType() and checks the versions after a
// successful read; the base class writes, reads and checks the type. Failures
// leave a German text in errorMsg(), Latin-1 like every library text:
// a wrong type sets "Falscher Dateityp.", a file that ends inside the five
// bytes after the identifier appends "Zerst\xF6rte Datei.", and
// setWrongVersionErrorMsg sets the version message. Nothing here empties it.
class KZBS_API KZFileHeader {
public:
    // Zero version words, zero flag, empty error text.
    KZFileHeader();
    virtual ~KZFileHeader();

    // Reads the identifier up to its NUL (at most 127 characters), compares it
    // with getFileType() byte for byte, then reads the two words and the flag
    // straight into the fields (a short read may leave them partly changed).
    // False on a wrong type (nothing more is read) or a damaged file.
    virtual bool read(std::istream& in);
    // Writes the header bytes; true if `out` stays good. errorMsg() is untouched.
    virtual bool write(std::ostream& out) const;
    // getFileType().length() + 6.
    virtual std::uint32_t getBinaryStoreSize() const;
    // The type identifier of the concrete kind of file.
    virtual std::string getFileType() const = 0;

    // errorMsg() becomes prefix (none when null), "Erwartete Version:", the
    // expected version, "  aktuelle Version:", the actual version; e.g.
    // "Kalender: Erwartete Version:2.05  aktuelle Version:1.30".
    void setWrongVersionErrorMsg(const char* prefix, unsigned short expectedVersion,
                                 unsigned short actualVersion) const;

    unsigned short getVersion1() const { return m_version1; }
    unsigned short getVersion2() const { return m_version2; }
    unsigned char getFlag() const { return m_flag; }
    const std::string& getErrorMsg() const { return m_errorMsg; }

protected:
    unsigned short m_version1;
    unsigned short m_version2;
    unsigned char m_flag;
    mutable std::string m_errorMsg;
};

#endif // KZ_FILE_HEADER_H
