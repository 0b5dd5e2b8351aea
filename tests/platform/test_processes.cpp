// Starting programs and opening documents: real scripts that record how they
// were started, URL handlers registered by the test, real child processes.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <thread>
#include <sys/wait.h>
#include <unistd.h>

namespace cpa = CrossPlatformApi;
using kzbs_test::TempFolder;
using kzbs_test::writeFile;

class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls.append(url); }
};

namespace {

// Waits for a file a detached process writes; "" when it does not appear.
std::string awaitFile(const std::string& path)
{
    for (int i = 0; i < 1000; ++i) {
        if (kzbs_test::exists(path))
            return kzbs_test::readFile(path);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return "";
}

std::string realPath(const std::string& path)
{
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) ? resolved : path;
}

class Exec : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(dir.path().empty());
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &files, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &web, "open");
    }
    void TearDown() override
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    }

    // A script at `path` that writes its arguments, each in brackets, and its
    // working folder to the file "out" of the test folder.
    std::string makeRecorder(const std::string& path)
    {
        const std::string out = dir / "out";
        writeFile(path,
                  "#!/bin/sh\n"
                  "{ for a in \"$@\"; do printf '[%s]' \"$a\"; done; echo; pwd; } > '" + out + ".tmp'"
                  " && mv '" + out + ".tmp' '" + out + "'\n",
                  0755);
        return path;
    }

    // Runs exec and returns what the recorder wrote: arguments, newline, folder.
    std::string run(const std::string& program, const char* arguments, const char* workDir = nullptr)
    {
        std::remove((dir / "out").c_str());
        if (!cpa::exec(program.c_str(), arguments, workDir))
            return "not started";
        return awaitFile(dir / "out");
    }

    std::string argumentsOf(const std::string& recorded) { return recorded.substr(0, recorded.find('\n')); }

    TempFolder dir;
    UrlRecorder files;
    UrlRecorder web;
};

} // namespace

TEST_F(Exec, SplitsTheArgumentLineKeepingItsRepetitions)
{
    const std::string program = makeRecorder(dir / "rec.sh");
    struct Case { const char* line; const char* arguments; };
    const Case cases[] = {
        {"a b", "[a][b]"},
        {"a \"b c\"", "[a][b c]"},
        {"\"x\" \"y\"", "[x][y]"},
        {"\"x\" y", "[x][y][y]"},
        {"\"x\" y z", "[x][y][z][z]"},
        {"  a", "[a][a][a]"},
        {"  ab", "[ab][ab]"},
        {"\"", "[]"},
        {"", ""},
        {nullptr, ""},
        {"'b c'", "['b][c']"},          // single quotes are ordinary characters
        {"gr\xC3\xBC\xC3\x9F", "[gr\xC3\xBC\xC3\x9F]"}, // the line is UTF-8
    };
    for (const Case& c : cases)
        EXPECT_EQ(argumentsOf(run(program, c.line)), c.arguments) << (c.line ? c.line : "(null)");
    EXPECT_TRUE(files.urls.isEmpty()) << "a program is started, not opened";
}

TEST_F(Exec, StartsInTheGivenFolderOrTheCallersOwn)
{
    const std::string program = makeRecorder(dir / "rec.sh");
    ::mkdir((dir / "work").c_str(), 0755);
    char cwd[PATH_MAX];
    ASSERT_TRUE(::getcwd(cwd, sizeof cwd));

    EXPECT_EQ(run(program, "", (dir / "work").c_str()), "\n" + realPath(dir / "work") + "\n");
    EXPECT_EQ(realPath(run(program, "", nullptr).substr(1, std::string::npos)).find(realPath(cwd)), 0u);
}

TEST_F(Exec, BackslashesInProgramAndFolderBecomeSlashes)
{
    makeRecorder(dir / "rec.sh");
    ::mkdir((dir / "work").c_str(), 0755);
    std::string program = dir / "rec.sh";
    std::string work = dir / "work";
    for (std::string* path : {&program, &work})
        for (char& c : *path)
            c = c == '/' ? '\\' : c;
    EXPECT_EQ(run(program, "x", work.c_str()), "[x]\n" + realPath(dir / "work") + "\n");
}

