// The application's identity and place: its bundle folder, its identifier,
// bringing it to the front.
#include "AppBundle.h"
#include "CrossPlatformApi.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QWindow>

#include <cstring>
#include <unistd.h>

namespace {

const char* const kUnknownBundleId = "unknownBundleID";

std::string cp1252(const QString& text)
{
    return CrossPlatformApi::internalEncoding(text.toUtf8().toStdString());
}

// The identifier of the bundle three folders above ours, if that is one.
QString outerBundleId()
{
    QDir dir(kzplatform::bundlePath());
    if (!dir.cdUp() || !dir.cdUp() || !dir.cdUp())
        return QString();
    const QString outer = dir.absolutePath();
    if (!kzplatform::isAppBundle(outer))
        return QString();
    return kzplatform::plistString(QDir(outer).absoluteFilePath(QStringLiteral("Contents/Info.plist")),
                                   QStringLiteral("CFBundleIdentifier"));
}

bool startsWith(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

} // namespace

BundlePathInfo getBundlePathInfo()
{
    const QByteArray path = QFile::encodeName(kzplatform::bundlePath());
    const std::string text = path.toStdString();
    BundlePathInfo info;
    info.isWritable = ::access(path.constData(), W_OK) == 0;
    info.isOnVolumes = startsWith(text, "/media/") || startsWith(text, "/run/media/");
    return info;
}

void activateApp()
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    QWindow* window = QGuiApplication::focusWindow();
    if (window && !window->isVisible())
        window = nullptr;
    if (!window) {
        for (QWindow* candidate : QGuiApplication::topLevelWindows()) {
            if (candidate->isVisible()) {
                window = candidate;
                break;
            }
        }
    }
    if (window) {
        window->raise();
        window->requestActivate();
    }
}

// The bundle's own list names the application first; a program that is no
// bundle presents itself under its desktop file name.
std::string bundleId()
{
    const QString bundle = kzplatform::bundlePath();
    QString id;
    if (kzplatform::isAppBundle(bundle))
        id = kzplatform::plistString(QDir(bundle).absoluteFilePath(QStringLiteral("Contents/Info.plist")),
                                     QStringLiteral("CFBundleIdentifier"));
    if (id.isEmpty())
        id = QGuiApplication::desktopFileName();
    return id.isEmpty() ? std::string(kUnknownBundleId) : cp1252(id);
}

// A helper nested in another application's bundle presents itself under the
// outer identifier when both share the maker's prefix (up to the outer
// identifier's last "."), so that both appear as one application.
std::string mainBundleId()
{
    std::string mainId = bundleId();
    const QString outer = outerBundleId();
    if (outer.isEmpty())
        return mainId;
    std::string outerId = cp1252(outer);
    const size_t lastDot = outerId.rfind('.');
    if (lastDot != std::string::npos && std::strncmp(outerId.c_str(), mainId.c_str(), lastDot) == 0)
        return outerId;
    return mainId;
}

namespace CrossPlatformApi {

bool isDebuggerPresent()
{
    return false;
}

} // namespace CrossPlatformApi
