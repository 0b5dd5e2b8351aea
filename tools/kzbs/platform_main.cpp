// kzbs-platform - kzbs ini and kzbs folders, which need the library's Qt
// platform layer. kzbs runs it with its own command line (see commands.h).
#include "commands.h"

int main(int argc, char** argv)
{
    kzbs::Program program;
    kzbs::addPlatformCommands(program);
    return program.run(argc, argv);
}
