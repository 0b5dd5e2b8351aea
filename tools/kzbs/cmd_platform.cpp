// kzbs ini, kzbs folders: configuration files and the system folders.
#include "commands.h"

#include "actions.h"
#include "file_io.h"

#include "CrossPlatformApi.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace kzbs {
namespace {

int printLines(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        std::cout << toTerminal(line) << '\n';
    return 0;
}

// The request of ini: its words and --force.
struct IniRequest {
    std::vector<std::string> words;
    bool force = false;
};

int iniGet(const IniRequest&, const std::vector<std::string>& words)
{
    const std::string& file = words[0];
    const std::string section = fromTerminal(words[1]);
    const std::string key = fromTerminal(words[2]);
    const std::string fallback = words.size() > 3 ? fromTerminal(words[3]) : std::string();
    std::cout << toTerminal(
        CrossPlatformApi::getIniString(section.c_str(), key.c_str(), fallback.c_str(), file.c_str()))
              << '\n';
    return 0;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::string keyOf(const std::string& line)
{
    return line.substr(0, line.find('='));
}

// Compares a file before and after the library set `key` in it. Only the
// key's own line may change; lines may be added. Returns the first other
// line that changed or went, as "line N ('TEXT')", or "".
std::string lostLine(const std::string& before, const std::string& after, const std::string& key)
{
    const std::vector<std::string> old = linesOf(before), now = linesOf(after);
    std::size_t head = 0, tail = 0;
    while (head < old.size() && head < now.size() && old[head] == now[head])
        ++head;
    while (tail < old.size() - head && tail < now.size() - head
           && old[old.size() - 1 - tail] == now[now.size() - 1 - tail])
        ++tail;
    // The keys of the lines that replace the changed part: the key's new
    // line is among them. Its old line is the one changed line with the
    // same key (Qt may have encoded the key), or the one spelled like it.
    std::vector<std::string> newKeys;
    for (std::size_t i = head; i < now.size() - tail; ++i)
        newKeys.push_back(keyOf(now[i]));
    const std::size_t changed = old.size() - tail - head;
    bool keySeen = false;
    for (std::size_t i = head; i < old.size() - tail; ++i) {
        const bool keyLine = !keySeen && old[i].find('=') != std::string::npos
                             && std::find(newKeys.begin(), newKeys.end(), keyOf(old[i])) != newKeys.end()
                             && (changed == 1 || keyOf(old[i]) == key);
        keySeen = keySeen || keyLine;
        if (!keyLine)
            return "line " + std::to_string(i + 1) + " ('" + printable(toTerminal(old[i])) + "')";
    }
    return "";
}

// Lets the library write the value into `file` in a process of its own:
// QSettings keeps what it wrote in a cache, and the check must see the disk.
bool writeInChild(const std::string& section, const std::string& key, const std::string& value, const std::string& file)
{
    std::cout.flush();
    const pid_t child = ::fork();
    if (child == 0) {
        CrossPlatformApi::writeIniString(section.c_str(), key.c_str(), value.c_str(), file.c_str());
        ::_exit(0);
    }
    int status = 0;
    const bool written =
        child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    // QSettings locks the file it writes through FILE.lock, and a child that
    // did not finish (killed, or stopped by a file size limit) leaves it
    // behind. The file is our own temporary copy, so its lock is ours too.
    ::unlink((file + ".lock").c_str());
    return written;
}

// The library reports nothing about a write, so the value is set in a copy
// of the file, which is compared and read back before it takes the file's place.
int iniSet(const IniRequest& request, const std::vector<std::string>& words)
{
    const std::string& file = words[0];
    const std::string section = fromTerminal(words[1]);
    const std::string key = fromTerminal(words[2]);
    const std::string value = fromTerminal(words[3]);
    FileReplacement replacement(file);
    std::string before, after, error;
    if (replacement.existed()) {
        if (!readWholeFile(file, before, error))
            return fail(error);
        if (!replacement.write([&](std::ostream& out) { return bool(out << before); }))
            return fail(replacement.error());
    }
    if (!replacement.error().empty())
        return fail(replacement.error());
    const std::string& copy = replacement.temporary();
    if (!writeInChild(section, key, value, copy) || !readWholeFile(copy, after, error))
        return fail("could not write " + file);
    const std::string lost = request.force ? std::string() : lostLine(before, after, key);
    if (!lost.empty())
        return fail("setting " + words[2] + " would rewrite " + lost + " of " + file
                    + " by Qt's INI rules; nothing written (--force writes anyway)");
    const std::string unset = value + "\x01"; // a text the value cannot be
    if (CrossPlatformApi::getIniString(section.c_str(), key.c_str(), unset.c_str(), copy.c_str()) != value)
        return fail("could not write " + file + ": the value does not read back");
    if (!replacement.commit())
        return fail(replacement.error());
    return 0;
}

int iniSections(const IniRequest&, const std::vector<std::string>& words)
{
    return printLines(CrossPlatformApi::getIniSections(words[0].c_str()));
}

// The library reads this section name in the local 8-bit encoding, which is
// the terminal's own: it is passed on as typed.
int iniEntries(const IniRequest&, const std::vector<std::string>& words)
{
    return printLines(CrossPlatformApi::getIniSectionEntries(words[1].c_str(), words[0].c_str()));
}

const Action<IniRequest> kIniActions[] = {
    {"get", "FILE SECTION KEY [DEFAULT]", 3, 4, iniGet},
    {"set", "FILE SECTION KEY VALUE", 4, 4, iniSet},
    {"sections", "FILE", 1, 1, iniSections},
    {"entries", "FILE SECTION", 2, 2, iniEntries},
};

int ini(const IniRequest& request)
{
    const Action<IniRequest>& action = *chooseAction("ini", kIniActions, request.words).value();
    const std::vector<std::string> words(request.words.begin() + 1, request.words.end());
    if (action.run != iniSet) { // which alone may create its file
        if (request.force)
            return fail("--force belongs to ini set");
        const std::string problem = unreadable(words[0]);
        if (!problem.empty())
            return fail(problem);
    }
    return action.run(request, words);
}

int folders(const std::vector<std::string>& words)
{
    if (!words.empty())
        return fail("folders takes no arguments");

    using CrossPlatformApi::SysFolder;
    const struct {
        const char* name;
        SysFolder folder;
    } folders[] = {
        {"temp", CrossPlatformApi::TempFolder},
        {"application-support", CrossPlatformApi::ApplicationSupportFolder},
        {"documents", CrossPlatformApi::DocumentsFolder},
        {"home", CrossPlatformApi::HomeFolder},
    };
    for (const auto& f : folders)
        std::cout << f.name << std::string(21 - std::string(f.name).size(), ' ')
                  << toTerminal(CrossPlatformApi::getSystemFolder(f.folder)) << '\n';
    // This program runs for kzbs, which names its own folder.
    const char* const kzbsFolder = std::getenv(kApplicationFolderVariable);
    std::cout << "application" << std::string(10, ' ')
              << toTerminal(kzbsFolder ? CrossPlatformApi::internalEncoding(kzbsFolder)
                                       : CrossPlatformApi::getApplicationfolder())
              << '\n';
    return 0;
}

} // namespace

void addPlatformCommands(Program& program)
{
    auto iniRequest = std::make_shared<IniRequest>();
    const PlatformCommand& iniText = kPlatformCommands[0];
    CLI::App& iniCommand =
        program.add(iniText.name, iniText.summary, iniText.usage, [iniRequest] { return ini(*iniRequest); });
    iniCommand.add_flag("--force", iniRequest->force);
    program.addWords(iniCommand, iniRequest->words);
    auto folderWords = std::make_shared<std::vector<std::string>>();
    const PlatformCommand& foldersText = kPlatformCommands[1];
    program.addWords(program.add(foldersText.name, foldersText.summary, foldersText.usage,
                                 [folderWords] { return folders(*folderWords); }),
                     *folderWords);
}

} // namespace kzbs
