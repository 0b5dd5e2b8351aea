// KZCryptRijndael encode/decode of 16 MiB against OpenSSL's EVP AES-CBC with
// the same key and data: on the library's default path (the fastest the
// processor has), and on the AES-NI and the portable paths.
// Each of our benchmarks reports `vs_openssl`: its throughput over OpenSSL's
// for the same key size and direction, the two run alternately
// (SideBySide.h). On the hardware paths it also reports its throughput over
// the processor's own limit, measured in the same alternation by a loop of
// nothing but the AES instructions over the same bytes:
//   vs_latency_bound     encoding; CBC encryption is one chain, so the limit
//                        is `rounds` dependent AESENC/AESENCLAST per block.
//   vs_throughput_bound  decoding; blocks are independent, so the limit is
//                        how many VAESDEC (AES-NI path: AESDEC) the processor
//                        retires with as many blocks in flight as keep it
//                        busy.
#include "KZCrypt.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include "SideBySide.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kSize = 16u << 20;
const unsigned char kIv[16] = {0x7E, 0x21, 0xC9, 0xA4, 0xD0, 0x5B, 0x38, 0xF6,
                               0x7E, 0x21, 0xC9, 0xA4, 0xD0, 0x5B, 0x38, 0xF6};
const std::string kKey = "bench key 32 characters long !!!";

const std::string& data()
{
    static const std::string bytes = [] {
        std::mt19937 rng(42);
        std::string out(kSize, '\0');
        for (char& c : out)
            c = static_cast<char>(rng());
        return out;
    }();
    return bytes;
}

// OpenSSL's EVP AES-CBC over the data, without padding.
class OpenSslCbc {
public:
    OpenSslCbc(int bits, bool encrypt)
        : m_key(kKey.begin(), kKey.begin() + bits / 8), m_out(kSize + 16),
          m_cipher(bits == 128 ? EVP_aes_128_cbc() : EVP_aes_256_cbc()), m_ctx(EVP_CIPHER_CTX_new()), m_encrypt(encrypt)
    {
    }
    ~OpenSslCbc() { EVP_CIPHER_CTX_free(m_ctx); }
    OpenSslCbc(const OpenSslCbc&) = delete;
    OpenSslCbc& operator=(const OpenSslCbc&) = delete;

    void pass()
    {
        int len = 0;
        EVP_CipherInit_ex(m_ctx, m_cipher, nullptr, m_key.data(), kIv, m_encrypt ? 1 : 0);
        EVP_CIPHER_CTX_set_padding(m_ctx, 0);
        EVP_CipherUpdate(m_ctx, m_out.data(), &len, reinterpret_cast<const unsigned char*>(data().data()),
                         static_cast<int>(kSize));
        benchmark::DoNotOptimize(m_out.data());
    }

private:
    std::vector<unsigned char> m_key, m_out;
    const EVP_CIPHER* m_cipher;
    EVP_CIPHER_CTX* m_ctx;
    bool m_encrypt;
};

