// The published Rijndael tables, computed at compile time from the field
// arithmetic of GF(2^8) (polynomial x^8 + x^4 + x^3 + x + 1, generator 3)
// instead of typed out. The 32-bit tables keep their four bytes in memory
// order: byte 0 is the lowest byte of the word.
#include "KZCrypt.h"

#include <cstdint>

namespace {

constexpr std::uint8_t xtime(std::uint8_t a)
{
    return static_cast<std::uint8_t>((a << 1) ^ ((a & 0x80) ? 0x1b : 0));
}

constexpr std::uint8_t gmul(std::uint8_t a, std::uint8_t b)
{
    std::uint8_t product = 0;
    while (b) {
        if (b & 1)
            product ^= a;
        a = xtime(a);
        b >>= 1;
    }
    return product;
}

constexpr std::uint8_t rotl8(std::uint8_t b, int n)
{
    return static_cast<std::uint8_t>((b << n) | (b >> (8 - n)));
}

constexpr std::uint32_t bytes(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3)
{
    return std::uint32_t(b0) | std::uint32_t(b1) << 8 | std::uint32_t(b2) << 16 | std::uint32_t(b3) << 24;
}

struct Generated {
    std::uint8_t log[256]{}, alog[256]{}, s[256]{}, si[256]{};
    std::uint32_t t[8][256]{}, u[4][256]{};
    std::uint32_t rc[30]{};
};

constexpr Generated generate()
{
    Generated g;
    std::uint8_t power = 1;
    for (int i = 0; i < 256; ++i) {
        g.alog[i] = power;
        if (i < 255)
            g.log[power] = static_cast<std::uint8_t>(i);
        power = gmul(power, 3);
    }
    g.log[0] = 0;
    for (int x = 0; x < 256; ++x) {
        const std::uint8_t inverse = x ? g.alog[(255 - g.log[x]) % 255] : 0;
        const std::uint8_t sx = static_cast<std::uint8_t>(inverse ^ rotl8(inverse, 1) ^ rotl8(inverse, 2)
                                                          ^ rotl8(inverse, 3) ^ rotl8(inverse, 4) ^ 0x63);
        g.s[x] = sx;
        g.si[sx] = static_cast<std::uint8_t>(x);
    }
    for (int x = 0; x < 256; ++x) {
        const std::uint8_t s = g.s[x], s2 = gmul(s, 2), s3 = gmul(s, 3);
        g.t[0][x] = bytes(s2, s, s, s3);
        g.t[1][x] = bytes(s3, s2, s, s);
        g.t[2][x] = bytes(s, s3, s2, s);
        g.t[3][x] = bytes(s, s, s3, s2);
        const std::uint8_t v = g.si[x];
        const std::uint8_t ve = gmul(v, 14), v9 = gmul(v, 9), vd = gmul(v, 13), vb = gmul(v, 11);
        g.t[4][x] = bytes(ve, v9, vd, vb);
        g.t[5][x] = bytes(vb, ve, v9, vd);
        g.t[6][x] = bytes(vd, vb, ve, v9);
        g.t[7][x] = bytes(v9, vd, vb, ve);
        const std::uint8_t b = static_cast<std::uint8_t>(x);
        const std::uint8_t be = gmul(b, 14), b9 = gmul(b, 9), bd = gmul(b, 13), bb = gmul(b, 11);
        g.u[0][x] = bytes(be, b9, bd, bb);
        g.u[1][x] = bytes(bb, be, b9, bd);
        g.u[2][x] = bytes(bd, bb, be, b9);
        g.u[3][x] = bytes(b9, bd, bb, be);
    }
    std::uint8_t r = 1;
    for (int i = 0; i < 30; ++i) {
        g.rc[i] = r;
        r = xtime(r);
    }
    return g;
}

constexpr Generated kGen = generate();

} // namespace

// Spell out 256 initialisers so the exported arrays are constant-initialised.
#define KZ_R4(f, i) f(i) f((i) + 1) f((i) + 2) f((i) + 3)
#define KZ_R16(f, i) KZ_R4(f, i) KZ_R4(f, (i) + 4) KZ_R4(f, (i) + 8) KZ_R4(f, (i) + 12)
#define KZ_R64(f, i) KZ_R16(f, i) KZ_R16(f, (i) + 16) KZ_R16(f, (i) + 32) KZ_R16(f, (i) + 48)
#define KZ_R256(f) KZ_R64(f, 0) KZ_R64(f, 64) KZ_R64(f, 128) KZ_R64(f, 192)

