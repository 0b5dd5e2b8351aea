// KZCrypt and KZCryptRijndael: one space-padded data block, its key as hex
// text, AES-CBC in place, and the tagged stream.
#include "KZCrypt.h"
#include "KZStringFunctions.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <memory>
#include <ostream>
#ifdef _WIN32
#include <windows.h> // SecureZeroMemory
#else
#include <string.h> // explicit_bzero
#endif

namespace {

// Bytes per blockEncrypt call: the cipher counts bits in an int.
constexpr std::uint32_t kChunkBytes = 1u << 27;
// Memory for a stream of unknown length grows from here as bytes arrive.
constexpr std::uint32_t kFirstReadChunk = 1u << 20;

constexpr char kRijndaelIv[] = "7E21C9A4D05B38F67E21C9A4D05B38F6";

std::uint32_t roundUpToBlock(std::uint32_t size)
{
    return (size + 15u) & ~15u;
}

// A wipe the compiler may not drop although the memory is freed next.
void wipe(void* memory, std::size_t size)
{
    if (memory && size)
#ifdef _WIN32
        SecureZeroMemory(memory, size);
#else
        explicit_bzero(memory, size);
#endif
}

void tagBytes(const std::string& tag, char out[4])
{
    std::memset(out, 0, 4);
    std::memcpy(out, tag.data(), std::min<std::size_t>(tag.size(), 4));
}

void putLittleEndian(char* out, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<char>(value >> (8 * i));
}

std::uint32_t getLittleEndian(const char* in)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value |= std::uint32_t(static_cast<unsigned char>(in[i])) << (8 * i);
    return value;
}

// The bytes left in a seekable stream, or -1 when it cannot tell (a pipe).
std::streamoff bytesLeft(std::istream& in)
{
    const std::streampos here = in.tellg();
    if (here == std::streampos(-1))
        return -1;
    in.seekg(0, std::ios::end);
    const std::streampos end = in.tellg();
    in.clear();
    in.seekg(here);
    if (end == std::streampos(-1) || !in) {
        in.clear();
        return -1;
    }
    return end - here;
}

// Reads up to `size` bytes into a new block; `have` tells how many arrived.
// The block grows with the bytes delivered, so a stream claiming gigabytes it
// does not have costs at most twice what it has, plus the first chunk of a
// stream that cannot tell its length (no more than `firstChunk`).
std::unique_ptr<char[]> readBlock(std::istream& in, std::uint32_t size, std::uint32_t firstChunk, std::uint32_t& have)
{
    const std::streamoff left = bytesLeft(in);
    std::uint32_t capacity =
        left >= 0 ? static_cast<std::uint32_t>(std::min<std::streamoff>(size, left)) : std::min(size, firstChunk);
    std::unique_ptr<char[]> block(new char[capacity]);
    have = 0;
    for (;;) {
        in.read(block.get() + have, capacity - have);
        have += static_cast<std::uint32_t>(in.gcount());
        if (have < capacity || capacity == size || !in)
            return block;
        const std::uint64_t wanted = std::max<std::uint64_t>(2ull * capacity, kFirstReadChunk);
        const std::uint32_t grown = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, wanted));
        std::unique_ptr<char[]> bigger(new char[grown]);
        std::memcpy(bigger.get(), block.get(), have);
        block = std::move(bigger);
        capacity = grown;
    }
}

// The hex digits of a key text: one per key bit, 0 for an unknown size.
unsigned int keyTextLengthOf(KZCrypt::KeySize size)
{
    const bool known = size == KZCrypt::Key128 || size == KZCrypt::Key192 || size == KZCrypt::Key256;
    return known ? static_cast<unsigned>(size) : 0;
}

int hexDigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Turns key text into the hex digits makeKey reads: `length` digits at
// `out`, which holds one byte more. false, writing nothing, for a text longer
// than length / 2 characters.
bool writeKeyText(const std::string& key, unsigned int length, bool useByteTable, char* out)
{
    if (key.size() > length / 2)
        return false;
    std::memset(out, '0', length);
    const std::size_t tail = key.size() < 3 ? 0 : key.size() - 3;
    const bool highByteAtEnd = std::any_of(key.begin() + static_cast<std::ptrdiff_t>(tail), key.end(),
                                           [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (useByteTable || highByteAtEnd) {
        static const char digits[] = "0123456789abcdef";
        for (std::size_t i = 0; i < key.size(); ++i) {
            const unsigned char b = static_cast<unsigned char>(key[i]);
            out[2 * i] = digits[b >> 4];
            out[2 * i + 1] = digits[b & 15];
        }
        return true;
    }
    // Numeric conversion, kept for compatibility with existing keys: each
    // character's itoa text (with its NUL) at 2i, later characters overwriting
    // the tail of earlier ones. No 0x80-0xFF among the last three means every
    // text ends by position 2 x length, which the extra byte holds.
    for (std::size_t i = 0; i < key.size(); ++i) {
        char text[12] = {};
        itoa(static_cast<signed char>(key[i]), text, 16);
        const std::size_t room = length + 1 - 2 * i;
        std::memcpy(out + 2 * i, text, std::min(std::strlen(text) + 1, room));
    }
    out[2 * key.size()] = '0';
    return true;
}

// The first chunk for a stream of unknown length also stays within the
// caller's bound on missing bytes, but not below this.
constexpr std::uint32_t kSmallestReadChunk = 4096;

} // namespace

// --- KZCrypt -------------------------------------------------------------------

KZCrypt::KZCrypt(const std::string& key, const std::string& tag, KeySize size, bool useByteTable)
    : m_typeTag(tag), m_keySize(size), m_useByteTable(useByteTable)
{
    m_keyText = new char[keyTextLength() + 1]();
    setKey(key);
}

KZCrypt::~KZCrypt()
{
    clearBuffer();
    wipe(m_keyText, keyTextLength() + 1);
    delete[] m_keyText;
}

unsigned int KZCrypt::keyTextLength() const
{
    return keyTextLengthOf(m_keySize);
}

bool KZCrypt::setKey(const std::string& key)
{
    return writeKeyText(key, keyTextLength(), m_useByteTable, m_keyText);
}

std::size_t KZCrypt::longestKeyText(KeySize size)
{
    return keyTextLengthOf(size) / 2;
}

std::size_t KZCrypt::keyCharactersUsed(KeySize size)
{
    return keyTextLengthOf(size) / 8;
}

// makeKey reads the first size / 4 digits, two to a byte, and refuses the
// key at a character that is no hex digit.
std::string KZCrypt::keyBytes(const std::string& key, KeySize size, bool useByteTable)
{
    const unsigned int length = keyTextLengthOf(size);
    std::string text(length + 1, '\0'), bytes;
    if (length > 0 && writeKeyText(key, length, useByteTable, &text[0])) {
        for (std::size_t i = 0; i < length / 4; i += 2) {
            const int high = hexDigitValue(text[i]), low = hexDigitValue(text[i + 1]);
            if (high < 0 || low < 0) {
                wipe(&bytes[0], bytes.size());
                bytes.clear();
                break;
            }
            bytes += static_cast<char>(high * 16 + low);
        }
    }
    wipe(&text[0], text.size());
    return bytes;
}

bool KZCrypt::readStreamHeader(const char* data, std::size_t size, StreamHeader& header)
{
    if (!data || size < kStreamHeaderSize)
        return false;
    std::memcpy(header.tag, data, 4);
    header.bufferSize = getLittleEndian(data + 4);
    header.cryptedSize = getLittleEndian(data + 8);
    return true;
}

bool KZCrypt::hasSpacePadding() const
{
    const unsigned int held = heldCryptedSize();
    for (unsigned int i = m_bufferSize; i < held; ++i)
        if (m_buffer[i] != ' ')
            return false;
    return true;
}

void KZCrypt::setSize(unsigned int size)
{
    m_bufferSize = size;
    m_cryptedSize = roundUpToBlock(size);
}

void KZCrypt::takeBuffer(char* buffer, std::uint32_t allocated)
{
    m_buffer = buffer;
    m_allocated = allocated;
}

void KZCrypt::clearBuffer()
{
    if (m_buffer) {
        wipe(m_buffer, m_allocated);
        delete[] m_buffer;
        m_buffer = nullptr;
    }
    m_allocated = 0;
    m_bufferSize = 0;
    m_cryptedSize = 0;
}

void KZCrypt::setBuffer(const char* data, unsigned int size)
{
    clearBuffer();
    if (size > kMaxBufferSize)
        return;
    setSize(size);
    char* block = new char[m_cryptedSize];
    if (data) {
        std::memcpy(block, data, size);
        std::memset(block + size, ' ', m_cryptedSize - size);
    } else {
        std::memset(block, ' ', m_cryptedSize);
    }
    takeBuffer(block, m_cryptedSize);
}

void KZCrypt::setBuffer(const std::string& data)
{
    if (data.size() > kMaxBufferSize) {
        clearBuffer();
        return;
    }
    setBuffer(data.data(), static_cast<unsigned int>(data.size()));
}

bool KZCrypt::setCryptedBuffer(const char* data, unsigned int cryptedSize, unsigned int size)
{
    clearBuffer();
    if (size > kMaxBufferSize)
        return false;
    setSize(size);
    if (cryptedSize != m_cryptedSize || !data)
        return false;
    char* block = new char[m_cryptedSize];
    std::memcpy(block, data, m_cryptedSize);
    takeBuffer(block, m_cryptedSize);
    return true;
}

unsigned int KZCrypt::heldCryptedSize() const
{
    return std::min(m_cryptedSize, m_allocated);
}

bool KZCrypt::writeEncrypted(std::ostream& out) const
{
    if (m_cryptedSize > m_allocated)
        return false;
    char header[12];
    tagBytes(m_typeTag, header);
    putLittleEndian(header + 4, m_bufferSize);
    putLittleEndian(header + 8, m_cryptedSize);
    out.write(header, sizeof header);
    if (m_cryptedSize)
        out.write(m_buffer, static_cast<std::streamsize>(m_cryptedSize));
    return !out.fail();
}

bool KZCrypt::readEncrypted(std::istream& in)
{
    return readEncrypted(in, kDefaultMaxMissing);
}

// A short stream keeps its claimed sizes and a buffer of cryptedSize bytes
// holding what arrived, zero-filled, unless the claim exceeds what arrived by
// more than maxMissing: then the stream is too damaged to be worth the memory.
bool KZCrypt::readEncrypted(std::istream& in, std::uint32_t maxMissing)
{
    clearBuffer();
    char expected[4], tag[4];
    tagBytes(m_typeTag, expected);
    if (!in.read(tag, 4) || std::memcmp(tag, expected, 4) != 0)
        return false;
    char sizes[8] = {}; // a size that arrives only in part keeps zero bytes
    in.read(sizes, 8);
    m_bufferSize = getLittleEndian(sizes);
    m_cryptedSize = getLittleEndian(sizes + 4);
    std::uint32_t have = 0;
    const std::uint32_t firstChunk = std::min(kFirstReadChunk, std::max(maxMissing, kSmallestReadChunk));
    std::unique_ptr<char[]> block = in ? readBlock(in, m_cryptedSize, firstChunk, have) : nullptr;
    if (have == m_cryptedSize && block) {
        takeBuffer(block.release(), m_cryptedSize);
        return !in.fail();
    }
    if (m_cryptedSize - have > maxMissing) {
        clearBuffer();
        return false;
    }
    char* whole = new char[m_cryptedSize]();
    if (have)
        std::memcpy(whole, block.get(), have);
    takeBuffer(whole, m_cryptedSize);
    return false;
}

// --- KZCryptRijndael ------------------------------------------------------------

KZCryptRijndael::KZCryptRijndael(const std::string& key, KeySize size, bool useByteTable)
    : KZCrypt(key, "RCBC", size, useByteTable)
{
}

KZCryptRijndael::~KZCryptRijndael() = default;

namespace {

// The cipher works on whole blocks; a trailing partial block (a stream may
// claim any size) stays as it is.
std::uint32_t wholeBlocksHeld(std::uint32_t bytes)
{
    return bytes & ~15u;
}

// CBC in place over `bytes` under the fixed IV. The block functions count bits
// in an int, so large buffers go through in pieces; each piece starts from the
// last ciphertext block of the one before, which keeps it one chain.
void cbcInPlace(unsigned char direction, int keySize, const char* keyText, std::uint32_t cryptedSize,
                unsigned char* data, std::uint32_t bytes)
{
    keyInstance key{};
    cipherInstance cipher{};
    key.blockLen = cipher.blockLen = static_cast<int>(cryptedSize * 8u);
    makeKey(&key, direction, keySize, keyText);
    cipherInit(&cipher, MODE_CBC, kRijndaelIv);
    const auto blockFunction = direction == DIR_ENCRYPT ? blockEncrypt : blockDecrypt;
    for (std::uint32_t done = 0; done < bytes;) {
        const std::uint32_t chunk = std::min(bytes - done, kChunkBytes);
        unsigned char* piece = data + done;
        unsigned char lastCipherBlock[16] = {}; // set on every path below; the zeros quiet GCC
        if (direction == DIR_DECRYPT)           // decryption overwrites it
            std::memcpy(lastCipherBlock, piece + chunk - 16, 16);
        blockFunction(&cipher, &key, piece, static_cast<int>(chunk * 8), piece);
        if (direction == DIR_ENCRYPT)
            std::memcpy(lastCipherBlock, piece + chunk - 16, 16);
        std::memcpy(cipher.IV, lastCipherBlock, 16);
        done += chunk;
    }
}

} // namespace

int KZCryptRijndael::encode()
{
    cbcInPlace(DIR_ENCRYPT, m_keySize, m_keyText, m_cryptedSize, reinterpret_cast<unsigned char*>(m_buffer),
               wholeBlocksHeld(heldCryptedSize()));
    return 0;
}

int KZCryptRijndael::decode()
{
    cbcInPlace(DIR_DECRYPT, m_keySize, m_keyText, m_cryptedSize, reinterpret_cast<unsigned char*>(m_buffer),
               wholeBlocksHeld(heldCryptedSize()));
    return 0;
}
