// The block cipher: published vectors, partial blocks, status codes, the
// process-wide round count, and the round-limited and step functions.
#include "CipherTestSupport.h"

#include <cstring>

using namespace crypt_test;

namespace {

struct Vector {
    const char *key, *plain, *cipher;
};

// FIPS-197 appendices B and C.
const Vector kFips197[] = {
    {"2b7e151628aed2a6abf7158809cf4f3c", "3243f6a8885a308d313198a2e0370734", "3925841d02dc09fbdc118597196a0b32"},
    {"000102030405060708090a0b0c0d0e0f", "00112233445566778899aabbccddeeff", "69c4e0d86a7b0430d8cdb78070b4c55a"},
    {"000102030405060708090a0b0c0d0e0f1011121314151617", "00112233445566778899aabbccddeeff",
     "dda97ca4864cdfe06eaf70a0ec0d7191"},
    {"000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f", "00112233445566778899aabbccddeeff",
     "8ea2b7ca516745bfeafc49904b496089"},
};

class CipherVectors : public EveryPath {};
KZ_EVERY_PATH(CipherVectors);

TEST_P(CipherVectors, Fips197EncryptAndDecrypt)
{
    const cipherInstance ecb = cipherOrFail(MODE_ECB);
    for (const Vector& v : kFips197) {
        const keyInstance enc = makeKeyOrFail(DIR_ENCRYPT, v.key), dec = makeKeyOrFail(DIR_DECRYPT, v.key);
        Bytes block = fromHex(v.plain);
        EXPECT_EQ(blockEncrypt(&ecb, &enc, block.data(), 128, block.data()), 128);
        EXPECT_EQ(toHex(block), v.cipher) << v.key;
        EXPECT_EQ(blockDecrypt(&ecb, &dec, block.data(), 128, block.data()), 128);
        EXPECT_EQ(toHex(block), v.plain) << v.key;
    }
}

TEST_P(CipherVectors, PartialBlocksAreIgnoredAndCounted)
{
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, kFips197[1].key);
    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    const Bytes input = randomBytes(48, 1);
    const int cases[][2] = {{127, 0}, {128, 128}, {300, 256}, {0, 0}, {-1, 0}, {-300, -256}};
    for (const auto& c : cases) {
        Bytes out(48, 0xee);
        EXPECT_EQ(blockEncrypt(&cipher, &key, input.data(), c[0], out.data()), c[1]) << c[0];
        for (std::size_t i = c[1] > 0 ? static_cast<std::size_t>(c[1] / 8) : 0; i < out.size(); ++i)
            ASSERT_EQ(out[i], 0xee) << c[0] << " touched byte " << i;
    }
}

// Every path gives the portable code's bytes, both ways, in ECB and CBC, for
// every key size, for lengths around the kernels' strides (8 blocks for the
// one-block-per-instruction paths, 4 and 32 for VAES), in place and not.
TEST_P(CipherVectors, BuffersEqualThePortablePath)
{
    const std::size_t counts[] = {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 36, 64, 65, 129};
    unsigned seed = 700;
    for (int bits : {128, 192, 256})
        for (unsigned char mode : {MODE_ECB, MODE_CBC})
            for (std::size_t blocks : counts)
                for (unsigned char direction : {DIR_ENCRYPT, DIR_DECRYPT}) {
                    const keyInstance key = makeKeyOrFail(direction, toHex(randomBytes(bits / 8u, ++seed)));
                    const std::string iv = toHex(randomBytes(16, ++seed));
                    const cipherInstance cipher = cipherOrFail(mode, iv.c_str());
                    const Bytes data = randomBytes(16 * blocks, ++seed);
                    const int length = static_cast<int>(data.size() * 8);
                    const auto run = [&](Bytes& out, const unsigned char* in) {
                        return direction == DIR_ENCRYPT ? blockEncrypt(&cipher, &key, in, length, out.data())
                                                        : blockDecrypt(&cipher, &key, in, length, out.data());
                    };
                    Bytes portable(data.size()), path(data.size()), inPlace = data;
                    rijndaelSetImplementation(RIJNDAEL_PORTABLE);
                    run(portable, data.data());
                    rijndaelSetImplementation(GetParam());
                    EXPECT_EQ(run(path, data.data()), length);
                    EXPECT_EQ(run(inPlace, inPlace.data()), length);
                    EXPECT_EQ(path, portable) << bits << "/" << int(mode) << "/" << blocks << "/" << int(direction);
                    EXPECT_EQ(inPlace, portable) << bits << "/" << int(mode) << "/" << blocks << "/" << int(direction);
                }
}

