// Placeholder until this command group is built.
#include "commands.h"

namespace kzbs {

int runHolidays(Args&) { return fail("this command is not available yet"); }
int runIsHoliday(Args&) { return fail("this command is not available yet"); }
int runEaster(Args&) { return fail("this command is not available yet"); }

} // namespace kzbs
