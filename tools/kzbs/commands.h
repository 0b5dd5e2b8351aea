// The kzbs commands, one group per library family. Each takes the words after
// its name and returns the process's exit status.
#ifndef KZBS_COMMANDS_H
#define KZBS_COMMANDS_H

#include "cli.h"

namespace kzbs {

// dates and holidays (cmd_dates.cpp)
int runHolidays(Args& args);
int runIsHoliday(Args& args);
int runEaster(Args& args);
// text (cmd_text.cpp)
int runGrep(Args& args);
int runNumber(Args& args);
// encryption (cmd_crypt.cpp)
int runEncrypt(Args& args);
int runDecrypt(Args& args);
// file names and symbols (cmd_files.cpp)
int runPath(Args& args);
int runSymbols(Args& args);
// platform (cmd_platform.cpp)
int runIni(Args& args);
int runFolders(Args& args);

} // namespace kzbs

#endif // KZBS_COMMANDS_H
