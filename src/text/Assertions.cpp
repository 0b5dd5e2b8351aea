// The run-time end of the applications' assertion macro, and the error text
// kept for the Windows error-code interface.
#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"

#include <cstdio>
#include <cstdlib>

namespace {

enum { IdCancel = 2, IdContinue = 11 };
const int kCancelTryContinueWarning = 0x36;
const int kAssertionExitStatus = 99;

} // namespace

bool processAssertion(bool condition, const char* file, int line, const char* expression)
{
    if (condition)
        return true;

    // A position too long for the buffer is cut, never written past it.
    char position[300];
    std::snprintf(position, sizeof position, "%s, line %d.", file ? file : "", line);
    std::string message = "ASSERTION in ";
    message += position;
    message += "\nAusdruck:\n";
    message += expression ? expression : "";
    message += "\nAbbrechen = Beenden";
    message += "\nWiederholen = Debuggen";
    message += "\nWeiter = Weitermachen";

    const int answer = CrossPlatformApi::messageBox(message.c_str(), "ASSERTION", kCancelTryContinueWarning);
    if (answer == IdCancel)
        std::exit(kAssertionExitStatus);
    return answer == IdContinue;
}

std::string getErrorMsgForErrorCode(unsigned long)
{
    return "WindowsApi-Fehler auf Mac oder Linux? Das ist ein wenig absurd.";
}
