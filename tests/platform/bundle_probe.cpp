// Prints "bundleId|mainBundleId" of wherever it is run from. The bundle tests
// copy it into application folders; an argument sets the desktop file name.
#include "CrossPlatformApi.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc > 1)
        QGuiApplication::setDesktopFileName(QString::fromLatin1(argv[1]));
    std::printf("%s|%s\n", bundleId().c_str(), mainBundleId().c_str());
    return 0;
}
