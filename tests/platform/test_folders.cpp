// Files and folders on a real temporary folder; the system folders under a
// pinned environment; the application's place and identity.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <libgen.h>

namespace cpa = CrossPlatformApi;
using kzbs_test::ScopedEnv;
using kzbs_test::TempFolder;
using kzbs_test::writeFile;
using Strings = std::vector<std::string>;

TEST(SystemFolders, FollowTheUsersEnvironment)
{
    TempFolder home;
    ::mkdir((home / "tmp").c_str(), 0755);
    ScopedEnv pinHome("HOME", home.path().c_str()), noData("XDG_DATA_HOME", nullptr),
        noConfig("XDG_CONFIG_HOME", nullptr), tmp("TMPDIR", (home / "tmp/").c_str());
    struct Case { int folder; std::string expected; };
    const Case cases[] = {
        {cpa::TempFolder, home / "tmp"},           {cpa::ApplicationSupportFolder, home / ".local/share"},
        {cpa::ApplicationSupportFolder2, home / ".local/share"}, {cpa::DocumentsFolder, home / "Documents"},
        {cpa::HomeFolder, home.path()},            {5, ""}, {-1, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(cpa::getSystemFolder(static_cast<cpa::SysFolder>(c.folder)), c.expected) << c.folder;
}

TEST(ApplicationBundle, TheExecutablesFolderIsTheBundle)
{
    char exe[PATH_MAX] = {};
    ASSERT_GT(::readlink("/proc/self/exe", exe, sizeof exe - 1), 0);
    EXPECT_EQ(cpa::getApplicationfolder(), std::string(::dirname(exe))); // no QCoreApplication here
    const BundlePathInfo info = getBundlePathInfo();
    EXPECT_TRUE(info.isWritable);
    EXPECT_FALSE(info.isOnVolumes);
    EXPECT_EQ(cpa::getDriveType("ignored"), 0u);
    EXPECT_FALSE(cpa::isDebuggerPresent());
}

TEST(ApplicationBundle, IdentifierIsTheDesktopFileName)
{
    EXPECT_EQ(bundleId(), "unknownBundleID");
    EXPECT_EQ(mainBundleId(), "unknownBundleID");
    QGuiApplication::setDesktopFileName(QString::fromUtf8("de.k\xC3\xB6ln.Planer"));
    EXPECT_EQ(bundleId(), "de.k\xF6ln.Planer");
    EXPECT_EQ(mainBundleId(), "de.k\xF6ln.Planer");
    QGuiApplication::setDesktopFileName(QString());
}

// A probe program copied into Outer.app/Contents/Helpers/Inner.app/Contents/MacOS
// prints mainBundleId for the own identifier it is given.
TEST(ApplicationBundle, NestedApplicationPresentsItselfAsTheOuterOne)
{
    struct Case { const char* outerId; const char* ownId; const char* expected; };
    const Case cases[] = {
        {"com.kz.Outer", "com.kz.Inner", "com.kz.Outer"},
        {"com.kz.Outer", "org.other.Inner", "org.other.Inner"},
        {"nodots", "nodots.too", "nodots.too"},
        {nullptr, "com.kz.Inner", "com.kz.Inner"},
    };
    for (const Case& c : cases) {
        TempFolder dir;
        const std::string outer = dir / "Outer.app", inner = outer + "/Contents/Helpers/Inner.app";
        for (const std::string& folder : {outer, outer + "/Contents", outer + "/Contents/MacOS", outer + "/Contents/Helpers",
                                          inner, inner + "/Contents", inner + "/Contents/MacOS"})
            ::mkdir(folder.c_str(), 0755);
        writeFile(outer + "/Contents/Info.plist", std::string("<plist><dict>") + (c.outerId ? "<key>CFBundleIdentifier</key><string>"
                  + std::string(c.outerId) + "</string>" : "") + "</dict></plist>");
        writeFile(inner + "/Contents/Info.plist", "<plist><dict></dict></plist>");
        const std::string probe = inner + "/Contents/MacOS/Inner";
        ASSERT_EQ(std::system(("cp '" KZBS_BUNDLE_PROBE "' '" + probe + "'").c_str()), 0);
        FILE* out = ::popen(("'" + probe + "' " + c.ownId).c_str(), "r");
        char line[256] = {};
        EXPECT_TRUE(out && std::fgets(line, sizeof line, out));
        if (out)
            ::pclose(out);
        EXPECT_EQ(std::string(line), std::string(c.expected) + "\n") << c.ownId;
    }
}

TEST(DirectoryEntries, WildcardsBecomeRegularExpressions)
{
    TempFolder dir;
    for (const char* name : {"a.txt", "ab.txt", "aa.txt", "abb.txt", "aztxt", "noext", "x$y", "B.TXT", ".hidden.txt"})
        writeFile(dir / name, "");
    ::mkdir((dir / "sub.d").c_str(), 0755);
    const Strings all{"B.TXT", "a.txt", "aa.txt", "ab.txt", "abb.txt", "aztxt", "noext", "sub.d", "x$y"};
    struct Case { const char* pattern; Strings names; };
    const Case cases[] = {
        {"*.*", all}, {"*", all}, {"*.txt", {"a.txt", "aa.txt", "ab.txt", "abb.txt"}}, {"*.TXT", {"B.TXT"}},
        {"ab?.txt", {"a.txt", "ab.txt"}}, // "?" makes the character before it optional
        {"a+.txt", {"a.txt", "aa.txt"}},  {"[ab]b.txt", {"ab.txt"}}, {"x$y", {"x$y"}},
        {"a.txt", {"a.txt"}},             {"*.d", {"sub.d"}},        {"a(.txt", {}},
    };
    for (const Case& c : cases) {
        Strings names = cpa::getDirectoryEntries(dir.path(), c.pattern);
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, c.names) << c.pattern;
    }
    EXPECT_TRUE(cpa::getDirectoryEntries(dir / "missing", "*.*").empty());
}

TEST(Deleting, FoldersOnlyWhenEmptyFilesAlways)
{
    TempFolder dir;
    for (const char* folder : {"empty", "full", "relative"})
        ::mkdir((dir / folder).c_str(), 0755);
    writeFile(dir / "full/keep.txt", "x");
    EXPECT_TRUE(cpa::deleteDirectory(dir / "empty"));
    EXPECT_FALSE(cpa::deleteDirectory(dir / "full"));
    EXPECT_TRUE(kzbs_test::exists(dir / "full/keep.txt"));
    EXPECT_TRUE(cpa::deleteDirectory((dir / "relative").substr(1))); // counts from the root
    EXPECT_TRUE(cpa::deleteFile(dir / "full/keep.txt"));
    EXPECT_FALSE(cpa::deleteFile(dir / "full/keep.txt"));
    EXPECT_TRUE(cpa::deleteDirectory(dir / "full"));
    for (const char* gone : {"empty", "relative", "full"})
        EXPECT_FALSE(kzbs_test::exists(dir / gone)) << gone;
}

TEST(FileSize, IsTheSizeOfAWindows1252NamedFile)
{
    TempFolder dir;
    writeFile(dir / "plain.bin", std::string(1234, 'x'));
    writeFile(dir / "Gr\xC3\xBC\xC3\x9F.bin", "12345");
    EXPECT_EQ(cpa::getFileSize((dir / "plain.bin").c_str()), 1234u);
    EXPECT_EQ(cpa::getFileSize((dir / "Gr\xFC\xDF.bin").c_str()), 5u);
    EXPECT_EQ(cpa::getFileSize((dir / "missing.bin").c_str()), 0u);
    EXPECT_EQ(cpa::getFileSize(nullptr), 0u);
}

namespace {
struct Parts { std::string drive, dir, fname, ext; };

// splitpath_s into buffers holding "#", so untouched parts show as "#".
Parts split(const char* path, unsigned long dirSize = 260, unsigned long fnameSize = 256, unsigned long extSize = 256)
{
    char drive[3] = "#", dir[260] = "#", fname[256] = "#", ext[256] = "#";
    EXPECT_EQ(cpa::splitpath_s(path, drive, sizeof drive, dir, dirSize, fname, fnameSize, ext, extSize), 0);
    return {drive, dir, fname, ext};
}
} // namespace

TEST(SplitPath, FolderNameAndExtension)
{
    TempFolder dir;
    ::mkdir((dir / "a").c_str(), 0755);
    writeFile(dir / "a/b.tar.gz", "");
    char canonical[PATH_MAX];
    ASSERT_TRUE(::realpath((dir / "a").c_str(), canonical));
    struct Case { std::string path, dir, fname, ext; };
    const Case cases[] = {
        {dir / "a/../a/b.tar.gz", canonical + std::string("/"), "b.tar", ".gz"}, // existing: resolved
        {"missing/../y.txt", "missing/../", "y", ".txt"},                        // missing: as written
        {"noext", "./", "noext", "#"}, {"dir/", "dir//", "", "#"}, {"dir.ext/", "dir.ext//", "", "#"},
        {"dir\\", "dir\\/", "", "#"},  {"/", "//", "", "#"},
    };
    for (const Case& c : cases) {
        const Parts parts = split(c.path.c_str());
        EXPECT_EQ(parts.drive + "|" + parts.dir + "|" + parts.fname + "|" + parts.ext,
                  "#|" + c.dir + "|" + c.fname + "|" + c.ext);
    }
}

TEST(SplitPath, SmallBuffersStayTerminated)
{
    struct Case { unsigned long dirSize, fnameSize, extSize; std::string dir, fname, ext; };
    const Case cases[] = {
        {11, 6, 5, "abcdefgh//", "b.tar", ".gz"}, {10, 5, 3, "abcdefgh/", "b.ta", ".g"},
        {4, 2, 1, "ab/", "b", ""}, {2, 1, 2, "/", "", "."}, {0, 0, 0, "#", "#", "#"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(split("abcdefgh/", c.dirSize).dir, c.dir) << c.dirSize;
        const Parts file = split("missing/b.tar.gz", 260, c.fnameSize, c.extSize);
        EXPECT_EQ(file.fname + "|" + file.ext, c.fname + "|" + c.ext) << c.fnameSize;
    }
    EXPECT_EQ(split(nullptr).dir, "#");
    EXPECT_EQ(cpa::splitpath_s("x/y.z", nullptr, 0, nullptr, 10, nullptr, 10, nullptr, 10), 0);
}
