// KZCrypt.h - Rijndael (AES) encryption of memory buffers.
//
// Two layers. The cipher layer is a C-style interface in the manner of the AES
// submission's reference API: key records (keyInstance) made by makeKey, cipher
// records (cipherInstance) made by cipherInit, and block functions that
// encrypt or decrypt whole 128-bit blocks in ECB, CBC or CFB1 mode. Below it
// sit the algorithm layer (key schedule, one-block encryption, round-limited
// encryption) and the published Rijndael tables, all exported.
// The buffer layer, KZCrypt and KZCryptRijndael, holds one data block padded
// with spaces to whole cipher blocks, encrypts it in place with AES-CBC under a
// fixed IV, and writes/reads it as a small tagged stream ("RCBC").
//
// Invariants: the round count is NOT part of a key record but the process-wide
// ROUNDS, so the most recent makeKey decides for all key records. This is
// deliberate and kept for compatibility: call makeKey again before using a key
// record of another length.
//
// Threads: none of this is guarded. ROUNDS and the implementation switch are
// process-wide; serialise all use of the cipher (KZCrypt::encode/decode call
// makeKey each time, so no two objects may encode or decode concurrently).
//
// Stream integers are written little-endian (the byte order of every platform
// this library is built for).
#ifndef KZ_CRYPT_H
#define KZ_CRYPT_H

#include "KZExport.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

// --- Constants of the cipher interface --------------------------------------

constexpr unsigned char DIR_ENCRYPT = 0; // key record for encryption
constexpr unsigned char DIR_DECRYPT = 1; // key record for decryption
constexpr unsigned char MODE_ECB = 1;    // electronic code book
constexpr unsigned char MODE_CBC = 2;    // cipher block chaining
constexpr unsigned char MODE_CFB1 = 3;   // 1-bit cipher feedback

constexpr int CIPHER_SUCCESS = 1;       // every function's success status
constexpr int BAD_KEY_DIR = -1;         // direction not 0 or 1
constexpr int BAD_KEY_MAT = -2;         // key length not 128/192/256, or a non-hex digit
constexpr int BAD_KEY_INSTANCE = -3;    // null key record
constexpr int BAD_CIPHER_MODE = -4;     // mode not 1..3
constexpr int BAD_CIPHER_STATE = -5;    // null record or pointer, or key of the wrong direction
constexpr int BAD_CIPHER_INSTANCE = -7; // non-hex digit in the IV text

constexpr int MAX_KEY_SIZE = 64; // hex digits of the longest key
constexpr int MAX_IV_SIZE = 32;  // bytes of the IV field (16 are used)
constexpr int MAXBC = 4;         // columns of a 128-bit state
constexpr int MAXKC = 8;         // columns of the longest key
constexpr int MAXROUNDS = 14;    // rounds of a 256-bit key

// A key record. Round key r of keySched is 4 columns of 4 bytes: keySched[r][c]
// is column c, so the 16 bytes of a round key are in the byte order of a block.
struct keyInstance {
    unsigned char direction;            // DIR_ENCRYPT or DIR_DECRYPT
    int keyLen;                         // bits: 128, 192 or 256
    char keyMaterial[MAX_KEY_SIZE + 1]; // the key's hex digits
    int blockLen;                       // kept for interface compatibility; never read
    unsigned char keySched[MAXROUNDS + 1][4][4];
};

// A cipher record: mode and IV. Only IV[0..15] is used.
struct cipherInstance {
    unsigned char mode; // MODE_ECB, MODE_CBC or MODE_CFB1
    unsigned char IV[MAX_IV_SIZE];
    int blockLen; // kept for interface compatibility; never read
};

// The process-wide round count (initially 0). makeKey sets keyLen / 32 + 6;
// every function below reads it. Values outside 0..14 are taken as the
// nearest of 0 and 14, so that no function indexes past a key schedule.
KZBS_API extern int ROUNDS;

// --- Cipher interface --------------------------------------------------------

