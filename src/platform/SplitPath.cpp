// splitpath_s: the folder, name and extension parts of a path, with the
// buffer and size pairs of the Windows C runtime.
#include "CrossPlatformApi.h"

#include <QFileInfo>
#include <QString>

#include <cstring>

namespace CrossPlatformApi {
namespace {

// strncpy into a buffer of `size`, except that a text that would fill the
// buffer is cut to stay terminated.
void copyTerminated(char* target, unsigned long size, const QByteArray& text)
{
    if (!target || size == 0)
        return;
    std::strncpy(target, text.constData(), size - 1);
    target[size - 1] = '\0';
}

// The folder text followed by "/": with room enough the text is copied whole
// (strncpy-padded) and "/" and the zero follow it; otherwise the text is cut
// so that "/" and the zero still fit.
void copyFolder(char* target, unsigned long size, const QByteArray& folder)
{
    if (!target || size == 0)
        return;
    if (size == 1) {
        target[0] = '\0';
        return;
    }
    std::strncpy(target, folder.constData(), size - 1);
    const size_t length = std::min(std::strlen(folder.constData()), static_cast<size_t>(size - 2));
    target[length] = '/';
    target[length + 1] = '\0';
}

} // namespace

int splitpath_s(const char* path, char*, unsigned long, char* dir, unsigned long dirSize, char* fname,
                unsigned long fnameSize, char* ext, unsigned long extSize)
{
    if (!path)
        return 0;
    const QString text = QString::fromLocal8Bit(path);
    const QFileInfo info(text);
    const bool isFolder = text.endsWith(QLatin1Char('/')) || text.endsWith(QLatin1Char('\\'));

    QString name;
    if (isFolder) {
        copyFolder(dir, dirSize, QByteArray(path));
    } else {
        const QString folder = info.exists() ? info.canonicalPath() : info.path();
        copyFolder(dir, dirSize, folder.toLocal8Bit());
        name = info.fileName();
    }

    const QString suffix = info.suffix();
    if (!suffix.isEmpty()) {
        name.chop(suffix.length() + 1);
        copyTerminated(ext, extSize, (QLatin1Char('.') + suffix).toLocal8Bit());
    }
    copyTerminated(fname, fnameSize, name.toLocal8Bit());
    return 0;
}

} // namespace CrossPlatformApi
