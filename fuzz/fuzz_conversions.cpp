// The text conversions on arbitrary bytes: c2txt/txt2c round trip, German
// number text, padding and stream reading never misbehave.
#include "KZStringFunctions.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string cText = bytes.c_str();   // up to the first NUL

    if (txt2c(c2txt(cText.c_str())) != cText)
        std::abort();
    txt2c(bytes);
    reformatNumString(bytes, true);
    reformatNumString(bytes, false);

    if (size >= sizeof(double) + 4) {
        double value;
        std::memcpy(&value, data, sizeof value);
        const unsigned short precision = data[sizeof value] % 40;
        formatDoubleToString(value, precision, 0, static_cast<char>(data[sizeof value + 1]),
                             static_cast<char>(data[sizeof value + 2]));
        char buffer[24];
        int number;
        std::memcpy(&number, data, sizeof number);
        if (itoa_s(number, buffer, data[sizeof value + 3] % 24, data[4] % 20) == 0 &&
            std::strlen(buffer) >= 24)
            std::abort();
        try {
            KZStringFunctions::expand(cText, data[sizeof value + 3], static_cast<char>(data[0]));
        } catch (const std::length_error&) {
            if (static_cast<signed char>(data[0]) >= 0)
                std::abort();
        }
    }

    std::string s = bytes;
    if (size > 2)
        KZStringFunctions::replaceAll(s, bytes.substr(0, 1 + data[0] % 2), bytes.substr(1, data[1] % 3));
    std::istringstream in(bytes);
    std::string text;
    if (KZStringFunctions::readFromFile(in, text) != static_cast<int>(text.size()))
        std::abort();
    std::istringstream lines(bytes);
    std::string line;
    while (KZStringFunctions::readLine(lines, line)) {
    }
    return 0;
}
