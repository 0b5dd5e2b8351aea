// The core library's message box: it has no GUI, so every box, the
// assertion's included, is a line on stderr answered with "Abbrechen" (2).
#include "CrossPlatformApi.h"
#include "MessageOnStderr.h"

namespace CrossPlatformApi {

int messageBox(const char* text, const char* caption, int)
{
    return KZBasicServices::messageOnStderr(text, caption);
}

} // namespace CrossPlatformApi
