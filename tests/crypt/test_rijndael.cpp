// The block cipher: published vectors, block lengths and status codes, the
// modes' chaining rules, the process-wide round count, and the round-limited
// and step functions. Cipher tests run on both implementations.
#include "CipherTestSupport.h"

#include <cstring>

using namespace crypt_test;

namespace {

struct Vector {
    const char* key;
    const char* plain;
    const char* cipher;
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

std::string ecb(unsigned char direction, const std::string& hexKey, const std::string& hexData)
{
    const keyInstance key = makeKeyOrFail(direction, hexKey);
    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    Bytes data = fromHex(hexData);
    const int bits = static_cast<int>(data.size() * 8);
    const int done = direction == DIR_ENCRYPT ? blockEncrypt(&cipher, &key, data.data(), bits, data.data())
                                              : blockDecrypt(&cipher, &key, data.data(), bits, data.data());
    EXPECT_EQ(done, bits);
    return toHex(data);
}

class CipherVectors : public BothPaths {};
KZ_BOTH_PATHS(CipherVectors);

TEST_P(CipherVectors, Fips197EncryptAndDecryptInEcb)
{
    for (const Vector& v : kFips197) {
        EXPECT_EQ(ecb(DIR_ENCRYPT, v.key, v.plain), v.cipher) << v.key;
        EXPECT_EQ(ecb(DIR_DECRYPT, v.key, v.cipher), v.plain) << v.key;
    }
}

TEST_P(CipherVectors, PartialBlocksAreIgnoredAndCounted)
{
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, kFips197[1].key);
    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    const struct {
        int inputLen;
        int result;
    } cases[] = {{127, 0}, {128, 128}, {300, 256}, {0, 0}, {-1, 0}, {-300, -256}};
    for (const auto& c : cases) {
        const Bytes input = randomBytes(48, 1);
        Bytes out(48, 0xee);
        EXPECT_EQ(blockEncrypt(&cipher, &key, input.data(), c.inputLen, out.data()), c.result) << c.inputLen;
        const std::size_t written = c.result > 0 ? static_cast<std::size_t>(c.result / 8) : 0;
        for (std::size_t i = written; i < out.size(); ++i)
            ASSERT_EQ(out[i], 0xee) << c.inputLen << " touched byte " << i;
    }
}

TEST_P(CipherVectors, CbcStartsEveryCallFromTheStoredIv)
{
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, kFips197[0].key);
    const cipherInstance cipher = cipherOrFail(MODE_CBC, "000102030405060708090A0B0C0D0E0F");
    const Bytes plain = randomBytes(64, 2);
    Bytes first(64), second(64), inPlace = plain;
    blockEncrypt(&cipher, &key, plain.data(), 512, first.data());
    blockEncrypt(&cipher, &key, plain.data(), 512, second.data());
    blockEncrypt(&cipher, &key, inPlace.data(), 512, inPlace.data());
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, inPlace);
    // Chaining: the second block's ciphertext is ECB(E) of plaintext XOR previous ciphertext.
    Bytes chained(plain.begin() + 16, plain.begin() + 32);
    for (int i = 0; i < 16; ++i)
        chained[i] ^= first[i];
    EXPECT_EQ(ecb(DIR_ENCRYPT, kFips197[0].key, toHex(chained)), toHex(&first[16], 16));

    const keyInstance dkey = makeKeyOrFail(DIR_DECRYPT, kFips197[0].key);
    Bytes back = first;
    EXPECT_EQ(blockDecrypt(&cipher, &dkey, back.data(), 512, back.data()), 512);
    EXPECT_EQ(back, plain);
}

