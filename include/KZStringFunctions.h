// KZStringFunctions.h - text utilities.
#ifndef KZ_STRING_FUNCTIONS_H
#define KZ_STRING_FUNCTIONS_H

#include "KZExport.h"

#include <string>

// --- Assertions and error texts --------------------------------------------

// The run-time end of the applications' assertion macro. A true condition
// returns true at once. Otherwise a message box titled "ASSERTION" shows the
// expression and its source position, and the user chooses: "Abbrechen" ends
// the process with status 99, "Weiter" returns true, "Wiederholen" returns
// false (the macro then breaks into the debugger).
KZBS_API bool processAssertion(bool condition, const char* file, int line, const char* expression);

// The text for an operating-system error code; on this platform one fixed
// German sentence, whatever the code.
KZBS_API std::string getErrorMsgForErrorCode(unsigned long code);

#endif // KZ_STRING_FUNCTIONS_H
