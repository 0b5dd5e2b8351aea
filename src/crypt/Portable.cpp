// The portable implementation: the table-driven one-block functions, block
// after block. It runs on every processor and is the one to fall back to.
#include "RijndaelInternal.h"

#include <cstring>

namespace kzcrypt {

namespace {

bool always()
{
    return true;
}

void encryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    for (; blocks > 0; --blocks, in += 16, out += 16)
        encryptBlockPortable(in, out, W, rounds);
}

void decryptEcb(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds)
{
    for (; blocks > 0; --blocks, in += 16, out += 16)
        decryptBlockPortable(in, out, W, rounds);
}

void encryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                const unsigned char iv[16])
{
    unsigned char chain[16];
    std::memcpy(chain, iv, 16);
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        for (int j = 0; j < 16; ++j)
            chain[j] ^= in[j];
        encryptBlockPortable(chain, chain, W, rounds);
        std::memcpy(out, chain, 16);
    }
}

// The ciphertext block is copied before its plaintext is written, so in and
// out may be the same buffer.
void decryptCbc(const unsigned char* in, unsigned char* out, std::size_t blocks, RoundKeys W, int rounds,
                const unsigned char iv[16])
{
    unsigned char previous[16], current[16], plain[16];
    std::memcpy(previous, iv, 16);
    for (; blocks > 0; --blocks, in += 16, out += 16) {
        std::memcpy(current, in, 16);
        decryptBlockPortable(current, plain, W, rounds);
        for (int j = 0; j < 16; ++j)
            out[j] = static_cast<unsigned char>(plain[j] ^ previous[j]);
        std::memcpy(previous, current, 16);
    }
}

} // namespace

const Implementation kPortable = {
    RIJNDAEL_PORTABLE, always, encryptBlockPortable, encryptEcb, decryptEcb, encryptCbc, decryptCbc,
};

} // namespace kzcrypt
