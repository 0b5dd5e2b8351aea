// Runs the kzbs program as a user would and collects what it printed.
// Test programs that use it define KZBS_EXE (the program's path) at build time:
//   target_compile_definitions(T PRIVATE KZBS_EXE="$<TARGET_FILE:kzbs>")
// Those that link kzbs_cli and define KZBS_IN_PROCESS run most commands
// inside the test's own process, which is many times faster than starting a
// shell and the program: standard input, output and error are files put in
// place of descriptors 0, 1 and 2 for the call. The real program still runs
// where only a process shows the behaviour: a shell prefix (ulimit), output
// to a given path (device nodes), ini and folders (kzbs-platform), and the
// environment variables read once per process (KZ_AES_*).
#ifndef KZBS_TESTS_RUN_KZBS_H
#define KZBS_TESTS_RUN_KZBS_H

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <vector>

#ifdef KZBS_IN_PROCESS
#include "KZFileEnvironment.h"
#include "KZFileName.h"
#include "kzbs_main.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <optional>
#include <stdio_ext.h>
#include <unistd.h>
#endif

namespace kzbs_test {

struct CliResult {
    int status = -1; // the exit status; -1 if kzbs did not exit normally
    std::string out; // standard output
    std::string err; // standard error
};

inline std::string shellQuote(const std::string& word)
{
    std::string quoted = "'";
    for (char c : word)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// Runs the program itself: see runKzbs.
inline CliResult runKzbsProgram(const std::vector<std::string>& args, const std::string& input = "",
                                const std::vector<std::string>& env = {}, const std::string& shell = "",
                                const std::string& output = "")
{
    const TempFolder dir;
    const std::string base = dir.path;
    writeFile(base + "/in", input);
    std::string command = shell + " env";
    for (const std::string& e : env)
        command += " " + shellQuote(e);
    command += " " + shellQuote(KZBS_EXE);
    for (const std::string& a : args)
        command += " " + shellQuote(a);
    command += " <" + base + "/in >" + shellQuote(output.empty() ? base + "/out" : output) + " 2>" + base + "/err";
    const int raw = std::system(command.c_str());
    CliResult result;
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    result.out = readFile(base + "/out");
    result.err = readFile(base + "/err");
    return result;
}

#ifdef KZBS_IN_PROCESS

// Sets environment variables for a scope and puts the old values back.
class ScopedEnvironment {
public:
    explicit ScopedEnvironment(const std::vector<std::string>& settings)
    {
        for (const std::string& setting : settings) {
            const std::string name = setting.substr(0, setting.find('='));
            const char* old = std::getenv(name.c_str());
            m_saved.push_back({name, old ? std::optional<std::string>(old) : std::nullopt});
            ::setenv(name.c_str(), setting.substr(name.size() + 1).c_str(), 1);
        }
    }
    ~ScopedEnvironment()
    {
        for (auto at = m_saved.rbegin(); at != m_saved.rend(); ++at)
            at->second ? ::setenv(at->first.c_str(), at->second->c_str(), 1) : ::unsetenv(at->first.c_str());
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::vector<std::pair<std::string, std::optional<std::string>>> m_saved;
};

// Puts the file `path` in place of descriptor `fd` for a scope.
class ScopedDescriptor {
public:
    ScopedDescriptor(int fd, const std::string& path, int flags) : m_fd(fd), m_saved(::dup(fd))
    {
        const int file = ::open(path.c_str(), flags, 0644);
        ::dup2(file, fd);
        ::close(file);
    }
    ~ScopedDescriptor()
    {
        ::dup2(m_saved, m_fd);
        ::close(m_saved);
    }
    ScopedDescriptor(const ScopedDescriptor&) = delete;
    ScopedDescriptor& operator=(const ScopedDescriptor&) = delete;

private:
    int m_fd, m_saved;
};

// Whether a run must be the program's own process (see the top).
inline bool needsProcess(const std::vector<std::string>& args, const std::vector<std::string>& env,
                         const std::string& shell, const std::string& output)
{
    const bool platform = !args.empty() && (args[0] == "ini" || args[0] == "folders");
    const bool readOnce =
        std::any_of(env.begin(), env.end(), [](const std::string& e) { return e.rfind("KZ_AES_", 0) == 0; });
    return platform || readOnce || !shell.empty() || !output.empty();
}

// Runs kzbsMain in this process with fresh standard streams, the library's
// global file environment as it was before the first run.
inline CliResult runKzbsInProcess(const std::vector<std::string>& args, const std::string& input,
                                  const std::vector<std::string>& env)
{
    static const KZFileEnvironment pristine = KZFileName::getGlobalFileEnvironment();
    KZFileName::getGlobalFileEnvironment() = pristine;
    const TempFolder dir;
    writeFile(dir / "in", input);
    std::vector<std::string> words = {KZBS_EXE};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(&word[0]);
    argv.push_back(nullptr);
    CliResult result;
    void (*const pipeHandler)(int) = std::signal(SIGPIPE, SIG_DFL); // kzbs sets the default
    {
        const ScopedEnvironment environment(env);
        std::fflush(nullptr);
        std::cout.flush();
        const ScopedDescriptor in(0, dir / "in", O_RDONLY);
        const ScopedDescriptor out(1, dir / "out", O_WRONLY | O_CREAT | O_TRUNC);
        const ScopedDescriptor err(2, dir / "err", O_WRONLY | O_CREAT | O_TRUNC);
        __fpurge(stdin);
        std::clearerr(stdin);
        std::cin.clear();
        result.status = kzbs::kzbsMain(static_cast<int>(words.size()), argv.data());
        std::cout.flush();
        std::cerr.flush();
        std::fflush(nullptr);
        __fpurge(stdin);
        std::clearerr(stdin);
        std::cin.clear();
    }
    std::signal(SIGPIPE, pipeHandler);
    result.out = readFile(dir / "out");
    result.err = readFile(dir / "err");
    return result;
}

#endif

// Runs `kzbs ARGS...` with `input` on its standard input, in the environment
// given as "NAME=VALUE" words (plus the test's own environment). `shell` runs
// first in the same shell ("ulimit -f 8;"); `output`, when given, receives
// standard output instead of CliResult::out.
inline CliResult runKzbs(const std::vector<std::string>& args, const std::string& input = "",
                         const std::vector<std::string>& env = {}, const std::string& shell = "",
                         const std::string& output = "")
{
#ifdef KZBS_IN_PROCESS
    if (!needsProcess(args, env, shell, output))
        return runKzbsInProcess(args, input, env);
#endif
    return runKzbsProgram(args, input, env, shell, output);
}

// kzbs refused bad input as it should: exit status 2, nothing on stdout, and
// one line "kzbs: ..." on stderr that names `message`.
inline void expectRefusal(const CliResult& r, const std::string& message)
{
    EXPECT_EQ(r.status, 2) << message;
    EXPECT_EQ(r.out, "") << message;
    EXPECT_EQ(r.err.rfind("kzbs: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(message), std::string::npos) << r.err;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
}

// kzbs answered as it should: exit status 0 and exactly `out` on stdout.
inline void expectAnswer(const CliResult& r, const std::string& out, const std::string& what)
{
    EXPECT_EQ(r.status, 0) << what << ": " << r.err;
    EXPECT_EQ(r.out, out) << what;
}

} // namespace kzbs_test

#endif // KZBS_TESTS_RUN_KZBS_H
