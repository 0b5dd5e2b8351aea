// The cipher interface: key and cipher records, the block functions in ECB,
// CBC and CFB1, and the choice between the portable code and the hardware
// paths (AES-NI and VAES on x86-64, the ARMv8 instructions on ARM64).
#include "RijndaelInternal.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

using kzcrypt::Implementation;

// Every implementation this build has, slowest first. A new instruction set
// is one more row.
const Implementation* const kImplementations[] = {
    &kzcrypt::kPortable,
#if KZ_CRYPT_HAVE_AESNI
    &kzcrypt::kAesNi,
#endif
#if KZ_CRYPT_HAVE_VAES
    &kzcrypt::kVaes,
#endif
#if KZ_CRYPT_HAVE_ARMCE
    &kzcrypt::kArmCe,
#endif
};

// The implementation in use; null until the first cipher call resolves it.
std::atomic<const Implementation*> g_inUse{nullptr};

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Two hex digits at text (high nibble first), or -1. The second digit is read
// only when the first is valid, so a terminator stops the reading.
int hexByte(const char* text)
{
    const int high = hexDigit(text[0]);
    if (high < 0)
        return -1;
    const int low = hexDigit(text[1]);
    return low < 0 ? -1 : high << 4 | low;
}

// The fastest implementation the processor has that does not exceed `wanted`.
const Implementation& availableUpTo(int wanted)
{
    const Implementation* best = &kzcrypt::kPortable;
    for (const Implementation* candidate : kImplementations)
        if (candidate->id <= wanted && candidate->id >= best->id && candidate->available())
            best = candidate;
    return *best;
}

const Implementation& chosenByEnvironment()
{
    const char* portable = std::getenv("KZ_AES_PORTABLE");
    if (portable && *portable && std::strcmp(portable, "0") != 0)
        return kzcrypt::kPortable;
    const char* forced = std::getenv("KZ_AES_IMPLEMENTATION");
    if (forced && forced[0] >= '0' && forced[0] <= '2' && forced[1] == '\0')
        return availableUpTo(forced[0] - '0');
    return availableUpTo(RIJNDAEL_VAES);
}

const Implementation& inUse()
{
    const Implementation* current = g_inUse.load(std::memory_order_acquire);
    if (!current) {
        const Implementation* chosen = &chosenByEnvironment();
        // A concurrent first call or rijndaelSetImplementation may have won.
        g_inUse.compare_exchange_strong(current, chosen, std::memory_order_acq_rel);
        current = g_inUse.load(std::memory_order_acquire);
    }
    return *current;
}

// The 1-bit feedback over the first 16 bytes of out, numBlocks times. The
// register takes the ciphertext bit: the one just produced when encrypting,
// the one read from `cipherBits` when decrypting (read before out is changed,
// so both may be the same buffer).
void cfb1(const cipherInstance* cipher, const keyInstance* key, const unsigned char* cipherBits, unsigned char* out,
          int numBlocks)
{
    const int rounds = kzcrypt::effectiveRounds();
    const auto encryptBlock = inUse().encryptBlock;
    unsigned char reg[16];
    std::memcpy(reg, cipher->IV, 16);
    for (int block = 0; block < numBlocks; ++block) {
        for (int k = 0; k < 128; ++k) {
            unsigned char stream[16];
            encryptBlock(reg, stream, key->keySched, rounds);
            const int byte = k >> 3, shift = 7 - (k & 7);
            const unsigned feedIn = cipherBits ? (cipherBits[byte] >> shift) & 1u : 0u;
            out[byte] = static_cast<unsigned char>(out[byte] ^ ((stream[0] & 0x80u) >> (k & 7)));
            const unsigned feedback = cipherBits ? feedIn : (out[byte] >> shift) & 1u;
            for (int t = 0; t < 15; ++t)
                reg[t] = static_cast<unsigned char>(reg[t] << 1 | reg[t + 1] >> 7);
            reg[15] = static_cast<unsigned char>(reg[15] << 1 | feedback);
        }
    }
}

bool validMode(unsigned char mode)
{
    return mode == MODE_ECB || mode == MODE_CBC || mode == MODE_CFB1;
}

// The pointers a call with at least one block needs: CFB1 encryption reads
// no input.
bool buffersPresent(int numBlocks, const unsigned char* input, const unsigned char* out, bool needsInput)
{
    return numBlocks <= 0 || (out && (input || !needsInput));
}

} // namespace

bool rijndaelHardwareAvailable()
{
    return rijndaelImplementationAvailable(RIJNDAEL_HARDWARE);
}

bool rijndaelImplementationAvailable(int implementation)
{
    return implementation >= RIJNDAEL_PORTABLE && implementation <= RIJNDAEL_VAES
           && availableUpTo(implementation).id == implementation;
}

int rijndaelImplementation()
{
    return inUse().id;
}

int rijndaelSetImplementation(int implementation)
{
    const bool known = implementation >= RIJNDAEL_PORTABLE && implementation <= RIJNDAEL_VAES;
    g_inUse.store(known ? &availableUpTo(implementation) : &kzcrypt::kPortable, std::memory_order_release);
    return rijndaelImplementation();
}

