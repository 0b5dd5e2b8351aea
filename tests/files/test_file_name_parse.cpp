// Parsing names into their five parts and composing them again.
#include "KZFileName.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

// Each case: the input and its parts as "unc|drive|dir|name|ext".
using Cases = std::initializer_list<std::pair<const char*, const char*>>;

void expectParts(Cases cases)
{
    for (const auto& c : cases) {
        const KZFileName n(c.first);
        EXPECT_EQ(n.getUNC() + '|' + n.getDrive() + '|' + n.getDir() + '|' + n.getName() + '|' + n.getExt(), c.second)
            << '"' << c.first << '"';
    }
}

struct FileNameParse : ::testing::Test {
    void SetUp() override { KZFileName::GlobalFileEnvironment = KZFileEnvironment(); }
};

TEST_F(FileNameParse, WindowsNames)
{
    expectParts({{"C:\\Prog\\data\\x.dat", "|C:|/Prog/data/|x|dat"},
                 {"C:f.txt", "|C:||f|txt"},
                 {"C:", "|C:|||"},
                 {"D:dir\\\\\\f", "|D:|dir/|f|"}});
}

TEST_F(FileNameParse, UncNames)
{
    expectParts({{"\\\\server\\share\\f.txt", "\\\\server\\||share/|f|txt"},
                 {"\\\\server", "\\\\server||||"},
                 {"\\\\srv/share", "\\\\srv/|||share|"},
                 {"\\dir\\f", "\\dir\\|||f|"},
                 {"\\", "\\||||"}});
}

TEST_F(FileNameParse, UnixNames)
{
    expectParts({{"/usr/lib/", "||/usr/lib/||"},
                 {"/usr/lib/libc.so.6", "||/usr/lib/|libc.so|6"},
                 {"//net/x", "||/net/|x|"},
                 {"/a/b/../../..", "||/..||"},
                 {"/../a", "||/../|a|"}});
}

TEST_F(FileNameParse, RelativeNames)
{
    expectParts({{"dir//sub\\\\f", "||dir/sub/|f|"},
                 {"b/../c/f", "||c/|f|"},
                 {"a/../../b/f", "||../b/|f|"},
                 {"./../a/f", "||a/|f|"},
                 {"..", "||..||"},
                 {"a/..", "||a/..||"},
                 {"a/.", "||a/.||"},
                 {"archive.tar.gz", "|||archive.tar|gz"},
                 {"name.", "|||name|"},
                 {".profile", "||||profile"}});
}

TEST_F(FileNameParse, OddNamesAreNeitherTrimmedNorRejected)
{
    expectParts({{"", "||||"},
                 {" C:\\x", "| C:|/|x|"},
                 {"\"a/b.txt\"", "||\"a/|b|txt\""},
                 {"http://host/p", "|http:|/host/|p|"},
                 {"a:b:c", "|a:||b:c|"},
                 {"x/..y/z", "||y/|z|"},
                 {"M\xFCll/\xC4rger.t\xE4t", "||M\xFCll/|\xC4rger|t\xE4t"}});
}

TEST_F(FileNameParse, ParseAndSettersKeepThePartsTheyDoNotFind)
{
    KZFileName n("C:/a/x.txt"), dir;
    n.parse("y");
    EXPECT_EQ(n.compose(), "C:/a/y");
    EXPECT_EQ(KZFileName(static_cast<const char*>(nullptr)).compose(), "");
    dir.setFullPath("C:\\data");
    EXPECT_EQ(dir.getDrive() + '|' + dir.getDir() + '|' + dir.getName(), "C:|/data/|");
    dir.setFileName("D:\\sub\\f.txt");
    EXPECT_EQ(dir.compose(), "C:/data/sub/f.txt") << "the drive of a file name is ignored";
}

TEST_F(FileNameParse, Queries)
{
    const struct {
        const char* input;
        bool unc, drive, abs, driveRel, valid;
    } cases[] = {{"", false, false, false, false, true},          {"C:f.txt", false, true, true, false, true},
                 {"C:dir\\f", false, true, true, true, true},     {"\\\\s\\x", true, false, true, false, true},
                 {".profile", false, false, false, false, false}, {"/usr/", false, false, true, false, true}};
    for (const auto& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(std::make_tuple(n.isUNCPath(), n.isDrivePath(), n.isAbsPath(), n.isDriveRelPath(), n.isValid()),
                  std::make_tuple(c.unc, c.drive, c.abs, c.driveRel, c.valid))
            << c.input;
    }
}

TEST_F(FileNameParse, ComposedFormsAreFixedPointsOfParsing)
{
    const struct {
        const char *input, *composed, *normalized, *windows;
    } cases[] = {
        {"C:\\Prog\\x.dat", "C:/Prog/x.dat", "C:/Prog/x.dat", "C:\\Prog\\x.dat"},
        {"\\\\server\\share\\f.txt", "\\\\server\\share/f.txt", "//server/share/f.txt", "\\\\server\\share\\f.txt"},
        {"\\\\srv/a\\b", "\\\\srv/a/b", "//srv/a/b", "\\\\srv/a\\b"},
        {"..", "../", "../", "..\\"}};
    for (const auto& c : cases) {
        const KZFileName n(c.input);
        EXPECT_EQ(n.compose() + ' ' + n.normalizedString() + ' ' + n.asString('\\'),
                  std::string(c.composed) + ' ' + c.normalized + ' ' + c.windows)
            << c.input;
        EXPECT_EQ(KZFileName(c.composed).compose(), c.composed) << c.input;
    }
    EXPECT_EQ(KZFileName::sm_dirSeparatorChar, '/') << "asString restores the separator";
}

} // namespace
