// Internal seams of the cipher: the clamped round count, the portable
// one-block functions with an explicit round count, and the hardware kernels
// (AES-NI, and VAES on AVX-512).
#ifndef KZ_RIJNDAEL_INTERNAL_H
#define KZ_RIJNDAEL_INTERNAL_H

#include "KZCrypt.h"

#include <cstddef>

namespace kzcrypt {

using RoundKeys = const unsigned char (*)[4][4];   // W[0..rounds], block byte order

// ROUNDS clamped to 0..MAXROUNDS, so no schedule is indexed past its end.
int effectiveRounds();

void encryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);
void decryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);

// AES-NI kernels: same results as the portable code for every round count
// 0..14. Only call them when cpuHasAes() is true. in and out may be equal.
bool cpuHasAes();
void hwEncryptBlock(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds);
void hwEncryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
void hwDecryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
void hwEncryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                  const unsigned char iv[16]);
void hwDecryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                  const unsigned char iv[16]);

// VAES/AVX-512 kernels: the same results again, several blocks per
// instruction. Only call them when cpuHasVaes() is true. in and out may be
// equal.
bool cpuHasVaes();
void vaesEncryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
void vaesDecryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds);
void vaesEncryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                    const unsigned char iv[16]);
void vaesDecryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                    const unsigned char iv[16]);

} // namespace kzcrypt

#endif // KZ_RIJNDAEL_INTERNAL_H
