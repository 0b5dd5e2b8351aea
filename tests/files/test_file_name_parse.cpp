// Parsing names into their five parts, composing them again, and the
// separator and path-element helpers.
#include "KZFileName.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

namespace {

struct Parts {
    const char* input;
    const char* unc;
    const char* drive;
    const char* dir;
    const char* name;
    const char* ext;
};

template <std::size_t N>
void expectParts(const Parts (&cases)[N])
{
    for (const Parts& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.getUNC(), c.unc) << '"' << c.input << '"';
        EXPECT_EQ(n.getDrive(), c.drive) << '"' << c.input << '"';
        EXPECT_EQ(n.getDir(), c.dir) << '"' << c.input << '"';
        EXPECT_EQ(n.getName(), c.name) << '"' << c.input << '"';
        EXPECT_EQ(n.getExt(), c.ext) << '"' << c.input << '"';
    }
}

class FileNameParse : public ::testing::Test {
protected:
    void SetUp() override { KZFileName::GlobalFileEnvironment = KZFileEnvironment(); }
    void TearDown() override { KZFileName::GlobalFileEnvironment = KZFileEnvironment(); }
};

TEST_F(FileNameParse, WindowsNames)
{
    const Parts cases[] = {
        {"C:\\Prog\\data\\x.dat", "", "C:", "/Prog/data/", "x", "dat"},
        {"C:f.txt", "", "C:", "", "f", "txt"},
        {"C:", "", "C:", "", "", ""},
        {"C:\\", "", "C:", "/", "", ""},
        {"c:/a/../b.txt", "", "c:", "/", "b", "txt"},
        {"C:\\a\\\\\\b", "", "C:", "/a/", "b", ""},
        {"D:dir\\f", "", "D:", "dir/", "f", ""},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, UncNames)
{
    const Parts cases[] = {
        {"\\\\server\\share\\f.txt", "\\\\server\\", "", "share/", "f", "txt"},
        {"\\\\server", "\\\\server", "", "", "", ""},
        {"\\\\srv/share", "\\\\srv/", "", "", "share", ""},
        {"\\dir\\f", "\\dir\\", "", "", "f", ""},   // one backslash is enough
        {"\\", "\\", "", "", "", ""},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, UnixNames)
{
    const Parts cases[] = {
        {"/usr/lib/", "", "", "/usr/lib/", "", ""},
        {"/usr/lib/libc.so.6", "", "", "/usr/lib/", "libc.so", "6"},
        {"/", "", "", "/", "", ""},
        {"//net/x", "", "", "/net/", "x", ""},
        {"/home/u/.profile", "", "", "/home/u/", "", "profile"},
        {"/a/b/../../..", "", "", "/..", "", ""},
        {"/../a", "", "", "/../", "a", ""},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, RelativeNames)
{
    const Parts cases[] = {
        {"x.dat", "", "", "", "x", "dat"},
        {"dir//sub///f", "", "", "dir/sub/", "f", ""},
        {"a\\b/c", "", "", "a/b/", "c", ""},
        {"a/b/../c/f", "", "", "a/c/", "f", ""},
        {"b/../c/f", "", "", "c/", "f", ""},
        {"a/../../b/f", "", "", "../b/", "f", ""},
        {"../x/../y/f", "", "", "../y/", "f", ""},
        {"..", "", "", "..", "", ""},
        {"a/.", "", "", "a/.", "", ""},
        {"a/..", "", "", "a/..", "", ""},
        {"archive.tar.gz", "", "", "", "archive.tar", "gz"},
        {"name.", "", "", "", "name", ""},
        {".profile", "", "", "", "", "profile"},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, OddNamesAreNeitherTrimmedNorRejected)
{
    const Parts cases[] = {
        {"", "", "", "", "", ""},
        {" C:\\x", "", " C:", "/", "x", ""},
        {"\"a/b.txt\"", "", "", "\"a/", "b", "txt\""},
        {"http://host/p", "", "http:", "/host/", "p", ""},
        {"a:b:c", "", "a:", "", "b:c", ""},
        {"x/..y/z", "", "", "y/", "z", ""},   // "/.." matches as plain text
        {"a b.t x", "", "", "", "a b", "t x"},
        {"M\xFCll/\xC4rger.t\xE4t", "", "", "M\xFCll/", "\xC4rger", "t\xE4t"},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, SymbolsAreExpandedFirst)
{
    std::istringstream symbols("ROOT=C:\\Prog DATA=<ROOT>/Data");
    KZFileName::GlobalFileEnvironment.readSymbolsFromFile(symbols);
    const Parts cases[] = {
        {"<DATA>/x.dat", "", "C:", "/Prog/Data/", "x", "dat"},
        {"<NOPE>/x", "", "", "/", "x", ""},
        {"a<b", "", "", "", "a<b", ""},
    };
    expectParts(cases);
}

TEST_F(FileNameParse, ParseKeepsThePartsItDoesNotFind)
{
    KZFileName n("C:/a/x.txt");
    n.parse("y");
    EXPECT_EQ(n.compose(), "C:/a/y");
    n.clear();
    n.parse("y");
    EXPECT_EQ(n.compose(), "y");
    EXPECT_EQ(KZFileName(static_cast<const char*>(nullptr)).compose(), "");
}

TEST_F(FileNameParse, Queries)
{
    struct Case {
        const char* input;
        bool unc, drive, abs, driveRel, valid;
    } cases[] = {
        {"", false, false, false, false, true},
        {"C:f.txt", false, true, true, false, true},
        {"C:", false, true, true, false, true},
        {"C:dir\\f", false, true, true, true, true},
        {"\\\\s\\x", true, false, true, false, true},
        {"/usr/", false, false, true, false, true},
        {"rel/x", false, false, false, false, true},
        {".profile", false, false, false, false, false},
    };
    for (const Case& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.isUNCPath(), c.unc) << c.input;
        EXPECT_EQ(n.isDrivePath(), c.drive) << c.input;
        EXPECT_EQ(n.isAbsPath(), c.abs) << c.input;
        EXPECT_EQ(n.isDriveRelPath(), c.driveRel) << c.input;
        EXPECT_EQ(n.isValid(), c.valid) << c.input;
    }
}

TEST_F(FileNameParse, ComposedForms)
{
    struct Case {
        const char* input;
        const char* composed;
        const char* normalized;
        const char* windows;
    } cases[] = {
        {"C:\\Prog\\x.dat", "C:/Prog/x.dat", "C:/Prog/x.dat", "C:\\Prog\\x.dat"},
        {"\\\\server\\share\\f.txt", "\\\\server\\share/f.txt", "//server/share/f.txt", "\\\\server\\share\\f.txt"},
        {"\\\\srv/a\\b", "\\\\srv/a/b", "//srv/a/b", "\\\\srv/a\\b"},
        {"/usr/lib/", "/usr/lib/", "/usr/lib/", "\\usr\\lib\\"},
        {"..", "../", "../", "..\\"},
        {".profile", ".profile", ".profile", ".profile"},
        {"", "", "", ""},
    };
    for (const Case& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.compose(), c.composed) << c.input;
        EXPECT_EQ(n.normalizedString(), c.normalized) << c.input;
        EXPECT_EQ(n.asString('\\'), c.windows) << c.input;
        EXPECT_EQ(n.asString('/'), c.composed) << c.input;
    }
    EXPECT_EQ(KZFileName::sm_dirSeparatorChar, '/') << "asString restores the separator";
}

TEST_F(FileNameParse, ComposingIsAFixedPointOfParsing)
{
    for (const char* input : {"C:\\Prog\\data\\x.dat", "\\\\server\\share\\f.txt", "/usr/lib/libc.so.6", "dir//sub///f",
                              "a/../../b/f", "..", "archive.tar.gz", "C:f.txt", " C:\\x", "http://host/p"}) {
        const std::string once = KZFileName(input).compose();
        EXPECT_EQ(KZFileName(once).compose(), once) << input;
        if (once[0] != '/') { // in Windows style a leading separator reads as a UNC prefix
            EXPECT_EQ(KZFileName(KZFileName(input).asString('\\')).compose(), once) << input;
        }
    }
}

TEST_F(FileNameParse, DirectoryAndFileNameSetters)
{
    KZFileName n;
    n.setFullPath("C:\\data");
    EXPECT_EQ(n.getDrive(), "C:");
    EXPECT_EQ(n.getDir(), "/data/");
    EXPECT_EQ(n.getName(), "");
    EXPECT_EQ(n.getFullPath(), "C:/data/");
    n.setFileName("D:\\sub\\f.txt");
    EXPECT_EQ(n.compose(), "C:/data/sub/f.txt");
    n.setFullPath("");
    EXPECT_EQ(n.compose(), "");
}

TEST(FileNameHelpers, Separators)
{
    std::string s = "a///";
    KZFileName::removeTrailingDirSeparator(s);
    EXPECT_EQ(s, "a");
    s = "";
    KZFileName::addTrailingDirSeparator(s);
    EXPECT_EQ(s, "/");
    s = "a\\";
    KZFileName::addTrailingDirSeparator(s);
    EXPECT_EQ(s, "a\\");
    EXPECT_FALSE(KZFileName::hasTrailingDirSeparator(""));
    EXPECT_EQ(KZFileName::getNormalizedString("c:\\Prog/d\xE4t"), "C:/PROG/D\xE4T");
}

TEST(FileNameHelpers, RedundantPathElements)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a/b/../c/", "a/c/"}, {"b/../c", "c"}, {"a/../../b", "../b"}, {"../x/../y", "../y"},
        {"/../a", "/../a"}, {"a/..b/c", "b/c"}, {"./../a", "a"}, {"/a/b/..", "/a"}, {"", ""},
    };
    for (const auto& c : cases) {
        std::string s = c.first;
        KZFileName::removeRedundantPathElements(s);
        EXPECT_EQ(s, c.second) << c.first;
    }
    std::string runs = "\\\\a//b\\/../c";
    KZFileName::removeRedundantDirSeperators(runs);
    EXPECT_EQ(runs, "/a/c");
}

TEST(FileNameHelpers, LeftDir)
{
    const std::tuple<const char*, unsigned long, const char*> cases[] = {
        {"a/b/..", 3, "/b"}, {"ab/..", 2, "ab"}, {"a/b", 0, ""}, {"../..", 2, ""},
        {"/../..", 3, ""}, {"./..", 1, "."}, {"x", 99, "x"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KZFileName::getLeftDir(std::get<0>(c), std::get<1>(c)), std::get<2>(c)) << std::get<0>(c);
}

} // namespace
