#include "MessageOnStderr.h"

#include "CrossPlatformApi.h"

#include <cstdio>
#include <string>

namespace KZBasicServices {

int messageOnStderr(const char* text, const char* caption)
{
    const int kCancel = 2;
    const std::string line =
        CrossPlatformApi::fileSystemEncoding(std::string(caption ? caption : "") + ": " + (text ? text : "") + "\n");
    std::fputs(line.c_str(), stderr);
    return kCancel;
}

} // namespace KZBasicServices
