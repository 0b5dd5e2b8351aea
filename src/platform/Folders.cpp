// The system folders, the application folder, folder listings and deletion,
// file sizes and the drive type.
#include "AppBundle.h"
#include "CrossPlatformApi.h"
#include "Wildcard.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CrossPlatformApi {
namespace {

std::string latin1(const QString& text)
{
    const QByteArray bytes = text.toLatin1();
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

QString withoutTrailingSeparator(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

} // namespace

std::string getSystemFolder(SysFolder folder)
{
    QString path;
    switch (folder) {
    case TempFolder: path = QStandardPaths::writableLocation(QStandardPaths::TempLocation); break;
    case ApplicationSupportFolder:
    case ApplicationSupportFolder2: path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation); break;
    case DocumentsFolder: path = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation); break;
    case HomeFolder: path = QStandardPaths::writableLocation(QStandardPaths::HomeLocation); break;
    default: return std::string();
    }
    return latin1(withoutTrailingSeparator(path));
}

std::string getApplicationfolder()
{
    return internalEncoding(kzplatform::applicationDirPath().toUtf8().toStdString());
}

std::vector<std::string> getDirectoryEntries(const std::string& folder, const std::string& pattern)
{
    const QRegularExpression expression = kzplatform::wildcardExpression(pattern);
    std::vector<std::string> names;
    if (!expression.isValid())
        return names;
    QDirIterator it(QString::fromLocal8Bit(folder.c_str()));
    while (it.hasNext()) {
        it.next();
        const QString name = it.fileName();
        if (name == QLatin1String(".") || name == QLatin1String(".."))
            continue;
        if (expression.match(name).hasMatch())
            names.push_back(latin1(name));
    }
    return names;
}

bool deleteDirectory(const std::string& folder)
{
    return QDir(QDir::rootPath()).rmdir(QString::fromLocal8Bit(folder.c_str()));
}

bool deleteFile(const std::string& path)
{
    return QFile::remove(QString::fromLatin1(path.c_str()));
}

unsigned long getFileSize(const char* path)
{
    const std::string name = fileSystemEncoding(path ? path : "");
    const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd == -1)
        return 0;
    struct stat status {};
    const bool known = ::fstat(fd, &status) == 0;
    ::close(fd);
    return known ? static_cast<unsigned long>(static_cast<std::uint32_t>(status.st_size)) : 0;
}

unsigned int getDriveType(const char*)
{
    const BundlePathInfo info = getBundlePathInfo();
    if (info.isWritable)
        return 0;
    return info.isOnVolumes ? 5 : 0;
}

} // namespace CrossPlatformApi
