// The kzbs commands, one group per library family. Each group adds its
// commands, with their options, to the program.
#ifndef KZBS_COMMANDS_H
#define KZBS_COMMANDS_H

#include "cli.h"

namespace kzbs {

// holidays, is-holiday, easter (cmd_dates.cpp)
void addDateCommands(Program& program);
// cal, next (cmd_calendar.cpp)
void addCalendarCommands(Program& program);
// workdays, workday (cmd_workdays.cpp)
void addWorkdayCommands(Program& program);
// grep, number (cmd_text.cpp)
void addTextCommands(Program& program);
// encrypt, decrypt (cmd_crypt.cpp)
void addCryptCommands(Program& program);
// path, symbols (cmd_files.cpp)
void addFileCommands(Program& program);

// ini and folders need the library's Qt platform layer. kzbs itself links
// only the Qt-free core library, so that its other commands start without
// loading Qt; it hands these two to kzbs-platform, a program built with the
// full library, with the same arguments.
struct PlatformCommand {
    const char* name;
    const char* summary;
    const char* usage;
};
// ini, folders: their names, lines in the list of commands and --help texts
// (platform_usage.cpp).
extern const PlatformCommand kPlatformCommands[2];
// The environment variable in which kzbs tells kzbs-platform its own folder,
// the application folder that `folders` names.
constexpr const char* kApplicationFolderVariable = "KZBS_APPLICATION_FOLDER";
// ini, folders run here (cmd_platform.cpp): kzbs-platform's commands.
void addPlatformCommands(Program& program);
// ini, folders handed to kzbs-platform (platform_handoff.cpp): kzbs's.
void addPlatformHandoffs(Program& program);

} // namespace kzbs

#endif // KZBS_COMMANDS_H