// The round count is process-wide: the latest makeKey decides for every key record.
TEST_P(CipherVectors, TheLatestMakeKeyDecidesTheRoundCount)
{
    keyInstance k128 {}, k256 {};
    ASSERT_EQ(makeKey(&k128, DIR_ENCRYPT, 128, kFips197[1].key), CIPHER_SUCCESS);
    EXPECT_EQ(ROUNDS, 10);
    ASSERT_EQ(makeKey(&k256, DIR_ENCRYPT, 256, kFips197[3].key), CIPHER_SUCCESS);
    EXPECT_EQ(ROUNDS, 14);

    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    Bytes block = fromHex(kFips197[1].plain);
    blockEncrypt(&cipher, &k128, block.data(), 128, block.data());
    EXPECT_NE(toHex(block), kFips197[1].cipher);

    // 14 rounds over the 128-bit schedule (round keys 11..14 zero), by the step functions.
    unsigned char state[4][MAXBC];
    const Bytes plain = fromHex(kFips197[1].plain);
    for (int i = 0; i < 16; ++i)
        state[i % 4][i / 4] = plain[i];
    rijndaelEncryptRound(state, k128.keySched, 14);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(block[i], state[i % 4][i / 4]) << i;
}

// A hand-set ROUNDS outside 0..14 is clamped; both implementations agree for
// every count, including the odd ones.
TEST_P(CipherVectors, AnyRoundCountGivesTheSameResultOnBothPaths)
{
    const Bytes data = randomBytes(16 * 19, 3);
    for (int rounds : {-5, 0, 1, 3, 9, 10, 11, 12, 14, 15, 99}) {
        keyInstance ekey = makeKeyOrFail(DIR_ENCRYPT, kFips197[3].key);
        keyInstance dkey = makeKeyOrFail(DIR_DECRYPT, kFips197[3].key);
        ROUNDS = rounds;
        std::string results[2];
        for (int impl : {RIJNDAEL_PORTABLE, RIJNDAEL_HARDWARE}) {
            if (rijndaelSetImplementation(impl) != impl)
                continue;
            std::string& all = results[impl];
            for (unsigned char mode : {MODE_ECB, MODE_CBC}) {
                const cipherInstance cipher = cipherOrFail(mode, "00112233445566778899AABBCCDDEEFF");
                const int bits = static_cast<int>(data.size() * 8);
                Bytes enc(data.size()), dec(data.size()), back(data.size());
                blockEncrypt(&cipher, &ekey, data.data(), bits, enc.data());
                blockDecrypt(&cipher, &dkey, data.data(), bits, dec.data());
                blockDecrypt(&cipher, &dkey, enc.data(), bits, back.data());
                if (rounds <= 0 || rounds >= 14) {   // the schedules fit only then
                    EXPECT_EQ(back, data) << "rounds " << rounds << " mode " << int(mode);
                }
                all += toHex(enc) + toHex(dec);
            }
        }
        if (!results[RIJNDAEL_HARDWARE].empty()) {
            EXPECT_EQ(results[RIJNDAEL_PORTABLE], results[RIJNDAEL_HARDWARE]) << "rounds " << rounds;
        }
    }
    rijndaelSetImplementation(GetParam());
}

TEST_P(CipherVectors, Cfb1WorksInPlaceOnTheFirstSixteenBytes)
{
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, kFips197[1].key);
    const cipherInstance cipher = cipherOrFail(MODE_CFB1, "000102030405060708090a0b0c0d0e0f");
    const Bytes plain = randomBytes(32, 4);
    Bytes buffer = plain;
    // input is not read in encryption: a null input is accepted.
    EXPECT_EQ(blockEncrypt(&cipher, &key, nullptr, 256, buffer.data()), 256);
    EXPECT_NE(Bytes(buffer.begin(), buffer.begin() + 16), Bytes(plain.begin(), plain.begin() + 16));
    EXPECT_EQ(Bytes(buffer.begin() + 16, buffer.end()), Bytes(plain.begin() + 16, plain.end()));

    // Decryption takes the ciphertext bits from input and uses the encryption key.
    Bytes once = plain;
    blockEncrypt(&cipher, &key, nullptr, 128, once.data());
    Bytes back = once;
    EXPECT_EQ(blockDecrypt(&cipher, &key, once.data(), 128, back.data()), 128);
    EXPECT_EQ(back, plain);
    Bytes inPlace = once;
    blockDecrypt(&cipher, &key, inPlace.data(), 128, inPlace.data());
    EXPECT_EQ(inPlace, plain);
}

