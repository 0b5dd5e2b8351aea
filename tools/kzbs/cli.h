// The kzbs program's frame: its commands and their options on CLI11, errors
// as one line on stderr, and the conversion between the library's
// Windows-1252 and the terminal's UTF-8.
#ifndef KZBS_CLI_H
#define KZBS_CLI_H

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kzbs {

// The commands of kzbs. Each command file adds its commands with their
// options and positional words; run() parses the command line, answers
// --help, turns parse errors into "kzbs: ..." with exit status 2, and calls
// the command chosen.
class Program {
public:
    using Run = std::function<int()>;

    Program();

    // Adds the command `name`. `summary` is its line in `kzbs --help`, `usage`
    // what `kzbs NAME --help` prints. Options go on the returned command;
    // `run` is called once they are parsed and returns the exit status.
    CLI::App& add(const char* name, const char* summary, const char* usage, Run run);
    // Adds the command `name`, listed and explained like the others, whose
    // arguments go untouched to `run` with the whole command line (argv[1]
    // is `name`): another program does the parsing.
    using Handoff = std::function<int(int argc, char** argv)>;
    void addHandoff(const char* name, const char* summary, const char* usage, Handoff run);
    // The positional words of `command`, in the order given (options may
    // stand between them), each exactly as typed. Everything after "--" is a
    // word too, even when it begins with '-'.
    void addWords(CLI::App& command, std::vector<std::string>& words);
    // The command run when kzbs is called without any arguments, and what it
    // then does, for `kzbs --help`.
    void setDefault(const char* name, const char* what)
    {
        m_default = name;
        m_defaultWhat = what;
    }

    // Parses, runs the command chosen and returns its exit status, or 2 when
    // standard output could not take everything written to it.
    int run(int argc, char** argv);

private:
    int dispatch(int argc, char** argv);
    int runCommand(const CLI::App& command, const std::vector<std::string>& afterMarker);
    void printOverview(std::ostream& out) const;
    int printHelp(const std::string& command) const;
    int parseError(const CLI::ParseError& error) const;
    const CLI::App* chosen() const;

    CLI::App m_app;
    std::map<std::string, Run> m_runs;
    std::map<std::string, const char*> m_usages;
    std::map<std::string, Handoff> m_handoffs;
    // Each command's positional option and the list it fills.
    std::map<std::string, std::pair<const CLI::Option*, std::vector<std::string>*>> m_words;
    std::string m_default;
    std::string m_defaultWhat;
};

// Binds the option `name` to `target`, which stays nullopt unless the option
// is given (so an empty value is still a value).
CLI::Option* addOptional(CLI::App& command, const std::string& name, std::optional<std::string>& target);

// Writes "kzbs: message" to stderr and returns the exit status for bad input (2).
int fail(const std::string& message);

// Bad input found deep inside a command; Program::run reports it with fail().
struct InputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Library text (Windows-1252) for a UTF-8 terminal. Never fails: a NUL stays
// a NUL, and the five bytes Windows-1252 leaves undefined become the C1
// controls of the same number, as web browsers read them.
std::string toTerminal(const std::string& cp1252);
// Terminal text (UTF-8) for the library. Throws InputError when the text is
// not UTF-8 or holds a character Windows-1252 has not, which the library
// would turn into '?' (a closure in a pattern, another value in a file).
std::string fromTerminal(const std::string& utf8);

bool isUtf8(const std::string& text);
// `text` for a message: control bytes and bytes that are not UTF-8 as \xNN.
std::string printable(const std::string& text);

} // namespace kzbs

#endif // KZBS_CLI_H
