#include "cli.h"

#include "CrossPlatformApi.h"

#include <algorithm>
#include <iostream>

namespace kzbs {

namespace {

bool looksLikeOption(const std::string& word) { return word.size() > 1 && word[0] == '-'; }

// CLI11's messages may span lines; kzbs reports every error on one.
std::string oneLine(std::string text)
{
    for (char& c : text)
        if (c == '\n' || c == '\r')
            c = ' ';
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

} // namespace

Program::Program() : m_app("kzbs - the library's services from the command line", "kzbs")
{
    // One command per call; a word that names another command is an ordinary
    // argument of the first (kzbs grep easter notes.txt).
    m_app.require_subcommand(0, 1);
    // An option given twice: the last one wins, as users expect from most tools.
    m_app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::App& Program::add(const char* name, const char* summary, const char* usage, Run run)
{
    CLI::App* command = m_app.add_subcommand(name, summary);
    m_runs[name] = std::move(run);
    m_usages[name] = usage;
    return *command;
}

void Program::printOverview(std::ostream& out) const
{
    out << "usage: kzbs COMMAND [ARGS...]   (kzbs COMMAND --help for details)\n\n";
    if (!m_default.empty())
        out << "Without a command, kzbs " << m_defaultWhat << ".\n\n";
    out << "commands:\n";
    for (const CLI::App* command : m_app.get_subcommands([](const CLI::App*) { return true; })) {
        const std::string& name = command->get_name();
        out << "  " << name << std::string(name.size() < 12 ? 12 - name.size() : 1, ' ')
            << command->get_description() << '\n';
    }
}

int Program::printHelp(const std::string& command) const
{
    const auto usage = m_usages.find(command);
    if (usage == m_usages.end())
        printOverview(std::cout);
    else
        std::cout << usage->second;
    return 0;
}

const CLI::App* Program::chosen() const
{
    const std::vector<CLI::App*> parsed = m_app.get_subcommands();
    return parsed.empty() ? nullptr : parsed.front();
}

int Program::parseError(const CLI::ParseError& error) const
{
    const CLI::App* command = chosen();
    const std::string hint = command ? " (see kzbs " + command->get_name() + " --help)" : " (see kzbs --help)";
    if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
        const std::vector<std::string> extras = m_app.remaining(true);
        const std::string word = extras.empty() ? std::string() : extras.front();
        if (!command && !looksLikeOption(word))
            return fail("unknown command '" + word + "'" + hint);
        if (looksLikeOption(word))
            return fail("unknown option " + word + hint);
        return fail("unexpected argument '" + word + "'" + hint);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
        // "--state: 1 required TEXT missing" and the like: the option's value is missing.
        const std::string what = error.what();
        return fail(what.substr(0, what.find(':')) + " needs a value" + hint);
    }
    return fail(oneLine(error.what()) + hint);
}

int Program::run(int argc, char** argv)
{
    if (argc <= 1 && !m_default.empty())
        return m_runs[m_default]();
    if (argc == 2 && std::string(argv[1]) == "help")
        return printHelp("");
    if (argc == 3 && std::string(argv[1]) == "help")
        return m_usages.count(argv[2]) ? printHelp(argv[2]) : fail(std::string("unknown command '") + argv[2] + "'");
    // CLI11 hands a "--" after a command's optional words to the level above;
    // kzbs has one level, so the words after it go straight to the command.
    std::vector<std::string> args(argv + 1, argv + argc);
    const auto marker = std::find(args.begin(), args.end(), "--");
    std::vector<std::string> afterMarker(marker == args.end() ? marker : marker + 1, args.end());
    args.erase(marker, args.end());
    std::reverse(args.begin(), args.end());   // CLI11 takes its arguments last first
    try {
        m_app.parse(args);
    } catch (const CLI::CallForHelp&) {
        const CLI::App* command = chosen();
        return printHelp(command ? command->get_name() : "");
    } catch (const CLI::ParseError& error) {
        return parseError(error);
    }
    const CLI::App* command = chosen();
    if (!command)
        return fail("no command given (see kzbs --help)");
    const auto words = m_words.find(command->get_name());
    if (words != m_words.end())
        words->second->insert(words->second->end(), afterMarker.begin(), afterMarker.end());
    else if (!afterMarker.empty())
        return fail("unexpected argument '" + afterMarker.front() + "' (see kzbs " + command->get_name() + " --help)");
    return m_runs[command->get_name()]();
}

CLI::Option* Program::addWords(CLI::App& command, std::vector<std::string>& words)
{
    m_words[command.get_name()] = &words;
    return command.add_option("words", words)->expected(0, -1);
}

CLI::Option* addOptional(CLI::App& command, const std::string& name, std::optional<std::string>& target)
{
    return command.add_option_function<std::string>(name, [&target](const std::string& value) { target = value; });
}

int fail(const std::string& message)
{
    std::cerr << "kzbs: " << message << '\n';
    return 2;
}

std::string toTerminal(const std::string& cp1252) { return CrossPlatformApi::fileSystemEncoding(cp1252); }
std::string fromTerminal(const std::string& utf8) { return CrossPlatformApi::internalEncoding(utf8); }

} // namespace kzbs