// Makes a key record from up to keyLen / 4 hex digits (missing digits count as
// bad). keyMaterial null: the digits already in the record are used. Sets
// ROUNDS before converting the digits, so even a -2 for a bad digit has set it
// (the schedule is then left as it was). Returns 1, -1, -2 or -3.
// Only round keys 0..ROUNDS are written; the rest keep what they held.
KZBS_API int makeKey(keyInstance* key, unsigned char direction, int keyLen, const char* keyMaterial);

// Sets the mode and, unless IV is null, reads 32 hex digits into IV[0..15]
// (a bad digit, the terminator included, stops with -7; bytes before it stay
// written). Returns 1, -4, or -5 for a null record (checked after the mode).
KZBS_API int cipherInit(cipherInstance* cipher, unsigned char mode, const char* IV);

// Encrypt/decrypt inputLen / 128 whole blocks (lengths in bits; a partial
// block is ignored) and return the number of bits processed, or -5 for a null
// record, a key of the wrong direction (direction 1 for encryption; direction 0
// for decryption except in CFB1), a bad mode, or a null input/outBuffer when
// at least one block is to be processed. A negative inputLen processes nothing
// and returns inputLen / 128 * 128 (zero or negative), as the reference API did.
// input and outBuffer may be the same buffer. CBC starts from the record's IV
// on every call (the record is not updated).
// CFB1 deliberately works in place on the first 16 bytes of outBuffer only:
// encryption does not read input and needs the plaintext already in
// outBuffer; decryption takes the feedback bits from input's first 16 bytes.
// Each of the numBlocks passes runs the same 128 bits again, the register
// carrying on.
KZBS_API int blockEncrypt(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input,
                          int inputLen, unsigned char* outBuffer);
KZBS_API int blockDecrypt(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input,
                          int inputLen, unsigned char* outBuffer);

// Runs only the first `rounds` rounds (direction 0) or undoes rounds down to
// `rounds` (direction 1) on the 16 bytes at input, writing 16 bytes to
// outBuffer. inputLen is not used. Returns 1, -1 for another direction, -5
// for a null record or pointer. rounds is clamped to 0..ROUNDS.
KZBS_API int cipherUpdateRounds(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input,
                                int inputLen, unsigned char* outBuffer, int rounds);

// Which code the block functions (ECB, CBC and the CFB1 feedback) run: the
// portable T-table code, the processor's AES instructions on one block per
// instruction (AES-NI), or the vector AES instructions on four blocks per
// instruction (VAES with AVX-512; CBC encryption, one chain, runs on AES-NI
// with every round key held in the larger register file). All give the same
// bytes; the hardware paths also close the cache-timing leak of the table
// lookups, which index memory with key- and data-dependent bytes. The default
// is the fastest path the processor has, unless the environment, read once at
// the first cipher call, forces one: KZ_AES_PORTABLE=1 the portable code,
// KZ_AES_IMPLEMENTATION=0, 1 or 2 any path. Asking for a path the processor
// lacks selects the fastest one below it that it has; a value that names no
// path selects the portable code. Returns the implementation now in effect.
constexpr int RIJNDAEL_PORTABLE = 0;
constexpr int RIJNDAEL_HARDWARE = 1;
constexpr int RIJNDAEL_VAES = 2;
KZBS_API bool rijndaelHardwareAvailable();
KZBS_API bool rijndaelImplementationAvailable(int implementation);
KZBS_API int rijndaelImplementation();
KZBS_API int rijndaelSetImplementation(int implementation);

// --- Algorithm layer -----------------------------------------------------------
// A state is 4 rows of MAXBC columns: byte i of a block is a[i % 4][i / 4].
// Null pointers make these functions return at once (-1 where they return int).

