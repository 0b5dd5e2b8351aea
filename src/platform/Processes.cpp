// Starting programs, waiting for children, opening documents and addresses.
#include "AppBundle.h"
#include "CrossPlatformApi.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegExp>
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

// The executable inside the bundle X.app: Info.plist names it, X by default.
QString bundleExecutable(const QString& bundlePath)
{
    const QFileInfo info(bundlePath);
    const QDir bundle(info.absoluteFilePath());
    QString name = detail::plistString(bundle.absoluteFilePath(QStringLiteral("Contents/Info.plist")),
                                       QStringLiteral("CFBundleExecutable"));
    if (name.isEmpty())
        name = info.completeBaseName();
    return bundle.absoluteFilePath(QStringLiteral("Contents/MacOS")) + QDir::separator() + name;
}

// Splits a command line into arguments. The offset moves on by each match's
// length rather than past its end; an argument found after skipped text is
// therefore taken again until the offset has caught up. Callers rely on this.
QStringList splitArguments(const char* arguments)
{
    QRegExp splitter(QStringLiteral("[\\s]*(\"[^\"]*\")|([^\\s]+)[\\s]*"), Qt::CaseSensitive,
                     QRegExp::RegExp);
    QStringList list;
    int offset = 0;
    for (;;) {
        const QString line = QString::fromUtf8(arguments);
        if (splitter.indexIn(line, offset) < 0 || splitter.matchedLength() == 0)
            break;
        offset += splitter.matchedLength();
        QString argument = splitter.cap(2).isEmpty() ? splitter.cap(1) : splitter.cap(2);
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

    if (detail::isAppBundle(programPath))
        programPath = bundleExecutable(programPath);

    QFile file(programPath);
    if (file.exists() && !(file.permissions() & QFile::ExeUser))
        return executeAssociatedAppAndOpenFile(programPath.toLocal8Bit().constData());

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
    return QDesktopServices::openUrl(QUrl::fromLocalFile(slashedPath(path)));
}

bool executeAssociatedAppAndOpenFileCp1252(const char* path)
{
    return executeAssociatedAppAndOpenFile(fileSystemEncoding(path ? path : "").c_str());
}

bool openUrl(const char* url)
{
    return QDesktopServices::openUrl(QUrl(QString::fromLocal8Bit(url)));
}

} // namespace CrossPlatformApi