TEST(CipherStatus, RecordsAndArgumentsAreChecked)
{
    keyInstance key {};
    EXPECT_EQ(makeKey(nullptr, DIR_ENCRYPT, 128, kFips197[0].key), BAD_KEY_INSTANCE);
    EXPECT_EQ(makeKey(&key, 2, 128, kFips197[0].key), BAD_KEY_DIR);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 160, kFips197[0].key), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2b7e151628aed2a6abf7158809cf4f3g"), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2b7e15"), BAD_KEY_MAT);   // too few digits
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 128, "2B7E151628AED2A6ABF7158809CF4F3C"), CIPHER_SUCCESS);
    keyInstance again = key;   // digits already in the record
    EXPECT_EQ(makeKey(&again, DIR_ENCRYPT, 128, nullptr), CIPHER_SUCCESS);
    EXPECT_EQ(std::memcmp(again.keySched, key.keySched, sizeof key.keySched), 0);

    cipherInstance cipher {};
    EXPECT_EQ(cipherInit(&cipher, 0, nullptr), BAD_CIPHER_MODE);
    EXPECT_EQ(cipherInit(&cipher, 4, nullptr), BAD_CIPHER_MODE);
    EXPECT_EQ(cipherInit(nullptr, MODE_CBC, nullptr), BAD_CIPHER_STATE);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, "0102030405060708090a0b0c0d0e0f10"), CIPHER_SUCCESS);
    EXPECT_EQ(cipherInit(&cipher, MODE_ECB, nullptr), CIPHER_SUCCESS);   // IV kept
    EXPECT_EQ(cipher.IV[15], 0x10);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, "AABBzz"), BAD_CIPHER_INSTANCE);
    EXPECT_EQ(cipher.IV[0], 0xaa);   // written before the bad digit
    EXPECT_EQ(cipher.IV[1], 0xbb);
    EXPECT_EQ(cipher.IV[2], 0x03);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, ""), BAD_CIPHER_INSTANCE);
}