// ROUNDS is process-wide: the latest makeKey sets it for every key record,
// and a hand-set value outside 0..14 is clamped. For every count, on every
// implementation, encryption runs the step-by-step rounds (round keys a
// short key lacks are zero), all decrypt alike, and counts that fit the
// schedule decrypt back.
TEST(CipherRoundCount, EveryKeyUsesTheLatestRoundCount)
{
    const int saved = rijndaelImplementation();
    const keyInstance k128 = makeKeyOrFail(DIR_ENCRYPT, kFips197[1].key);
    EXPECT_EQ(ROUNDS, 10);
    const keyInstance ekey = makeKeyOrFail(DIR_ENCRYPT, kFips197[3].key);
    const keyInstance dkey = makeKeyOrFail(DIR_DECRYPT, kFips197[3].key);
    EXPECT_EQ(ROUNDS, 14);
    const cipherInstance ecb = cipherOrFail(MODE_ECB), cbc = cipherOrFail(MODE_CBC, "00112233445566778899AABBCCDDEEFF");
    const Bytes data = randomBytes(16 * 19, 3);
    const int bits = static_cast<int>(data.size() * 8);
    for (int rounds : {14, -5, 0, 1, 3, 9, 10, 11, 12, 15, 99}) {
        ROUNDS = rounds;
        std::string decrypted[3];
        for (int impl : kEveryImplementation) {
            if (rijndaelSetImplementation(impl) != impl)
                continue;
            for (const keyInstance* key : {&k128, &ekey}) {
                Bytes block(16), viaSteps(16);
                blockEncrypt(&ecb, key, data.data(), 128, block.data());
                cipherUpdateRounds(&ecb, key, data.data(), 128, viaSteps.data(), 14);
                EXPECT_EQ(block, viaSteps) << "rounds " << rounds << " impl " << impl << " key " << key->keyLen;
            }
            Bytes enc(data.size()), back(data.size());
            blockEncrypt(&cbc, &ekey, data.data(), bits, enc.data());
            blockDecrypt(&cbc, &dkey, enc.data(), bits, back.data());
            if (rounds <= 0 || rounds >= 14) {
                EXPECT_EQ(back, data) << "rounds " << rounds;
            }
            decrypted[impl] = toHex(back);
        }
        for (int impl : {RIJNDAEL_HARDWARE, RIJNDAEL_VAES})
            if (!decrypted[impl].empty()) {
                EXPECT_EQ(decrypted[RIJNDAEL_PORTABLE], decrypted[impl]) << "rounds " << rounds << " impl " << impl;
            }
    }
    rijndaelSetImplementation(saved);
}

TEST(CipherStatus, RecordsAndArgumentsAreChecked)
{
    keyInstance key{};
    EXPECT_EQ(makeKey(nullptr, DIR_ENCRYPT, 128, kFips197[0].key), BAD_KEY_INSTANCE);
    EXPECT_EQ(makeKey(&key, 2, 128, kFips197[0].key), BAD_KEY_DIR);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 160, kFips197[0].key), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2b7e151628aed2a6abf7158809cf4f3g"), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2b7e15"), BAD_KEY_MAT); // too few digits
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2B7E151628AED2A6ABF7158809CF4F3C"), CIPHER_SUCCESS);
    keyInstance again = key; // digits already in the record
    EXPECT_EQ(makeKey(&again, DIR_ENCRYPT, 128, nullptr), CIPHER_SUCCESS);
    EXPECT_EQ(std::memcmp(again.keySched, key.keySched, sizeof key.keySched), 0);

    cipherInstance cipher{};
    EXPECT_EQ(cipherInit(&cipher, 0, nullptr), BAD_CIPHER_MODE);
    EXPECT_EQ(cipherInit(&cipher, 4, nullptr), BAD_CIPHER_MODE);
    EXPECT_EQ(cipherInit(nullptr, MODE_CBC, nullptr), BAD_CIPHER_STATE);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, "0102030405060708090a0b0c0d0e0f10"), CIPHER_SUCCESS);
    EXPECT_EQ(cipherInit(&cipher, MODE_ECB, nullptr), CIPHER_SUCCESS); // IV kept
    EXPECT_EQ(cipher.IV[15], 0x10);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, "AABBzz"), BAD_CIPHER_INSTANCE);
    EXPECT_EQ(toHex(cipher.IV, 3), "aabb03"); // written up to the bad digit
}

