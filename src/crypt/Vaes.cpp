// The block kernels on the vector AES instructions (VAES on 512-bit
// registers, AVX-512): four blocks per instruction where blocks are
// independent (ECB both ways, CBC decryption), and CBC encryption with the
// 32 vector registers of AVX-512, so every round key of every key size stays
// in a register. Only these functions are compiled for those instructions;
// the rest of the library stays baseline x86-64, and nothing here runs unless
// cpuHasVaes() said yes.
// The kernels are instantiated for 10, 12 and 14 rounds; any other round
// count (ROUNDS may be set by hand) goes to the AES-NI kernels, which take
// every count, and so does the one-block function of the CFB1 feedback.
#include "RijndaelInternal.h"

#if KZ_CRYPT_HAVE_VAES

#include <cpuid.h>
#include <immintrin.h>

namespace kzcrypt {

#define KZ_VAES_TARGET __attribute__((target("aes,vaes,avx512f,avx512vl")))
#define KZ_VAES_INLINE __attribute__((target("aes,vaes,avx512f,avx512vl"), always_inline)) inline

namespace {

constexpr std::size_t kWide = 8;         // 512-bit vectors in flight
constexpr std::size_t kVectorBlocks = 4; // blocks per vector
constexpr std::size_t kStride = kWide * kVectorBlocks;
// Every lane: the zero-masking forms of two intrinsics, which compile to the
// plain instruction, spare gcc's warning about their undefined pass-through.
constexpr __mmask16 kAllLanes32 = 0xFFFF;
constexpr __mmask8 kAllLanes64 = 0xFF;

template <int Rounds>
struct WideKeys {
    __m512i k[Rounds + 1];
};

template <int Rounds>
KZ_VAES_INLINE void loadWideKeys(WideKeys<Rounds>& keys, RoundKeys W)
{
#pragma GCC unroll 15
    for (int r = 0; r <= Rounds; ++r)
        keys.k[r] = _mm512_maskz_broadcast_i32x4(kAllLanes32, _mm_loadu_si128(reinterpret_cast<const __m128i*>(W[r])));
}

// Which 64-bit lanes hold the first `blocks` (1..4) blocks of a vector.
KZ_VAES_INLINE __mmask8 laneMask(std::size_t blocks)
{
    return static_cast<__mmask8>((1u << (2 * blocks)) - 1u);
}

// A vector's blocks, only the first `blocks` of them read (the rest zero), so
// nothing past the buffer's end is touched.
KZ_VAES_INLINE __m512i loadBlocks(const unsigned char* p, std::size_t blocks)
{
    return blocks >= kVectorBlocks ? _mm512_loadu_si512(p) : _mm512_maskz_loadu_epi64(laneMask(blocks), p);
}

KZ_VAES_INLINE void storeBlocks(unsigned char* p, __m512i v, std::size_t blocks)
{
    if (blocks >= kVectorBlocks)
        _mm512_storeu_si512(p, v);
    else
        _mm512_mask_storeu_epi64(p, laneMask(blocks), v);
}

template <int Rounds, bool Encrypt, std::size_t N>
KZ_VAES_INLINE void wideRounds(__m512i (&x)[N], const WideKeys<Rounds>& keys)
{
    const __m512i first = Encrypt ? keys.k[0] : keys.k[Rounds];
#pragma GCC unroll 8
    for (std::size_t i = 0; i < N; ++i)
        x[i] = _mm512_xor_si512(x[i], first);
    if (Encrypt) {
#pragma GCC unroll 14
        for (int r = 1; r < Rounds; ++r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < N; ++i)
                x[i] = _mm512_aesenc_epi128(x[i], keys.k[r]);
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < N; ++i)
            x[i] = _mm512_aesenclast_epi128(x[i], keys.k[Rounds]);
    } else {
#pragma GCC unroll 14
        for (int r = Rounds - 1; r > 0; --r) {
#pragma GCC unroll 8
            for (std::size_t i = 0; i < N; ++i)
                x[i] = _mm512_aesdec_epi128(x[i], keys.k[r]);
        }
#pragma GCC unroll 8
        for (std::size_t i = 0; i < N; ++i)
            x[i] = _mm512_aesdeclast_epi128(x[i], keys.k[0]);
    }
}

template <int Rounds, bool Encrypt>
KZ_VAES_TARGET void ecbWide(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W)
{
    WideKeys<Rounds> keys;
    loadWideKeys(keys, W);
    for (; blocks >= kStride; blocks -= kStride, in += 16 * kStride, out += 16 * kStride) {
        __m512i x[kWide];
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kWide; ++i)
            x[i] = _mm512_loadu_si512(in + 64 * i);
        wideRounds<Rounds, Encrypt>(x, keys);
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kWide; ++i)
            _mm512_storeu_si512(out + 64 * i, x[i]);
    }
    while (blocks > 0) {
        const std::size_t now = blocks < kVectorBlocks ? blocks : kVectorBlocks;
        __m512i x[1] = {loadBlocks(in, now)};
        wideRounds<Rounds, Encrypt>(x, keys);
        storeBlocks(out, x[0], now);
        blocks -= now;
        in += 16 * now;
        out += 16 * now;
    }
}

