// Little-endian byte order for the binary formats, independent of the host.
#ifndef KZBS_FILES_LITTLE_ENDIAN_H
#define KZBS_FILES_LITTLE_ENDIAN_H

#include <cstddef>
#include <cstdint>

namespace kzfiles {

inline void storeLittleEndian(std::uint32_t value, unsigned char* bytes, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

inline std::uint32_t loadLittleEndian(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
    return value;
}

} // namespace kzfiles

#endif // KZBS_FILES_LITTLE_ENDIAN_H
