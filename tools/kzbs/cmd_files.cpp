// Placeholder until this command group is built.
#include "commands.h"

namespace kzbs {

int runPath(Args&) { return fail("this command is not available yet"); }
int runSymbols(Args&) { return fail("this command is not available yet"); }

} // namespace kzbs
