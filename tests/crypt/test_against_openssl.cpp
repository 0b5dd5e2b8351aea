// Byte-for-byte agreement with OpenSSL's AES: ECB and CBC for every key size
// on random data of many lengths, CFB1 for one block and for the repeated
// block of a longer call, and KZCryptRijndael's payload as AES-CBC with the
// fixed IV. Each runs on both implementations.
#include "CipherTestSupport.h"

#include <openssl/evp.h>

#include <sstream>

using namespace crypt_test;

namespace {

const EVP_CIPHER* openSslCipher(int bits, unsigned char mode)
{
    switch (mode) {
    case MODE_ECB: return bits == 128 ? EVP_aes_128_ecb() : bits == 192 ? EVP_aes_192_ecb() : EVP_aes_256_ecb();
    case MODE_CBC: return bits == 128 ? EVP_aes_128_cbc() : bits == 192 ? EVP_aes_192_cbc() : EVP_aes_256_cbc();
    default: return bits == 128 ? EVP_aes_128_cfb1() : bits == 192 ? EVP_aes_192_cfb1() : EVP_aes_256_cfb1();
    }
}

Bytes openSsl(bool encrypt, int bits, unsigned char mode, const Bytes& key, const Bytes& iv, const Bytes& data)
{
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    Bytes out(data.size() + 16);
    int len = 0, tail = 0;
    EVP_CipherInit_ex(ctx, openSslCipher(bits, mode), nullptr, key.data(), iv.empty() ? nullptr : iv.data(),
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

class AgainstOpenSsl : public BothPaths {};
KZ_BOTH_PATHS(AgainstOpenSsl);

TEST_P(AgainstOpenSsl, EcbAndCbcForEveryKeySizeAndManyLengths)
{
    unsigned seed = 10;
    for (int bits : {128, 192, 256})
        for (unsigned char mode : {MODE_ECB, MODE_CBC})
            for (std::size_t blocks : {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 64, 100, 257}) {
                const Bytes key = randomBytes(static_cast<std::size_t>(bits / 8), ++seed);
                const Bytes iv = mode == MODE_CBC ? randomBytes(16, ++seed) : Bytes();
                const Bytes data = randomBytes(16 * blocks, ++seed);
                const std::string what = std::to_string(bits) + " mode " + std::to_string(mode) + " blocks "
                    + std::to_string(blocks);
                EXPECT_EQ(ours(true, mode, key, toHex(iv), data), openSsl(true, bits, mode, key, iv, data)) << what;
                EXPECT_EQ(ours(false, mode, key, toHex(iv), data), openSsl(false, bits, mode, key, iv, data))
                    << what;
            }
}

TEST_P(AgainstOpenSsl, Cfb1IsStandardForOneBlockAndRepeatsItsBlockOtherwise)
{
    for (int bits : {128, 192, 256}) {
        const Bytes key = randomBytes(static_cast<std::size_t>(bits / 8), 100u + static_cast<unsigned>(bits));
        const Bytes iv = randomBytes(16, 7), plain = randomBytes(16, 8);
        const keyInstance k = makeKeyOrFail(DIR_ENCRYPT, toHex(key));
        const cipherInstance c = cipherOrFail(MODE_CFB1, toHex(iv).c_str());

        Bytes once = plain;
        blockEncrypt(&c, &k, plain.data(), 128, once.data());
        const Bytes expectOnce = openSsl(true, bits, MODE_CFB1, key, iv, plain);
        EXPECT_EQ(once, expectOnce) << bits;
        Bytes back = once;   // decryption, too, XORs into outBuffer in place
        blockDecrypt(&c, &k, once.data(), 128, back.data());
        EXPECT_EQ(back, plain);

        // Two blocks: the same 16 bytes a second time, the register carrying
        // on from the first pass's ciphertext.
        Bytes twice = plain;
        twice.resize(32, 0x55);
        blockEncrypt(&c, &k, nullptr, 256, twice.data());
        EXPECT_EQ(Bytes(twice.begin(), twice.begin() + 16), openSsl(true, bits, MODE_CFB1, key, once, once)) << bits;
        EXPECT_EQ(Bytes(twice.begin() + 16, twice.end()), Bytes(16, 0x55));
    }
}

// Key bytes: the key text's characters, zero-padded to the key length.
Bytes paddedKey(const std::string& text, int bits)
{
    Bytes key(text.begin(), text.end());
    key.resize(static_cast<std::size_t>(bits / 8), 0);
    return key;
}

TEST_P(AgainstOpenSsl, RijndaelStreamPayloadIsAesCbcWithTheFixedIv)
{
    const Bytes iv = fromHex("7E21C9A4D05B38F67E21C9A4D05B38F6");
    const struct {
        KZCrypt::KeySize size;
        const char* key;
    } keys[] = {{KZCrypt::Key128, "secret"}, {KZCrypt::Key192, "another key of 24 chars!"},
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
            const Bytes payload(bytes.begin() + 12, bytes.end());

            Bytes padded = plain;
            padded.resize((size + 15) / 16 * 16, ' ');
            EXPECT_EQ(payload, openSsl(true, k.size, MODE_CBC, paddedKey(k.key, k.size), iv, padded))
                << k.size << " " << size;

            std::istringstream in(bytes);
            KZCryptRijndael reader(k.key, k.size, false);
            ASSERT_TRUE(reader.readEncrypted(in));
            reader.decode();
            ASSERT_EQ(reader.getBufferSize(), size);
            EXPECT_EQ(Bytes(reader.getBuffer(), reader.getBuffer() + size), plain);
        }
}

} // namespace
