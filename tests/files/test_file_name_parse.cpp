// Parsing names into their five parts and composing them again.
#include "KZFileName.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

namespace {

struct Parts { const char *input, *unc, *drive, *dir, *name, *ext; };

template <std::size_t N>
void expectParts(const Parts (&cases)[N])
{
    for (const Parts& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.getUNC() + '|' + n.getDrive() + '|' + n.getDir() + '|' + n.getName() + '|' + n.getExt(),
                  std::string(c.unc) + '|' + c.drive + '|' + c.dir + '|' + c.name + '|' + c.ext)
            << '"' << c.input << '"';
    }
}

class FileNameParse : public ::testing::Test {
protected:
    void SetUp() override { KZFileName::GlobalFileEnvironment = KZFileEnvironment(); }
    void TearDown() override { KZFileName::GlobalFileEnvironment = KZFileEnvironment(); }
};

TEST_F(FileNameParse, WindowsNames)
{
    expectParts({{"C:\\Prog\\data\\x.dat", "", "C:", "/Prog/data/", "x", "dat"}, {"C:f.txt", "", "C:", "", "f", "txt"},
                 {"C:", "", "C:", "", "", ""}, {"c:/a/../b.txt", "", "c:", "/", "b", "txt"},
                 {"C:\\a\\\\\\b", "", "C:", "/a/", "b", ""}, {"D:dir\\f", "", "D:", "dir/", "f", ""}});
}

TEST_F(FileNameParse, UncNames)
{
    expectParts({{"\\\\server\\share\\f.txt", "\\\\server\\", "", "share/", "f", "txt"},
                 {"\\\\server", "\\\\server", "", "", "", ""}, {"\\\\srv/share", "\\\\srv/", "", "", "share", ""},
                 {"\\dir\\f", "\\dir\\", "", "", "f", ""}, {"\\", "\\", "", "", "", ""}});
}

TEST_F(FileNameParse, UnixNames)
{
    expectParts({{"/usr/lib/", "", "", "/usr/lib/", "", ""}, {"/usr/lib/libc.so.6", "", "", "/usr/lib/", "libc.so", "6"},
                 {"//net/x", "", "", "/net/", "x", ""}, {"/home/u/.profile", "", "", "/home/u/", "", "profile"},
                 {"/a/b/../../..", "", "", "/..", "", ""}, {"/../a", "", "", "/../", "a", ""}});
}

TEST_F(FileNameParse, RelativeNames)
{
    expectParts({{"x.dat", "", "", "", "x", "dat"}, {"dir//sub///f", "", "", "dir/sub/", "f", ""},
                 {"a\\b/c", "", "", "a/b/", "c", ""}, {"a/b/../c/f", "", "", "a/c/", "f", ""},
                 {"b/../c/f", "", "", "c/", "f", ""}, {"a/../../b/f", "", "", "../b/", "f", ""},
                 {"../x/../y/f", "", "", "../y/", "f", ""}, {"./../a/f", "", "", "a/", "f", ""}, {"..", "", "", "..", "", ""}, {"a/.", "", "", "a/.", "", ""},
                 {"a/..", "", "", "a/..", "", ""}, {"archive.tar.gz", "", "", "", "archive.tar", "gz"},
                 {"name.", "", "", "", "name", ""}, {".profile", "", "", "", "", "profile"}});
}

TEST_F(FileNameParse, OddNamesAreNeitherTrimmedNorRejected)
{
    expectParts({{"", "", "", "", "", ""}, {" C:\\x", "", " C:", "/", "x", ""}, {"\"a/b.txt\"", "", "", "\"a/", "b", "txt\""},
                 {"http://host/p", "", "http:", "/host/", "p", ""}, {"a:b:c", "", "a:", "", "b:c", ""},
                 {"x/..y/z", "", "", "y/", "z", ""}, {"a b.t x", "", "", "", "a b", "t x"},
                 {"M\xFCll/\xC4rger.t\xE4t", "", "", "M\xFCll/", "\xC4rger", "t\xE4t"}});
}

TEST_F(FileNameParse, SymbolsAreExpandedFirst)
{
    std::istringstream symbols("ROOT=C:\\Prog DATA=<ROOT>/Data");
    KZFileName::GlobalFileEnvironment.readSymbolsFromFile(symbols);
    expectParts({{"<DATA>/x.dat", "", "C:", "/Prog/Data/", "x", "dat"}, {"<NOPE>/x", "", "", "/", "x", ""},
                 {"a<b", "", "", "", "a<b", ""}});
}

TEST_F(FileNameParse, ParseKeepsThePartsItDoesNotFind)
{
    KZFileName n("C:/a/x.txt");
    n.parse("y");
    EXPECT_EQ(n.compose(), "C:/a/y");
    EXPECT_EQ(KZFileName(static_cast<const char*>(nullptr)).compose(), "");
}

TEST_F(FileNameParse, Queries)
{
    const struct { const char* input; bool unc, drive, abs, driveRel, valid; } cases[] = {
        {"", false, false, false, false, true}, {"C:f.txt", false, true, true, false, true},
        {"C:dir\\f", false, true, true, true, true}, {"\\\\s\\x", true, false, true, false, true},
        {"/usr/", false, false, true, false, true}, {"rel/x", false, false, false, false, true},
        {".profile", false, false, false, false, false}};
    for (const auto& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(std::make_tuple(n.isUNCPath(), n.isDrivePath(), n.isAbsPath(), n.isDriveRelPath(), n.isValid()),
                  std::make_tuple(c.unc, c.drive, c.abs, c.driveRel, c.valid)) << c.input;
    }
}

TEST_F(FileNameParse, ComposedForms)
{
    const struct { const char *input, *composed, *normalized, *windows; } cases[] = {
        {"C:\\Prog\\x.dat", "C:/Prog/x.dat", "C:/Prog/x.dat", "C:\\Prog\\x.dat"},
        {"\\\\server\\share\\f.txt", "\\\\server\\share/f.txt", "//server/share/f.txt", "\\\\server\\share\\f.txt"},
        {"\\\\srv/a\\b", "\\\\srv/a/b", "//srv/a/b", "\\\\srv/a\\b"},
        {"/usr/lib/", "/usr/lib/", "/usr/lib/", "\\usr\\lib\\"}, {"..", "../", "../", "..\\"}};
    for (const auto& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.compose(), c.composed) << c.input;
        EXPECT_EQ(n.normalizedString(), c.normalized) << c.input;
        EXPECT_EQ(n.asString('\\'), c.windows) << c.input;
        // Composing is a fixed point of parsing.
        EXPECT_EQ(KZFileName(c.composed).compose(), c.composed) << c.input;
    }
    EXPECT_EQ(KZFileName::sm_dirSeparatorChar, '/') << "asString restores the separator";
}

TEST_F(FileNameParse, DirectoryAndFileNameSetters)
{
    KZFileName n;
    n.setFullPath("C:\\data");
    EXPECT_EQ(n.getDrive() + '|' + n.getDir() + '|' + n.getName(), "C:|/data/|");
    EXPECT_EQ(n.getFullPath(), "C:/data/");
    n.setFileName("D:\\sub\\f.txt");
    EXPECT_EQ(n.compose(), "C:/data/sub/f.txt");
}

} // namespace
