// The kzbs program's frame: its commands and their options on CLI11, errors
// as one line on stderr, and the conversion between the library's
// Windows-1252 and the terminal's UTF-8.
#ifndef KZBS_CLI_H
#define KZBS_CLI_H

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
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
    // The positional words of `command`, in the order given (options may
    // stand between them). Everything after "--" is a word too, even when it
    // begins with '-'.
    CLI::Option* addWords(CLI::App& command, std::vector<std::string>& words);
    // The command run when kzbs is called without any arguments, and what it
    // then does, for `kzbs --help`.
    void setDefault(const char* name, const char* what)
    {
        m_default = name;
        m_defaultWhat = what;
    }

    int run(int argc, char** argv);

private:
    void printOverview(std::ostream& out) const;
    int printHelp(const std::string& command) const;
    int parseError(const CLI::ParseError& error) const;
    const CLI::App* chosen() const;

    CLI::App m_app;
    std::map<std::string, Run> m_runs;
    std::map<std::string, const char*> m_usages;
    std::map<std::string, std::vector<std::string>*> m_words;
    std::string m_default;
    std::string m_defaultWhat;
};

// Binds the option `name` to `target`, which stays nullopt unless the option
// is given (so an empty value is still a value).
CLI::Option* addOptional(CLI::App& command, const std::string& name, std::optional<std::string>& target);

// Writes "kzbs: message" to stderr and returns the exit status for bad input (2).
int fail(const std::string& message);

// Library text (Windows-1252) for a UTF-8 terminal, and back.
std::string toTerminal(const std::string& cp1252);
std::string fromTerminal(const std::string& utf8);

} // namespace kzbs

#endif // KZBS_CLI_H
