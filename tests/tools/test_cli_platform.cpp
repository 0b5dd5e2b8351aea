// kzbs ini and kzbs folders, run as a user runs them.
#include "TempFolder.h"
#include "RunKzbs.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using kzbs_test::runKzbs;
using kzbs_test::TempFolder;

TEST(CliIni, SetThenGetSectionsAndEntries)
{
    TempFolder dir;
    const std::string file = dir / "app.ini";
    struct Step {
        std::vector<std::string> args;
        std::string out;
    };
    const Step steps[] = {
        {{"ini", "set", file, "Fenster", "Breite", "640"}, ""},
        {{"ini", "set", file, "K\xC3\xB6ln", "Dom", "gro\xC3\x9F \xE2\x82\xAC"}, ""},
        {{"ini", "get", file, "K\xC3\xB6ln", "Dom"}, "gro\xC3\x9F \xE2\x82\xAC\n"},
        {{"ini", "sections", file}, "Fenster\nK\xC3\xB6ln\n"},
        {{"ini", "entries", file, "K\xC3\xB6ln"}, "Dom=gro\xC3\x9F \xE2\x82\xAC\n"},
    };
    for (const Step& step : steps) {
        const auto r = runKzbs(step.args, "", {"LC_ALL=C.UTF-8", "LANG=C.UTF-8"});
        EXPECT_EQ(r.status, 0) << step.args[1] << ": " << r.err;
        EXPECT_EQ(r.out, step.out) << step.args[1];
    }
}

TEST(CliIni, MistakesAreErrorsOnStderr)
{
    TempFolder dir;
    const std::string missing = dir / "missing.ini";
    kzbs_test::writeFile(dir / "plain", "x");
    struct Case {
        std::vector<std::string> args;
        std::string message;
    };
    const Case cases[] = {
        {{"ini", "get", missing, "S", "K"}, "kzbs: " + missing + ": no such file"},
        {{"ini", "get", dir.path, "S", "K"}, "kzbs: " + dir.path + ": is a directory"},
        {{"ini", "sections", dir.path}, "kzbs: " + dir.path + ": is a directory"},
        {{"ini", "set", dir / "plain/x.ini", "S", "K", "V"}, "kzbs: cannot write " + dir / "plain/x.ini"},
        {{"ini", "get", "--force", dir / "plain", "S", "K"}, "kzbs: --force belongs to ini set"},
        {{"ini", "set", dir / "plain", "S", "K", "caf\xC3\xA9 \xE2\x86\x92"},
         "kzbs: 'caf\xC3\xA9 \xE2\x86\x92' holds a character"},
        {{"ini", "remove", missing}, "kzbs: unknown ini action 'remove'"},
        {{"folders", "extra"}, "kzbs: folders takes no arguments"},
    };
    for (const Case& c : cases) {
        const auto r = runKzbs(c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.out + r.err.substr(0, c.message.size()), c.message);
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err; // one line
    }
    EXPECT_FALSE(kzbs_test::exists(missing));
}

// ini set rewrites the whole file by Qt's rules; it refuses when that would
// change a line other than the key's own, naming the line, unless --force.
TEST(CliIni, SetRefusesToRewriteOtherLines)
{
    TempFolder dir;
    const std::string file = dir / "app.ini";
    const struct {
        std::string before, section, key, after;
        std::string lost;
    } cases[] = {
        {"[S]\nK=1\nx=2\n", "S", "K", "[S]\nK=5\nx=2\n", ""},
        {"[S]\nx=2\n", "S", "K", "[S]\nK=5\nx=2\n", ""},
        {"[S]\nx=2\n", "T", "K", "[S]\nx=2\n\n[T]\nK=5\n", ""},
        {"; settings\n[S]\nK=1\n", "S", "K", "[S]\nK=5\n", "line 1 ('; settings')"},
        {"[S]\nK=1\nx = 2\n", "S", "K", "[S]\nK=5\nx=2\n", "line 3 ('x = 2')"},
        {"[S]\r\nK=1\r\n", "S", "K", "[S]\nK=5\n", "line 1 ('[S]\\x0D')"},
    };
    for (const auto& c : cases) {
        kzbs_test::writeFile(file, c.before);
        const auto r = runKzbs({"ini", "set", file, c.section, c.key, "5"});
        if (c.lost.empty()) {
            EXPECT_EQ(r.status, 0) << r.err;
        } else {
            kzbs_test::expectRefusal(r, "would rewrite " + c.lost + " of " + file);
            EXPECT_EQ(kzbs_test::readFile(file), c.before);
            EXPECT_EQ(runKzbs({"ini", "set", "--force", file, c.section, c.key, "5"}).status, 0);
        }
        EXPECT_EQ(kzbs_test::readFile(file), c.after) << c.before;
    }
}

// TMPDIR ends in "/", which the listing leaves out.
TEST(CliFolders, ListsTheSystemFoldersAndTheProgramsFolder)
{
    TempFolder home;
    ::mkdir((home / "tmp").c_str(), 0755);
    const auto r = runKzbs({"folders"}, "",
                           {"HOME=" + home.path, "TMPDIR=" + (home / "tmp/"), "XDG_DATA_HOME=", "XDG_CONFIG_HOME="});
    EXPECT_EQ(r.status, 0) << r.err;
    const std::string program = KZBS_EXE;
    EXPECT_EQ(r.out, "temp                 " + (home / "tmp") + "\n"
                     "application-support  " + (home / ".local/share") + "\n"
                     "documents            " + (home / "Documents") + "\n"
                     "home                 " + home.path + "\n"
                     "application          " + program.substr(0, program.rfind('/')) + "\n");
}

// kzbs hands ini and folders to kzbs-platform beside it (or in its libexec
// folder); a kzbs without it says so in one line, and its other commands work.
TEST(CliPlatformHelper, AMissingHelperIsOneLineAndExitTwo)
{
    TempFolder dir;
    std::filesystem::copy_file(KZBS_EXE, dir / "kzbs");
    const std::string run = "LD_LIBRARY_PATH=" + kzbs_test::shellQuote(KZBS_CORE_DIR) + " " + (dir / "kzbs");
    ASSERT_EQ(std::system((run + " easter 2026 >" + (dir / "out") + " 2>&1").c_str()), 0);
    EXPECT_EQ(kzbs_test::readFile(dir / "out"), "2026-04-05\n");
    const std::string where = std::filesystem::canonical(dir.path).string(); // as the system names it
    for (const char* command : {"folders", "ini"}) {
        const int status = std::system((run + " " + command + " >" + (dir / "out") + " 2>" + (dir / "err")).c_str());
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 2) << command;
        EXPECT_EQ(kzbs_test::readFile(dir / "out"), "") << command;
        EXPECT_EQ(kzbs_test::readFile(dir / "err"),
                  std::string("kzbs: ") + command + " needs kzbs-platform, which is missing (looked for " + dir.path
                      + "/kzbs-platform and " + dir.path + "/../libexec/kzbs/kzbs-platform)\n");
    }
}
