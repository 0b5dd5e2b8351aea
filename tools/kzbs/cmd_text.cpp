// Placeholder until this command group is built.
#include "commands.h"

namespace kzbs {

int runGrep(Args&) { return fail("this command is not available yet"); }
int runNumber(Args&) { return fail("this command is not available yet"); }

} // namespace kzbs
