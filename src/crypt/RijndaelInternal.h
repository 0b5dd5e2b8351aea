// Internal seams of the cipher: the clamped round count, the portable
// one-block functions with an explicit round count, and the table of block
// functions each implementation (portable, AES-NI, VAES on AVX-512, the ARMv8
// Cryptography Extensions) provides.
#ifndef KZ_RIJNDAEL_INTERNAL_H
#define KZ_RIJNDAEL_INTERNAL_H

#include "KZCrypt.h"

#include <cstddef>
#include <type_traits>

// The instruction sets this architecture can have; whether the processor in
// hand has them is asked at run time (Implementation::available).
#if defined(__x86_64__) || defined(__i386__)
#define KZ_CRYPT_HAVE_AESNI 1
#endif
#if defined(__x86_64__)
#define KZ_CRYPT_HAVE_VAES 1
#endif
// The capability is read from the kernel's HWCAP, so Linux only.
#if defined(__aarch64__) && defined(__linux__)
#define KZ_CRYPT_HAVE_ARMCE 1
#endif

namespace kzcrypt {

using RoundKeys = const unsigned char (*)[4][4]; // W[0..rounds], block byte order

// ROUNDS clamped to 0..MAXROUNDS, so no schedule is indexed past its end.
int effectiveRounds();

void encryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);
void decryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);

// One implementation of the block functions. Every implementation gives the
// bytes of the portable code for every round count 0..14, and takes in and
// out equal. Its functions may only be called when available() said yes.
struct Implementation {
    int id;              // RIJNDAEL_PORTABLE, RIJNDAEL_HARDWARE (AES-NI or ARMv8) or RIJNDAEL_VAES
    bool (*available)(); // the processor has the instructions, the system saves their state
    void (*encryptBlock)(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);
    void (*encryptEcb)(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
    void (*decryptEcb)(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
    void (*encryptCbc)(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                       const unsigned char iv[16]);
    void (*decryptCbc)(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                       const unsigned char iv[16]);
};

// Calls kernel(rounds) with the round count of the three key sizes (10, 12,
// 14) as a compile-time constant, so that a hardware kernel's loops unroll,
// and with any other count (ROUNDS may be set by hand) as it is.
template <class Kernel>
inline void withRoundCount(int rounds, Kernel&& kernel)
{
    switch (rounds) {
    case 10: kernel(std::integral_constant<int, 10>()); break;
    case 12: kernel(std::integral_constant<int, 12>()); break;
    case 14: kernel(std::integral_constant<int, 14>()); break;
    default: kernel(rounds); break;
    }
}

// The buffer functions of a hardware implementation, over its kernels, each
// called with the round count as withRoundCount passes it:
//   Kernels::ecb(bool encrypt, in, out, blocks, W, rounds)
//   Kernels::cbc(bool encrypt, in, out, blocks, W, rounds, iv)
template <class Kernels>
struct KernelEntries {
    static void encryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
    {
        withRoundCount(rounds, [&](auto r) { Kernels::ecb(true, in, out, blocks, W, r); });
    }
    static void decryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
    {
        withRoundCount(rounds, [&](auto r) { Kernels::ecb(false, in, out, blocks, W, r); });
    }
    static void encryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                           const unsigned char iv[16])
    {
        withRoundCount(rounds, [&](auto r) { Kernels::cbc(true, in, out, blocks, W, r, iv); });
    }
    static void decryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                           const unsigned char iv[16])
    {
        withRoundCount(rounds, [&](auto r) { Kernels::cbc(false, in, out, blocks, W, r, iv); });
    }
};

extern const Implementation kPortable; // table-driven, everywhere
#if KZ_CRYPT_HAVE_AESNI
extern const Implementation kAesNi; // one block per AES instruction
#endif
#if KZ_CRYPT_HAVE_VAES
extern const Implementation kVaes; // four blocks per instruction where blocks are independent
#endif
#if KZ_CRYPT_HAVE_ARMCE
extern const Implementation kArmCe; // AESE/AESD per round, the hardware path on ARM64
#endif

} // namespace kzcrypt

#endif // KZ_RIJNDAEL_INTERNAL_H
