// The stored-string format: a 32-bit little-endian length (characters + 1),
// the characters and a NUL.
#include "KZFileHeader.h"

#include "LittleEndian.h"

#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>

using kzfiles::loadLittleEndian;
using kzfiles::storeLittleEndian;

namespace {

// A damaged length must not make us allocate gigabytes before we know the data
// is there, so the data is read in pieces of this size.
constexpr std::size_t kReadPiece = std::size_t(1) << 20;

// Reads `size` bytes of string data and keeps the first size - 1. Bytes that
// do not arrive are NUL, as if read into a zero-filled buffer.
std::string readTextOfStoredLength(std::istream& in, std::size_t size)
{
    std::string data;
    while (data.size() < size) {
        const std::size_t before = data.size();
        const std::size_t piece = std::min(kReadPiece, size - before);
        data.resize(before + piece);
        in.read(&data[before], static_cast<std::streamsize>(piece));
        const auto arrived = static_cast<std::size_t>(in.gcount());
        if (arrived < piece) {
            data.resize(before + arrived);
            break;
        }
    }
    data.resize(size - 1, '\0');
    return data;
}

std::uint32_t readLength(std::istream& in)
{
    unsigned char bytes[4] = {0, 0, 0, 0};
    in.read(reinterpret_cast<char*>(bytes), sizeof bytes);
    return loadLittleEndian(bytes, sizeof bytes);
}

} // namespace

bool writeString(const std::string& s, std::ostream& out)
{
    if (s.size() >= std::numeric_limits<std::uint32_t>::max()) {
        out.setstate(std::ios::failbit);
        return false;
    }
    unsigned char length[4];
    storeLittleEndian(static_cast<std::uint32_t>(s.size() + 1), length, sizeof length);
    out.write(reinterpret_cast<const char*>(length), sizeof length);
    out.write(s.c_str(), static_cast<std::streamsize>(s.size() + 1));
    return !out.fail();
}

bool readString(std::string& s, std::istream& in)
{
    const auto length = static_cast<std::int32_t>(readLength(in));
    if (in.fail() || length <= 0)
        return false;
    s = readTextOfStoredLength(in, static_cast<std::size_t>(length));
    return !in.fail();
}

int readStringFromStream(std::istream& in, std::string& s, unsigned int maxLen)
{
    const std::uint32_t length = readLength(in);
    const std::uint32_t size = std::min<std::uint32_t>(length, maxLen);
    if (size == 0)
        return 0;
    if (in.fail() || size > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
        return 0;
    s = readTextOfStoredLength(in, size);
    return static_cast<int>(length);
}

std::uint32_t getBinaryStoreSize(const std::string& s)
{
    return static_cast<std::uint32_t>(s.size() + 5) != 0 ? 1u : 0u;
}