TEST_F(Exec, StartsTheExecutableOfAnApplicationBundle)
{
    struct Case { const char* bundle; const char* plist; const char* executable; };
    const Case cases[] = {
        {"Named.app",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n"
         "<key>Nested</key><dict><key>CFBundleExecutable</key><string>Wrong</string></dict>\n"
         "<key>CFBundleName</key><string>Named</string>\n"
         "<key>CFBundleExecutable</key><string>Planer</string>\n</dict></plist>\n",
         "Planer"},
        {"Plain.app", "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>P</string></dict></plist>",
         "Plain"},
        {"Broken.app", "not a property list", "Broken"},
    };
    for (const Case& c : cases) {
        const std::string bundle = dir / c.bundle;
        ::mkdir(bundle.c_str(), 0755);
        ::mkdir((bundle + "/Contents").c_str(), 0755);
        ::mkdir((bundle + "/Contents/MacOS").c_str(), 0755);
        writeFile(bundle + "/Contents/Info.plist", c.plist);
        makeRecorder(bundle + "/Contents/MacOS/" + c.executable);
        EXPECT_EQ(argumentsOf(run(bundle, "--open x")), "[--open][x]") << c.bundle;
    }
}

TEST_F(Exec, AFolderWithoutBundleLayoutIsNoBundle)
{
    const std::string folder = dir / "Fake.app";
    ::mkdir(folder.c_str(), 0755);
    ::mkdir((folder + "/Contents").c_str(), 0755);
    ::mkdir((folder + "/Contents/MacOS").c_str(), 0755);
    makeRecorder(folder + "/Contents/MacOS/Fake");
    EXPECT_FALSE(cpa::exec(folder.c_str(), "", nullptr)); // no Info.plist: a folder cannot run
    EXPECT_FALSE(cpa::exec((dir / "does-not-exist").c_str(), "", nullptr));
}

TEST_F(Exec, ADocumentWithoutExecuteRightIsOpenedNotStarted)
{
    const std::string document = dir / "report.txt";
    writeFile(document, "#!/bin/sh\ntouch '" + (dir / "ran") + "'\n", 0644);
    EXPECT_TRUE(cpa::exec(document.c_str(), "ignored arguments", "/ignored/folder"));
    ASSERT_EQ(files.urls.size(), 1);
    EXPECT_EQ(files.urls.front(), QUrl::fromLocalFile(QString::fromStdString(document)));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(kzbs_test::exists(dir / "ran"));
}

TEST_F(Exec, DocumentsAndAddressesGoToTheDesktopHandler)
{
    std::string windowsPath = dir / "sub\\plan.pdf";
    EXPECT_TRUE(cpa::executeAssociatedAppAndOpenFile(windowsPath.c_str()));
    EXPECT_TRUE(cpa::executeAssociatedAppAndOpenFileCp1252((dir / "Gr\xFC\xDF e.txt").c_str()));
    EXPECT_TRUE(cpa::openUrl("https://example.org/a?b=1#c"));

    ASSERT_EQ(files.urls.size(), 2);
    EXPECT_EQ(files.urls[0].toLocalFile().toStdString(), dir / "sub/plan.pdf");
    EXPECT_EQ(files.urls[1].toLocalFile().toUtf8().toStdString(), dir / "Gr\xC3\xBC\xC3\x9F e.txt");
    ASSERT_EQ(web.urls.size(), 1);
    EXPECT_EQ(web.urls[0], QUrl(QStringLiteral("https://example.org/a?b=1#c")));
}

TEST_F(Exec, WithoutHandlerOrGuiNothingIsOpened)
{
    EXPECT_FALSE(cpa::openUrl("kzbs-unknown://x"));
    EXPECT_FALSE(cpa::openUrl(""));
}

TEST(WaitForProcess, ReturnsOnceTheChildEnds)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::usleep(200 * 1000);
        ::_exit(3);
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(cpa::waitForProcess(child));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
    EXPECT_EQ(::waitpid(child, nullptr, WNOHANG), -1) << "the child was reaped";
}

TEST(WaitForProcess, APidThatIsNoChildEndsAtOnce)
{
    const auto start = std::chrono::steady_clock::now();
    for (int pid : {static_cast<int>(::getppid()), 1, 0, -1})
        EXPECT_TRUE(cpa::waitForProcess(pid)) << pid;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(WaitForProcess, DoesNotReapOtherChildrenForPidZero)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(0);
    ::usleep(50 * 1000);
    EXPECT_TRUE(cpa::waitForProcess(0));
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
}

#include "test_processes.moc"
