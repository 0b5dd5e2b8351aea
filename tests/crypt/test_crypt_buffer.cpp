// The encrypted buffer: padding and sizes, the two key conversions with their
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

std::string encrypted(const std::string& key, const std::string& data, KZCrypt::KeySize size = KZCrypt::Key128,
                      bool byteTable = false)
{
    KZCryptRijndael crypt(key, size, byteTable);
    crypt.setBuffer(data);
    crypt.encode();
    return streamOf(crypt);
}

std::string le32(std::uint32_t v)
{
    return std::string{char(v & 0xff), char((v >> 8) & 0xff), char((v >> 16) & 0xff), char(v >> 24)};
}

TEST(CryptBuffer, PadsWithSpacesToWholeBlocks)
{
    const struct {
        unsigned size;
        unsigned crypted;
    } cases[] = {{0, 0}, {1, 16}, {15, 16}, {16, 16}, {17, 32}, {20, 32}, {32, 32}};
    for (const auto& c : cases) {
        KZCryptRijndael crypt("k", KZCrypt::Key128, false);
        const std::string data(c.size, 'x');
        crypt.setBuffer(data);
        EXPECT_EQ(crypt.getBufferSize(), c.size);
        ASSERT_EQ(crypt.getCryptedSize(), c.crypted);
        EXPECT_EQ(std::string(crypt.getBuffer(), c.crypted), data + std::string(c.crypted - c.size, ' '));
    }
    KZCryptRijndael blank("k", KZCrypt::Key128, false);
    blank.setBuffer(nullptr, 5);
    EXPECT_EQ(std::string(blank.getBuffer(), 16), std::string(16, ' '));

    KZCryptRijndael empty("k", KZCrypt::Key128, false);
    empty.setBuffer("", 0);
    EXPECT_EQ(empty.encode(), 0);
    EXPECT_EQ(streamOf(empty), "RCBC" + le32(0) + le32(0));

    KZCryptRijndael huge("k", KZCrypt::Key128, false);
    huge.setSize(0xFFFFFFF1u);   // padding would not fit 32 bits
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
        {"AB", true, text("4142")},
        {"a\xE4z!", true, text("61e47a21")},
        {"a\xE4xyz", false, text("61ff78797a0")},        // early high byte: its 8 digits cut to "ff"
        {"a\xE4xy", false, text("61e47879")},            // high byte among the last three: byte table
        {"a\x01" "bc", false, std::string("611\0" "62630", 9) + zeros.substr(9) + '\0'},   // below 0x10: NUL
        {"a\x01" "bc", true, text("61016263")},
    };
    for (const auto& c : cases) {
        Probe probe(c.key, KZCrypt::Key128, c.byteTable);
        EXPECT_EQ(probe.keyText(), c.expected) << c.key;
    }
    // The extra byte: a key of exactly keySize / 2 characters ends in it.
    Probe full(std::string(64, 'q'), KZCrypt::Key128, false);
    std::string expectFull;
    for (int i = 0; i < 64; ++i)
        expectFull += "71";
    EXPECT_EQ(full.keyText(), expectFull + "0");
}

TEST(CryptKey, LengthRulesAndWhichCharactersCount)
{
    Probe probe("old", KZCrypt::Key128, false);
    const std::string before = probe.keyText();
    EXPECT_FALSE(probe.setKey(std::string(65, 'x')));
    EXPECT_EQ(probe.keyText(), before);
    EXPECT_TRUE(probe.setKey(std::string(64, 'x')));

    const std::string data = "some plaintext that spans more than one block";
    const std::string first16 = "0123456789abcdef";
    EXPECT_EQ(encrypted(first16 + "tail one", data), encrypted(first16 + "another tail", data));
    EXPECT_NE(encrypted("secret", data), encrypted("secret" + std::string("0123456789") + std::string(40, '.'), data));
    EXPECT_NE(encrypted(first16 + "x", data, KZCrypt::Key192), encrypted(first16 + "y", data, KZCrypt::Key192));

    // A too-long key in the constructor leaves an empty key text: the same
    // all-zero schedule as a key makeKey refuses.
    EXPECT_EQ(encrypted(std::string(70, 'z'), data), encrypted("\x01", data));
}

// A key text makeKey refuses encrypts with the zeroed schedule and 10 rounds.
TEST(CryptKey, RefusedKeyTextEncryptsWithAZeroSchedule)
{
    const std::string data(32, 'd');
    const std::string stream = encrypted("\x05secret", data);
    keyInstance zero {};
    ROUNDS = 10;
    const cipherInstance cbc = cipherOrFail(MODE_CBC, "7E21C9A4D05B38F67E21C9A4D05B38F6");
    Bytes out(32);
    blockEncrypt(&cbc, &zero, reinterpret_cast<const unsigned char*>(data.data()), 256, out.data());
    EXPECT_EQ(stream.substr(12), std::string(out.begin(), out.end()));
}

