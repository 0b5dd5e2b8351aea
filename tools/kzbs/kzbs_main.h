// kzbs as a function: what main() runs, reading file descriptor 0 and
// writing 1 and 2. Tests run it inside their own process (see
// tests/support/RunKzbs.h); ini and folders still start kzbs-platform, which
// replaces the calling process.
#ifndef KZBS_KZBS_MAIN_H
#define KZBS_KZBS_MAIN_H

namespace kzbs {

// Parses the command line (argv[0] is the program's name) and runs the
// command; returns the exit status.
int kzbsMain(int argc, char** argv);

} // namespace kzbs

#endif // KZBS_KZBS_MAIN_H
