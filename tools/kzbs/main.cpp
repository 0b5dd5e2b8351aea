// kzbs - the library's services from the command line.
#include "commands.h"

#include <cstring>
#include <iostream>

namespace {

struct Command {
    const char* name;
    const char* summary;
    int (*run)(kzbs::Args&);
};

const Command kCommands[] = {
    {"holidays",   "public holidays of a year or period, per federal state", kzbs::runHolidays},
    {"is-holiday", "whether a date is a public holiday (exit 0: yes, 1: no)", kzbs::runIsHoliday},
    {"easter",     "Easter Sunday of one or more years", kzbs::runEaster},
    {"grep",       "lines matching a pattern of the library's matcher", kzbs::runGrep},
    {"number",     "numbers in German notation", kzbs::runNumber},
    {"encrypt",    "encrypt a file into the tagged stream format", kzbs::runEncrypt},
    {"decrypt",    "decrypt a tagged stream back into the original bytes", kzbs::runDecrypt},
    {"path",       "parse, relativise, absolutise and parameterise file names", kzbs::runPath},
    {"symbols",    "print the table of a directory symbol file", kzbs::runSymbols},
    {"ini",        "read and write INI files", kzbs::runIni},
    {"folders",    "the system folders and the application folder", kzbs::runFolders},
};

void printUsage(std::ostream& out)
{
    out << "usage: kzbs COMMAND [ARGS...]   (kzbs COMMAND --help for details)\n\n"
           "Without a command, kzbs lists this year's public holidays.\n\ncommands:\n";
    for (const Command& command : kCommands)
        out << "  " << command.name << std::string(12 - std::strlen(command.name), ' ')
            << command.summary << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) {
        kzbs::Args none({});
        return kzbs::runHolidays(none);
    }
    const std::string name = words.front();
    if (name == "--help" || name == "-h" || name == "help") {
        printUsage(std::cout);
        return 0;
    }
    for (const Command& command : kCommands) {
        if (name == command.name) {
            kzbs::Args args(std::vector<std::string>(words.begin() + 1, words.end()));
            return command.run(args);
        }
    }
    kzbs::fail("unknown command '" + name + "'");
    printUsage(std::cerr);
    return 2;
}
