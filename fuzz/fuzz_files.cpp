// The file-name parser, symbol expansion and the stored-string and header
// readers on arbitrary bytes.
#include "KZFileHeader.h"
#include "KZFileName.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

class Header : public KZFileHeader {
public:
    std::string getFileType() const override { return "KZFUZZ"; }
};

// Stored lengths far beyond the input would only pad with zeros; keep them
// small enough that the fuzzer does not run out of memory.
bool plausibleLength(const std::string& bytes, std::size_t maxExtra)
{
    if (bytes.size() < 4)
        return true;
    const std::uint32_t length = static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8 |
                                 static_cast<unsigned char>(bytes[2]) << 16 |
                                 static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[3])) << 24;
    return length <= bytes.size() + maxExtra || length >= 0x80000000u;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    // The first half is a symbol table, the whole input a name.
    KZFileName::GlobalFileEnvironment = KZFileEnvironment();
    std::istringstream symbols(bytes.substr(0, size / 2));
    KZFileName::GlobalFileEnvironment.readSymbolsFromFile(symbols);
    KZFileName name(bytes);
    name.compose();
    name.asString('\\');
    name.normalizedString();
    name.asRelPathString();
    name.asParmeterisedString("A");
    KZFileName copy(name);
    copy.add(KZFileName(bytes.substr(size / 2)));
    copy.makeAbsPath(true);
    KZFileName::GlobalFileEnvironment.symbolsAsString();

    if (plausibleLength(bytes, 1 << 16)) {
        std::istringstream in(bytes);
        std::string s;
        readString(s, in);
        std::istringstream again(bytes);
        readStringFromStream(again, s, size > 0 ? data[0] * 97u : 0u);
    }
    std::istringstream header(bytes);
    Header h;
    h.read(header);
    versionStringToWord(bytes);
    return 0;
}
