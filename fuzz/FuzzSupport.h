// Shared by the fuzz targets: a property check that stops the program, so
// that libFuzzer and the corpus replay in the test suite both report it, and
// a reader that takes typed values off the front of a fuzz input.
#ifndef KZBS_FUZZ_SUPPORT_H
#define KZBS_FUZZ_SUPPORT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// A property violated is a finding like a crash: say which, then abort.
#define FUZZ_CHECK(condition)                                                                     \
    do {                                                                                          \
        if (!(condition)) {                                                                       \
            std::fprintf(stderr, "%s:%d: property failed: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                         \
        }                                                                                         \
    } while (0)

// Reads values off the front of the input; past its end every value is 0 and
// every string empty, so a target never needs to check the size itself.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    std::size_t left() const { return m_size - m_pos; }

    std::uint8_t byte() { return m_pos < m_size ? m_data[m_pos++] : 0; }

    std::uint32_t u32()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
            value |= std::uint32_t(byte()) << (8 * i);
        return value;
    }

    // Up to n bytes.
    std::string bytes(std::size_t n)
    {
        n = std::min(n, left());
        std::string s(reinterpret_cast<const char*>(m_data + m_pos), n);
        m_pos += n;
        return s;
    }

    // The bytes up to the next NUL (consumed, not returned) or the end.
    std::string untilNul()
    {
        std::string s;
        while (m_pos < m_size && m_data[m_pos] != 0)
            s += static_cast<char>(m_data[m_pos++]);
        if (m_pos < m_size)
            ++m_pos;
        return s;
    }

    std::string rest() { return bytes(left()); }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

#endif // KZBS_FUZZ_SUPPORT_H
