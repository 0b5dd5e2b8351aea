// Starting programs and opening documents: real scripts that record how they
// were started, URL handlers registered by the test, real child processes.
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <climits>
#include <thread>
#include <sys/wait.h>

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

std::string realPath(const std::string& path)
{
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) ? resolved : path;
}

class Exec : public testing::Test {
protected:
    void SetUp() override
    {
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &files, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &web, "open");
    }
    void TearDown() override
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    }

    // A script that writes "[arg1][arg2]...", a newline and its folder to "out".
    void makeRecorder(const std::string& path)
    {
        const std::string out = dir / "out";
        writeFile(path, "#!/bin/sh\n{ for a in \"$@\"; do printf '[%s]' \"$a\"; done; echo; pwd; } > '" + out
                            + ".tmp' && mv '" + out + ".tmp' '" + out + "'\n", 0755);
    }

    // What the started recorder wrote; "not started" when exec failed.
    std::string run(const std::string& program, const char* arguments, const char* workDir = nullptr)
    {
        std::remove((dir / "out").c_str());
        if (!cpa::exec(program.c_str(), arguments, workDir))
            return "not started";
        for (int i = 0; i < 1000 && !kzbs_test::exists(dir / "out"); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return kzbs_test::readFile(dir / "out");
    }
    std::string argumentsOf(const std::string& program, const char* arguments)
    {
        const std::string recorded = run(program, arguments);
        return recorded.substr(0, recorded.find('\n'));
    }

    TempFolder dir;
    UrlRecorder files, web;
};

} // namespace

TEST_F(Exec, SplitsTheArgumentLineKeepingItsRepetitions)
{
    makeRecorder(dir / "rec.sh");
    struct Case { const char* line; const char* arguments; };
    const Case cases[] = {
        {"a b", "[a][b]"},         {"a \"b c\"", "[a][b c]"},     {"\"x\" \"y\"", "[x][y]"},
        {"\"x\" y", "[x][y][y]"},  {"\"x\" y z", "[x][y][z][z]"}, {"  a", "[a][a][a]"},
        {"  ab", "[ab][ab]"},      {"\"", "[]"},                  {"", ""},
        {nullptr, ""},             {"'b c'", "['b][c']"},         {"gr\xC3\xBC\xC3\x9F", "[gr\xC3\xBC\xC3\x9F]"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(argumentsOf(dir / "rec.sh", c.line), c.arguments) << (c.line ? c.line : "(null)");
    EXPECT_TRUE(files.urls.isEmpty());
}

TEST_F(Exec, StartsInTheGivenFolderWithBackslashesAsSlashes)
{
    makeRecorder(dir / "rec.sh");
    ::mkdir((dir / "work").c_str(), 0755);
    std::string program = dir / "rec.sh", work = dir / "work";
    for (std::string* path : {&program, &work})
        std::replace(path->begin(), path->end(), '/', '\\');
    EXPECT_EQ(run(program, "x", work.c_str()), "[x]\n" + realPath(dir / "work") + "\n");
    char cwd[PATH_MAX];
    EXPECT_EQ(run(dir / "rec.sh", "", nullptr), "\n" + std::string(::getcwd(cwd, sizeof cwd)) + "\n");
    EXPECT_EQ(run(dir / "missing", "", nullptr), "not started");
}

TEST_F(Exec, StartsTheExecutableOfAnApplicationBundle)
{
    struct Case { const char* bundle; const char* plist; const char* executable; bool isBundle; };
    const Case cases[] = {
        {"Named.app", "<plist><dict><key>Nested</key><dict><key>CFBundleExecutable</key><string>No</string>"
                      "</dict><key>CFBundleExecutable</key><string>Planer</string></dict></plist>", "Planer", true},
        {"Plain.app", "<plist><dict><key>CFBundleName</key><string>P</string></dict></plist>", "Plain", true},
        {"NoPlist.app", nullptr, "NoPlist", false}, // a folder, which cannot be started
    };
    for (const Case& c : cases) {
        const std::string bundle = dir / c.bundle;
        for (const std::string& folder : {bundle, bundle + "/Contents", bundle + "/Contents/MacOS"})
            ::mkdir(folder.c_str(), 0755);
        if (c.plist)
            writeFile(bundle + "/Contents/Info.plist", c.plist);
        makeRecorder(bundle + "/Contents/MacOS/" + c.executable);
        EXPECT_EQ(argumentsOf(bundle, "--open x"), c.isBundle ? "[--open][x]" : "not started") << c.bundle;
    }
}

TEST_F(Exec, ADocumentWithoutExecuteRightIsOpenedNotStarted)
{
    const std::string document = dir / "report.txt";
    writeFile(document, "#!/bin/sh\ntouch '" + (dir / "ran") + "'\n", 0644);
    EXPECT_TRUE(cpa::exec(document.c_str(), "ignored arguments", "/ignored/folder"));
    ASSERT_EQ(files.urls.size(), 1);
    EXPECT_EQ(files.urls[0], QUrl::fromLocalFile(QString::fromStdString(document)));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(kzbs_test::exists(dir / "ran"));
}

TEST_F(Exec, DocumentsAndAddressesGoToTheDesktopHandler)
{
    EXPECT_TRUE(cpa::executeAssociatedAppAndOpenFile((dir / "sub\\plan.pdf").c_str()));
    EXPECT_TRUE(cpa::executeAssociatedAppAndOpenFileCp1252((dir / "Gr\xFC\xDF.txt").c_str()));
    EXPECT_TRUE(cpa::openUrl("https://example.org/a?b=1#c"));
    EXPECT_FALSE(cpa::openUrl("kzbs-unknown://x")); // no handler and no GUI
    ASSERT_EQ(files.urls.size(), 2);
    EXPECT_EQ(files.urls[0].toLocalFile().toStdString(), dir / "sub/plan.pdf");
    EXPECT_EQ(files.urls[1].toLocalFile().toUtf8().toStdString(), dir / "Gr\xC3\xBC\xC3\x9F.txt");
    ASSERT_EQ(web.urls.size(), 1);
    EXPECT_EQ(web.urls[0], QUrl(QStringLiteral("https://example.org/a?b=1#c")));
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

TEST(WaitForProcess, APidThatIsNoSingleChildEndsAtOnceAndReapsNothing)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(0);
    ::usleep(50 * 1000);
    for (int pid : {static_cast<int>(::getppid()), 1, 0, -1})
        EXPECT_TRUE(cpa::waitForProcess(pid)) << pid;
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
}

#include "test_processes.moc"
