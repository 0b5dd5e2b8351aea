// The block kernels on the processor's AES instructions. A key schedule is
// already in the layout these instructions want: each round key is 16 bytes
// in block order, and a decryption schedule carries InvMixColumns on its inner
// round keys (the equivalent inverse cipher), exactly what AESDEC expects.
// Kernels are written once for a round count and instantiated for 10, 12 and
// 14 rounds so that the loops unroll; any other count (ROUNDS may be set by
// hand) runs the same code with a run-time count.
#include "RijndaelInternal.h"

#if KZ_CRYPT_HAVE_AESNI

#include <smmintrin.h>
#include <wmmintrin.h>

namespace kzcrypt {

#define KZ_AES_TARGET __attribute__((target("aes,sse4.1")))
#define KZ_AES_INLINE __attribute__((target("aes,sse4.1"), always_inline)) inline

namespace {

constexpr std::size_t kLanes = 8; // blocks in flight where blocks are independent

struct Keys {
    __m128i k[MAXROUNDS + 1];
};

KZ_AES_INLINE void loadKeys(Keys& keys, RoundKeys W, int rounds)
{
#pragma GCC unroll 15
    for (int r = 0; r <= rounds; ++r)
        keys.k[r] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(W[r]));
}

KZ_AES_INLINE __m128i encryptRounds(__m128i x, const Keys& keys, int rounds)
{
#pragma GCC unroll 14
    for (int r = 1; r < rounds; ++r)
        x = _mm_aesenc_si128(x, keys.k[r]);
    return _mm_aesenclast_si128(x, keys.k[rounds]);
}

KZ_AES_INLINE __m128i decryptRounds(__m128i x, const Keys& keys, int rounds)
{
#pragma GCC unroll 14
    for (int r = rounds - 1; r > 0; --r)
        x = _mm_aesdec_si128(x, keys.k[r]);
    return _mm_aesdeclast_si128(x, keys.k[0]);
}

KZ_AES_INLINE __m128i load(const unsigned char* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
KZ_AES_INLINE void store(unsigned char* p, __m128i v)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
}

// Eight independent blocks, each round applied to all of them before the
// next, so the instruction latencies overlap.
template <bool Encrypt>
KZ_AES_INLINE void eightBlocks(__m128i x[kLanes], const Keys& keys, int rounds)
{
    const __m128i first = Encrypt ? keys.k[0] : keys.k[rounds];
#pragma GCC unroll 8
    for (std::size_t i = 0; i < kLanes; ++i)
        x[i] = _mm_xor_si128(x[i], first);
    if (Encrypt) {
#pragma GCC unroll 14
        for (int r = 1; r < rounds; ++r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < kLanes; ++i)
                x[i] = _mm_aesenc_si128(x[i], keys.k[r]);
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = _mm_aesenclast_si128(x[i], keys.k[rounds]);
    } else {
#pragma GCC unroll 14
        for (int r = rounds - 1; r > 0; --r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < kLanes; ++i)
                x[i] = _mm_aesdec_si128(x[i], keys.k[r]);
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = _mm_aesdeclast_si128(x[i], keys.k[0]);
    }
}

template <bool Encrypt>
KZ_AES_INLINE void ecb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    for (; blocks >= kLanes; blocks -= kLanes, in += 16 * kLanes, out += 16 * kLanes) {
        __m128i x[kLanes];
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = load(in + 16 * i);
        eightBlocks<Encrypt>(x, keys, rounds);
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            store(out + 16 * i, x[i]);
    }
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        if (Encrypt)
            store(out, encryptRounds(_mm_xor_si128(load(in), keys.k[0]), keys, rounds));
        else
            store(out, decryptRounds(_mm_xor_si128(load(in), keys.k[rounds]), keys, rounds));
    }
}

// CBC encryption is one chain. The next plaintext block and the first round
// key are folded into the last round's key (AESENCLAST ends with an XOR of
// its key), so the chain runs from one AES instruction straight into the
// next; the ciphertext is recovered beside the chain.
KZ_AES_INLINE void cbcEncrypt(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                              const unsigned char iv[16])
{
    if (blocks == 0)
        return;
    Keys keys{};
    loadKeys(keys, W, rounds);
    __m128i state = _mm_xor_si128(_mm_xor_si128(load(in), keys.k[0]), load(iv));
    for (; blocks > 1; --blocks, in += 16, out += 16) {
        const __m128i next = _mm_xor_si128(load(in + 16), keys.k[0]);
#pragma GCC unroll 14
        for (int r = 1; r < rounds; ++r)
            state = _mm_aesenc_si128(state, keys.k[r]);
        state = _mm_aesenclast_si128(state, _mm_xor_si128(keys.k[rounds], next));
        store(out, _mm_xor_si128(state, next));
    }
    store(out, encryptRounds(state, keys, rounds));
}

// CBC decryption is parallel: eight blocks at a time, the ciphertext kept in
// registers before anything is stored, so in and out may be the same buffer.
KZ_AES_INLINE void cbcDecrypt(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                              const unsigned char iv[16])
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    __m128i previous = load(iv);
    for (; blocks >= kLanes; blocks -= kLanes, in += 16 * kLanes, out += 16 * kLanes) {
        __m128i c[kLanes], x[kLanes];
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kLanes; ++i)
            x[i] = c[i] = load(in + 16 * i);
        eightBlocks<false>(x, keys, rounds);
        store(out, _mm_xor_si128(x[0], previous));
#pragma GCC unroll 8
        for (std::size_t i = 1; i < kLanes; ++i)
            store(out + 16 * i, _mm_xor_si128(x[i], c[i - 1]));
        previous = c[kLanes - 1];
    }
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        const __m128i c = load(in);
        store(out, _mm_xor_si128(decryptRounds(_mm_xor_si128(c, keys.k[rounds]), keys, rounds), previous));
        previous = c;
    }
}

// The kernels' entry points, one per round count (a constant or the
// run-time count, see withRoundCount).
struct Kernels {
    template <class Rounds>
    static KZ_AES_TARGET void ecb(bool encrypt, const unsigned char* in, unsigned char* out, std::size_t blocks,
                                  RoundKeys W, Rounds rounds)
    {
        if (encrypt)
            kzcrypt::ecb<true>(in, out, blocks, W, rounds);
        else
            kzcrypt::ecb<false>(in, out, blocks, W, rounds);
    }

    template <class Rounds>
    static KZ_AES_TARGET void cbc(bool encrypt, const unsigned char* in, unsigned char* out, std::size_t blocks,
                                  RoundKeys W, Rounds rounds, const unsigned char iv[16])
    {
        if (encrypt)
            cbcEncrypt(in, out, blocks, W, rounds, iv);
        else
            cbcDecrypt(in, out, blocks, W, rounds, iv);
    }
};

bool available()
{
    return __builtin_cpu_supports("aes") && __builtin_cpu_supports("sse4.1");
}

KZ_AES_TARGET void encryptBlock(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds)
{
    Keys keys{};
    loadKeys(keys, W, rounds);
    store(out, encryptRounds(_mm_xor_si128(load(in), keys.k[0]), keys, rounds));
}

} // namespace

const Implementation kAesNi = {
    RIJNDAEL_HARDWARE,
    available,
    encryptBlock,
    KernelEntries<Kernels>::encryptEcb,
    KernelEntries<Kernels>::decryptEcb,
    KernelEntries<Kernels>::encryptCbc,
    KernelEntries<Kernels>::decryptCbc,
};

} // namespace kzcrypt

#endif // KZ_CRYPT_HAVE_AESNI
