// The algorithm layer: key expansion, table-driven block encryption and
// decryption, the round-limited variants and the step functions they use.
#include "RijndaelInternal.h"

#include <cstdint>
#include <cstring>

int ROUNDS = 0;

namespace {

std::uint32_t load32(const unsigned char* p)
{
    return std::uint32_t(p[0]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[2]) << 16 | std::uint32_t(p[3]) << 24;
}

void store32(unsigned char* p, std::uint32_t v)
{
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
    p[2] = static_cast<unsigned char>(v >> 16);
    p[3] = static_cast<unsigned char>(v >> 24);
}

inline unsigned byte0(std::uint32_t v)
{
    return v & 0xff;
}
inline unsigned byte1(std::uint32_t v)
{
    return (v >> 8) & 0xff;
}
inline unsigned byte2(std::uint32_t v)
{
    return (v >> 16) & 0xff;
}
inline unsigned byte3(std::uint32_t v)
{
    return v >> 24;
}

int clampColumns(unsigned char BC)
{
    return BC > MAXBC ? MAXBC : BC;
}

int clamp(int value, int low, int high)
{
    return value < low ? low : value > high ? high : value;
}

} // namespace

namespace kzcrypt {

int effectiveRounds()
{
    return clamp(ROUNDS, 0, MAXROUNDS);
}

void encryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds)
{
    std::uint32_t s0 = load32(in) ^ load32(W[0][0]), s1 = load32(in + 4) ^ load32(W[0][1]);
    std::uint32_t s2 = load32(in + 8) ^ load32(W[0][2]), s3 = load32(in + 12) ^ load32(W[0][3]);
    for (int r = 1; r < rounds; ++r) {
        const std::uint32_t t0 = T1[byte0(s0)] ^ T2[byte1(s1)] ^ T3[byte2(s2)] ^ T4[byte3(s3)] ^ load32(W[r][0]);
        const std::uint32_t t1 = T1[byte0(s1)] ^ T2[byte1(s2)] ^ T3[byte2(s3)] ^ T4[byte3(s0)] ^ load32(W[r][1]);
        const std::uint32_t t2 = T1[byte0(s2)] ^ T2[byte1(s3)] ^ T3[byte2(s0)] ^ T4[byte3(s1)] ^ load32(W[r][2]);
        const std::uint32_t t3 = T1[byte0(s3)] ^ T2[byte1(s0)] ^ T3[byte2(s1)] ^ T4[byte3(s2)] ^ load32(W[r][3]);
        s0 = t0;
        s1 = t1;
        s2 = t2;
        s3 = t3;
    }
    const std::uint32_t s[4] = {s0, s1, s2, s3};
    for (int c = 0; c < 4; ++c) {
        const std::uint32_t v = std::uint32_t(S[byte0(s[c])]) | std::uint32_t(S[byte1(s[(c + 1) & 3])]) << 8
                                | std::uint32_t(S[byte2(s[(c + 2) & 3])]) << 16
                                | std::uint32_t(S[byte3(s[(c + 3) & 3])]) << 24;
        store32(out + 4 * c, v ^ load32(W[rounds][c]));
    }
}

void decryptBlockPortable(const unsigned char in[16], unsigned char out[16], RoundKeys W, int rounds)
{
    std::uint32_t s0 = load32(in) ^ load32(W[rounds][0]), s1 = load32(in + 4) ^ load32(W[rounds][1]);
    std::uint32_t s2 = load32(in + 8) ^ load32(W[rounds][2]), s3 = load32(in + 12) ^ load32(W[rounds][3]);
    for (int r = rounds - 1; r > 0; --r) {
        const std::uint32_t t0 = T5[byte0(s0)] ^ T6[byte1(s3)] ^ T7[byte2(s2)] ^ T8[byte3(s1)] ^ load32(W[r][0]);
        const std::uint32_t t1 = T5[byte0(s1)] ^ T6[byte1(s0)] ^ T7[byte2(s3)] ^ T8[byte3(s2)] ^ load32(W[r][1]);
        const std::uint32_t t2 = T5[byte0(s2)] ^ T6[byte1(s1)] ^ T7[byte2(s0)] ^ T8[byte3(s3)] ^ load32(W[r][2]);
        const std::uint32_t t3 = T5[byte0(s3)] ^ T6[byte1(s2)] ^ T7[byte2(s1)] ^ T8[byte3(s0)] ^ load32(W[r][3]);
        s0 = t0;
        s1 = t1;
        s2 = t2;
        s3 = t3;
    }
    const std::uint32_t s[4] = {s0, s1, s2, s3};
    for (int c = 0; c < 4; ++c) {
        const std::uint32_t v = std::uint32_t(S5[byte0(s[c])]) | std::uint32_t(S5[byte1(s[(c + 3) & 3])]) << 8
                                | std::uint32_t(S5[byte2(s[(c + 2) & 3])]) << 16
                                | std::uint32_t(S5[byte3(s[(c + 1) & 3])]) << 24;
        store32(out + 4 * c, v ^ load32(W[0][c]));
    }
}

} // namespace kzcrypt

// --- key schedule --------------------------------------------------------------