#define KZ_LOG(i) kGen.log[i],
#define KZ_ALOG(i) kGen.alog[i],
#define KZ_S(i) kGen.s[i],
#define KZ_SI(i) kGen.si[i],
#define KZ_T1(i) kGen.t[0][i],
#define KZ_T2(i) kGen.t[1][i],
#define KZ_T3(i) kGen.t[2][i],
#define KZ_T4(i) kGen.t[3][i],
#define KZ_T5(i) kGen.t[4][i],
#define KZ_T6(i) kGen.t[5][i],
#define KZ_T7(i) kGen.t[6][i],
#define KZ_T8(i) kGen.t[7][i],
#define KZ_U1(i) kGen.u[0][i],
#define KZ_U2(i) kGen.u[1][i],
#define KZ_U3(i) kGen.u[2][i],
#define KZ_U4(i) kGen.u[3][i],
#define KZ_RC(i) kGen.rc[i],

alignas(64) const unsigned char Logtable[256] = {KZ_R256(KZ_LOG)};
alignas(64) const unsigned char Alogtable[256] = {KZ_R256(KZ_ALOG)};
alignas(64) const unsigned char S[256] = {KZ_R256(KZ_S)};
alignas(64) const unsigned char Si[256] = {KZ_R256(KZ_SI)};
alignas(64) const unsigned char S5[256] = {KZ_R256(KZ_SI)};
alignas(64) const std::uint32_t T1[256] = {KZ_R256(KZ_T1)};
alignas(64) const std::uint32_t T2[256] = {KZ_R256(KZ_T2)};
alignas(64) const std::uint32_t T3[256] = {KZ_R256(KZ_T3)};
alignas(64) const std::uint32_t T4[256] = {KZ_R256(KZ_T4)};
alignas(64) const std::uint32_t T5[256] = {KZ_R256(KZ_T5)};
alignas(64) const std::uint32_t T6[256] = {KZ_R256(KZ_T6)};
alignas(64) const std::uint32_t T7[256] = {KZ_R256(KZ_T7)};
alignas(64) const std::uint32_t T8[256] = {KZ_R256(KZ_T8)};
alignas(64) const std::uint32_t U1[256] = {KZ_R256(KZ_U1)};
alignas(64) const std::uint32_t U2[256] = {KZ_R256(KZ_U2)};
alignas(64) const std::uint32_t U3[256] = {KZ_R256(KZ_U3)};
alignas(64) const std::uint32_t U4[256] = {KZ_R256(KZ_U4)};
const std::uint32_t rcon[30] = {KZ_R16(KZ_RC, 0) KZ_R4(KZ_RC, 16) KZ_R4(KZ_RC, 20) KZ_RC(24) KZ_RC(25) KZ_RC(26)
                                    KZ_RC(27) KZ_RC(28) KZ_RC(29)};
const unsigned char shifts[3][4][2] = {
    {{0, 0}, {1, 3}, {2, 2}, {3, 1}},
    {{0, 0}, {1, 5}, {2, 4}, {3, 3}},
    {{0, 0}, {1, 7}, {3, 5}, {4, 4}},
};

// Spot checks against the published values.
static_assert(kGen.s[0x00] == 0x63 && kGen.s[0x53] == 0xed && kGen.s[0xff] == 0x16, "S-box");
static_assert(kGen.si[0x00] == 0x52 && kGen.si[0xff] == 0x7d, "inverse S-box");
static_assert(kGen.log[3] == 1 && kGen.log[2] == 25 && kGen.alog[255] == 1, "log tables");
static_assert(kGen.t[0][0] == 0xa56363c6u && kGen.t[4][0] == 0x50a7f451u, "round tables");
static_assert(kGen.u[0][1] == 0x0b0d090eu && kGen.rc[9] == 0x36 && kGen.rc[29] == 0x91, "U and rcon");
