// kzbs path and kzbs symbols, run as a user runs them.
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <unistd.h>

using kzbs_test::runKzbs;

namespace {

// A symbol file in a fresh folder, removed afterwards.
class SymbolFile {
public:
    explicit SymbolFile(const std::string& content)
    {
        char dir[] = "/tmp/kzbs-cli-files-XXXXXX";
        if (::mkdtemp(dir))
            m_dir = dir;
        std::ofstream(path(), std::ios::binary) << content;
    }
    ~SymbolFile()
    {
        std::remove(path().c_str());
        ::rmdir(m_dir.c_str());
    }
    std::string path() const { return m_dir + "/DirectorySymbols.dat"; }
    const std::string& dir() const { return m_dir; }

private:
    std::string m_dir;
};

TEST(CliFiles, ParseShowsThePartsAndForms)
{
    const auto r = runKzbs({"path", "parse", "C:\\Prog\\M\xC3\xBCll\\x.tar.gz", "\\\\srv\\share\\f"});
    EXPECT_EQ(r.status, 0) << r.err;
    for (const char* line : {"drive:       C:\n", "directory:   /Prog/M\xC3\xBCll/\n", "base name:   x.tar\n",
                             "extension:   gz\n", "composed:    C:/Prog/M\xC3\xBCll/x.tar.gz\n",
                             "windows:     C:\\Prog\\M\xC3\xBCll\\x.tar.gz\n", "unc:         \\\\srv\\\n",
                             "normalised:  //srv/share/f\n", "absolute:    yes\n"})
        EXPECT_NE(r.out.find(line), std::string::npos) << line << r.out;
}

TEST(CliFiles, RelAbsParam)
{
    const struct {
        std::vector<std::string> args;
        int status;
        const char* out;
    } cases[] = {
        {{"path", "rel", "C:/Prog/Out/x.txt", "--base", "C:\\Prog\\Data"}, 0, "../Out/x.txt\n"},
        {{"path", "rel", "D:/x", "--base", "C:/Prog"}, 1, "D:/x\n"},
        {{"path", "abs", "sub/f", "--base", "C:/Prog"}, 0, "C:/Prog/sub/f\n"},
        {{"path", "abs", "/tmp/../tmp/./"}, 0, "/tmp\n"},
        {{"path", "abs", "no/such/thing"}, 1, "no/such/thing\n"},
        {{"path", "param", "C:/Prog/x", "C:/Other/y", "--symbol", "SYS_BASEDIR", "--base", "C:/Prog"}, 1,
         "<SYS_BASEDIR>/x\nC:/Other/y\n"},
    };
    for (const auto& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, c.status) << c.args[1] << ' ' << c.args[2] << r.err;
        EXPECT_EQ(r.out, c.out) << c.args[1] << ' ' << c.args[2];
    }
}

TEST(CliFiles, SymbolFileFeedsEveryCommand)
{
    // Symbol files are in the library's Windows-1252.
    const SymbolFile file("DATA=<SYS_BASEDIR>Data/\n\xDC" "BER=/\xFC" "ber\n");
    const auto param = runKzbs({"path", "param", "/base/Data/x.dat", "--symbol", "DATA", "--base", "/base",
                                "--symbols", file.path()});
    EXPECT_EQ(param.status, 0) << param.err;
    EXPECT_EQ(param.out, "<DATA>/x.dat\n");
    const auto parse = runKzbs({"path", "parse", "<\xC3\x9C" "BER>/f", "--symbols", file.path()});
    EXPECT_NE(parse.out.find("directory:   /\xC3\xBC" "ber/\n"), std::string::npos) << parse.out;
    const auto table = runKzbs({"symbols", file.path(), "--base", "/base"});
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_EQ(table.out, "DATA = <SYS_BASEDIR>Data/ (/base/Data/)\n"
                         "SYS_BASEDIR = /base/ (/base/)\n"
                         "\xC3\x9C" "BER = /\xC3\xBC" "ber (/\xC3\xBC" "ber)\n");
    const auto defaultFile = runKzbs({"symbols", "", "--base", file.dir()});
    EXPECT_EQ(defaultFile.status, 0) << defaultFile.err;
}

TEST(CliFiles, BadInputIsOneLineOnStderr)
{
    const std::vector<std::string> cases[] = {
        {"path"}, {"path", "frob", "x"}, {"path", "parse"}, {"path", "param", "x"},
        {"path", "rel", "/x"}, {"path", "param", "x", "--symbol", "NOPE"},
        {"path", "parse", "x", "--symbols", "/no/such/file"}, {"symbols"}, {"path", "parse", "x", "--frob"},
    };
    for (const auto& args : cases) {
        const auto r = runKzbs(args);
        EXPECT_EQ(r.status, 2) << args.back();
        EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << args.back() << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << args.back() << r.err;
    }
    for (const char* command : {"path", "symbols"})
        EXPECT_EQ(runKzbs({command, "--help"}).status, 0) << command;
}

} // namespace
