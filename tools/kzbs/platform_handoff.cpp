// kzbs ini, kzbs folders in kzbs itself: handed to kzbs-platform, which is
// built with the Qt platform layer (see commands.h). A build without that
// layer says so instead.
#include "commands.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <unistd.h>

namespace kzbs {
namespace {

#ifdef KZBS_PLATFORM_HELPER

// The folder of the running kzbs, "" if the system does not say.
std::string ownFolder()
{
    std::vector<char> path(4096);
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= path.size())
        return "";
    const std::string program(path.data(), static_cast<std::size_t>(length));
    return program.substr(0, program.rfind('/'));
}

// Where kzbs-platform lies: beside kzbs in the build tree, in the libexec
// folder of an installation.
std::vector<std::string> helperPlaces(const std::string& folder)
{
    return {folder + "/" KZBS_PLATFORM_HELPER, folder + "/" KZBS_BIN_TO_HELPER "/" KZBS_PLATFORM_HELPER};
}

int runHelper(int argc, char** argv)
{
    const std::string folder = ownFolder();
    if (folder.empty())
        return fail(std::string(argv[1])
                    + " needs " KZBS_PLATFORM_HELPER
                      ", which kzbs finds beside itself, "
                      "but the system does not say where kzbs is");
    const std::vector<std::string> places = helperPlaces(folder);
    for (const std::string& place : places) {
        if (::access(place.c_str(), X_OK) != 0)
            continue;
        ::setenv(kApplicationFolderVariable, folder.c_str(), 1);
        std::vector<char*> args(argv, argv + argc);
        args[0] = const_cast<char*>(place.c_str());
        args.push_back(nullptr);
        ::execv(place.c_str(), args.data());
        return fail("cannot run " + place + ": " + std::strerror(errno));
    }
    return fail(std::string(argv[1]) + " needs " KZBS_PLATFORM_HELPER ", which is missing (looked for " + places[0]
                + " and " + places[1] + ")");
}

#else

int runHelper(int, char** argv)
{
    return fail(std::string(argv[1]) + " is not available: this build of kzbs has no Qt platform layer");
}

#endif

} // namespace

void addPlatformHandoffs(Program& program)
{
    for (const PlatformCommand& command : kPlatformCommands)
        program.addHandoff(command.name, command.summary, command.usage, runHelper);
}

} // namespace kzbs
