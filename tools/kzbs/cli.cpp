#include "cli.h"

#include "CrossPlatformApi.h"
#include "system.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>

#include <unistd.h>

namespace kzbs {

namespace {

bool looksLikeOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

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

// CLI11 would take a word of a many-valued option in brackets, "[a,b]", as a
// list and split it, and a lone "{}" as no value at all. With a fixed count
// of values and no extra arguments it stores each word untouched; the count
// is never reached, so every positional word lands here.
constexpr int kMaxWords = 1 << 30;

// The length of the UTF-8 sequence at text[at], 0 if none starts there
// (overlong forms, surrogates and code points above U+10FFFF are not UTF-8).
std::size_t utf8Length(const std::string& text, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || at + length > text.size())
        return 0;
    for (std::size_t i = at + 1; i < at + length; ++i)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    const unsigned char second = byte(at + 1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90)
        || (lead == 0xF4 && second > 0x8F))
        return 0;
    return length;
}

const char* const kHelpUsage =
    "usage: kzbs help [COMMAND]\n"
    "\n"
    "Without COMMAND, the list of commands; with it, how COMMAND is used (the same\n"
    "as kzbs COMMAND --help).\n"
    "\n"
    "example:\n"
    "  kzbs help holidays\n";

bool isHelpWord(const std::string& word)
{
    return word == "help" || word == "--help" || word == "-h";
}

// An option that takes one value, given more than once: kzbs will not guess
// which one was meant. Flags and options that collect values may repeat.
const CLI::Option* repeatedOption(const CLI::App& command)
{
    for (const CLI::Option* option : command.get_options())
        if (option->nonpositional() && option->get_type_size_max() > 0 && option->get_expected_max() == 1
            && option->count() > 1)
            return option;
    return nullptr;
}

std::string joinValues(const std::vector<std::string>& values)
{
    std::string text;
    for (const std::string& value : values)
        text += (text.empty() ? "" : ", ") + printable(value);
    return text;
}

bool undefinedInWindows1252(unsigned char c)
{
    return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
}

// std::cout for the time a command runs: it writes to file descriptor 1 and
// keeps the reason of the first write that failed (the disk full, the device
// gone), which stdio would lose. A reader that closed its pipe ends kzbs by
// SIGPIPE, quietly, like the standard tools.
class CheckedStdout : public std::streambuf {
public:
    CheckedStdout() : m_saved(std::cout.rdbuf(this)) { setp(m_buffer, m_buffer + sizeof m_buffer); }
    ~CheckedStdout() override { std::cout.rdbuf(m_saved); }
    CheckedStdout(const CheckedStdout&) = delete;
    CheckedStdout& operator=(const CheckedStdout&) = delete;

    // `status`, or 2 after saying why the output did not all arrive.
    int finish(int status)
    {
        std::cout.flush();
        if (m_error == 0)
            return status;
        return fail(std::string("cannot write to standard output: ") + std::strerror(m_error));
    }

protected:
    int_type overflow(int_type c) override
    {
        if (!drain())
            return traits_type::eof();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }
    int sync() override { return drain() ? 0 : -1; }

private:
    bool drain()
    {
        for (const char* at = pbase(); at < pptr() && m_error == 0;) {
            const ssize_t written = ::write(1, at, static_cast<std::size_t>(pptr() - at));
            if (written >= 0)
                at += written;
            else if (errno != EINTR)
                m_error = errno;
        }
        setp(m_buffer, m_buffer + sizeof m_buffer);
        return m_error == 0;
    }

    std::streambuf* m_saved;
    char m_buffer[1 << 16];
    int m_error = 0;
};

} // namespace

