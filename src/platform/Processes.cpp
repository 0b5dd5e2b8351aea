// Starting programs, waiting for children, opening documents and addresses.
#include "AppBundle.h"
#include "CrossPlatformApi.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <ctime>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace CrossPlatformApi {
namespace {

// A Latin-1 path that may be written with Windows separators.
QString slashedPath(const char* path)
{
    const std::string text = path ? path : "";
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()))
        .replace(QLatin1Char('\\'), QLatin1Char('/'), Qt::CaseSensitive);
}

bool openLocalFile(const QString& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

// A folder named X.app, with or without a trailing slash, stands for its
// program even without an Info.plist.
bool isAppFolder(const QString& path)
{
    const QFileInfo info(QDir::cleanPath(path));
    return info.isDir() && info.fileName().endsWith(QLatin1String(".app"));
}

// The executable inside the bundle X.app: Info.plist names it, X by default.
QString bundleExecutable(const QString& bundlePath)
{
    const QFileInfo info(QDir::cleanPath(bundlePath));
    const QDir bundle(info.absoluteFilePath());
    QString name = kzplatform::plistString(bundle.absoluteFilePath(QStringLiteral("Contents/Info.plist")),
                                           QStringLiteral("CFBundleExecutable"));
    if (name.isEmpty())
        name = info.completeBaseName();
    return bundle.absoluteFilePath(QStringLiteral("Contents/MacOS")) + QDir::separator() + name;
}

// Splits a command line into arguments. The offset moves on by each match's
// length rather than past its end; an argument found after skipped text is
// therefore taken again until the offset has caught up. Callers rely on this.
// The alternatives are tried in order (a quoted run first), which is why this
// is a QRegularExpression: QRegExp prefers the longest alternative and would
// swallow the blank behind a quoted argument.
QStringList splitArguments(const char* arguments)
{
    static const QRegularExpression splitter(QStringLiteral("[\\s]*(\"[^\"]*\")|([^\\s]+)[\\s]*"));
    QStringList list;
    qsizetype offset = 0;
    for (;;) {
        const QString line = QString::fromUtf8(arguments);
        const QRegularExpressionMatch match = splitter.match(line, offset);
        if (!match.hasMatch() || match.capturedLength() == 0)
            break;
        offset += match.capturedLength();
        QString argument = match.captured(2).isEmpty() ? match.captured(1) : match.captured(2);
        if (argument.startsWith(QLatin1Char('"')) && argument.endsWith(QLatin1Char('"')))
            argument = argument.mid(1, argument.length() - 2);
        list.append(argument);
    }
    return list;
}

} // namespace

bool exec(const char* program, const char* arguments, const char* workingDirectory)
{
    QString programPath = slashedPath(program);
    const QString workDir = slashedPath(workingDirectory);

    if (isAppFolder(programPath))
        programPath = bundleExecutable(programPath);

    QFile file(programPath);
    if (file.exists() && !(file.permissions() & QFile::ExeUser))
        return openLocalFile(programPath); // a document: open it, arguments unused

    return QProcess::startDetached(programPath, splitArguments(arguments), workDir);
}

bool waitForProcess(int pid)
{
    if (pid <= 0) // would wait for any child or a whole group and reap others' children
        return true;
    const std::time_t start = std::time(nullptr);
    for (;;) {
        int status = 0;
        const pid_t result = ::waitpid(pid, &status, WNOHANG);
        const std::time_t now = std::time(nullptr);
        if (result == -1 || result == pid)
            return true;
        if (std::difftime(now, start) > 60.0)
            return false;
        ::usleep(1000);
    }
}

bool executeAssociatedAppAndOpenFile(const char* path)
{
    return openLocalFile(slashedPath(path));
}

bool executeAssociatedAppAndOpenFileCp1252(const char* path)
{
    const std::string utf8 = fileSystemEncoding(path ? path : "");
    return openLocalFile(
        QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())).replace(QLatin1Char('\\'), QLatin1Char('/')));
}

bool openUrl(const char* url)
{
    return QDesktopServices::openUrl(QUrl(QString::fromLocal8Bit(url)));
}

} // namespace CrossPlatformApi
