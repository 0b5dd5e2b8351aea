// Application bundles on Linux: a folder "X.app" holding Contents/Info.plist
// (an XML property list) and Contents/MacOS, and the application's own folder,
// which stands for its bundle. Internal to the platform layer.
#ifndef KZBS_PLATFORM_APP_BUNDLE_H
#define KZBS_PLATFORM_APP_BUNDLE_H

#include <QString>

namespace kzplatform {

// True for a folder named "*.app" that holds Contents/Info.plist and Contents/MacOS.
bool isAppBundle(const QString& path);

// The <string> stored under `key` in the top-level dictionary of an XML
// property list; empty when the file, the key or a string value is missing.
QString plistString(const QString& plistPath, const QString& key);

// The folder of the running executable; works without a QCoreApplication.
QString applicationDirPath();

// The folder that stands for the application's bundle: the application folder,
// or the bundle X.app when the executable lies in X.app/Contents/MacOS.
QString bundlePath();

} // namespace kzplatform

#endif
