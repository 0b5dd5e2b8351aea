// readEncrypted + decode on arbitrary bytes: whatever the stream claims, the
// object holds what it says it holds and decoding stays inside it. The first
// byte picks the key size and whether the stream is read seekable or not.
#include "KZCrypt.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <streambuf>
#include <string>

namespace {

// A stream that cannot seek, like a pipe.
class PipeBuf : public std::streambuf {
public:
    PipeBuf(const char* data, std::size_t size)
    {
        char* begin = const_cast<char*>(data);
        setg(begin, begin, begin + size);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const KZCrypt::KeySize sizes[] = {KZCrypt::Key128, KZCrypt::Key192, KZCrypt::Key256};
    const unsigned choice = data[0];
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

    KZCryptRijndael crypt("fuzz key \xE4", sizes[choice % 3], (choice & 4) != 0);
    bool ok;
    if (choice & 8) {
        PipeBuf pipe(bytes.data(), bytes.size());
        std::istream in(&pipe);
        ok = crypt.readEncrypted(in);
    } else {
        std::istringstream in(bytes);
        ok = crypt.readEncrypted(in);
    }
    // Whatever happened, a held buffer holds cryptedSize bytes, and a stream
    // read in full never claims more bytes than it had.
    if (!crypt.getBuffer() && crypt.getCryptedSize())
        std::abort();
    if (ok && crypt.getCryptedSize() > bytes.size())
        std::abort();
    crypt.decode();
    // Touch every byte the object claims to hold.
    volatile char sink = 0;
    for (unsigned i = 0; i < crypt.getCryptedSize(); ++i)
        sink = static_cast<char>(sink ^ crypt.getBuffer()[i]);
    crypt.encode();
    std::ostringstream out;
    if (!crypt.writeEncrypted(out) || out.str().size() != 12 + crypt.getCryptedSize())
        std::abort();
    return 0;
}