TEST(CryptStream, LayoutAndRoundTrip)
{
    const std::string stream = encrypted("secret", "hello");
    ASSERT_EQ(stream.size(), 28u);
    EXPECT_EQ(stream.substr(0, 12), "RCBC" + le32(5) + le32(16));

    for (auto size : {KZCrypt::Key128, KZCrypt::Key192, KZCrypt::Key256})
        for (std::size_t length : {0, 1, 16, 33, 1000}) {
            const std::string data = std::string(length, 'a') + "";
            std::istringstream in(encrypted("pw", data, size));
            KZCryptRijndael reader("pw", size, false);
            ASSERT_TRUE(reader.readEncrypted(in));
            reader.decode();
            EXPECT_EQ(std::string(reader.getBuffer(), reader.getBufferSize()), data);
        }
}

TEST(CryptStream, SetCryptedBufferTakesCiphertext)
{
    const std::string stream = encrypted("k", "twenty bytes of text");
    const std::string payload = stream.substr(12);
    KZCryptRijndael crypt("k", KZCrypt::Key128, false);
    EXPECT_FALSE(crypt.setCryptedBuffer(payload.data(), 16, 20));   // sizes do not belong together
    EXPECT_EQ(crypt.getBuffer(), nullptr);
    EXPECT_FALSE(crypt.setCryptedBuffer(nullptr, 32, 20));
    ASSERT_TRUE(crypt.setCryptedBuffer(payload.data(), 32, 20));
    crypt.decode();
    EXPECT_EQ(std::string(crypt.getBuffer(), crypt.getBufferSize()), "twenty bytes of text");
}

// A reader that cannot seek, like a pipe.
class PipeBuf : public std::streambuf {
public:
    explicit PipeBuf(std::string data) : m_data(std::move(data)) { setg(&m_data[0], &m_data[0], &m_data[0] + m_data.size()); }

private:
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
        {"crypted below size", "RCBC" + le32(40) + le32(32) + good.substr(12), true, 40, 32, true},
        {"absurd claim", "RCBC" + le32(0xFFFFFFF0u) + le32(0xFFFFFFF0u) + std::string(100, 'x'), false, 0, 0, false},
        {"size without padding room", "RCBC" + le32(0xFFFFFFFFu) + le32(0xFFFFFFF0u), false, 0, 0, false},
    };
    for (const auto& c : cases)
        for (bool seekable : {true, false}) {
            KZCryptRijndael reader("k", KZCrypt::Key128, false);
            reader.setBuffer("previous contents");
            bool ok;
            if (seekable) {
                std::istringstream in(c.bytes);
                ok = reader.readEncrypted(in);
            } else {
                PipeBuf pipe(c.bytes);
                std::istream in(&pipe);
                ok = reader.readEncrypted(in);
            }
            EXPECT_EQ(ok, c.ok) << c.what;
            EXPECT_EQ(reader.getBuffer() != nullptr, c.holdsBuffer) << c.what;
            EXPECT_EQ(reader.getBufferSize(), c.bufferSize) << c.what;
            EXPECT_EQ(reader.getCryptedSize(), c.cryptedSize) << c.what;
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

    // More padding than needed is a valid stream; a pipe delivers it as well.
    PipeBuf pipe("RCBC" + le32(5) + le32(32) + std::string(32, 'p'));
    std::istream in(&pipe);
    EXPECT_TRUE(reader.readEncrypted(in));
    EXPECT_EQ(reader.getCryptedSize(), 32u);
}

TEST(CryptStream, SizesClaimedBeyondTheHeldBytesAreNotUsed)
{
    KZCryptRijndael crypt("k", KZCrypt::Key128, false);
    crypt.setBuffer("sixteen bytes!!!");
    crypt.setSize(100);   // claims 112 bytes; 16 are held
    EXPECT_EQ(crypt.encode(), 0);
    EXPECT_EQ(crypt.decode(), 0);
    EXPECT_EQ(std::string(crypt.getBuffer(), 16), "sixteen bytes!!!");
    std::ostringstream out;
    EXPECT_FALSE(crypt.writeEncrypted(out));
    EXPECT_TRUE(out.str().empty());

    KZCryptRijndael bare("k", KZCrypt::Key128, false);
    bare.setSize(20);   // no buffer at all
    EXPECT_EQ(bare.encode(), 0);
    EXPECT_FALSE(bare.writeEncrypted(out));
}

TEST(CryptStream, ShortTagsArePaddedWithNuls)
{
    class Tagged : public KZCrypt {
    public:
        Tagged() : KZCrypt("k", "AB", Key128, false) {}
        int encode() override { return 0; }
        int decode() override { return 0; }
    };
    Tagged tagged;
    tagged.setBuffer("x");
    const std::string stream = streamOf(tagged);
    EXPECT_EQ(stream.substr(0, 4), std::string("AB\0\0", 4));
    std::istringstream in(stream);
    Tagged reader;
    EXPECT_TRUE(reader.readEncrypted(in));
}

} // namespace