int rijndaelKeySched(const unsigned char k[4][MAXKC], int keyBits, unsigned char W[MAXROUNDS + 1][4][4])
{
    if (!k || !W || (keyBits != 128 && keyBits != 192 && keyBits != 256))
        return -1;
    const int nk = keyBits / 32;
    const int words = 4 * (kzcrypt::effectiveRounds() + 1);
    unsigned char w[4 * (MAXROUNDS + 1)][4];
    for (int i = 0; i < words; ++i) {
        if (i < nk) {
            for (int row = 0; row < 4; ++row)
                w[i][row] = k[row][i];
            continue;
        }
        unsigned char t[4] = {w[i - 1][0], w[i - 1][1], w[i - 1][2], w[i - 1][3]};
        if (i % nk == 0) {
            const unsigned char first = t[0];
            t[0] = static_cast<unsigned char>(S[t[1]] ^ rcon[i / nk - 1]);
            t[1] = S[t[2]];
            t[2] = S[t[3]];
            t[3] = S[first];
        } else if (nk > 6 && i % nk == 4) {
            for (unsigned char& b : t)
                b = S[b];
        }
        for (int row = 0; row < 4; ++row)
            w[i][row] = static_cast<unsigned char>(w[i - nk][row] ^ t[row]);
    }
    std::memcpy(W, w, static_cast<std::size_t>(words) * 4);
    return 0;
}

int rijndaelKeyEnctoDec(int, unsigned char W[MAXROUNDS + 1][4][4])
{
    if (!W)
        return -1;
    const int rounds = kzcrypt::effectiveRounds();
    for (int r = 1; r < rounds; ++r)
        for (int c = 0; c < 4; ++c) {
            unsigned char* col = W[r][c];
            store32(col, U1[col[0]] ^ U2[col[1]] ^ U3[col[2]] ^ U4[col[3]]);
        }
    return 0;
}

// --- one block -------------------------------------------------------------------

int rijndaelEncrypt(const unsigned char in[16], unsigned char out[16], const unsigned char W[MAXROUNDS + 1][4][4])
{
    if (!in || !out || !W)
        return -1;
    kzcrypt::encryptBlockPortable(in, out, W, kzcrypt::effectiveRounds());
    return 0;
}

int rijndaelDecrypt(const unsigned char in[16], unsigned char out[16], const unsigned char W[MAXROUNDS + 1][4][4])
{
    if (!in || !out || !W)
        return -1;
    kzcrypt::decryptBlockPortable(in, out, W, kzcrypt::effectiveRounds());
    return 0;
}

int rijndaelEncryptRound(unsigned char a[4][MAXBC], const unsigned char W[MAXROUNDS + 1][4][4], int rounds)
{
    if (!a || !W)
        return -1;
    const int total = kzcrypt::effectiveRounds();
    const int r = clamp(rounds, 0, total);
    KeyAddition(a, W[0], MAXBC);
    for (int i = 1; i <= r && i < total; ++i) {
        Substitution(a, S, MAXBC);
        ShiftRow(a, 0, MAXBC);
        MixColumn(a, MAXBC);
        KeyAddition(a, W[i], MAXBC);
    }
    if (r == total) {
        Substitution(a, S, MAXBC);
        ShiftRow(a, 0, MAXBC);
        KeyAddition(a, W[total], MAXBC);
    }
    return 0;
}

int rijndaelDecryptRound(unsigned char a[4][MAXBC], const unsigned char W[MAXROUNDS + 1][4][4], int rounds)
{
    if (!a || !W)
        return -1;
    const int total = kzcrypt::effectiveRounds();
    const int r = clamp(rounds, 0, total);
    KeyAddition(a, W[total], MAXBC);
    Substitution(a, Si, MAXBC);
    ShiftRow(a, 1, MAXBC);
    for (int i = total - 1; i > r; --i) {
        KeyAddition(a, W[i], MAXBC);
        InvMixColumn(a, MAXBC);
        Substitution(a, Si, MAXBC);
        ShiftRow(a, 1, MAXBC);
    }
    if (r == 0)
        KeyAddition(a, W[0], MAXBC);
    return 0;
}

// --- step functions ----------------------------------------------------------------

unsigned char mul(unsigned char a, unsigned char b)
{
    if (a == 0 || b == 0)
        return 0;
    return Alogtable[(Logtable[a] + Logtable[b]) % 255];
}

void KeyAddition(unsigned char a[4][MAXBC], const unsigned char rk[4][4], unsigned char BC)
{
    if (!a || !rk)
        return;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < clampColumns(BC); ++col)
            a[row][col] ^= rk[col][row];
}

void ShiftRow(unsigned char a[4][MAXBC], unsigned char d, unsigned char BC)
{
    const int bc = clampColumns(BC);
    if (!a || bc == 0)
        return;
    for (int row = 1; row < 4; ++row) {
        const int shift = shifts[0][row][d ? 1 : 0] % bc;
        unsigned char rotated[MAXBC];
        for (int col = 0; col < bc; ++col)
            rotated[col] = a[row][(col + shift) % bc];
        std::memcpy(a[row], rotated, static_cast<std::size_t>(bc));
    }
}

void Substitution(unsigned char a[4][MAXBC], const unsigned char box[256], unsigned char BC)
{
    if (!a || !box)
        return;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < clampColumns(BC); ++col)
            a[row][col] = box[a[row][col]];
}

void MixColumn(unsigned char a[4][MAXBC], unsigned char BC)
{
    if (!a)
        return;
    for (int col = 0; col < clampColumns(BC); ++col) {
        unsigned char b[4];
        for (int row = 0; row < 4; ++row)
            b[row] = static_cast<unsigned char>(mul(2, a[row][col]) ^ mul(3, a[(row + 1) % 4][col])
                                                ^ a[(row + 2) % 4][col] ^ a[(row + 3) % 4][col]);
        for (int row = 0; row < 4; ++row)
            a[row][col] = b[row];
    }
}

void InvMixColumn(unsigned char a[4][MAXBC], unsigned char BC)
{
    if (!a)
        return;
    for (int col = 0; col < clampColumns(BC); ++col) {
        const std::uint32_t v = U1[a[0][col]] ^ U2[a[1][col]] ^ U3[a[2][col]] ^ U4[a[3][col]];
        for (int row = 0; row < 4; ++row)
            a[row][col] = static_cast<unsigned char>(v >> (8 * row));
    }
}
