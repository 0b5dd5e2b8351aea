// The block kernels on the ARMv8 Cryptography Extensions (AESE, AESD, AESMC,
// AESIMC). Only this file is compiled for them (-march=armv8-a+crypto); the
// rest of the library stays baseline ARMv8, and nothing here runs unless the
// kernel reports the instructions (HWCAP_AES).
//
// The ARM instructions split a round differently from AES-NI: AESE is
// AddRoundKey, ShiftRows and SubBytes, AESMC the MixColumns after it; AESD is
// AddRoundKey, InvShiftRows and InvSubBytes, AESIMC the InvMixColumns after
// it. The key schedules need no change: each round key is 16 bytes in block
// order, and a decryption schedule carries InvMixColumns on its inner round
// keys (the equivalent inverse cipher), which AESD followed by AESIMC expects.
// Kernels are written once for a round count and instantiated for 10, 12 and
// 14 rounds so that the loops unroll; any other count (ROUNDS may be set by
// hand, 0..14) runs the same code with a run-time count.
#include "RijndaelInternal.h"

#if KZ_CRYPT_HAVE_ARMCE

#include <arm_neon.h>
#include <sys/auxv.h>

#ifndef HWCAP_AES
#define HWCAP_AES (1 << 3) // <asm/hwcap.h>, arm64
#endif

namespace kzcrypt {

namespace {

constexpr std::size_t kLanes = 8; // blocks in flight where blocks are independent

struct Keys {
    uint8x16_t k[MAXROUNDS + 1];
};

inline uint8x16_t load(const unsigned char* p)
{
    return vld1q_u8(p);
}
inline void store(unsigned char* p, uint8x16_t v)
{
    vst1q_u8(p, v);
}

inline void loadKeys(Keys& keys, RoundKeys W, int rounds)
{
#pragma GCC unroll 15
    for (int r = 0; r <= rounds; ++r)
        keys.k[r] = load(W[r][0]);
}

// The last AESE takes the round key before the final one, the last AESD the
// one after round key 0; with no rounds at all, both are round key 0, as in
// the portable code.
inline int lastInnerKey(int rounds)
{
    return rounds > 0 ? rounds - 1 : 0;
}
inline int firstInnerKey(int rounds)
{
    return rounds > 0 ? 1 : 0;
}

inline uint8x16_t encryptRounds(uint8x16_t x, const Keys& keys, int rounds)
{
#pragma GCC unroll 14
    for (int r = 0; r < rounds - 1; ++r)
        x = vaesmcq_u8(vaeseq_u8(x, keys.k[r]));
    return veorq_u8(vaeseq_u8(x, keys.k[lastInnerKey(rounds)]), keys.k[rounds]);
}

inline uint8x16_t decryptRounds(uint8x16_t x, const Keys& keys, int rounds)
{
#pragma GCC unroll 14
    for (int r = rounds; r > 1; --r)
        x = vaesimcq_u8(vaesdq_u8(x, keys.k[r]));
    return veorq_u8(vaesdq_u8(x, keys.k[firstInnerKey(rounds)]), keys.k[0]);
}

// Eight independent blocks, each round applied to all of them before the
// next, so the instruction latencies overlap (AESE+AESMC pairs fuse).
template <bool Encrypt>
inline void eightBlocks(uint8x16_t x[kLanes], const Keys& keys, int rounds)
{
    if (Encrypt) {
#pragma GCC unroll 14
        for (int r = 0; r < rounds - 1; ++r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < kLanes; ++i)
                x[i] = vaesmcq_u8(vaeseq_u8(x[i], keys.k[r]));
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = veorq_u8(vaeseq_u8(x[i], keys.k[lastInnerKey(rounds)]), keys.k[rounds]);
    } else {
#pragma GCC unroll 14
        for (int r = rounds; r > 1; --r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < kLanes; ++i)
                x[i] = vaesimcq_u8(vaesdq_u8(x[i], keys.k[r]));
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = veorq_u8(vaesdq_u8(x[i], keys.k[firstInnerKey(rounds)]), keys.k[0]);
    }
}

template <bool Encrypt>
inline void ecb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    for (; blocks >= kLanes; blocks -= kLanes, in += 16 * kLanes, out += 16 * kLanes) {
        uint8x16_t x[kLanes];
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = load(in + 16 * i);
        eightBlocks<Encrypt>(x, keys, rounds);
        for (std::size_t i = 0; i < kLanes; ++i)
            store(out + 16 * i, x[i]);
    }
    for (; blocks > 0; --blocks, in += 16, out += 16)
        store(out, Encrypt ? encryptRounds(load(in), keys, rounds) : decryptRounds(load(in), keys, rounds));
}

// CBC encryption is one chain: each block waits for the one before it.
inline void cbcEncrypt(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                       const unsigned char iv[16])
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    uint8x16_t chain = load(iv);
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        chain = encryptRounds(veorq_u8(chain, load(in)), keys, rounds);
        store(out, chain);
    }
}

// CBC decryption is parallel: eight blocks at a time, the ciphertext kept in
// registers before anything is stored, so in and out may be the same buffer.
inline void cbcDecrypt(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                       const unsigned char iv[16])
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    uint8x16_t previous = load(iv);
    for (; blocks >= kLanes; blocks -= kLanes, in += 16 * kLanes, out += 16 * kLanes) {
        uint8x16_t c[kLanes], x[kLanes];
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = c[i] = load(in + 16 * i);
        eightBlocks<false>(x, keys, rounds);
        store(out, veorq_u8(x[0], previous));
        for (std::size_t i = 1; i < kLanes; ++i)
            store(out + 16 * i, veorq_u8(x[i], c[i - 1]));
        previous = c[kLanes - 1];
    }
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        const uint8x16_t c = load(in);
        store(out, veorq_u8(decryptRounds(c, keys, rounds), previous));
        previous = c;
    }
}

// The kernels' entry points, one per round count (a constant or the
// run-time count, see withRoundCount).
struct Kernels {
    template <class Rounds>
    static void ecb(bool encrypt, const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W,
                    Rounds rounds)
    {
        if (encrypt)
            kzcrypt::ecb<true>(in, out, blocks, W, rounds);
        else
            kzcrypt::ecb<false>(in, out, blocks, W, rounds);
    }

    template <class Rounds>
    static void cbc(bool encrypt, const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W,
                    Rounds rounds, const unsigned char iv[16])
    {
        if (encrypt)
            cbcEncrypt(in, out, blocks, W, rounds, iv);
        else
            cbcDecrypt(in, out, blocks, W, rounds, iv);
    }
};

bool available()
{
    static const bool has = (getauxval(AT_HWCAP) & HWCAP_AES) != 0;
    return has;
}

void encryptBlock(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds)
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    store(out, encryptRounds(load(in), keys, rounds));
}

} // namespace

const Implementation kArmCe = {
    RIJNDAEL_HARDWARE,
    available,
    encryptBlock,
    KernelEntries<Kernels>::encryptEcb,
    KernelEntries<Kernels>::decryptEcb,
    KernelEntries<Kernels>::encryptCbc,
    KernelEntries<Kernels>::decryptCbc,
};

} // namespace kzcrypt

#endif // KZ_CRYPT_HAVE_ARMCE
