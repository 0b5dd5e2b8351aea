// The encrypted buffer: unusual sizes, the two key conversions with their
// kept quirks, the stream format and its guards against broken streams.
#include "CipherTestSupport.h"

#include <sstream>

using namespace crypt_test;

namespace {

// Exposes the key text the conversions produce.
class Probe : public KZCryptRijndael {
public:
    using KZCryptRijndael::KZCryptRijndael;
    std::string keyText() const { return std::string(m_keyText, static_cast<std::size_t>(m_keySize) + 1); }
};

std::string streamOf(KZCrypt& crypt)
{
    std::ostringstream out;
    EXPECT_TRUE(crypt.writeEncrypted(out));
    return out.str();
}

std::string encrypted(const std::string& key, const std::string& data)
{
    KZCryptRijndael crypt(key, KZCrypt::Key128, false);
    crypt.setBuffer(data);
    crypt.encode();
    return streamOf(crypt);
}

std::string le32(std::uint32_t v)
{
    return std::string{char(v & 0xff), char((v >> 8) & 0xff), char((v >> 16) & 0xff), char(v >> 24)};
}

TEST(CryptBuffer, NullDataIsSpacesAndUnpaddableSizesLeaveItEmpty)
{
    KZCryptRijndael blank("k", KZCrypt::Key128, false);
    blank.setBuffer(nullptr, 5);
    EXPECT_EQ(std::string(blank.getBuffer(), 16), std::string(16, ' '));

    KZCryptRijndael huge("k", KZCrypt::Key128, false);
    huge.setSize(0xFFFFFFF1u); // padding would not fit 32 bits
    EXPECT_EQ(huge.getCryptedSize(), 0u);
    huge.setBuffer(nullptr, 0xFFFFFFF1u);
    EXPECT_EQ(huge.getBuffer(), nullptr);
    EXPECT_EQ(huge.getBufferSize(), 0u);
}

// Key text as makeKey reads it: hex digits, keySize of them, plus one byte.
TEST(CryptKey, ConversionsAndTheirKeptQuirks)
{
    const std::string zeros(128, '0');
    auto text = [&](const std::string& head) { return head + zeros.substr(head.size()) + '\0'; };
    const struct {
        std::string key;
        bool byteTable;
        std::string expected;
    } cases[] = {
        {"", false, text("")},
        {"AB", false, text("4142")},
        {"a\xE4z!", true, text("61e47a21")},
        {"a\xE4xyz", false, text("61ff78797a0")}, // early high byte: its 8 digits cut to "ff"
        {"a\xE4xy", false, text("61e47879")},     // high byte among the last three: byte table
        {"a\x01"
         "bc",
         false,
         std::string("611\0"
                     "62630",
                     9)
             + zeros.substr(9) + '\0'}, // below 0x10: NUL
        {"a\x01"
         "bc",
         true, text("61016263")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Probe(c.key, KZCrypt::Key128, c.byteTable).keyText(), c.expected) << c.key;
    // The extra byte: a key of exactly keySize / 2 characters ends in it.
    EXPECT_EQ(Probe(std::string(64, 'q'), KZCrypt::Key128, false).keyText().substr(124), "71710");
}

// Only the first keySize / 8 characters count. A key makeKey refuses, and a
// too-long key given to the constructor (empty key text), encrypt with the
// all-zero schedule and 10 rounds.
TEST(CryptKey, LengthRulesAndRefusedKeys)
{
    Probe probe("old", KZCrypt::Key128, false);
    const std::string before = probe.keyText();
    EXPECT_FALSE(probe.setKey(std::string(65, 'x')));
    EXPECT_EQ(probe.keyText(), before);
    EXPECT_TRUE(probe.setKey(std::string(64, 'x')));

    const std::string data(32, 'd'), first16 = "0123456789abcdef";
    EXPECT_EQ(encrypted(first16 + "tail one", data), encrypted(first16 + "another tail", data));
    const keyInstance zero{};
    ROUNDS = 10;
    const cipherInstance cbc = cipherOrFail(MODE_CBC, "7E21C9A4D05B38F67E21C9A4D05B38F6");
    Bytes out(32);
    blockEncrypt(&cbc, &zero, reinterpret_cast<const unsigned char*>(data.data()), 256, out.data());
    for (const std::string& key : {std::string("\x05secret"), std::string(70, 'z')})
        EXPECT_EQ(encrypted(key, data).substr(12), std::string(out.begin(), out.end())) << key.size();
}

std::string encryptedWith(const std::string& key, KZCrypt::KeySize size, bool byteTable, const std::string& data)
{
    KZCryptRijndael crypt(key, size, byteTable);
    crypt.setBuffer(data);
    crypt.encode();
    return streamOf(crypt);
}

// keyBytes tells what encode will use: the same ciphertext comes from those
// bytes given through the byte table. Empty means the all-zero schedule.
TEST(CryptKey, KeyBytesAreTheBytesEncodeUses)
{
    const std::string z16(16, '\0');
    const struct {
        std::string key;
        KZCrypt::KeySize size;
        bool byteTable;
        std::string bytes;
    } cases[] = {
        {"AB", KZCrypt::Key128, false, "AB" + z16.substr(2)},
        {"", KZCrypt::Key128, false, z16},
        {std::string(20, 'k'), KZCrypt::Key128, false, std::string(16, 'k')},
        {std::string(20, 'k'), KZCrypt::Key192, false, std::string(20, 'k') + std::string(4, '\0')},
        {std::string(40, 'k'), KZCrypt::Key256, false, std::string(32, 'k')},
        {"a\xE4xyz", KZCrypt::Key128, false, "a\xFFxyz" + z16.substr(5)}, // early high byte
        {"a\xE4xy", KZCrypt::Key128, false, "a\xE4xy" + z16.substr(4)},   // among the last three
        {"a\xE4xyz", KZCrypt::Key128, true, "a\xE4xyz" + z16.substr(5)},
        {"a\x01"
         "bc",
         KZCrypt::Key128, true,
         "a\x01"
         "bc" + z16.substr(4)},
        {"a\x01"
         "bc",
         KZCrypt::Key128, false, ""},                                                  // below 0x10
        {std::string(17, 'k') + "\x01", KZCrypt::Key128, false, std::string(16, 'k')}, // not counted
        {std::string(65, 'k'), KZCrypt::Key128, false, ""},                            // too long
        {"AB", static_cast<KZCrypt::KeySize>(100), false, ""},
    };
    const std::string data = "some data";
    for (const auto& c : cases) {
        const std::string bytes = KZCrypt::keyBytes(c.key, c.size, c.byteTable);
        EXPECT_EQ(bytes, c.bytes) << c.key << ' ' << c.size;
        if (!bytes.empty()) {
            EXPECT_EQ(encryptedWith(c.key, c.size, c.byteTable, data), encryptedWith(bytes, c.size, true, data))
                << c.key;
        }
    }
    const struct {
        KZCrypt::KeySize size;
        std::size_t longest, used;
    } lengths[] = {{KZCrypt::Key128, 64, 16},
                   {KZCrypt::Key192, 96, 24},
                   {KZCrypt::Key256, 128, 32},
                   {static_cast<KZCrypt::KeySize>(100), 0, 0}};
    for (const auto& l : lengths) {
        EXPECT_EQ(KZCrypt::longestKeyText(l.size), l.longest) << l.size;
        EXPECT_EQ(KZCrypt::keyCharactersUsed(l.size), l.used) << l.size;
    }
}

TEST(CryptStream, HeaderAndPaddingForCheckingTools)
{
    const std::string stream = encrypted("secret", "hello");
    KZCrypt::StreamHeader header{{'x', 'x', 'x', 'x'}, 7, 7};
    EXPECT_FALSE(KZCrypt::readStreamHeader(stream.data(), KZCrypt::kStreamHeaderSize - 1, header));
    EXPECT_FALSE(KZCrypt::readStreamHeader(nullptr, 100, header));
    EXPECT_EQ(header.bufferSize, 7u);
    ASSERT_TRUE(KZCrypt::readStreamHeader(stream.data(), stream.size(), header));
    EXPECT_EQ(std::string(header.tag, 4), "RCBC");
    EXPECT_EQ(header.bufferSize, 5u);
    EXPECT_EQ(header.cryptedSize, 16u);
    const std::string odd = "RCBC" + le32(0x01020304) + le32(0xF0000000);
    ASSERT_TRUE(KZCrypt::readStreamHeader(odd.data(), odd.size(), header));
    EXPECT_EQ(header.bufferSize, 0x01020304u);
    EXPECT_EQ(header.cryptedSize, 0xF0000000u);

    const struct {
        const char* key;
        std::string data;
        bool padded;
    } cases[] = {{"secret", "hello", true}, {"wrong", "hello", false}, {"wrong", std::string(16, 'x'), true}};
    for (const auto& c : cases) {
        KZCryptRijndael crypt(c.key, KZCrypt::Key128, false);
        std::istringstream in(encrypted("secret", c.data));
        ASSERT_TRUE(crypt.readEncrypted(in));
        crypt.decode();
        EXPECT_EQ(crypt.hasSpacePadding(), c.padded) << c.key << ' ' << c.data;
    }
    KZCryptRijndael claimed("k", KZCrypt::Key128, false);
    claimed.setSize(5); // nothing held: nothing to check
    EXPECT_TRUE(claimed.hasSpacePadding());
}

TEST(CryptStream, LayoutAndShortTags)
{
    EXPECT_EQ(encrypted("secret", "hello").substr(0, 12), "RCBC" + le32(5) + le32(16));
    EXPECT_EQ(encrypted("secret", ""), "RCBC" + le32(0) + le32(0));

    struct Tagged : KZCrypt {
        Tagged() : KZCrypt("k", "AB", Key128, false) {}
        int encode() override { return 0; }
        int decode() override { return 0; }
    } tagged, reader;
    tagged.setBuffer("x");
    const std::string stream = streamOf(tagged);
    EXPECT_EQ(stream.substr(0, 4), std::string("AB\0\0", 4));
    std::istringstream in(stream);
    EXPECT_TRUE(reader.readEncrypted(in));
}

TEST(CryptStream, SetCryptedBufferTakesCiphertext)
{
    const std::string payload = encrypted("k", "twenty bytes of text").substr(12);
    KZCryptRijndael crypt("k", KZCrypt::Key128, false);
    EXPECT_FALSE(crypt.setCryptedBuffer(payload.data(), 16, 20)); // sizes do not belong together
    EXPECT_EQ(crypt.getBuffer(), nullptr);
    EXPECT_FALSE(crypt.setCryptedBuffer(nullptr, 32, 20));
    ASSERT_TRUE(crypt.setCryptedBuffer(payload.data(), 32, 20));
    crypt.decode();
    EXPECT_EQ(std::string(crypt.getBuffer(), crypt.getBufferSize()), "twenty bytes of text");
}

// A reader that cannot seek, like a pipe.
struct PipeBuf : std::streambuf {
    explicit PipeBuf(std::string data) : m_data(std::move(data))
    {
        setg(&m_data[0], &m_data[0], &m_data[0] + m_data.size());
    }
    std::string m_data;
};

TEST(CryptStream, OddStreamsKeepTheirSizesAndDamagedClaimsAreDropped)
{
    const std::string good = encrypted("k", "twenty bytes of text");
    const std::string truncated = good.substr(0, good.size() - 1);
    const struct {
        const char* what;
        std::string bytes;
        bool ok;
        unsigned bufferSize, cryptedSize;
        bool holdsBuffer;
    } cases[] = {
        {"other tag", "RCBD" + good.substr(4), false, 0, 0, false},
        {"short tag", "RC", false, 0, 0, false},
        {"sizes cut off", "RCBC" + le32(20), false, 20, 0, true},
        {"truncated", truncated, false, 20, 32, true},
        {"crypted not whole blocks", "RCBC" + le32(20) + le32(33) + std::string(33, 'x'), true, 20, 33, true},
        {"less than a block", "RCBC" + le32(0) + le32(9) + std::string(9, 'x'), true, 0, 9, true},
        {"crypted below size", "RCBC" + le32(40) + le32(32) + good.substr(12), true, 40, 32, true},
        {"absurd claim", "RCBC" + le32(0xFFFFFFF0u) + le32(0xFFFFFFF0u) + std::string(100, 'x'), false, 0, 0, false},
        {"size without padding room", "RCBC" + le32(0xFFFFFFFFu) + le32(0xFFFFFFF0u), false, 0, 0, false},
        {"more padding than needed", "RCBC" + le32(5) + le32(32) + std::string(32, 'p'), true, 5, 32, true},
    };
    for (const auto& c : cases)
        for (bool seekable : {true, false}) {
            KZCryptRijndael reader("k", KZCrypt::Key128, false);
            reader.setBuffer("previous contents");
            std::istringstream seekable_in(c.bytes);
            PipeBuf pipe(c.bytes);
            std::istream piped(&pipe);
            const bool ok = reader.readEncrypted(seekable ? static_cast<std::istream&>(seekable_in) : piped);
            EXPECT_EQ(ok, c.ok) << c.what;
            EXPECT_EQ(reader.getBuffer() != nullptr, c.holdsBuffer) << c.what;
            EXPECT_EQ(reader.getBufferSize(), c.bufferSize) << c.what;
            EXPECT_EQ(reader.getCryptedSize(), c.cryptedSize) << c.what;
            reader.decode(); // stays inside what is held, also for partial blocks
            reader.encode();
        }

    // A truncated stream keeps what arrived, zero-filled to cryptedSize.
    std::istringstream cut(truncated);
    KZCryptRijndael reader("k", KZCrypt::Key128, false);
    ASSERT_FALSE(reader.readEncrypted(cut));
    EXPECT_EQ(std::string(reader.getBuffer(), 32), good.substr(12, 31) + std::string(1, '\0'));

    // Another tag: only its 4 bytes are read.
    std::istringstream other("XXXX" + good.substr(4));
    EXPECT_FALSE(reader.readEncrypted(other));
    EXPECT_EQ(other.tellg(), 4);
}

TEST(CryptStream, CallersBoundWhatAShortStreamMayClaim)
{
    // 100 bytes arrive of the 100 + missing claimed.
    const auto claiming = [](std::uint32_t missing) {
        return "RCBC" + le32(100 + missing) + le32(100 + missing) + std::string(100, 'x');
    };
    struct Case {
        std::uint32_t bound, missing;
        bool holdsBuffer;
    } const cases[] = {
        {4096, 4096, true},
        {4096, 4097, false},
        {0, 1, false},
        {KZCrypt::kDefaultMaxMissing, KZCrypt::kDefaultMaxMissing + 1, false},
    };
    for (const Case& c : cases)
        for (bool seekable : {true, false}) {
            const std::string bytes = claiming(c.missing);
            KZCryptRijndael reader("k", KZCrypt::Key128, false);
            std::istringstream seekable_in(bytes);
            PipeBuf pipe(bytes);
            std::istream piped(&pipe);
            EXPECT_FALSE(reader.readEncrypted(seekable ? static_cast<std::istream&>(seekable_in) : piped, c.bound));
            EXPECT_EQ(reader.getBuffer() != nullptr, c.holdsBuffer) << c.bound << " " << c.missing;
            EXPECT_EQ(reader.getCryptedSize(), c.holdsBuffer ? 100 + c.missing : 0u) << c.bound;
        }

    // A complete stream is read whatever the bound.
    std::istringstream in(encrypted("k", "twenty bytes of text"));
    KZCryptRijndael reader("k", KZCrypt::Key128, false);
    EXPECT_TRUE(reader.readEncrypted(in, 0));
    EXPECT_EQ(reader.getCryptedSize(), 32u);
}

TEST(CryptStream, SizesClaimedBeyondTheHeldBytesAreNotUsed)
{
    KZCryptRijndael crypt("k", KZCrypt::Key128, false);
    crypt.setBuffer("sixteen bytes!!!");
    crypt.setSize(100); // claims 112 bytes; 16 are held
    EXPECT_EQ(crypt.encode(), 0);
    EXPECT_EQ(crypt.decode(), 0);
    EXPECT_EQ(std::string(crypt.getBuffer(), 16), "sixteen bytes!!!");
    std::ostringstream out;
    EXPECT_FALSE(crypt.writeEncrypted(out));
    EXPECT_TRUE(out.str().empty());

    crypt.clearBuffer();
    crypt.setSize(20); // no buffer at all
    EXPECT_EQ(crypt.encode(), 0);
    EXPECT_FALSE(crypt.writeEncrypted(out));
}

} // namespace