// The vector of the blocks just before those of `current`: its first block
// is the last block of `previous`, its other three the first three of
// `current`.
KZ_VAES_INLINE __m512i shiftedByOneBlock(__m512i current, __m512i previous)
{
    return _mm512_maskz_alignr_epi64(kAllLanes64, current, previous, 6);
}

// CBC decryption: every plaintext block is D(c[i]) ^ c[i-1], so 32 blocks go
// through the rounds together. All ciphertext of a stride is loaded before
// anything is stored, so in and out may be the same buffer.
template <int Rounds>
KZ_VAES_TARGET void cbcDecryptWide(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W,
                                   const unsigned char iv[16])
{
    WideKeys<Rounds> keys;
    loadWideKeys(keys, W);
    // Only the last block of `previous` is ever used.
    __m512i previous = _mm512_maskz_broadcast_i32x4(kAllLanes32, _mm_loadu_si128(reinterpret_cast<const __m128i*>(iv)));
    for (; blocks >= kStride; blocks -= kStride, in += 16 * kStride, out += 16 * kStride) {
        __m512i c[kWide], x[kWide];
#pragma GCC unroll 8
        for (std::size_t i = 0; i < kWide; ++i)
            x[i] = c[i] = _mm512_loadu_si512(in + 64 * i);
        wideRounds<Rounds, false>(x, keys);
        _mm512_storeu_si512(out, _mm512_xor_si512(x[0], shiftedByOneBlock(c[0], previous)));
#pragma GCC unroll 8
        for (std::size_t i = 1; i < kWide; ++i)
            _mm512_storeu_si512(out + 64 * i, _mm512_xor_si512(x[i], shiftedByOneBlock(c[i], c[i - 1])));
        previous = c[kWide - 1];
    }
    while (blocks > 0) {
        const std::size_t now = blocks < kVectorBlocks ? blocks : kVectorBlocks;
        const __m512i c = loadBlocks(in, now);
        __m512i x[1] = {c};
        wideRounds<Rounds, false>(x, keys);
        storeBlocks(out, _mm512_xor_si512(x[0], shiftedByOneBlock(c, previous)), now);
        previous = c;
        blocks -= now;
        in += 16 * now;
        out += 16 * now;
    }
}

// CBC encryption is one chain, so its speed is the latency of the rounds.
// The round keys live in registers (32 of them with AVX-512), and the next
// plaintext block together with the first round key is folded into the last
// round's key: AESENCLAST ends with an XOR of its key, so
// AESENCLAST(s, k[last] ^ w) is the ciphertext block XOR w, which is the next
// block's state after its first key addition, with w = plaintext ^ k[0].
// The chain then runs from one AES instruction straight into the next; the
// ciphertext is recovered beside it by XORing w out again.
template <int Rounds>
KZ_VAES_TARGET void cbcEncryptChain(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W,
                                    const unsigned char iv[16])
{
    if (blocks == 0)
        return;
    __m128i k[Rounds + 1];
#pragma GCC unroll 15
    for (int r = 0; r <= Rounds; ++r)
        k[r] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(W[r]));
    const auto load = [](const unsigned char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
    __m128i state = _mm_xor_si128(_mm_xor_si128(load(in), k[0]), load(iv));
    for (; blocks > 1; --blocks, in += 16, out += 16) {
        const __m128i next = _mm_xor_si128(load(in + 16), k[0]);
#pragma GCC unroll 14
        for (int r = 1; r < Rounds; ++r)
            state = _mm_aesenc_si128(state, k[r]);
        state = _mm_aesenclast_si128(state, _mm_xor_si128(k[Rounds], next));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_xor_si128(state, next));
    }
