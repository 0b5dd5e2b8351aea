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
// ini, folders (cmd_platform.cpp)
void addPlatformCommands(Program& program);

} // namespace kzbs

#endif // KZBS_COMMANDS_H
