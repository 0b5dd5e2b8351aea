// kzbs path, kzbs symbols: file names and directory symbols.
#include "commands.h"

#include "KZFileEnvironment.h"
#include "KZFileName.h"

#include "actions.h"
#include "file_io.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>

namespace kzbs {
namespace {

const char kPathUsage[] =
    "usage: kzbs path parse NAME...                  the parts and composed forms of each name\n"
    "       kzbs path rel NAME... [--base DIR]       NAME relative to the base directory\n"
    "       kzbs path abs NAME... [--base DIR]       NAME made absolute: below DIR with --base,\n"
    "                                                else the file system's canonical form\n"
    "       kzbs path param NAME... --symbol SYM     NAME with SYM's directory as <SYM>/\n"
    "options of every path command:\n"
    "  --base DIR       set the base directory (the symbol SYS_BASEDIR) first\n"
    "  --symbols FILE   then load a directory symbol file (NAME=VALUE tokens);\n"
    "                   \"\" means <SYS_BASEDIR>/DirectorySymbols.dat\n"
    "Names may use symbols such as <DATA>/x.dat, '\\' or '/', drives and UNC prefixes.\n"
    "rel, abs and param print one line per name; exit status 1 if one stayed unchanged.\n"
    "\n"
    "examples:\n"
    "  kzbs path parse 'C:\\Daten\\Brief.txt'\n"
    "  kzbs path rel /srv/app/data/x.dat --base /srv/app\n";

const char kSymbolsUsage[] =
    "usage: kzbs symbols FILE [--base DIR]\n"
    "Prints the directory symbol table after loading FILE (\"\" for\n"
    "<SYS_BASEDIR>/DirectorySymbols.dat): NAME = VALUE (expanded value), by name.\n"
    "\n"
    "examples:\n"
    "  kzbs symbols DirectorySymbols.dat --base /srv/app\n"
    "  kzbs symbols \"\" --base /srv/app\n";

// Why `text` is no symbol file, or "": symbol files are Windows-1252 text
// with tab, CR and LF as their only control characters.
std::string notText(const std::string& text)
{
    unsigned long line = 1;
    for (const char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        line += byte == '\n';
        const bool control = (byte < 0x20 && byte != '\t' && byte != '\r' && byte != '\n') || byte == 0x7F;
        if (control || byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "0x%02X", byte);
            return std::string("byte ") + hex + " in line " + std::to_string(line);
        }
    }
    return "";
}

// The symbols the symbol file defines on top of `known`, as the library reads them.
std::map<std::string, std::string> definitions(const std::string& text, std::map<std::string, std::string> known)
{
    for (std::size_t start = text.find_first_not_of(" \t\r\n"); start != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\n", start), text.size());
        const std::string token = text.substr(start, end - start);
        const std::size_t equals = token.find('=');
        known[token.substr(0, equals)] = equals == std::string::npos ? token : token.substr(equals + 1);
        start = text.find_first_not_of(" \t\r\n", end);
    }
    return known;
}

// The symbols `value` names, in the way expansion finds them: each '<' up to
// the next '>'.
std::vector<std::string> references(const std::string& value)
{
    std::vector<std::string> names;
    for (std::size_t open = value.find('<'); open != std::string::npos; open = value.find('<', open + 1)) {
        const std::size_t close = value.find('>', open);
        if (close == std::string::npos)
            break;
        names.push_back(value.substr(open + 1, close - open - 1));
    }
    return names;
}

// A chain of symbols that leads back to its start ("<L> -> <L>"), which the
// library would expand without end; "" when there is none.
std::string cycleIn(const std::map<std::string, std::string>& symbols)
{
    std::map<std::string, int> state; // 1 on the current path, 2 done
    std::vector<std::string> path;
    std::function<std::string(const std::string&)> visit = [&](const std::string& name) -> std::string {
        state[name] = 1;
        path.push_back(name);
        for (const std::string& next : references(symbols.at(name))) {
            if (!symbols.count(next) || state[next] == 2)
                continue;
            if (state[next] == 1) {
                std::string chain;
                for (auto at = std::find(path.begin(), path.end(), next); at != path.end(); ++at)
                    chain += "<" + *at + "> -> ";
                return chain + "<" + next + ">";
            }
            std::string found = visit(next);
            if (!found.empty())
                return found;
        }
        path.pop_back();
        state[name] = 2;
        return "";
    };
    for (const auto& symbol : symbols)
        if (state[symbol.first] == 0) {
            std::string found = visit(symbol.first);
            if (!found.empty())
                return found;
        }
    return "";
}

// Sets up the global environment from --base and --symbols. Returns an error
// message, empty on success. The symbol file is checked before the library
// reads it: binary data or a cycle of symbols would make it print garbage or
// expand without end.
std::string loadEnvironment(const std::optional<std::string>& base, const std::optional<std::string>& symbols)
{
    KZFileEnvironment& env = KZFileName::getGlobalFileEnvironment();
    if (base)
        env.setBaseDir(fromTerminal(*base));
    if (!symbols)
        return "";
    KZFileName file(fromTerminal(*symbols));
    if (file.compose().empty())
        file.parse(KZFileEnvironment::kDefaultSymbolFile);
    const std::string path = toTerminal(file.compose());
    std::string text, error;
    if (!(error = unreadable(path)).empty() || !readWholeFile(path, text, error))
        return "cannot read symbol file " + error;
    if (!(error = notText(text)).empty())
        return "symbol file " + path + " is not text: " + error;
    std::map<std::string, std::string> known;
    if (base)
        known[KZFileEnvironment::kBaseDirSymbol] = env.getSymbol(KZFileEnvironment::kBaseDirSymbol);
    const std::string cycle = cycleIn(definitions(text, known));
    if (!cycle.empty())
        return "symbol file " + path + " defines symbols in a cycle, " + toTerminal(cycle)
               + ", which would expand without end";
    env.readSymbolsFromFile(file);
    return "";
}

std::string yesNo(bool value)
{
    return value ? "yes" : "no";
}

void printParts(const KZFileName& name, const std::string& input)
{
    std::cout << "name:        " << input << '\n'
              << "unc:         " << toTerminal(name.getUNC()) << '\n'
              << "drive:       " << toTerminal(name.getDrive()) << '\n'
              << "directory:   " << toTerminal(name.getDir()) << '\n'
              << "base name:   " << toTerminal(name.getName()) << '\n'
              << "extension:   " << toTerminal(name.getExt()) << '\n'
              << "composed:    " << toTerminal(name.compose()) << '\n'
              << "normalised:  " << toTerminal(name.normalizedString()) << '\n'
              << "windows:     " << toTerminal(name.asString('\\')) << '\n'
              << "absolute:    " << yesNo(name.isAbsPath()) << '\n'
              << "valid:       " << yesNo(name.isValid()) << '\n';
}

// The options of path and symbols; an option not given is nullopt (an empty
// --symbols value means the default symbol file).
struct FileWords {
    std::optional<std::string> base, symbols, symbol;
    std::vector<std::string> words;
};

// path parse: the parts of each NAME.
int pathParse(const FileWords&, const std::vector<std::string>& names)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            std::cout << '\n';
        printParts(KZFileName(fromTerminal(names[i])), names[i]);
    }
    return 0;
}

