// What the file system says about a name: existence, write permission and
// modification time, on real files in a fresh folder.
#include "KZFileName.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace {

class FileSystem : public ::testing::Test {
protected:
    void SetUp() override
    {
        KZFileName::GlobalFileEnvironment = KZFileEnvironment();
        tmp.makeFile("plain.txt");
        tmp.makeFile("readonly.txt");
        ::chmod((tmp / "readonly.txt").c_str(), 0444);
        tmp.makeFile("M\xC3\xBCller.txt");   // the umlaut in UTF-8 on disk
        tmp.makeDir("folder");
    }
    std::string name(const std::string& cp1252) const { return tmp.path() + "/" + cp1252; }

    kzbs_test::TempFolder tmp;
};

TEST_F(FileSystem, ExistsAndIsWritable)
{
    // Root may write any file whatever its mode; everyone else may not write
    // a read-only one.
    const bool rootWrites = ::geteuid() == 0;
    const struct {
        const char* name;
        bool exists, writable;
    } cases[] = {
        {"plain.txt", true, true},
        {"readonly.txt", true, rootWrites},
        {"M\xFCller.txt", true, true},   // the same name in Windows-1252
        {"missing.txt", false, false},
        {"folder/", true, false},          // no base name: a directory question
        {"missing/", false, false},
    };
    for (const auto& c : cases) {
        const KZFileName n(name(c.name));
        EXPECT_EQ(n.exists(), c.exists) << c.name;
        EXPECT_EQ(n.isWritable(), c.writable) << c.name;
    }
    EXPECT_FALSE(KZFileName(name("M\xC3\xBCller.txt")).exists()) << "names are converted, not passed as they are";
    EXPECT_FALSE(KZFileName("").exists());
    EXPECT_FALSE(KZFileName(name(".txt")).isWritable()) << "an extension without a name is not valid";
}

TEST_F(FileSystem, ModificationTime)
{
    const std::time_t stamp = 1700000000; // 14 Nov 2023 22:13:20 UTC
    const struct utimbuf times = {stamp, stamp};
    ASSERT_EQ(::utime((tmp / "M\xC3\xBCller.txt").c_str(), &times), 0);
    EXPECT_EQ(KZFileName(name("M\xFCller.txt")).getFileTime().get_time_t(), stamp);
    EXPECT_EQ(KZFileName(name("missing.txt")).getFileTime().Hash(), 0u) << "the null time";
}

} // namespace