// Standard key expansion: Nk = keyBits / 32 key columns from k (k[row][col]),
// ROUNDS + 1 round keys into W. Returns 0, or -1 for another keyBits.
KZBS_API int rijndaelKeySched(const unsigned char k[4][MAXKC], int keyBits, unsigned char W[MAXROUNDS + 1][4][4]);
// Converts an encryption schedule for the table-driven equivalent inverse
// cipher: InvMixColumns on round keys 1 .. ROUNDS-1. Returns 0.
KZBS_API int rijndaelKeyEnctoDec(int keyBits, unsigned char W[MAXROUNDS + 1][4][4]);
// One block, table-driven (portable). in and out may be the same. Return 0.
KZBS_API int rijndaelEncrypt(const unsigned char in[16], unsigned char out[16],
                             const unsigned char W[MAXROUNDS + 1][4][4]);
KZBS_API int rijndaelDecrypt(const unsigned char in[16], unsigned char out[16],
                             const unsigned char W[MAXROUNDS + 1][4][4]);
// The state after r = min(rounds, ROUNDS) rounds; the decryption variant
// undoes the rounds above r and expects an encryption-ordered schedule.
KZBS_API int rijndaelEncryptRound(unsigned char a[4][MAXBC], const unsigned char W[MAXROUNDS + 1][4][4], int rounds);
KZBS_API int rijndaelDecryptRound(unsigned char a[4][MAXBC], const unsigned char W[MAXROUNDS + 1][4][4], int rounds);

// Step functions on the first BC columns of a state, for 128-bit blocks only
// (BC is clamped to 0..4; ShiftRow rotates by the 4-column offsets modulo BC). rk is one round key in
// the schedule's column order; d is 0 for encryption, 1 (or any other value)
// for decryption.
KZBS_API unsigned char mul(unsigned char a, unsigned char b);
KZBS_API void KeyAddition(unsigned char a[4][MAXBC], const unsigned char rk[4][4], unsigned char BC);
KZBS_API void ShiftRow(unsigned char a[4][MAXBC], unsigned char d, unsigned char BC);
KZBS_API void Substitution(unsigned char a[4][MAXBC], const unsigned char box[256], unsigned char BC);
KZBS_API void MixColumn(unsigned char a[4][MAXBC], unsigned char BC);
KZBS_API void InvMixColumn(unsigned char a[4][MAXBC], unsigned char BC);

// --- Tables (the published Rijndael tables) ----------------------------------
// The 32-bit tables hold their four published bytes in memory order, so on
// this library's little-endian platforms T1[0] == 0xa56363c6 ({c6,63,63,a5}).
KZBS_API extern const unsigned char Logtable[256];
KZBS_API extern const unsigned char Alogtable[256];
KZBS_API extern const unsigned char S[256];
KZBS_API extern const unsigned char Si[256];
KZBS_API extern const unsigned char S5[256];
KZBS_API extern const std::uint32_t T1[256], T2[256], T3[256], T4[256];
KZBS_API extern const std::uint32_t T5[256], T6[256], T7[256], T8[256];
KZBS_API extern const std::uint32_t U1[256], U2[256], U3[256], U4[256];
KZBS_API extern const std::uint32_t rcon[30];
// ShiftRow offsets for 4, 6 and 8 columns: [width][row][0 encrypt, 1 decrypt].
KZBS_API extern const unsigned char shifts[3][4][2];

// --- Encrypted buffers -------------------------------------------------------
//
// KZCrypt owns one data block of cryptedSize bytes: bufferSize bytes of user
// data, padded with spaces (0x20) to whole 16-byte blocks. Nothing records
// whether it holds plaintext or ciphertext. Usage:
//   KZCryptRijndael c(key, KZCrypt::Key128, false);
//   c.setBuffer(data); c.encode(); c.writeEncrypted(out);
//   ... d.readEncrypted(in); d.decode(); d.getBuffer(), d.getBufferSize();
// Stream: tag (4 bytes), bufferSize (4), cryptedSize (4), cryptedSize bytes.
// There is no check value: a wrong key decodes to garbage without an error.
// The buffer is wiped with zeros (explicit_bzero, which no optimiser drops)
// whenever it is released (clearBuffer, readEncrypted, destruction); the key
// text is wiped on destruction.
// Objects are not copyable.
class KZBS_API KZCrypt {
public:
    // The key length in bits; also the length of the key text in hex digits.
    enum KeySize : int { Key128 = 128, Key192 = 192, Key256 = 256 };

