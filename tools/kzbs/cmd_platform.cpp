// kzbs ini, kzbs folders: configuration files and the system folders.
#include "commands.h"

#include "CrossPlatformApi.h"

#include <iostream>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace kzbs {
namespace {

const char* const kIniUsage =
    "usage: kzbs ini get FILE SECTION KEY [DEFAULT]   the value (DEFAULT, or empty, if missing)\n"
    "       kzbs ini set FILE SECTION KEY VALUE       store VALUE (file and section are created)\n"
    "       kzbs ini sections FILE                    the sections, one a line\n"
    "       kzbs ini entries FILE SECTION             the entries of SECTION as KEY=VALUE\n"
    "\n"
    "FILE is an INI file as Qt writes it. Values are Windows-1252 in the library:\n"
    "characters outside it are stored as '?'. get, sections and entries need an\n"
    "existing FILE.\n";

const char* const kFoldersUsage =
    "usage: kzbs folders\n"
    "\n"
    "Prints the system folders the library offers (temp, application support,\n"
    "documents, home) and the folder of the kzbs program, one NAME PATH a line.\n";

bool isReadableFile(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

int printLines(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        std::cout << toTerminal(line) << '\n';
    return 0;
}

int iniGet(const std::vector<std::string>& words)
{
    const std::string& file = words[1];
    const std::string section = fromTerminal(words[2]);
    const std::string key = fromTerminal(words[3]);
    const std::string fallback = words.size() > 4 ? fromTerminal(words[4]) : std::string();
    std::cout << toTerminal(CrossPlatformApi::getIniString(section.c_str(), key.c_str(),
                                                            fallback.c_str(), file.c_str()))
              << '\n';
    return 0;
}

// The library reports nothing about a write (and QSettings answers later reads
// in this process from its cache), so the file is checked on disk: a value that
// could not be stored must not pass unnoticed.
int iniSet(const std::vector<std::string>& words)
{
    const std::string& file = words[1];
    const std::string section = fromTerminal(words[2]);
    const std::string key = fromTerminal(words[3]);
    const std::string value = fromTerminal(words[4]);
    // QSettings saves through a temporary file beside the file: the folder must be writable too.
    const std::string::size_type slash = file.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : file.substr(0, slash);
    if ((::access(file.c_str(), F_OK) == 0 && ::access(file.c_str(), W_OK) != 0)
        || ::access(folder.c_str(), W_OK) != 0)
        return fail("cannot write " + file);
    CrossPlatformApi::writeIniString(section.c_str(), key.c_str(), value.c_str(), file.c_str());
    if (!isReadableFile(file))
        return fail("could not write " + file);
    return 0;
}

int ini(const std::vector<std::string>& words)
{
    if (words.empty())
        return fail("ini needs one of get, set, sections, entries (kzbs ini --help)");

    struct Form { const char* name; size_t least, most; };
    const Form forms[] = {{"get", 4, 5}, {"set", 5, 5}, {"sections", 2, 2}, {"entries", 3, 3}};
    const std::string& action = words[0];
    const Form* form = nullptr;
    for (const Form& f : forms)
        if (action == f.name)
            form = &f;
    if (!form)
        return fail("unknown ini action '" + action + "' (kzbs ini --help)");
    if (words.size() < form->least || words.size() > form->most)
        return fail("wrong number of arguments for ini " + action + " (kzbs ini --help)");

    const std::string& file = words[1];
    if (action != "set" && !isReadableFile(file))
        return fail("no such file: " + file);
    if (action == "get")
        return iniGet(words);
    if (action == "set")
        return iniSet(words);
    if (action == "sections")
        return printLines(CrossPlatformApi::getIniSections(file.c_str()));
    // The library reads this section name in the local 8-bit encoding, which
    // is the terminal's own: it is passed on as typed.
    return printLines(CrossPlatformApi::getIniSectionEntries(words[2].c_str(), file.c_str()));
}

int folders(const std::vector<std::string>& words)
{
    if (!words.empty())
        return fail("folders takes no arguments");

    using CrossPlatformApi::SysFolder;
    const struct { const char* name; SysFolder folder; } folders[] = {
        {"temp", CrossPlatformApi::TempFolder},
        {"application-support", CrossPlatformApi::ApplicationSupportFolder},
        {"documents", CrossPlatformApi::DocumentsFolder},
        {"home", CrossPlatformApi::HomeFolder},
    };
    for (const auto& f : folders)
        std::cout << f.name << std::string(21 - std::string(f.name).size(), ' ')
                  << toTerminal(CrossPlatformApi::getSystemFolder(f.folder)) << '\n';
    std::cout << "application" << std::string(10, ' ')
              << toTerminal(CrossPlatformApi::getApplicationfolder()) << '\n';
    return 0;
}

} // namespace

void addPlatformCommands(Program& program)
{
    auto iniWords = std::make_shared<std::vector<std::string>>();
    program.addWords(program.add("ini", "read and write INI files", kIniUsage, [iniWords] { return ini(*iniWords); }),
             *iniWords);
    auto folderWords = std::make_shared<std::vector<std::string>>();
    program.addWords(program.add("folders", "the system folders and the application folder", kFoldersUsage,
                         [folderWords] { return folders(*folderWords); }),
             *folderWords);
}

} // namespace kzbs
