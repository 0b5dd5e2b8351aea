// Prints the identifier the application presents itself under, after taking
// its own desktop file name from the command line. Used by test_folders.cpp.
#include "CrossPlatformApi.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc > 1)
        QGuiApplication::setDesktopFileName(QString::fromUtf8(argv[1]));
    std::printf("%s\n", mainBundleId().c_str());
    return 0;
}
