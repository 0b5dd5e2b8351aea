// The two date readers on arbitrary bytes: the free-form stream reader, and
// the pattern reader with the input split into text and pattern.
#include "KZDate.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    std::istringstream in(bytes);
    KZDate streamed;
    streamed.ParseFrom(in);
    streamed.ParseFrom(in); // and again on whatever state the first left
    (void)streamed.AsString();

    // Text and pattern are separated by the first NUL; without one the
    // default pattern is used.
    const std::size_t split = bytes.find('\0');
    const std::string text = bytes.substr(0, split);
    KZDate patterned;
    if (split == std::string::npos) {
        patterned.ParseFrom(text.c_str(), nullptr);
    } else {
        const std::string pattern = bytes.substr(split + 1);
        patterned.ParseFrom(text.c_str(), pattern.c_str());
    }
    unsigned m, d, y;
    patterned.Mdy(m, d, y);
    return 0;
}
