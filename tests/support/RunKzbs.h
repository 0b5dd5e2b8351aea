// Runs the kzbs program as a user would and collects what it printed.
// Test programs that use it define KZBS_EXE (the program's path) at build time:
//   target_compile_definitions(T PRIVATE KZBS_EXE="$<TARGET_FILE:kzbs>")
#ifndef KZBS_TESTS_RUN_KZBS_H
#define KZBS_TESTS_RUN_KZBS_H

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace kzbs_test {

struct CliResult {
    int status = -1;      // the exit status; -1 if kzbs did not exit normally
    std::string out;      // standard output
    std::string err;      // standard error
};

inline std::string shellQuote(const std::string& word)
{
    std::string quoted = "'";
    for (char c : word)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// Runs `kzbs ARGS...` with `input` on its standard input, in the environment
// given as "NAME=VALUE" words (plus the test's own environment). `shell` runs
// first in the same shell ("ulimit -f 8;"); `output`, when given, receives
// standard output instead of CliResult::out.
inline CliResult runKzbs(const std::vector<std::string>& args, const std::string& input = "",
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
