// Placeholder until this command group is built.
#include "commands.h"

namespace kzbs {

int runIni(Args&) { return fail("this command is not available yet"); }
int runFolders(Args&) { return fail("this command is not available yet"); }

} // namespace kzbs