// Prints what `convert` makes of each NAME; a name it leaves as it was gets
// a note on stderr and exit status 1.
int convertNames(const std::vector<std::string>& names,
                 const std::function<std::string(KZFileName& name, std::string& note)>& convert)
{
    int status = 0;
    for (const std::string& input : names) {
        KZFileName name(fromTerminal(input));
        std::string note;
        const std::string result = convert(name, note);
        std::cout << toTerminal(result) << '\n';
        if (!note.empty()) {
            std::cerr << "kzbs: '" << input << "' " << note << '\n';
            status = 1;
        }
    }
    return status;
}

int pathRel(const FileWords&, const std::vector<std::string>& names)
{
    if (KZFileName::getGlobalFileEnvironment().getBaseDir().compose().empty())
        return fail("path rel needs a base directory: --base DIR, or SYS_BASEDIR in --symbols FILE");
    return convertNames(names, [](KZFileName& name, std::string& note) {
        if (!name.makeRelPath())
            note = "stays absolute: it is on another drive than the base directory";
        return name.compose();
    });
}

int pathAbs(const FileWords& request, const std::vector<std::string>& names)
{
    const bool base = request.base.has_value();
    return convertNames(names, [base](KZFileName& name, std::string& note) {
        if (!name.makeAbsPath(base))
            note = base ? "stays relative" : "cannot be resolved: no such file or directory";
        return name.compose();
    });
}

int pathParam(const FileWords& request, const std::vector<std::string>& names)
{
    const std::string& symbol = *request.symbol;
    const std::string symbolName = fromTerminal(symbol);
    if (KZFileName::getGlobalFileEnvironment().getSymbol(symbolName).empty())
        return fail("symbol <" + symbol + "> is not defined (use --symbols FILE or --base DIR)");
    return convertNames(names, [&](KZFileName& name, std::string& note) {
        std::string result = name.asParmeterisedString(symbolName);
        if (result == name.compose())
            note = "does not lie below <" + symbol + ">";
        return result;
    });
}

const Action<FileWords> kPathActions[] = {
    {"parse", "NAME...", 1, kAnyNumber, pathParse},
    {"rel", "NAME...", 1, kAnyNumber, pathRel},
    {"abs", "NAME...", 1, kAnyNumber, pathAbs},
    {"param", "NAME...", 1, kAnyNumber, pathParam},
};

int path(const FileWords& request)
{
    const Action<FileWords>& action = *chooseAction("path", kPathActions, request.words).value();
    const bool param = action.run == pathParam;
    if (param && !request.symbol)
        return fail("path param needs --symbol SYM");
    if (!param && request.symbol)
        return fail("--symbol belongs to path param");
    const std::string error = loadEnvironment(request.base, request.symbols);
    if (!error.empty())
        return fail(error);
    return action.run(request, std::vector<std::string>(request.words.begin() + 1, request.words.end()));
}

int symbols(const FileWords& request)
{
    if (request.words.size() != 1)
        return fail("symbols needs exactly one FILE (kzbs symbols --help)");
    const std::string error = loadEnvironment(request.base, request.words.front());
    if (!error.empty())
        return fail(error);
    std::ostringstream table;
    KZFileName::getGlobalFileEnvironment().printSymbols(table, "");
    std::cout << toTerminal(table.str());
    return 0;
}

} // namespace

void addFileCommands(Program& program)
{
    auto pathWords = std::make_shared<FileWords>();
    CLI::App& pathCommand = program.add("path", "parse, relativise, absolutise and parameterise file names", kPathUsage,
                                        [pathWords] { return path(*pathWords); });
    addOptional(pathCommand, "--base", pathWords->base);
    addOptional(pathCommand, "--symbols", pathWords->symbols);
    addOptional(pathCommand, "--symbol", pathWords->symbol);
    program.addWords(pathCommand, pathWords->words);

    auto symbolWords = std::make_shared<FileWords>();
    CLI::App& symbolsCommand = program.add("symbols", "print the table of a directory symbol file", kSymbolsUsage,
                                           [symbolWords] { return symbols(*symbolWords); });
    addOptional(symbolsCommand, "--base", symbolWords->base);
    program.addWords(symbolsCommand, symbolWords->words);
}

} // namespace kzbs