    // Sets the key (setKey's result is ignored: a key that is too long leaves
    // the key text empty, and encode/decode then run with an all-zero key
    // schedule). Only the first 4 bytes of tag are used; a shorter tag is
    // padded with NULs. A size other than the three takes no key: setKey then
    // accepts only the empty key, and makeKey refuses the length.
    KZCrypt(const std::string& key, const std::string& tag, KeySize size, bool useByteTable);
    virtual ~KZCrypt();
    KZCrypt(const KZCrypt&) = delete;
    KZCrypt& operator=(const KZCrypt&) = delete;

    // Encrypt / decrypt the buffer in place; return 0.
    virtual int encode() = 0;
    virtual int decode() = 0;

    // Turns key text into hex digits for makeKey. false (nothing changed) if
    // the key is longer than keySize / 2 characters. Two conversions: the byte
    // table (when useByteTable, or when one of the key's last three characters
    // is 0x80-0xFF) writes each byte as two hex digits; otherwise each
    // character is written with itoa(signed char, 16). For ordinary text both
    // agree: the key bytes are the characters, zero-padded, and only the first
    // keySize / 8 characters count. Kept quirks of the numeric conversion: a
    // character 0x80-0xFF earlier in the key becomes 0xff, and a character
    // below 0x10 among the counted ones ends the digits early, so makeKey
    // refuses them and encode/decode run with an all-zero key schedule.
    bool setKey(const std::string& key);

    // Copies size bytes (spaces when data is null) and pads with spaces to
    // the next multiple of 16. A size above 4294967280 (whose padded size
    // does not fit 32 bits) leaves the object empty.
    void setBuffer(const char* data, unsigned int size);
    void setBuffer(const std::string& data);
    // Takes ciphertext: false unless cryptedSize is size rounded up to 16 and
    // data is not null (the sizes stay set, without a buffer). Otherwise copies
    // cryptedSize bytes into a buffer of its own and returns true.
    bool setCryptedBuffer(const char* data, unsigned int cryptedSize, unsigned int size);
    // Sets bufferSize and cryptedSize (rounded up to 16; 0 when that does not
    // fit 32 bits) without allocating. encode/decode then work on at most the
    // bytes actually held, and writeEncrypted refuses sizes beyond them.
    void setSize(unsigned int size);
    // Wipes and releases the buffer; sizes become 0. The key is kept.
    void clearBuffer();

    const char* getBuffer() const { return m_buffer; }
    unsigned int getBufferSize() const { return m_bufferSize; }
    unsigned int getCryptedSize() const { return m_cryptedSize; }

    // Reads a stream written by writeEncrypted; does not decode. The two sizes
    // are taken as they stand, not checked against each other (encode/decode
    // touch whole blocks of cryptedSize only; a caller reads at most
    // min(bufferSize, cryptedSize) bytes). false on another tag (only 4 bytes
    // are read; the object stays empty) and on a stream that ends early: then
    // the sizes stay and the buffer holds cryptedSize bytes, those that
    // arrived followed by zeros - unless more than kDefaultMaxMissing (64 MiB)
    // are missing, which leaves the object empty rather than spend memory on
    // a damaged claim. Memory otherwise grows with the bytes the stream
    // actually delivers.
    bool readEncrypted(std::istream& in);
    // The same with a caller's bound on the bytes a stream may claim without
    // delivering them: a short stream missing more than maxMissing bytes
    // leaves the object empty. So the memory one call takes is at most about
    // twice the bytes that arrive plus max(maxMissing, 4 KiB), whatever the
    // stream claims. A reader of untrusted data that knows its streams are
    // small passes a small bound (the fuzz target uses 4 KiB); 0 accepts
    // only complete streams' buffers.
    static constexpr std::uint32_t kDefaultMaxMissing = 64u << 20;
    bool readEncrypted(std::istream& in, std::uint32_t maxMissing);
    // Writes the buffer as it stands (encode first). false if the stream
    // fails, or, writing nothing, if setSize claimed more bytes than are held.
    bool writeEncrypted(std::ostream& out) const;

