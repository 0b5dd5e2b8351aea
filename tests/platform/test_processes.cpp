// Starting programs (a real script records how) and opening documents (a URL handler stands in for the desktop).
#include "CrossPlatformApi.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <thread>
#include <sys/wait.h>

namespace cpa = CrossPlatformApi;

class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls.append(url); }
};

class Exec : public testing::Test {
protected:
    // rec.sh writes "[arg1][arg2]...", a newline and its folder's name to "out".
    void SetUp() override
    {
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &files, "open");
        const std::string out = dir / "out";
        kzbs_test::writeFile(dir / "rec.sh",
                             "#!/bin/sh\n{ for a; do printf '[%s]' \"$a\"; done; echo; basename \"$PWD\"; }"
                             " > '"
                                 + out + ".tmp' && mv '" + out + ".tmp' '" + out + "'\n",
                             0755);
    }
    void TearDown() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

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

    kzbs_test::TempFolder dir;
    UrlRecorder files;
};

// Program and folder are written with backslashes, which become slashes.
TEST_F(Exec, SplitsTheArgumentLineKeepingItsRepetitions)
{
    ::mkdir((dir / "work").c_str(), 0755);
    std::string program = dir / "rec.sh", work = dir / "work";
    for (std::string* path : {&program, &work})
        std::replace(path->begin(), path->end(), '/', '\\');
    struct Case {
        const char* line;
        const char* arguments;
    };
    const Case cases[] = {
        {"a b", "[a][b]"},
        {"a \"b c\"", "[a][b c]"},
        {"\"x\" \"y\"", "[x][y]"},
        {"\"x\" y", "[x][y][y]"},
        {"\"x\" y z", "[x][y][z][z]"},
        {"  a", "[a][a][a]"},
        {"  ab", "[ab][ab]"},
        {"\"", "[]"},
        {nullptr, ""},
        {"'b c'", "['b][c']"},
        {"gr\xC3\xBC\xC3\x9F", "[gr\xC3\xBC\xC3\x9F]"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(run(program, c.line, work.c_str()), std::string(c.arguments) + "\nwork\n");
    EXPECT_TRUE(files.urls.isEmpty());
}

// X.app/Contents/MacOS/<CFBundleExecutable of Info.plist, else X> is what starts;
// a folder not named *.app is no program.
TEST_F(Exec, StartsTheExecutableOfAnApplicationBundle)
{
    struct Case {
        const char* bundle;
        const char* called;
        const char* plist;
        const char* executable;
        bool starts;
    };
    const Case cases[] = {
        {"Named.app", "Named.app",
         "<plist><dict><key>Nested</key><dict><key>CFBundleExecutable</key><string>No</string>"
         "</dict><key>CFBundleExecutable</key><string>Planer</string></dict></plist>",
         "Planer", true},
        {"Plain.app", "Plain.app", "<plist><dict><key>CFBundleName</key><string>P</string></dict></plist>", "Plain",
         true},
        {"NoPlist.app", "NoPlist.app", nullptr, "NoPlist", true},
        {"Slash.app", "Slash.app/", nullptr, "Slash", true},
        {"Dotted.x.app", "Dotted.x.app//", nullptr, "Dotted.x", true},
        {"Folder", "Folder", nullptr, "Folder", false},
    };
    for (const Case& c : cases) {
        const std::string bundle = dir / c.bundle;
        for (const std::string& folder : {bundle, bundle + "/Contents", bundle + "/Contents/MacOS"})
            ::mkdir(folder.c_str(), 0755);
        if (c.plist)
            kzbs_test::writeFile(bundle + "/Contents/Info.plist", c.plist);
        kzbs_test::writeFile(bundle + "/Contents/MacOS/" + c.executable, kzbs_test::readFile(dir / "rec.sh"), 0755);
        const std::string recorded = run(dir / c.called, "--open x");
        EXPECT_EQ(recorded.substr(0, recorded.find('\n')), c.starts ? "[--open][x]" : "not started") << c.called;
    }
}

TEST_F(Exec, DocumentsGoToTheDesktopHandler)
{
    const std::string document = dir / "report.sh";
    kzbs_test::writeFile(document, "#!/bin/sh\n", 0644); // no execute right: opened, arguments and folder unused
    EXPECT_TRUE(cpa::exec(document.c_str(), "ignored arguments", "/ignored/folder"));
    EXPECT_TRUE(cpa::executeAssociatedAppAndOpenFileCp1252((dir.path + "\\Gr\xFC\xDF.txt").c_str()));
    ASSERT_EQ(files.urls.size(), 2);
    EXPECT_EQ(files.urls[0], QUrl::fromLocalFile(QString::fromStdString(document)));
    EXPECT_EQ(files.urls[1].toLocalFile().toUtf8().toStdString(), dir / "Gr\xC3\xBC\xC3\x9F.txt");
}

// Waits for a child of its own; any other pid (the parent, init, whole
// groups) ends at once and reaps nothing.
TEST(WaitForProcess, WaitsForItsOwnChildOnly)
{
    const pid_t slow = ::fork(), quick = slow ? ::fork() : 0;
    if (slow == 0 || quick == 0) {
        ::usleep(slow == 0 ? 200 * 1000 : 0);
        ::_exit(0);
    }
    ::usleep(50 * 1000);
    for (int pid : {static_cast<int>(::getppid()), 1, 0, -1})
        EXPECT_TRUE(cpa::waitForProcess(pid)) << pid;
    EXPECT_EQ(::waitpid(quick, nullptr, 0), quick);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(cpa::waitForProcess(slow));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
    EXPECT_EQ(::waitpid(slow, nullptr, WNOHANG), -1) << "the child was reaped";
}

#include "test_processes.moc"
