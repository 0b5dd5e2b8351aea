// What the file system says about a name, on real files in a fresh folder.
#include "KZFileName.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace {

TEST(FileSystem, ExistsIsWritableAndModificationTime)
{
    KZFileName::GlobalFileEnvironment = KZFileEnvironment();
    const kzbs_test::TempFolder tmp;
    tmp.makeFile("plain.txt");
    tmp.makeFile("readonly.txt");
    ::chmod((tmp / "readonly.txt").c_str(), 0444);
    tmp.makeFile("M\xC3\xBCller.txt");   // the umlaut in UTF-8 on disk
    std::filesystem::create_directory(tmp / "folder");
    const bool rootWrites = ::geteuid() == 0; // root may write whatever the mode says
    const struct { const char* name; bool exists, writable; } cases[] = {
        {"plain.txt", true, true}, {"readonly.txt", true, rootWrites},
        {"M\xFCller.txt", true, true},        // the same name in Windows-1252
        {"M\xC3\xBCller.txt", false, false},  // not passed on unconverted
        {"missing.txt", false, false}, {".txt", true, false},  // no base name: the folder is asked
        {"folder/", true, false}, {"missing/", false, false}};  // no base name: a directory question
    for (const auto& c : cases) {
        const KZFileName n(tmp / c.name);
        EXPECT_EQ(n.exists(), c.exists) << c.name;
        EXPECT_EQ(n.isWritable(), c.writable) << c.name;
    }
    EXPECT_FALSE(KZFileName("").exists());

    const std::time_t stamp = 1700000000; // 14 Nov 2023 22:13:20 UTC
    const struct utimbuf times = {stamp, stamp};
    ASSERT_EQ(::utime((tmp / "M\xC3\xBCller.txt").c_str(), &times), 0);
    EXPECT_EQ(KZFileName(tmp / "M\xFCller.txt").getFileTime().get_time_t(), stamp);
    EXPECT_EQ(KZFileName(tmp / "missing.txt").getFileTime().Hash(), 0u) << "the null time";
}

} // namespace