    // The largest size setBuffer takes: its padded size still fits 32 bits.
    static constexpr std::uint32_t kMaxBufferSize = 0xFFFFFFF0u;

    // --- Checking keys and streams before use --------------------------------
    // The rules setKey and readEncrypted go by, for a program that wants to
    // name what is wrong with a key or a stream rather than encrypt with a key
    // that means something else, or decode noise.

    // The longest key text setKey accepts: size / 2 characters (0 for a size
    // other than the three).
    static std::size_t longestKeyText(KeySize size);
    // How many characters of a key text count: size / 8. A longer text
    // encrypts like its first size / 8 characters.
    static std::size_t keyCharactersUsed(KeySize size);
    // The key bytes encode and decode use for the key text `key`, by setKey's
    // conversions: keyCharactersUsed(size) bytes. For ordinary text they are
    // the characters, padded with zero bytes; the numeric conversion makes
    // 0xff of a character 0x80-0xFF that is not among the last three. Empty
    // when encode and decode would run with the all-zero key schedule
    // instead: the text is longer than longestKeyText(size), or the numeric
    // conversion meets a character below 0x10 among the counted ones.
    static std::string keyBytes(const std::string& key, KeySize size, bool useByteTable);

    // The fixed start of a stream: tag, bufferSize, cryptedSize.
    static constexpr std::size_t kStreamHeaderSize = 12;
    struct StreamHeader {
        char tag[4];
        std::uint32_t bufferSize;
        std::uint32_t cryptedSize;
    };
    // Reads the header from the first kStreamHeaderSize bytes of `data`;
    // false, leaving `header` as it was, when `size` is smaller. The sizes
    // are taken as they stand, as readEncrypted takes them.
    static bool readStreamHeader(const char* data, std::size_t size, StreamHeader& header);
    // Whether the bytes after bufferSize are the padding of spaces setBuffer
    // adds. After decode with a wrong key they are noise: the format's only
    // sign of one. It cannot show when bufferSize is a multiple of 16 (no
    // padding), and one byte of padding lets a wrong key pass once in 256.
    bool hasSpacePadding() const;

protected:
    // The bytes encode/decode may touch: cryptedSize, bounded by what is held.
    unsigned int heldCryptedSize() const;

    char* m_buffer = nullptr;        // owned, m_allocated bytes
    std::uint32_t m_bufferSize = 0;  // the user's data length
    std::uint32_t m_cryptedSize = 0; // bufferSize rounded up to 16
    char* m_keyText = nullptr;       // hex digits, keySize + 1 bytes, not terminated
    std::string m_typeTag;
    KeySize m_keySize;
    bool m_useByteTable;
    std::uint32_t m_allocated = 0; // bytes held at m_buffer

private:
    unsigned int keyTextLength() const;
    void takeBuffer(char* buffer, std::uint32_t allocated);
};

// AES-CBC with the fixed IV 7E21C9A4D05B38F67E21C9A4D05B38F6, stream tag
// "RCBC". Equal plaintexts under equal keys give equal ciphertexts. Every
// buffer, up to the format's 4 GiB, is one CBC chain: as the block functions
// count bits in an int, large buffers go through them in pieces that carry
// the chain on.
class KZBS_API KZCryptRijndael : public KZCrypt {
public:
    KZCryptRijndael(const std::string& key, KeySize size, bool useByteTable);
    ~KZCryptRijndael() override;
    int encode() override;
    int decode() override;
};

#endif // KZ_CRYPT_H
