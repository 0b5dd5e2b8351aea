// KZCryptRijndael encode/decode of 16 MiB against OpenSSL's EVP AES-CBC with
// the same key and data: on the library's default path (the fastest the
// processor has), and on the AES-NI and the portable paths.
// Each of our benchmarks reports `vs_openssl`: its throughput over OpenSSL's
// for the same key size and direction, the two run alternately
// (SideBySide.h).
#include "KZCrypt.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include "SideBySide.h"

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
          m_cipher(bits == 128 ? EVP_aes_128_cbc() : EVP_aes_256_cbc()), m_ctx(EVP_CIPHER_CTX_new()),
          m_encrypt(encrypt)
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
    bench::sideBySide(
        state,
        [&] {
            encrypt ? crypt.encode() : crypt.decode();
            benchmark::DoNotOptimize(crypt.getBuffer());
        },
        {{"openssl", [&] { peer.pass(); }}});
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
    state.SetLabel(pathName(used));
    rijndaelSetImplementation(saved);
}

int bitsOf(const benchmark::State& s) { return static_cast<int>(s.range(0)); }

void BM_OpenSSL_Encrypt(benchmark::State& s) { openSsl(s, bitsOf(s), true); }
void BM_OpenSSL_Decrypt(benchmark::State& s) { openSsl(s, bitsOf(s), false); }
// The library's default: the fastest path this processor has.
void BM_Encode(benchmark::State& s) { ours(s, bitsOf(s), true, RIJNDAEL_VAES, false); }
void BM_Decode(benchmark::State& s) { ours(s, bitsOf(s), false, RIJNDAEL_VAES, false); }
void BM_EncodeAesNi(benchmark::State& s) { ours(s, bitsOf(s), true, RIJNDAEL_HARDWARE, true); }
void BM_DecodeAesNi(benchmark::State& s) { ours(s, bitsOf(s), false, RIJNDAEL_HARDWARE, true); }
void BM_EncodePortable(benchmark::State& s) { ours(s, bitsOf(s), true, RIJNDAEL_PORTABLE, true); }
void BM_DecodePortable(benchmark::State& s) { ours(s, bitsOf(s), false, RIJNDAEL_PORTABLE, true); }

BENCHMARK(BM_OpenSSL_Encrypt)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenSSL_Decrypt)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Encode)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Decode)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeAesNi)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeAesNi)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodePortable)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodePortable)->Arg(128)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