void openSsl(benchmark::State& state, int bits, bool encrypt)
{
    OpenSslCbc cbc(bits, encrypt);
    for (auto _ : state)
        cbc.pass();
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

#if defined(__x86_64__)

#define KZ_BENCH_AES __attribute__((target("aes,sse4.1")))
#define KZ_BENCH_VAES __attribute__((target("aes,vaes,avx512f,avx512vl")))

// Round keys for the floors: their values change no timing.
struct FloorKeys {
    unsigned char k[MAXROUNDS + 1][16];
    FloorKeys()
    {
        for (int r = 0; r <= MAXROUNDS; ++r)
            for (int i = 0; i < 16; ++i)
                k[r][i] = static_cast<unsigned char>(kIv[i] + 37 * r);
    }
};
const FloorKeys kFloorKeys;

KZ_BENCH_AES inline __m128i load128(const unsigned char* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// The chain's floor: exactly Rounds dependent AES instructions per block. The
// block's bytes enter through the last round's key, outside the chain, and
// each result is stored over them.
template <int Rounds>
KZ_BENCH_AES void encryptChainFloor(unsigned char* bytes, std::size_t size)
{
    __m128i k[Rounds + 1];
    for (int r = 0; r <= Rounds; ++r)
        k[r] = load128(kFloorKeys.k[r]);
    __m128i state = k[0];
    for (; size >= 16; size -= 16, bytes += 16) {
#pragma GCC unroll 14
        for (int r = 1; r < Rounds; ++r)
            state = _mm_aesenc_si128(state, k[r]);
        state = _mm_aesenclast_si128(state, _mm_xor_si128(k[Rounds], load128(bytes)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), state);
    }
}

// Decryption's floor on AES-NI: Lanes independent blocks, Rounds
// AESDEC/AESDECLAST each, in place.
template <int Rounds, int Lanes>
KZ_BENCH_AES void aesNiDecryptFloor(unsigned char* bytes, std::size_t size)
{
    __m128i k[Rounds + 1];
    for (int r = 0; r <= Rounds; ++r)
        k[r] = load128(kFloorKeys.k[r]);
    for (; size >= 16 * Lanes; size -= 16 * Lanes, bytes += 16 * Lanes) {
        __m128i x[Lanes];
#pragma GCC unroll 16
        for (int i = 0; i < Lanes; ++i)
            x[i] = load128(bytes + 16 * i);
#pragma GCC unroll 14
        for (int r = Rounds - 1; r > 0; --r) {
#pragma GCC unroll 16
            for (int i = 0; i < Lanes; ++i)
                x[i] = _mm_aesdec_si128(x[i], k[r]);
        }
#pragma GCC unroll 16
        for (int i = 0; i < Lanes; ++i)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + 16 * i), _mm_aesdeclast_si128(x[i], k[0]));
    }
}

// The same on VAES: Lanes 512-bit vectors of four blocks each.
template <int Rounds, int Lanes>
KZ_BENCH_VAES void vaesDecryptFloor(unsigned char* bytes, std::size_t size)
{
    __m512i k[Rounds + 1];
    for (int r = 0; r <= Rounds; ++r)
        k[r] = _mm512_maskz_broadcast_i32x4(0xFFFF, _mm_loadu_si128(reinterpret_cast<const __m128i*>(kFloorKeys.k[r])));
    for (; size >= 64 * Lanes; size -= 64 * Lanes, bytes += 64 * Lanes) {
        __m512i x[Lanes];
#pragma GCC unroll 16
        for (int i = 0; i < Lanes; ++i)
            x[i] = _mm512_loadu_si512(bytes + 64 * i);
#pragma GCC unroll 14
        for (int r = Rounds - 1; r > 0; --r) {
#pragma GCC unroll 16
            for (int i = 0; i < Lanes; ++i)
                x[i] = _mm512_aesdec_epi128(x[i], k[r]);
        }
#pragma GCC unroll 16
        for (int i = 0; i < Lanes; ++i)
            _mm512_storeu_si512(bytes + 64 * i, _mm512_aesdeclast_epi128(x[i], k[0]));
    }
}

using Floor = void (*)(unsigned char*, std::size_t);

template <int Rounds>
std::vector<Floor> decryptFloors(int implementation)
{
    if (implementation == RIJNDAEL_VAES)
        return {vaesDecryptFloor<Rounds, 4>, vaesDecryptFloor<Rounds, 8>, vaesDecryptFloor<Rounds, 12>,
                vaesDecryptFloor<Rounds, 16>};
    return {aesNiDecryptFloor<Rounds, 4>, aesNiDecryptFloor<Rounds, 8>, aesNiDecryptFloor<Rounds, 12>,
            aesNiDecryptFloor<Rounds, 16>};
}

// The candidate that runs fastest over the bytes: the number of blocks in
// flight that keeps this processor busy. The candidates take turns, five
// passes each, and each keeps its best, so a moment of load elsewhere does
// not decide.
Floor fastest(const std::vector<Floor>& candidates, std::string& bytes)
{
    std::vector<double> best(candidates.size(), 1e300);
    for (int pass = 0; pass < 5; ++pass)
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            const double start = bench::threadSeconds();
            candidates[i](reinterpret_cast<unsigned char*>(&bytes[0]), bytes.size());
            best[i] = std::min(best[i], bench::threadSeconds() - start);
        }
    return candidates[static_cast<std::size_t>(std::min_element(best.begin(), best.end()) - best.begin())];
}

