// kzbs encrypt / decrypt: round trips through files and pipes, key sources,
// and the errors that must leave OUT untouched.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <random>

using kzbs_test::readFile;
using kzbs_test::runKzbs;

namespace {

class CliCrypt : public ::testing::Test {
protected:
    void SetUp() override { write("key", "correct horse\n"); }
    std::string path(const std::string& name) const { return m_dir / name; }
    void write(const std::string& name, const std::string& bytes) const { kzbs_test::writeFile(path(name), bytes); }
    kzbs_test::TempFolder m_dir;
};

TEST_F(CliCrypt, RoundTripsAnyBytesWithEveryKeySize)
{
    std::mt19937 rng(7);
    for (const char* bits : {"128", "192", "256"})
        for (std::size_t size : {0, 17, 70000}) {
            std::string data(size, '\0');
            std::generate(data.begin(), data.end(), [&] { return static_cast<char>(rng()); });
            write("plain", data);
            const auto enc =
                runKzbs({"encrypt", "--bits", bits, "--key-file", path("key"), path("plain"), path("enc")});
            ASSERT_EQ(enc.status, 0) << enc.err;
            EXPECT_EQ(readFile(path("enc")).size(), 12 + (size + 15) / 16 * 16);
            const auto dec = runKzbs({"decrypt", "--bits", bits, "--key-file", path("key"), path("enc"), path("back")});
            ASSERT_EQ(dec.status, 0) << dec.err;
            EXPECT_EQ(readFile(path("back")), data) << bits << " " << size;
        }
    // OUT keeps the mode of the file it replaces (a temporary file alone would be 0600).
    ::chmod(path("back").c_str(), 0640);
    ASSERT_EQ(runKzbs({"decrypt", "--key-file", path("key"), path("enc"), path("back")}).status, 0);
    struct stat info {};
    ASSERT_EQ(::stat(path("back").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST_F(CliCrypt, PipesAndKeySources)
{
    // The key file's trailing newline (LF or CRLF) is not part of the key.
    const auto viaEnv = runKzbs({"encrypt", "--key-env", "K", "-", "-"}, "some text", {"K=correct horse"});
    ASSERT_EQ(viaEnv.status, 0) << viaEnv.err;
    EXPECT_EQ(runKzbs({"encrypt", "--key-file", path("key"), "-", "-"}, "some text").out, viaEnv.out);
    write("crlf", "correct horse\r\n");
    EXPECT_EQ(runKzbs({"encrypt", "--key-file", path("crlf"), "-", "-"}, "some text", {"KZ_AES_PORTABLE=1"}).out,
              viaEnv.out);

    const auto back = runKzbs({"decrypt", "--key-env", "K", "-", "-"}, viaEnv.out, {"K=correct horse"});
    EXPECT_EQ(back.status, 0) << back.err;
    EXPECT_EQ(back.out, "some text");
}

// The padding of spaces is the format's only sign of a wrong key or --bits:
// decrypt refuses noise there unless --force. Without padding (a plain size
// that is a multiple of 16) nothing can be seen.
TEST_F(CliCrypt, PaddingShowsAWrongKey)
{
    for (const std::string& plain : {std::string("some text"), std::string(16, 'x')}) {
        const auto enc = runKzbs({"encrypt", "--key-env", "K", "-", "-"}, plain, {"K=correct horse"});
        ASSERT_EQ(enc.status, 0) << enc.err;
        const bool padded = plain.size() % 16 != 0;
        const struct {
            const char* key;
            const char* bits;
        } wrongs[] = {{"K=wrong horse", "128"}, {"K=correct horse", "256"}};
        for (const auto& wrong : wrongs) {
            const std::vector<std::string> key = {wrong.key};
            const std::string bits = wrong.bits;
            write("out", "previous contents");
            const auto r = runKzbs({"decrypt", "--bits", bits, "--key-env", "K", "-", path("out")}, enc.out, key);
            if (padded) {
                kzbs_test::expectRefusal(r, "the key or --bits is wrong");
                EXPECT_EQ(readFile(path("out")), "previous contents");
            } else {
                EXPECT_EQ(r.status, 0) << r.err;
            }
            const auto forced =
                runKzbs({"decrypt", "--force", "--bits", bits, "--key-env", "K", "-", "-"}, enc.out, key);
            EXPECT_EQ(forced.status, 0) << forced.err;
            EXPECT_EQ(forced.out.size(), plain.size());
            EXPECT_NE(forced.out, plain);
        }
    }
}

// encrypt takes only keys that mean what they say; decrypt takes every key
// the format takes, so streams made elsewhere stay readable.
TEST_F(CliCrypt, KeysCountOnlyWhatTheKeySizeUses)
{
    write("plain", "payload");
    write("key16", std::string(16, 'k'));
    write("key17", std::string(16, 'k') + "z");
    write("key32", std::string(32, 'k'));
    write("key33", std::string(33, 'k'));
    write("umlaut", "M\xC3\xBCller-Key");
    const struct {
        std::vector<std::string> args;
        const char* message;
    } refused[] = {
        {{"encrypt", "--key-file", path("key17"), path("plain"), path("out")},
         "the key has 17 characters, but a 128-bit key uses only its first 16; --bits 256 uses up to 32"},
        {{"encrypt", "--bits", "192", "--key-file", path("key32"), path("plain"), path("out")},
         "uses only its first 24"},
        {{"encrypt", "--bits", "256", "--key-file", path("key33"), path("plain"), path("out")},
         "uses only its first 32"},
        {{"encrypt", "--key-file", path("umlaut"), path("plain"), path("out")}, "outside ASCII (such as umlauts)"},
    };
    for (const auto& c : refused)
        kzbs_test::expectRefusal(runKzbs(c.args), c.message);
    ASSERT_EQ(runKzbs({"encrypt", "--key-file", path("key16"), path("plain"), path("enc")}).status, 0);
    const auto back = runKzbs({"decrypt", "--key-file", path("key17"), path("enc"), "-"});
    EXPECT_EQ(back.status, 0) << back.err;
    EXPECT_EQ(back.out, "payload");
    ASSERT_EQ(runKzbs({"encrypt", "--byte-table", "--key-file", path("umlaut"), path("plain"), path("enc")}).status, 0);
    EXPECT_EQ(runKzbs({"decrypt", "--byte-table", "--key-file", path("umlaut"), path("enc"), "-"}).out, "payload");
}

TEST_F(CliCrypt, ErrorsExitWithTwoAndLeaveOutUntouched)
{
    write("plain", "payload of some length");
    ASSERT_EQ(runKzbs({"encrypt", "--key-file", path("key"), path("plain"), path("enc")}).status, 0);
    const std::string stream = readFile(path("enc"));
    write("wrongtag", "XXXX" + stream.substr(4));
    write("truncated", stream.substr(0, stream.size() - 5));
    write("trailing", stream + "junk");
    write("longkey", std::string(65, 'k'));
    write("ctrlkey",
          "a\x01"
          "b");
    write("bigkey", std::string((1 << 20) + 1, 'k'));
    write("highkey",
          "\xE4"
          "bcde"); // would encrypt like any other high first byte

    const struct {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{"decrypt", "--key-file", path("key"), path("wrongtag"), path("out")}, "tag"},
        {{"decrypt", "--key-file", path("key"), path("truncated"), path("out")}, "truncated"},
        {{"decrypt", "--key-file", path("key"), path("trailing"), path("out")}, "after the encrypted data"},
        {{"encrypt", "--key-file", path("longkey"), path("plain"), path("out")}, "uses only its first 16"},
        {{"encrypt", "--key-file", path("ctrlkey"), path("plain"), path("out")}, "--byte-table"},
        {{"encrypt", "--key-file", path("highkey"), path("plain"), path("out")}, "outside ASCII"},
        {{"encrypt", "--key-file", path("bigkey"), path("plain"), path("out")}, "larger than 1 MiB"},
        {{"encrypt", "--key-env", "KZ_UNSET_FOR_TEST", path("plain"), path("out")}, "not set"},
        {{"encrypt", path("plain"), path("out")}, "--key-file"},
        {{"encrypt", "--bits", "100", "--key-file", path("key"), path("plain"), path("out")}, "--bits"},
        {{"encrypt", "--key-file", path("key"), path("missing"), path("out")}, "missing: no such file"},
        {{"encrypt", "--key-file", path("key"), path("plain")}, "usage"},
    };
    for (const auto& c : cases) {
        write("out", "previous contents");
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_EQ(readFile(path("out")), "previous contents") << c.message;
    }
    EXPECT_NE(std::system(("ls " + m_dir.path + " | grep -q kzbs-").c_str()), 0); // no temporary left
}

TEST_F(CliCrypt, InputOverFourGibibytesIsRefusedBeforeReading)
{
    const int fd = ::open(path("big").c_str(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::ftruncate(fd, (off_t(1) << 32) + 1), 0); // sparse: no disk space used
    ::close(fd);
    const auto r = runKzbs({"encrypt", "--key-file", path("key"), path("big"), path("out")});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("4 GiB"), std::string::npos) << r.err;
    EXPECT_FALSE(std::ifstream(path("out")).good());
}

} // namespace
