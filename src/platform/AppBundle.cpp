// Finding and reading application bundles, and the application's own folder.
#include "AppBundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace kzplatform {

bool isAppBundle(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isDir() || !info.fileName().endsWith(QLatin1String(".app")))
        return false;
    const QDir bundle(info.absoluteFilePath());
    return QFileInfo(bundle.absoluteFilePath(QStringLiteral("Contents/Info.plist"))).isFile()
           && QFileInfo(bundle.absoluteFilePath(QStringLiteral("Contents/MacOS"))).isDir();
}

QString plistString(const QString& plistPath, const QString& key)
{
    QFile file(plistPath);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QXmlStreamReader xml(&file);
    int depth = 0;         // <plist> is 1, its <dict> 2, the dictionary's keys 3
    bool keyFound = false; // the last key at depth 3 was `key`
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        ++depth;
        if (depth != 3)
            continue;
        const auto name = xml.name(); // QStringRef in Qt 5, QStringView in Qt 6
        if (keyFound)
            return name == QLatin1String("string") ? xml.readElementText() : QString();
        if (name == QLatin1String("key")) {
            keyFound = xml.readElementText() == key;
            --depth; // readElementText consumed the end element
        }
    }
    return QString();
}

QString applicationDirPath()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).absolutePath();
}

QString bundlePath()
{
    QString folder = applicationDirPath();
    QDir dir(folder);
    if (dir.dirName() == QLatin1String("MacOS") && dir.cdUp() && dir.dirName() == QLatin1String("Contents")
        && dir.cdUp() && isAppBundle(dir.absolutePath()))
        return dir.absolutePath();
    return folder;
}

} // namespace kzplatform