#pragma GCC unroll 14
    for (int r = 1; r < Rounds; ++r)
        state = _mm_aesenc_si128(state, k[r]);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_aesenclast_si128(state, k[Rounds]));
}

// VAES, AVX-512F and AVX-512VL from CPUID leaf 7, and the operating system
// saving the vector state they use (XCR0: SSE, AVX, opmask and both halves
// of the upper ZMM state). Asked directly: not every compiler's
// __builtin_cpu_supports knows "vaes".
bool processorAndSystemHaveVaes()
{
    unsigned a = 0, b = 0, c = 0, d = 0;
    if (!__get_cpuid(1, &a, &b, &c, &d) || !(c & bit_OSXSAVE))
        return false;
    unsigned xcr0Low = 0, xcr0High = 0;
    __asm__("xgetbv" : "=a"(xcr0Low), "=d"(xcr0High) : "c"(0));
    constexpr unsigned kVectorState = 0x2 | 0x4 | 0x20 | 0x40 | 0x80;
    if ((xcr0Low & kVectorState) != kVectorState)
        return false;
    if (!__get_cpuid_count(7, 0, &a, &b, &c, &d))
        return false;
    constexpr unsigned kAvx512F = 1u << 16, kAvx512VL = 1u << 31, kVaes = 1u << 9;
    return (b & kAvx512F) && (b & kAvx512VL) && (c & kVaes);
}

bool available()
{
    static const bool has = kAesNi.available() && processorAndSystemHaveVaes();
    return has;
}

void encryptBlock(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds)
{
    kAesNi.encryptBlock(in, out, W, rounds);
}

void encryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    switch (rounds) {
    case 10: ecbWide<10, true>(in, out, blocks, W); break;
    case 12: ecbWide<12, true>(in, out, blocks, W); break;
    case 14: ecbWide<14, true>(in, out, blocks, W); break;
    default: kAesNi.encryptEcb(in, out, blocks, W, rounds); break;
    }
}

void decryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    switch (rounds) {
    case 10: ecbWide<10, false>(in, out, blocks, W); break;
    case 12: ecbWide<12, false>(in, out, blocks, W); break;
    case 14: ecbWide<14, false>(in, out, blocks, W); break;
    default: kAesNi.decryptEcb(in, out, blocks, W, rounds); break;
    }
}

void encryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                const unsigned char iv[16])
{
    switch (rounds) {
    case 10: cbcEncryptChain<10>(in, out, blocks, W, iv); break;
    case 12: cbcEncryptChain<12>(in, out, blocks, W, iv); break;
    case 14: cbcEncryptChain<14>(in, out, blocks, W, iv); break;
    default: kAesNi.encryptCbc(in, out, blocks, W, rounds, iv); break;
    }
}

void decryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                const unsigned char iv[16])
{
    switch (rounds) {
    case 10: cbcDecryptWide<10>(in, out, blocks, W, iv); break;
    case 12: cbcDecryptWide<12>(in, out, blocks, W, iv); break;
    case 14: cbcDecryptWide<14>(in, out, blocks, W, iv); break;
    default: kAesNi.decryptCbc(in, out, blocks, W, rounds, iv); break;
    }
}

} // namespace

const Implementation kVaes = {
    RIJNDAEL_VAES, available, encryptBlock, encryptEcb, decryptEcb, encryptCbc, decryptCbc,
};

} // namespace kzcrypt

#endif // KZ_CRYPT_HAVE_VAES
