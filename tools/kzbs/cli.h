// Small helpers shared by the kzbs commands: argument handling, errors, and
// the conversion between the library's Windows-1252 and the terminal's UTF-8.
#ifndef KZBS_CLI_H
#define KZBS_CLI_H

#include <optional>
#include <string>
#include <vector>

namespace kzbs {

// The words after the command name. Options are taken out as they are read;
// what remains are the positional arguments.
class Args {
public:
    explicit Args(std::vector<std::string> words) : m_words(std::move(words)) {}

    // "--name VALUE" or "--name=VALUE"; the last one given wins. A missing
    // value is recorded as an error.
    std::optional<std::string> option(const std::string& name);
    // "--name" (or the short form "-x" when given).
    bool flag(const std::string& name, const std::string& shortName = "");
    bool wantsHelp() { return flag("--help", "-h"); }
    // With --help or -h: prints `usage` to stdout and returns true (the command then exits 0).
    bool answeredHelp(const char* usage);

    // The words left once every option was taken; an unknown "--word" left
    // over is recorded as an error.
    const std::vector<std::string>& positional();
    const std::string& error() const { return m_error; }

private:
    std::vector<std::string> m_words;
    std::string m_error;
};

// Writes "kzbs: message" to stderr and returns the exit status for bad input (2).
int fail(const std::string& message);

// Library text (Windows-1252) for a UTF-8 terminal, and back.
std::string toTerminal(const std::string& cp1252);
std::string fromTerminal(const std::string& utf8);

} // namespace kzbs

#endif // KZBS_CLI_H
