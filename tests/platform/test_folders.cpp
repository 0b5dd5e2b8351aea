// Listing, deleting, sizing and splitting on a real temporary folder.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

namespace cpa = CrossPlatformApi;
using kzbs_test::TempFolder;
using kzbs_test::writeFile;
using Strings = std::vector<std::string>;

TEST(DirectoryEntries, WildcardsBecomeRegularExpressions)
{
    TempFolder dir;
    for (const char* name :
         {"a.txt", "ab.txt", "aa.txt", "aztxt", "noext", "x$y", "B.TXT", ".hidden.txt", "x{y}", "a]"})
        writeFile(dir / name, "");
    ::mkdir((dir / "sub.d").c_str(), 0755);
    struct Case {
        const char* pattern;
        Strings names;
    };
    const Case cases[] = {
        {"*.*", {"B.TXT", "a.txt", "a]", "aa.txt", "ab.txt", "aztxt", "noext", "sub.d", "x$y", "x{y}"}},
        {"*.txt", {"a.txt", "aa.txt", "ab.txt"}},
        {"*.TXT", {"B.TXT"}},
        {"ab?.txt", {"a.txt", "ab.txt"}}, // "?" makes the character before it optional
        {"a+.txt", {"a.txt", "aa.txt"}},
        {"x$y", {"x$y"}},
        {"*.d", {"sub.d"}},
        {"a(.txt", {}},
        {"a{2}.txt", {"aa.txt"}},
        {"a{,1}.txt", {"a.txt"}},
        {"[]a].txt", {"a.txt"}},
        // The grammar stays QRegExp's: what it refused matches nothing, though PCRE would take it.
        {"a??.txt", {}},
        {"*?.txt", {}},
        {"x{y}", {}},
        {"a]", {}},
        {"(?i)b.txt", {}},
        {"", {}},
    };
    for (const Case& c : cases) {
        Strings names = cpa::getDirectoryEntries(dir.path, c.pattern);
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, c.names) << c.pattern;
    }
}

TEST(FilesAndFolders, SizesAndDeletion)
{
    TempFolder dir;
    for (const char* folder : {"empty", "full", "relative"})
        ::mkdir((dir / folder).c_str(), 0755);
    writeFile(dir / "Gr\xC3\xBC\xC3\x9F.bin", std::string(1234, 'x'));
    writeFile(dir / "full/keep", "");
    EXPECT_EQ(cpa::getFileSize((dir / "Gr\xFC\xDF.bin").c_str()), 1234u); // the name in Windows-1252
    EXPECT_EQ(cpa::getFileSize((dir / "missing").c_str()), 0u);
    EXPECT_EQ(cpa::getFileSize(nullptr), 0u);
    EXPECT_TRUE(cpa::deleteDirectory(dir / "empty"));
    EXPECT_FALSE(cpa::deleteDirectory(dir / "full"));
    EXPECT_TRUE(cpa::deleteDirectory((dir / "relative").substr(1))); // counts from the root
    EXPECT_TRUE(cpa::deleteFile(dir / "full/keep"));
    EXPECT_FALSE(cpa::deleteFile(dir / "full/keep"));
    EXPECT_TRUE(cpa::deleteDirectory(dir / "full"));
    EXPECT_FALSE(kzbs_test::exists(dir / "full"));
}

// splitpath_s into buffers holding "#", so untouched parts show as "#".
std::string split(const char* path, unsigned long dirN = 260, unsigned long nameN = 256, unsigned long extN = 256)
{
    char drive[3] = "#", dir[260] = "#", fname[256] = "#", ext[256] = "#";
    EXPECT_EQ(cpa::splitpath_s(path, drive, sizeof drive, dir, dirN, fname, nameN, ext, extN), 0);
    return std::string(drive) + "|" + dir + "|" + fname + "|" + ext;
}

TEST(SplitPath, FolderNameAndExtension)
{
    TempFolder dir;
    ::mkdir((dir / "a").c_str(), 0755);
    writeFile(dir / "a/b.tar.gz", "");
    char canonical[PATH_MAX];
    ASSERT_TRUE(::realpath((dir / "a").c_str(), canonical));
    struct Case {
        std::string path, parts;
    };
    const Case cases[] = {
        {dir / "a/../a/b.tar.gz", "#|" + std::string(canonical) + "/|b.tar|.gz"}, // existing: resolved
        {"missing/../y.txt", "#|missing/../|y|.txt"},                             // missing: as written
        {"noext", "#|./|noext|#"},
        {"dir.ext/", "#|dir.ext//||#"},
        {"dir\\", "#|dir\\/||#"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(split(c.path.c_str()), c.parts);
    EXPECT_EQ(split(nullptr), "#|#|#|#");
}

TEST(SplitPath, SmallBuffersStayTerminated)
{
    struct Case {
        unsigned long dirSize, fnameSize, extSize;
        std::string dir, file;
    };
    const Case cases[] = {{11, 6, 5, "abcdefgh//", "b.tar|.gz"},
                          {10, 5, 3, "abcdefgh/", "b.ta|.g"},
                          {2, 1, 2, "/", "|."},
                          {0, 0, 0, "#", "#|#"}};
    for (const Case& c : cases) {
        EXPECT_EQ(split("abcdefgh/", c.dirSize), "#|" + c.dir + "||#") << c.dirSize;
        EXPECT_EQ(split("missing/b.tar.gz", 260, c.fnameSize, c.extSize), "#|missing/|" + c.file) << c.fnameSize;
    }
}