Program::Program() : m_app("kzbs - the library's services from the command line", "kzbs")
{
    // One command per call; a word that names another command is an ordinary
    // argument of the first (kzbs grep easter notes.txt).
    m_app.require_subcommand(0, 1);
    // An option given twice is refused after parsing (repeatedOption); this
    // policy only lets the parse itself through.
    m_app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::App& Program::add(const char* name, const char* summary, const char* usage, Run run)
{
    CLI::App* command = m_app.add_subcommand(name, summary);
    m_runs[name] = std::move(run);
    m_usages[name] = usage;
    return *command;
}

void Program::addHandoff(const char* name, const char* summary, const char* usage, Handoff run)
{
    m_app.add_subcommand(name, summary);
    m_usages[name] = usage;
    m_handoffs[name] = std::move(run);
}

void Program::printOverview(std::ostream& out) const
{
    out << "usage: kzbs COMMAND [ARGS...]   (kzbs COMMAND --help for details)\n"
           "       kzbs --version\n\n";
    if (!m_default.empty())
        out << "Without a command, kzbs " << m_defaultWhat << ".\n\n";
    out << "commands:\n";
    for (const CLI::App* command : m_app.get_subcommands([](const CLI::App*) { return true; })) {
        const std::string& name = command->get_name();
        out << "  " << name << std::string(name.size() < 12 ? 12 - name.size() : 1, ' ') << command->get_description()
            << '\n';
    }
    out << "  help        the list of commands, or how one is used (kzbs help COMMAND)\n";
}

int Program::printHelp(const std::string& command) const
{
    const auto usage = m_usages.find(command);
    if (isHelpWord(command))
        std::cout << kHelpUsage;
    else if (usage == m_usages.end())
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
            return fail("unknown command '" + printable(word) + "'" + hint);
        if (looksLikeOption(word))
            return fail("unknown option " + printable(word) + hint);
        return fail("unexpected argument '" + printable(word) + "'" + hint);
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
    sys::prepareStandardStreams();
    CheckedStdout output;
    return output.finish(dispatch(argc, argv));
}

int Program::dispatch(int argc, char** argv)
{
    if (argc <= 1 && !m_default.empty())
        return m_runs[m_default]();
    if (argc == 2 && std::string(argv[1]) == "--version") {
        std::cout << "kzbs " << KZBS_VERSION << '\n';
        return 0;
    }
    if (argc == 2 && std::string(argv[1]) == "help")
        return printHelp("");
    if (argc == 3 && std::string(argv[1]) == "help")
        return m_usages.count(argv[2]) || isHelpWord(argv[2])
                   ? printHelp(argv[2])
                   : fail("unknown command '" + printable(argv[2]) + "' (see kzbs --help)");
    if (argc > 3 && std::string(argv[1]) == "help")
        return fail("help takes one command (see kzbs help help)");
    if (argc >= 2 && m_handoffs.count(argv[1]))
        return m_handoffs[argv[1]](argc, argv);
    // CLI11 hands a "--" after a command's optional words to the level above;
    // kzbs has one level, so the words after it go straight to the command.
    std::vector<std::string> args(argv + 1, argv + argc);
    const auto marker = std::find(args.begin(), args.end(), "--");
    std::vector<std::string> afterMarker(marker == args.end() ? marker : marker + 1, args.end());
    args.erase(marker, args.end());
    std::reverse(args.begin(), args.end()); // CLI11 takes its arguments last first
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
    if (const CLI::Option* repeated = repeatedOption(*command))
        return fail(repeated->get_name() + " given more than once (" + joinValues(repeated->results())
                    + "); give it once");
    // --raw takes its words as bytes; every other word must be UTF-8 text.
    const CLI::Option* raw = command->get_option_no_throw("--raw");
    if (!raw || raw->count() == 0)
        for (int i = 1; i < argc; ++i)
            if (!isUtf8(argv[i]))
                return fail("argument '" + printable(argv[i]) + "' is not valid UTF-8, the encoding kzbs reads");
    return runCommand(*command, afterMarker);
}

int Program::runCommand(const CLI::App& command, const std::vector<std::string>& afterMarker)
{
    const auto words = m_words.find(command.get_name());
    if (words != m_words.end()) {
        std::vector<std::string>& list = *words->second.second;
        list = words->second.first->results();
        list.insert(list.end(), afterMarker.begin(), afterMarker.end());
    } else if (!afterMarker.empty()) {
        return fail("unexpected argument '" + printable(afterMarker.front()) + "' (see kzbs " + command.get_name()
                    + " --help)");
    }
    try {
        return m_runs[command.get_name()]();
    } catch (const InputError& error) {
        return fail(error.what());
    }
}

void Program::addWords(CLI::App& command, std::vector<std::string>& words)
{
    const CLI::Option* option = command.add_option("words")->expected(kMaxWords)->allow_extra_args(false);
    m_words[command.get_name()] = {option, &words};
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

std::string toTerminal(const std::string& cp1252)
{
    // The library converts text up to its first NUL and reports the undefined
    // bytes on stderr: it gets the runs between them.
    std::string utf8, run;
    const auto convertRun = [&] {
        if (!run.empty())
            utf8 += CrossPlatformApi::fileSystemEncoding(run);
        run.clear();
    };
    for (const char c : cp1252) {
        if (c != '\0' && !undefinedInWindows1252(static_cast<unsigned char>(c))) {
            run += c;
            continue;
        }
        convertRun();
        if (c != '\0')
            utf8 += '\xC2';
        utf8 += c;
    }
    convertRun();
    return utf8;
}

std::string fromTerminal(const std::string& utf8)
{
    if (!isUtf8(utf8))
        throw InputError("'" + printable(utf8) + "' is not valid UTF-8, the encoding kzbs reads");
    std::string cp1252 = CrossPlatformApi::internalEncoding(utf8);
    if (toTerminal(cp1252) != utf8)
        throw InputError("'" + printable(utf8) + "' holds a character that Windows-1252, the library's text "
                         "encoding, has not");
    return cp1252;
}

bool isUtf8(const std::string& text)
{
    for (std::size_t at = 0, length; at < text.size(); at += length)
        if ((length = utf8Length(text, at)) == 0)
            return false;
    return true;
}

std::string printable(const std::string& text)
{
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[at]);
        const std::size_t length = utf8Length(text, at);
        if (length == 0 || c < 0x20 || c == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", c);
            shown += escape;
            ++at;
        } else {
            shown.append(text, at, length);
            at += length;
        }
    }
    return shown;
}

} // namespace kzbs