// The floor of this path and direction as a peer named for its counter, or
// none for the portable path.
bench::Peers hardwareBound(int bits, bool encrypt, int implementation, std::string& bytes)
{
    if (implementation == RIJNDAEL_PORTABLE)
        return {};
    Floor floor = nullptr;
    if (encrypt)
        floor = bits == 128 ? encryptChainFloor<10> : encryptChainFloor<14>;
    else
        floor = fastest(bits == 128 ? decryptFloors<10>(implementation) : decryptFloors<14>(implementation), bytes);
    auto* data = reinterpret_cast<unsigned char*>(&bytes[0]);
    const std::size_t size = bytes.size();
    return {{encrypt ? "latency_bound" : "throughput_bound", [=] {
                 floor(data, size);
                 benchmark::DoNotOptimize(data);
             }}};
}

#else

bench::Peers hardwareBound(int, bool, int, std::string&)
{
    return {};
}

#endif

const char* pathName(int implementation)
{
    switch (implementation) {
    case RIJNDAEL_VAES: return "vaes";
    case RIJNDAEL_HARDWARE: return "aes-ni";
    default: return "portable";
    }
}

// exact: skip when the processor lacks this path; otherwise take the best
// path up to it (the default choice of the library).
void ours(benchmark::State& state, int bits, bool encrypt, int implementation, bool exact)
{
    const int saved = rijndaelImplementation();
    const int used = rijndaelSetImplementation(implementation);
    if (exact && used != implementation) {
        state.SkipWithError("the processor lacks this path");
        rijndaelSetImplementation(saved);
        return;
    }
    KZCryptRijndael crypt(kKey.substr(0, static_cast<std::size_t>(bits / 8)),
                          bits == 128 ? KZCrypt::Key128 : KZCrypt::Key256, false);
    crypt.setBuffer(data());
    OpenSslCbc peer(bits, encrypt);
    std::string floorBytes = data();
    bench::Peers peers = hardwareBound(bits, encrypt, used, floorBytes);
    peers.insert(peers.begin(), {"openssl", [&] { peer.pass(); }});
    bench::sideBySide(
        state,
        [&] {
            encrypt ? crypt.encode() : crypt.decode();
            benchmark::DoNotOptimize(crypt.getBuffer());
        },
        peers);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
    state.SetLabel(pathName(used));
    rijndaelSetImplementation(saved);
}

int bitsOf(const benchmark::State& s)
{
    return static_cast<int>(s.range(0));
}

void BM_OpenSSL_Encrypt(benchmark::State& s)
{
    openSsl(s, bitsOf(s), true);
}
void BM_OpenSSL_Decrypt(benchmark::State& s)
{
    openSsl(s, bitsOf(s), false);
}
// The library's default: the fastest path this processor has.
void BM_Encode(benchmark::State& s)
{
    ours(s, bitsOf(s), true, RIJNDAEL_VAES, false);
}
void BM_Decode(benchmark::State& s)
{
    ours(s, bitsOf(s), false, RIJNDAEL_VAES, false);
}
void BM_EncodeAesNi(benchmark::State& s)
{
    ours(s, bitsOf(s), true, RIJNDAEL_HARDWARE, true);
}
void BM_DecodeAesNi(benchmark::State& s)
{
    ours(s, bitsOf(s), false, RIJNDAEL_HARDWARE, true);
}
void BM_EncodePortable(benchmark::State& s)
{
    ours(s, bitsOf(s), true, RIJNDAEL_PORTABLE, true);
}
void BM_DecodePortable(benchmark::State& s)
{
    ours(s, bitsOf(s), false, RIJNDAEL_PORTABLE, true);
}

BENCHMARK(BM_OpenSSL_Encrypt)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenSSL_Decrypt)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Encode)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Decode)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeAesNi)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeAesNi)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodePortable)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodePortable)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