TEST(CipherStatus, BlockFunctionsRefuseWrongDirectionsAndMissingBuffers)
{
    const keyInstance enc = makeKeyOrFail(DIR_ENCRYPT, kFips197[0].key);
    const keyInstance dec = makeKeyOrFail(DIR_DECRYPT, kFips197[0].key);
    const cipherInstance cbc = cipherOrFail(MODE_CBC), cfb = cipherOrFail(MODE_CFB1);
    cipherInstance badMode = cbc;
    badMode.mode = 9;
    keyInstance badDir = enc;
    badDir.direction = 5;
    unsigned char buf[32] = {};
    EXPECT_EQ(blockEncrypt(&cbc, &dec, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&cbc, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&badMode, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(nullptr, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, nullptr, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, nullptr, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, buf, 128, nullptr), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&cfb, &enc, nullptr, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, nullptr, 100, nullptr), 0); // nothing to do
    EXPECT_EQ(cipherUpdateRounds(&cbc, &enc, nullptr, 128, buf, 3), BAD_CIPHER_STATE);
    EXPECT_EQ(cipherUpdateRounds(&cbc, &badDir, buf, 128, buf, 3), BAD_KEY_DIR);
}

// Round-limited functions against the FIPS-197 appendix B round states.
// Undoing rounds down to r from the ciphertext (encryption-ordered schedule)
// gives the state after round r, or after round 9 for r = 10.
TEST(CipherRounds, IntermediateStatesMatchThePublishedOnes)
{
    const Vector& v = kFips197[0];
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, v.key);
    keyInstance undo = key;
    undo.direction = DIR_DECRYPT;
    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    const Bytes plain = fromHex(v.plain), ciphertext = fromHex(v.cipher);
    const char *round1 = "a49c7ff2689f352b6b5bea43026a5049", *round9 = "eb40f21e592e38848ba113e71bc342d2";
    const struct {
        int rounds;
        const char *state, *undone;
    } cases[] = {{0, "193de3bea0f4e22b9ac68d2ae9f84808", v.plain},
                 {1, round1, round1},
                 {2, "aa8f5f0361dde3ef82d24ad26832469a", "aa8f5f0361dde3ef82d24ad26832469a"},
                 {10, v.cipher, round9},
                 {25, v.cipher, round9}};
    for (const auto& c : cases) {
        unsigned char out[16], back[16];
        EXPECT_EQ(cipherUpdateRounds(&cipher, &key, plain.data(), 128, out, c.rounds), CIPHER_SUCCESS);
        EXPECT_EQ(toHex(out, 16), c.state) << c.rounds;
        EXPECT_EQ(cipherUpdateRounds(&cipher, &undo, ciphertext.data(), 128, back, c.rounds), CIPHER_SUCCESS);
        EXPECT_EQ(toHex(back, 16), c.undone) << c.rounds;
    }
}

// mul's zero factor and ShiftRow with more columns than a state has.
TEST(CipherSteps, ZeroFactorAndColumnClamp)
{
    EXPECT_EQ(mul(0, 0x13), 0);
    unsigned char s[4][MAXBC], orig[4][MAXBC];
    for (int i = 0; i < 16; ++i)
        s[i % 4][i / 4] = orig[i % 4][i / 4] = static_cast<unsigned char>(i);
    ShiftRow(s, 0, 200); // treated as 4
    EXPECT_EQ(s[1][0], 5);
    ShiftRow(s, 1, 4);
    EXPECT_EQ(std::memcmp(s, orig, sizeof s), 0);
}

} // namespace
