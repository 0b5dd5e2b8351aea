// The cipher and the encrypted buffers on arbitrary bytes. The first byte
// picks the key size, the key conversion, whether streams are read seekable
// or like a pipe, and the CFB1 length; the rest is read three ways:
//  - as an "RCBC" stream: whatever it claims, the object holds what it says
//    it holds, decoding stays inside it, and writing it back gives the
//    stream's own length; the claim may cost at most kMaxMissing bytes;
//  - as key, IV and data of the block functions: the hardware and the
//    portable implementation give the same bytes in every mode, and ECB and
//    CBC decrypt to the plaintext;
//  - as a key and a plaintext: setBuffer, encode, writeEncrypted,
//    readEncrypted, decode gives the plaintext back, padded with spaces.
#include "FuzzSupport.h"
#include "KZCrypt.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

// What a stream may claim beyond the bytes it delivers: small, so that each
// input costs little time and memory.
constexpr std::uint32_t kMaxMissing = 4096;
// CFB1 runs 128 block encryptions per block: mostly one block, two (to see
// the register carry on) when the choice byte asks for it.
constexpr unsigned kMaxCfbBlocks = 2;
// ECB and CBC: enough blocks to see the chaining, few enough to stay fast.
constexpr unsigned kMaxBlocks = 32;

// A stream that cannot seek, like a pipe.
class PipeBuf : public std::streambuf {
public:
    PipeBuf(const char* data, std::size_t size)
    {
        char* begin = const_cast<char*>(data);
        setg(begin, begin, begin + size);
    }
};

const KZCrypt::KeySize kSizes[] = {KZCrypt::Key128, KZCrypt::Key192, KZCrypt::Key256};

bool readStream(KZCrypt& crypt, const std::string& bytes, bool seekable)
{
    if (seekable) {
        std::istringstream in(bytes);
        return crypt.readEncrypted(in, kMaxMissing);
    }
    PipeBuf pipe(bytes.data(), bytes.size());
    std::istream in(&pipe);
    return crypt.readEncrypted(in, kMaxMissing);
}

void checkStreamReading(unsigned choice, const std::string& bytes)
{
    KZCryptRijndael crypt("fuzz key \xE4", kSizes[choice % 3], (choice & 4) != 0);
    const bool ok = readStream(crypt, bytes, (choice & 8) == 0);
    // Whatever happened, a held buffer holds cryptedSize bytes, a stream read
    // in full never claims more bytes than it had, and a damaged claim costs
    // no more than the bound.
    FUZZ_CHECK(crypt.getBuffer() || !crypt.getCryptedSize());
    FUZZ_CHECK(!ok || crypt.getCryptedSize() <= bytes.size());
    FUZZ_CHECK(crypt.getCryptedSize() <= bytes.size() + kMaxMissing);
    crypt.decode();
    volatile char sink = 0;
    for (unsigned i = 0; i < crypt.getCryptedSize(); ++i)
        sink = static_cast<char>(sink ^ crypt.getBuffer()[i]);
    crypt.encode();
    std::ostringstream out;
    FUZZ_CHECK(crypt.writeEncrypted(out) && out.str().size() == 12 + crypt.getCryptedSize());
    if (ok)
        FUZZ_CHECK(out.str() == bytes.substr(0, out.str().size()));
}

std::string hexText(const std::string& bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned char b : bytes) {
        text += digits[b >> 4];
        text += digits[b & 15];
    }
    return text;
}

using Bytes = std::vector<unsigned char>;

// One mode, one implementation: the encryption of `plain`, and the
// decryption of that.
std::pair<Bytes, Bytes> runBlocks(int implementation, unsigned char mode, int keyLen, const std::string& keyHex,
                                  const std::string& ivHex, const Bytes& plain)
{
    rijndaelSetImplementation(implementation);
    keyInstance encryptKey{}, decryptKey{};
    cipherInstance cipher{};
    FUZZ_CHECK(makeKey(&encryptKey, DIR_ENCRYPT, keyLen, keyHex.c_str()) == CIPHER_SUCCESS);
    // CFB1 decrypts with an encryption key.
    FUZZ_CHECK(makeKey(&decryptKey, mode == MODE_CFB1 ? DIR_ENCRYPT : DIR_DECRYPT, keyLen, keyHex.c_str())
               == CIPHER_SUCCESS);
    FUZZ_CHECK(cipherInit(&cipher, mode, ivHex.c_str()) == CIPHER_SUCCESS);
    const int bits = static_cast<int>(plain.size() * 8);
    Bytes encrypted = plain; // CFB1 works in place on the output
    FUZZ_CHECK(blockEncrypt(&cipher, &encryptKey, plain.data(), bits, encrypted.data()) == bits / 128 * 128);
    Bytes decrypted = encrypted;
    FUZZ_CHECK(blockDecrypt(&cipher, &decryptKey, encrypted.data(), bits, decrypted.data()) == bits / 128 * 128);
    return {encrypted, decrypted};
}

void checkCipherPaths(unsigned choice, FuzzInput& input)
{
    const int keyLen = kSizes[choice % 3];
    const std::string keyHex = hexText(input.bytes(keyLen / 8) + std::string(keyLen / 8, '\0')).substr(0, keyLen / 4);
    const std::string ivHex = hexText(input.bytes(16) + std::string(16, '\0')).substr(0, 32);
    const std::string data = input.bytes(input.byte() % (kMaxBlocks + 1) * 16u);
    const Bytes plain(data.begin(), data.end() - static_cast<std::ptrdiff_t>(data.size() % 16));

    const int before = rijndaelImplementation();
    for (unsigned char mode : {MODE_ECB, MODE_CBC, MODE_CFB1}) {
        Bytes text = plain;
        const unsigned cfbBlocks = (choice & 16) ? kMaxCfbBlocks : 1;
        if (mode == MODE_CFB1 && text.size() > cfbBlocks * 16u)
            text.resize(cfbBlocks * 16u);
        const auto portable = runBlocks(RIJNDAEL_PORTABLE, mode, keyLen, keyHex, ivHex, text);
        const auto hardware = runBlocks(RIJNDAEL_HARDWARE, mode, keyLen, keyHex, ivHex, text);
        FUZZ_CHECK(portable == hardware);
        if (mode != MODE_CFB1 || text.size() <= 16)
            FUZZ_CHECK(portable.second == text);
    }
    rijndaelSetImplementation(before);
}

void checkRoundTrip(unsigned choice, FuzzInput& input)
{
    const std::string key = input.bytes(input.byte() % 40);
    const std::string plain = input.rest();
    KZCryptRijndael writer(key, kSizes[choice % 3], (choice & 4) != 0);
    writer.setBuffer(plain);
    writer.encode();
    std::ostringstream out;
    FUZZ_CHECK(writer.writeEncrypted(out));

    KZCryptRijndael reader(key, kSizes[choice % 3], (choice & 4) != 0);
    FUZZ_CHECK(readStream(reader, out.str(), (choice & 8) == 0));
    reader.decode();
    FUZZ_CHECK(reader.getBufferSize() == plain.size());
    const std::string padded = plain + std::string(reader.getCryptedSize() - plain.size(), ' ');
    FUZZ_CHECK(std::string(reader.getBuffer(), reader.getCryptedSize()) == padded);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const unsigned choice = input.byte();
    const std::string rest(reinterpret_cast<const char*>(data) + (size ? 1 : 0), size ? size - 1 : 0);
    checkStreamReading(choice, rest);
    checkCipherPaths(choice, input);
    checkRoundTrip(choice, input);
    return 0;
}
