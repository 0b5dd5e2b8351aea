// Placeholder until this command group is built.
#include "commands.h"

namespace kzbs {

int runEncrypt(Args&) { return fail("this command is not available yet"); }
int runDecrypt(Args&) { return fail("this command is not available yet"); }

} // namespace kzbs
