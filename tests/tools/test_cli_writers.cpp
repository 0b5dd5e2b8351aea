// Every kzbs command that writes a file replaces it whole or not at all,
// keeps its permissions and owner, and writes through a symbolic link.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

using kzbs_test::readFile;
using kzbs_test::runKzbs;
using kzbs_test::writeFile;

namespace {

// One writer: the command line that writes `target`, and what it then holds.
struct Writer {
    const char* name;
    std::function<std::vector<std::string>(const std::string& target)> args;
    std::function<bool(const std::string& contents)> wrote;
};

class CliWriters : public ::testing::Test {
protected:
    void SetUp() override
    {
        writeFile(m_dir / "key", "correct horse\n");
        writeFile(m_dir / "big", std::string(64 * 1024, 'x'));
        ASSERT_EQ(runKzbs({"encrypt", "--key-file", m_dir / "key", m_dir / "big", m_dir / "big.enc"}).status, 0);
    }

    std::vector<Writer> writers() const
    {
        const std::string key = m_dir / "key", big = m_dir / "big", encrypted = m_dir / "big.enc";
        const std::string value(64 * 1024, 'v');
        return {
            {"encrypt",
             [=](const std::string& t) {
                 return std::vector<std::string>{"encrypt", "--key-file", key, big, t};
             },
             [](const std::string& c) { return c.compare(0, 4, "RCBC") == 0; }},
            {"decrypt",
             [=](const std::string& t) {
                 return std::vector<std::string>{"decrypt", "--key-file", key, encrypted, t};
             },
             [](const std::string& c) { return c == std::string(64 * 1024, 'x'); }},
            {"ini set",
             [=](const std::string& t) { return std::vector<std::string>{"ini", "set", t, "S", "K", value}; },
             [=](const std::string& c) { return c == "[S]\nK=" + value + "\n"; }},
        };
    }

    kzbs_test::TempFolder m_dir;
};

// The name of a temporary file a writer left in `folder`, "" if none.
std::string temporaryLeft(const std::string& folder)
{
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().filename().string().find(".kzbs-") != std::string::npos)
            return entry.path().filename().string();
    return "";
}

TEST_F(CliWriters, ReplaceTheFileALinkPointsToKeepingModeAndOwner)
{
    const bool root = ::getuid() == 0;
    for (const Writer& writer : writers()) {
        const std::string target = m_dir / "target", link = m_dir / "link";
        writeFile(target, "[S]\nK=old\n", 0640);
        if (root) {
            ASSERT_EQ(::chown(target.c_str(), 4321, 4322), 0);
        }
        std::filesystem::remove(link);
        std::filesystem::create_symlink("target", link);
        const auto r = runKzbs(writer.args(link));
        EXPECT_EQ(r.status, 0) << writer.name << ": " << r.err;
        EXPECT_TRUE(std::filesystem::is_symlink(link)) << writer.name;
        EXPECT_TRUE(writer.wrote(readFile(target))) << writer.name;
        struct stat info {};
        ASSERT_EQ(::stat(target.c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777, 0640u) << writer.name;
        if (root) {
            EXPECT_EQ(info.st_uid, 4321u) << writer.name;
            EXPECT_EQ(info.st_gid, 4322u) << writer.name;
        }
        EXPECT_EQ(temporaryLeft(m_dir.path), "") << writer.name;
    }
}

// A write that fails half way (here: the file size limit) leaves the old file.
TEST_F(CliWriters, AFailedWriteLeavesTheOldFileWhole)
{
    for (const Writer& writer : writers()) {
        const std::string target = m_dir / "target";
        writeFile(target, "[S]\nK=old\n");
        const auto r = runKzbs(writer.args(target), "", {}, "ulimit -f 8; trap '' XFSZ;");
        kzbs_test::expectRefusal(r, "write " + target);
        EXPECT_EQ(readFile(target), "[S]\nK=old\n") << writer.name;
        EXPECT_EQ(temporaryLeft(m_dir.path), "") << writer.name;
    }
}

// Only regular files are replaced: a folder or a device stays what it is.
TEST_F(CliWriters, RefuseWhatIsNotARegularFile)
{
    const std::string device = m_dir / "device";
    const bool haveDevice = ::getuid() == 0 && ::mknod(device.c_str(), S_IFCHR | 0666, ::makedev(1, 7)) == 0;
    for (const Writer& writer : writers()) {
        kzbs_test::expectRefusal(runKzbs(writer.args(m_dir.path)), "is not a regular file");
        if (haveDevice) {
            kzbs_test::expectRefusal(runKzbs(writer.args(device)), "is not a regular file");
            struct stat info {};
            EXPECT_TRUE(::stat(device.c_str(), &info) == 0 && S_ISCHR(info.st_mode)) << writer.name;
        }
    }
}

} // namespace