TEST(CipherStatus, BlockFunctionsRefuseWrongDirectionsAndMissingBuffers)
{
    const keyInstance enc = makeKeyOrFail(DIR_ENCRYPT, kFips197[0].key);
    const keyInstance dec = makeKeyOrFail(DIR_DECRYPT, kFips197[0].key);
    const cipherInstance cbc = cipherOrFail(MODE_CBC), cfb = cipherOrFail(MODE_CFB1);
    cipherInstance badMode = cbc;
    badMode.mode = 9;
    unsigned char buf[32] = {};
    EXPECT_EQ(blockEncrypt(&cbc, &dec, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&cbc, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&cfb, &enc, buf, 128, buf), 128);
    EXPECT_EQ(blockEncrypt(&badMode, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&badMode, &dec, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(nullptr, &enc, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, nullptr, buf, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, nullptr, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, buf, 128, nullptr), BAD_CIPHER_STATE);
    EXPECT_EQ(blockDecrypt(&cfb, &enc, nullptr, 128, buf), BAD_CIPHER_STATE);
    EXPECT_EQ(blockEncrypt(&cbc, &enc, nullptr, 100, nullptr), 0);   // nothing to do
    EXPECT_EQ(cipherUpdateRounds(&cbc, &enc, nullptr, 128, buf, 3), BAD_CIPHER_STATE);
    keyInstance odd = enc;
    odd.direction = 5;
    EXPECT_EQ(cipherUpdateRounds(&cbc, &odd, buf, 128, buf, 3), BAD_KEY_DIR);
}

// Round-limited functions against the FIPS-197 appendix B round states.
TEST(CipherRounds, IntermediateStatesMatchThePublishedOnes)
{
    const Vector& v = kFips197[0];
    const keyInstance key = makeKeyOrFail(DIR_ENCRYPT, v.key);
    const cipherInstance cipher = cipherOrFail(MODE_ECB);
    const Bytes plain = fromHex(v.plain);
    const struct {
        int rounds;
        const char* state;
    } cases[] = {{0, "193de3bea0f4e22b9ac68d2ae9f84808"},
                 {1, "a49c7ff2689f352b6b5bea43026a5049"},
                 {2, "aa8f5f0361dde3ef82d24ad26832469a"},
                 {10, v.cipher},
                 {25, v.cipher}};
    for (const auto& c : cases) {
        unsigned char out[16];
        EXPECT_EQ(cipherUpdateRounds(&cipher, &key, plain.data(), 128, out, c.rounds), CIPHER_SUCCESS);
        EXPECT_EQ(toHex(out, 16), c.state) << c.rounds;
    }
    // Undoing rounds from the ciphertext (encryption-ordered schedule) meets
    // the same states; down to 0 gives the plaintext.
    const Bytes ciphertext = fromHex(v.cipher);
    for (int r = 0; r < 10; ++r) {
        unsigned char a[4][MAXBC], b[4][MAXBC];
        for (int i = 0; i < 16; ++i) {
            a[i % 4][i / 4] = ciphertext[i];
            b[i % 4][i / 4] = plain[i];
        }
        rijndaelDecryptRound(a, key.keySched, r);
        if (r == 0) {
            EXPECT_EQ(std::memcmp(a, b, sizeof a), 0);
        } else {
            rijndaelEncryptRound(b, key.keySched, r);
            EXPECT_EQ(std::memcmp(a, b, sizeof a), 0) << r;
        }
    }
}

TEST(CipherSteps, FieldMultiplicationAndColumnMixing)
{
    EXPECT_EQ(mul(0x57, 0x83), 0xc1);
    EXPECT_EQ(mul(0x57, 0x13), 0xfe);
    EXPECT_EQ(mul(0, 0x13), 0);
    EXPECT_EQ(mul(1, 0xff), 0xff);

    // Column db 13 53 45 mixes to 8e 4d a1 bc, and back.
    unsigned char a[4][MAXBC] = {{0xdb, 1, 0, 0}, {0x13, 1, 0, 0}, {0x53, 1, 0, 0}, {0x45, 1, 0, 0}};
    MixColumn(a, 4);
    EXPECT_EQ(a[0][0], 0x8e);
    EXPECT_EQ(a[1][0], 0x4d);
    EXPECT_EQ(a[2][0], 0xa1);
    EXPECT_EQ(a[3][0], 0xbc);
    EXPECT_EQ(a[0][1], 1);   // a column of equal bytes is fixed
    InvMixColumn(a, 4);
    EXPECT_EQ(a[0][0], 0xdb);
    EXPECT_EQ(a[3][0], 0x45);

    unsigned char s[4][MAXBC], orig[4][MAXBC];
    for (int i = 0; i < 16; ++i)
        s[i % 4][i / 4] = orig[i % 4][i / 4] = static_cast<unsigned char>(i);
    ShiftRow(s, 0, 4);
    EXPECT_EQ(s[1][0], 5);   // row 1 moved one to the left
    EXPECT_EQ(s[3][0], 15);
    ShiftRow(s, 1, 4);
    EXPECT_EQ(std::memcmp(s, orig, sizeof s), 0);
    ShiftRow(s, 0, 200);   // more columns than a state has: treated as 4
    ShiftRow(s, 1, 4);
    EXPECT_EQ(std::memcmp(s, orig, sizeof s), 0);
}

} // namespace
