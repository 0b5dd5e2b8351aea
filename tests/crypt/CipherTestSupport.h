// Helpers for the cipher tests: hex text, key records, and a fixture that
// runs a test once on every implementation: the portable code, the
// processor's AES instructions (AES-NI on x86-64, the ARMv8 Cryptography
// Extensions on ARM64) and VAES.
#ifndef KZ_CIPHER_TEST_SUPPORT_H
#define KZ_CIPHER_TEST_SUPPORT_H

#include "KZCrypt.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace crypt_test {

using Bytes = std::vector<unsigned char>;

inline Bytes fromHex(const std::string& hex)
{
    Bytes out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return out;
}

inline std::string toHex(const unsigned char* data, std::size_t size)
{
    std::string out;
    char two[3];
    for (std::size_t i = 0; i < size; ++i) {
        std::snprintf(two, sizeof two, "%02x", data[i]);
        out += two;
    }
    return out;
}

inline std::string toHex(const Bytes& data)
{
    return toHex(data.data(), data.size());
}

inline Bytes randomBytes(std::size_t size, unsigned seed)
{
    std::mt19937 rng(seed);
    Bytes out(size);
    for (unsigned char& b : out)
        b = static_cast<unsigned char>(rng());
    return out;
}

inline keyInstance makeKeyOrFail(unsigned char direction, const std::string& hexKey)
{
    keyInstance key{};
    EXPECT_EQ(makeKey(&key, direction, static_cast<int>(hexKey.size() * 4), hexKey.c_str()), CIPHER_SUCCESS);
    return key;
}

inline cipherInstance cipherOrFail(unsigned char mode, const char* iv = nullptr)
{
    cipherInstance cipher{};
    EXPECT_EQ(cipherInit(&cipher, mode, iv), CIPHER_SUCCESS);
    return cipher;
}

// What RIJNDAEL_HARDWARE is on this architecture.
#if defined(__aarch64__)
constexpr const char* kHardwareName = "ArmCe";
constexpr const char* kHardwareInstructions = "ARMv8 AES instructions (HWCAP_AES)";
#else
constexpr const char* kHardwareName = "AesNi";
constexpr const char* kHardwareInstructions = "AES-NI instructions";
#endif

inline std::string implementationName(const ::testing::TestParamInfo<int>& info)
{
    switch (info.param) {
    case RIJNDAEL_HARDWARE: return kHardwareName;
    case RIJNDAEL_VAES: return "Vaes";
    default: return "Portable";
    }
}

// Every implementation the library has; the processor may lack some.
constexpr int kEveryImplementation[] = {RIJNDAEL_PORTABLE, RIJNDAEL_HARDWARE, RIJNDAEL_VAES};

// Parameter: the implementation; restored (and ROUNDS reset) after each test.
// A path the processor lacks is skipped, saying so.
class EveryPath : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        m_saved = rijndaelImplementation();
        if (!rijndaelImplementationAvailable(GetParam()))
            GTEST_SKIP() << "this processor or build lacks the "
                         << (GetParam() == RIJNDAEL_VAES ? "VAES/AVX-512 instructions" : kHardwareInstructions);
        ASSERT_EQ(rijndaelSetImplementation(GetParam()), GetParam());
    }
    void TearDown() override { rijndaelSetImplementation(m_saved); }

private:
    int m_saved = RIJNDAEL_PORTABLE;
};

#define KZ_EVERY_PATH(suite)                                                                     \
    INSTANTIATE_TEST_SUITE_P(Impl, suite, ::testing::ValuesIn(crypt_test::kEveryImplementation), \
                             crypt_test::implementationName)

} // namespace crypt_test

#endif // KZ_CIPHER_TEST_SUPPORT_H
