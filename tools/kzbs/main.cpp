// kzbs - the library's services from the command line.
#include "commands.h"

int main(int argc, char** argv)
{
    kzbs::Program program;
    kzbs::addDateCommands(program);
    kzbs::addCalendarCommands(program);
    kzbs::addWorkdayCommands(program);
    kzbs::addTextCommands(program);
    kzbs::addCryptCommands(program);
    kzbs::addFileCommands(program);
    kzbs::addPlatformHandoffs(program);
    program.setDefault("holidays", "lists this year's public holidays (kzbs holidays)");
    return program.run(argc, argv);
}
