// The kzbs program with all its commands, for main() and for tests that run
// it inside their own process.
#include "kzbs_main.h"

#include "commands.h"

namespace kzbs {

int kzbsMain(int argc, char** argv)
{
    Program program;
    addDateCommands(program);
    addCalendarCommands(program);
    addWorkdayCommands(program);
    addTextCommands(program);
    addCryptCommands(program);
    addFileCommands(program);
    addPlatformHandoffs(program);
    program.setDefault("holidays", "lists this year's public holidays (kzbs holidays)");
    return program.run(argc, argv);
}

} // namespace kzbs