int makeKey(keyInstance* key, unsigned char direction, int keyLen, const char* keyMaterial)
{
    if (!key)
        return BAD_KEY_INSTANCE;
    if (direction != DIR_ENCRYPT && direction != DIR_DECRYPT)
        return BAD_KEY_DIR;
    key->direction = direction;
    if (keyLen != 128 && keyLen != 192 && keyLen != 256)
        return BAD_KEY_MAT;
    key->keyLen = keyLen;
    if (keyMaterial) {
        // strncpy semantics, written out so that the record's own digits may
        // be passed in as well.
        int i = 0;
        for (; i < keyLen / 4 && keyMaterial[i]; ++i)
            key->keyMaterial[i] = keyMaterial[i];
        for (; i < keyLen / 4; ++i)
            key->keyMaterial[i] = '\0';
    }
    ROUNDS = keyLen / 32 + 6;
    unsigned char k[4][MAXKC] = {};
    for (int i = 0; i < keyLen / 8; ++i) {
        const int value = hexByte(key->keyMaterial + 2 * i);
        if (value < 0)
            return BAD_KEY_MAT;
        k[i % 4][i / 4] = static_cast<unsigned char>(value);
    }
    rijndaelKeySched(k, keyLen, key->keySched);
    if (direction == DIR_DECRYPT)
        rijndaelKeyEnctoDec(keyLen, key->keySched);
    return CIPHER_SUCCESS;
}

int cipherInit(cipherInstance* cipher, unsigned char mode, const char* IV)
{
    if (!validMode(mode))
        return BAD_CIPHER_MODE;
    if (!cipher)
        return BAD_CIPHER_STATE;
    cipher->mode = mode;
    if (!IV)
        return CIPHER_SUCCESS;
    for (int i = 0; i < 16; ++i) {
        const int value = hexByte(IV + 2 * i);
        if (value < 0)
            return BAD_CIPHER_INSTANCE;
        cipher->IV[i] = static_cast<unsigned char>(value);
    }
    return CIPHER_SUCCESS;
}

int blockEncrypt(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input, int inputLen,
                 unsigned char* outBuffer)
{
    if (!cipher || !key || key->direction == DIR_DECRYPT || !validMode(cipher->mode))
        return BAD_CIPHER_STATE;
    const int numBlocks = inputLen / 128;
    if (!buffersPresent(numBlocks, input, outBuffer, cipher->mode != MODE_CFB1))
        return BAD_CIPHER_STATE;
    const int rounds = kzcrypt::effectiveRounds();
    const std::size_t blocks = numBlocks > 0 ? static_cast<std::size_t>(numBlocks) : 0;
    switch (cipher->mode) {
    case MODE_ECB: inUse().encryptEcb(input, outBuffer, blocks, key->keySched, rounds); break;
    case MODE_CBC: inUse().encryptCbc(input, outBuffer, blocks, key->keySched, rounds, cipher->IV); break;
    default: cfb1(cipher, key, nullptr, outBuffer, numBlocks); break;
    }
    return 128 * numBlocks;
}

int blockDecrypt(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input, int inputLen,
                 unsigned char* outBuffer)
{
    if (!cipher || !key || !validMode(cipher->mode))
        return BAD_CIPHER_STATE;
    if (cipher->mode != MODE_CFB1 && key->direction == DIR_ENCRYPT)
        return BAD_CIPHER_STATE;
    const int numBlocks = inputLen / 128;
    if (!buffersPresent(numBlocks, input, outBuffer, true))
        return BAD_CIPHER_STATE;
    const int rounds = kzcrypt::effectiveRounds();
    const std::size_t blocks = numBlocks > 0 ? static_cast<std::size_t>(numBlocks) : 0;
    switch (cipher->mode) {
    case MODE_ECB: inUse().decryptEcb(input, outBuffer, blocks, key->keySched, rounds); break;
    case MODE_CBC: inUse().decryptCbc(input, outBuffer, blocks, key->keySched, rounds, cipher->IV); break;
    default: cfb1(cipher, key, input, outBuffer, numBlocks); break;
    }
    return 128 * numBlocks;
}

int cipherUpdateRounds(const cipherInstance* cipher, const keyInstance* key, const unsigned char* input, int,
                       unsigned char* outBuffer, int rounds)
{
    if (!cipher || !key || !input || !outBuffer)
        return BAD_CIPHER_STATE;
    unsigned char state[4][MAXBC];
    for (int i = 0; i < 16; ++i)
        state[i % 4][i / 4] = input[i];
    switch (key->direction) {
    case DIR_ENCRYPT: rijndaelEncryptRound(state, key->keySched, rounds); break;
    case DIR_DECRYPT: rijndaelDecryptRound(state, key->keySched, rounds); break;
    default: return BAD_KEY_DIR;
    }
    for (int i = 0; i < 16; ++i)
        outBuffer[i] = state[i % 4][i / 4];
    return CIPHER_SUCCESS;
}
