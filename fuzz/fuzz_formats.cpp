// The persistent formats on arbitrary bytes: stored strings, version words
// and the file header.
//  - Round trips: a string written and read back (by both readers) is the
//    string; a version word printed and parsed is the word; a header written
//    and read back by the same class restores its fields, and a class of
//    another type refuses it with "Falscher Dateityp.".
//  - The raw bytes through every reader: no fault, readStringFromStream
//    takes no more than its maxLen, a header read takes no more bytes than
//    its size, and any text parses to a word that prints and parses back.
#include "FuzzSupport.h"
#include "KZFileHeader.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

class Header : public KZFileHeader {
public:
    explicit Header(std::string type) : m_type(std::move(type)) {}
    std::string getFileType() const override { return m_type; }
    void set(unsigned short v1, unsigned short v2, unsigned char flag)
    {
        m_version1 = v1;
        m_version2 = v2;
        m_flag = flag;
    }

private:
    std::string m_type;
};

// readString pads a short read to the stored length, so a damaged length
// costs that much memory (documented); keep the claims the fuzzer makes
// within what a small stream could plausibly hold.
constexpr std::uint32_t kMaxClaim = 1u << 16;

std::uint32_t storedLength(const std::string& bytes)
{
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i)
        length |= std::uint32_t(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return length;
}

void checkStoredStrings(const std::string& s, const std::string& bytes, unsigned maxLen)
{
    std::ostringstream out;
    FUZZ_CHECK(writeString(s, out) && out.str().size() == s.size() + 5);
    std::istringstream in(out.str());
    std::string back = "previous";
    FUZZ_CHECK(readString(back, in) && back == s);
    std::istringstream again(out.str());
    std::string partial;
    const int length = readStringFromStream(again, partial, maxLen);
    FUZZ_CHECK(length == (maxLen == 0 ? 0 : static_cast<int>(s.size() + 1)));
    if (maxLen)
        FUZZ_CHECK(partial == s.substr(0, std::min<std::size_t>(s.size(), maxLen - 1)));

    const std::uint32_t claim = storedLength(bytes);
    std::istringstream raw(bytes);
    std::string read;
    if (claim <= kMaxClaim || claim >= 0x80000000u)
        readString(read, raw);
    std::istringstream rawAgain(bytes);
    const int taken = readStringFromStream(rawAgain, read, maxLen);
    if (taken != 0)
        FUZZ_CHECK(read.size() + 1 == std::min<std::uint64_t>(claim, maxLen));
}

void checkVersions(unsigned short word, const std::string& text)
{
    FUZZ_CHECK(versionStringToWord(wordToVersionString(word)) == word);
    const unsigned short parsed = versionStringToWord(text);
    FUZZ_CHECK(versionStringToWord(wordToVersionString(parsed)) == parsed);
}

void checkHeader(const std::string& type, FuzzInput& input, const std::string& bytes)
{
    const std::string identifier = type.substr(0, 127);
    Header written(identifier);
    const unsigned short v1 = static_cast<unsigned short>(input.u32()), v2 = static_cast<unsigned short>(input.u32());
    const unsigned char flag = input.byte();
    written.set(v1, v2, flag);
    std::ostringstream out;
    FUZZ_CHECK(written.write(out) && out.str().size() == written.getBinaryStoreSize());

    std::istringstream in(out.str());
    Header read(identifier);
    FUZZ_CHECK(read.read(in) && read.getVersion1() == v1 && read.getVersion2() == v2 && read.getFlag() == flag);
    FUZZ_CHECK(read.getErrorMsg().empty());
    std::istringstream other(out.str());
    Header wrong(identifier + "x");
    FUZZ_CHECK(!wrong.read(other) && wrong.getErrorMsg() == "Falscher Dateityp.");
    read.setWrongVersionErrorMsg(identifier.c_str(), v1, v2);

    // The raw bytes as a header of that type.
    std::istringstream raw(bytes);
    Header rawHeader(identifier);
    if (rawHeader.read(raw))
        FUZZ_CHECK(static_cast<std::uint64_t>(raw.tellg()) == rawHeader.getBinaryStoreSize());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    FuzzInput input(data, size);
    const unsigned maxLen = input.byte() * 3u;
    const unsigned short word = static_cast<unsigned short>(input.u32());
    const std::string text = input.untilNul();
    checkStoredStrings(text, bytes, maxLen);
    checkVersions(word, text);
    checkHeader(text, input, bytes);
    return 0;
}
