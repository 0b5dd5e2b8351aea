// Byte-for-byte agreement with OpenSSL's AES in ECB, CBC and CFB1, and of
// KZCryptRijndael's payload, on every implementation.
#include "CipherTestSupport.h"

#include <openssl/evp.h>

#include <sstream>

using namespace crypt_test;

namespace {

Bytes openSsl(bool encrypt, int bits, unsigned char mode, const Bytes& key, const Bytes& iv, const Bytes& data)
{
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    Bytes out(data.size() + 16);
    int len = 0, tail = 0;
    const char* suffix = mode == MODE_ECB ? "-ecb" : mode == MODE_CBC ? "-cbc" : "-cfb1";
    const std::string name = "aes-" + std::to_string(bits) + suffix;
    EVP_CipherInit_ex(ctx, EVP_get_cipherbyname(name.c_str()), nullptr, key.data(), iv.empty() ? nullptr : iv.data(),
                      encrypt ? 1 : 0);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EVP_CipherUpdate(ctx, out.data(), &len, data.data(), static_cast<int>(data.size()));
    EVP_CipherFinal_ex(ctx, out.data() + len, &tail);
    EVP_CIPHER_CTX_free(ctx);
    out.resize(static_cast<std::size_t>(len + tail));
    return out;
}

Bytes ours(bool encrypt, unsigned char mode, const Bytes& key, const std::string& ivHex, const Bytes& data)
{
    const keyInstance k = makeKeyOrFail(encrypt ? DIR_ENCRYPT : DIR_DECRYPT, toHex(key));
    const cipherInstance c = cipherOrFail(mode, ivHex.empty() ? nullptr : ivHex.c_str());
    Bytes out(data.size());
    const int bits = static_cast<int>(data.size() * 8);
    EXPECT_EQ(encrypt ? blockEncrypt(&c, &k, data.data(), bits, out.data())
                      : blockDecrypt(&c, &k, data.data(), bits, out.data()),
              bits);
    return out;
}

class AgainstOpenSsl : public EveryPath {};
KZ_EVERY_PATH(AgainstOpenSsl);

// Lengths around the kernels' strides (8 blocks for AES-NI, 4 per vector and
// 32 per stride for VAES) and a few random ones.
std::vector<std::size_t> blockCounts()
{
    std::vector<std::size_t> counts = {1,  2,  3,  4,  5,  6,  7,  8,  9,  15,  16, 17,
                                       31, 32, 33, 34, 35, 36, 63, 64, 65, 100, 257};
    std::mt19937 rng(2024);
    for (int i = 0; i < 6; ++i)
        counts.push_back(1 + rng() % 700);
    return counts;
}

TEST_P(AgainstOpenSsl, EcbAndCbcForEveryKeySizeAndManyLengths)
{
    unsigned seed = 10;
    for (int bits : {128, 192, 256})
        for (unsigned char mode : {MODE_ECB, MODE_CBC})
            for (std::size_t blocks : blockCounts()) {
                const Bytes key = randomBytes(static_cast<std::size_t>(bits / 8), ++seed);
                const Bytes iv = mode == MODE_CBC ? randomBytes(16, ++seed) : Bytes();
                const Bytes data = randomBytes(16 * blocks, ++seed);
                for (bool encrypt : {true, false})
                    EXPECT_EQ(ours(encrypt, mode, key, toHex(iv), data), openSsl(encrypt, bits, mode, key, iv, data))
                        << bits << "/" << int(mode) << "/" << blocks << (encrypt ? " enc" : " dec");
            }
}

// In place (the buffer classes' use) the result is the same, and the bytes
// behind the last whole block stay as they were.
TEST_P(AgainstOpenSsl, InPlaceIsTheSameAndTouchesOnlyWholeBlocks)
{
    unsigned seed = 300;
    for (int bits : {128, 256})
        for (unsigned char mode : {MODE_ECB, MODE_CBC})
            for (std::size_t blocks : {1, 3, 5, 33, 35, 70}) {
                const Bytes key = randomBytes(static_cast<std::size_t>(bits / 8), ++seed);
                const Bytes iv = mode == MODE_CBC ? randomBytes(16, ++seed) : Bytes();
                const Bytes data = randomBytes(16 * blocks + 11, ++seed);
                const Bytes whole(data.begin(), data.end() - 11);
                for (bool encrypt : {true, false}) {
                    const keyInstance k = makeKeyOrFail(encrypt ? DIR_ENCRYPT : DIR_DECRYPT, toHex(key));
                    const cipherInstance c = cipherOrFail(mode, iv.empty() ? nullptr : toHex(iv).c_str());
                    Bytes buffer = data;
                    const int bitsIn = static_cast<int>(buffer.size() * 8);
                    EXPECT_EQ(encrypt ? blockEncrypt(&c, &k, buffer.data(), bitsIn, buffer.data())
                                      : blockDecrypt(&c, &k, buffer.data(), bitsIn, buffer.data()),
                              static_cast<int>(128 * blocks));
                    Bytes expected = openSsl(encrypt, bits, mode, key, iv, whole);
                    expected.insert(expected.end(), data.end() - 11, data.end());
                    EXPECT_EQ(buffer, expected)
                        << bits << "/" << int(mode) << "/" << blocks << (encrypt ? " enc" : " dec");
                }
            }
}

// CFB1 works in place on the first 16 bytes only (input is not read when
// encrypting); a longer call repeats them, the register carrying on.
TEST_P(AgainstOpenSsl, Cfb1IsStandardForOneBlockAndRepeatsItsBlockOtherwise)
{
    for (int bits : {128, 192, 256}) {
        const Bytes key = randomBytes(static_cast<std::size_t>(bits / 8), 100u + static_cast<unsigned>(bits));
        const Bytes iv = randomBytes(16, 7), plain = randomBytes(16, 8);
        const keyInstance k = makeKeyOrFail(DIR_ENCRYPT, toHex(key));
        const cipherInstance c = cipherOrFail(MODE_CFB1, toHex(iv).c_str());

        Bytes once = plain;
        EXPECT_EQ(blockEncrypt(&c, &k, nullptr, 128, once.data()), 128);
        EXPECT_EQ(once, openSsl(true, bits, MODE_CFB1, key, iv, plain)) << bits;
        Bytes back = once, inPlace = once; // decryption XORs into outBuffer, with the encryption key
        blockDecrypt(&c, &k, once.data(), 128, back.data());
        blockDecrypt(&c, &k, inPlace.data(), 128, inPlace.data());
        EXPECT_EQ(back, plain);
        EXPECT_EQ(inPlace, plain);

        Bytes twice = plain;
        twice.resize(32, 0x55);
        EXPECT_EQ(blockEncrypt(&c, &k, nullptr, 256, twice.data()), 256);
        EXPECT_EQ(Bytes(twice.begin(), twice.begin() + 16), openSsl(true, bits, MODE_CFB1, key, once, once)) << bits;
        EXPECT_EQ(Bytes(twice.begin() + 16, twice.end()), Bytes(16, 0x55));
    }
}

// The key text's characters, zero-padded, are the AES key; the data is
// space-padded. Reading the stream back restores the data.
TEST_P(AgainstOpenSsl, RijndaelStreamPayloadIsAesCbcWithTheFixedIv)
{
    const Bytes iv = fromHex("7E21C9A4D05B38F67E21C9A4D05B38F6");
    const struct {
        KZCrypt::KeySize size;
        std::string key;
    } keys[] = {{KZCrypt::Key128, "secret"},
                {KZCrypt::Key192, "another key of 24 chars!"},
                {KZCrypt::Key256, "a rather long key text of 32 ch."}};
    unsigned seed = 50;
    for (const auto& k : keys)
        for (std::size_t size : {1, 15, 16, 17, 100, 4096, 5000}) {
            const Bytes plain = randomBytes(size, ++seed);
            KZCryptRijndael crypt(k.key, k.size, false);
            crypt.setBuffer(reinterpret_cast<const char*>(plain.data()), static_cast<unsigned>(size));
            crypt.encode();
            std::ostringstream stream;
            ASSERT_TRUE(crypt.writeEncrypted(stream));
            const std::string bytes = stream.str();
            Bytes key(k.key.begin(), k.key.end()), padded = plain;
            key.resize(static_cast<std::size_t>(k.size / 8), 0);
            padded.resize((size + 15) / 16 * 16, ' ');
            EXPECT_EQ(Bytes(bytes.begin() + 12, bytes.end()), openSsl(true, k.size, MODE_CBC, key, iv, padded))
                << k.size << " " << size;

            std::istringstream in(bytes);
            KZCryptRijndael reader(k.key, k.size, false);
            ASSERT_TRUE(reader.readEncrypted(in));
            reader.decode();
            EXPECT_EQ(Bytes(reader.getBuffer(), reader.getBuffer() + reader.getBufferSize()), plain);
        }
}

} // namespace
