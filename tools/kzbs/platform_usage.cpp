// What kzbs says about ini and folders: their lines in the list of commands
// and their --help. Both programs know them: kzbs lists the commands,
// kzbs-platform runs them.
#include "commands.h"

namespace kzbs {
namespace {

const char* const kIniUsage =
    "usage: kzbs ini get FILE SECTION KEY [DEFAULT]   the value (DEFAULT, or empty, if missing)\n"
    "       kzbs ini set [--force] FILE SECTION KEY VALUE\n"
    "                                                 store VALUE (file and section are created)\n"
    "       kzbs ini sections FILE                    the sections, one a line\n"
    "       kzbs ini entries FILE SECTION             the entries of SECTION as KEY=VALUE\n"
    "\n"
    "FILE is an INI file as Qt reads and writes it. Values are Windows-1252 in the\n"
    "library; a character outside it is refused. get, sections and entries need\n"
    "an existing regular FILE.\n"
    "\n"
    "Qt's INI rules: set rewrites the whole file. Comments (';' or '#') are\n"
    "dropped, a backslash in a value is written doubled, a value with a comma,\n"
    "a ';' or blanks at its ends is quoted (a comma outside quotes, as in\n"
    "K=a,b written by hand, makes a list, which reads as empty), and keys and\n"
    "section names with characters other than letters, digits and '_' are\n"
    "encoded (a blank as %20, '\xC3\xBC' as %FC). Line ends become LF.\n"
    "So set first rewrites a copy of FILE and compares: when a line that does\n"
    "not hold KEY would change, it names the line and writes nothing (exit 2);\n"
    "--force writes anyway. FILE is replaced whole or not at all, keeps its\n"
    "permissions and owner, and a symbolic link keeps pointing to it. set\n"
    "refuses what is not a regular file (a folder, a device) and checks that the\n"
    "value reads back.\n"
    "\n"
    "examples:\n"
    "  kzbs ini get app.ini General Language\n"
    "  kzbs ini set app.ini General Language de\n";

const char* const kFoldersUsage =
    "usage: kzbs folders\n"
    "\n"
    "Prints the system folders the library offers (temp, application support,\n"
    "documents, home) and the folder of the kzbs program, one NAME PATH a line.\n"
    "\n"
    "example:\n"
    "  kzbs folders\n";

} // namespace

const PlatformCommand kPlatformCommands[2] = {
    {"ini", "read and write INI files", kIniUsage},
    {"folders", "the system folders and the application folder", kFoldersUsage},
};

} // namespace kzbs
