// The message box of a process that cannot show one: the core library has no
// GUI, and the full library without a QApplication (or off its GUI thread) has
// none either. Both answer through this one function.
#ifndef KZ_PLATFORM_MESSAGE_ON_STDERR_H
#define KZ_PLATFORM_MESSAGE_ON_STDERR_H

namespace KZBasicServices {

// Writes "caption: text" and a line end to stderr, converted from
// Windows-1252 to UTF-8 for the terminal, and answers 2 ("Abbrechen"), the
// answer of a box that was not clicked. Null texts count as empty.
int messageOnStderr(const char* text, const char* caption);

} // namespace KZBasicServices

#endif // KZ_PLATFORM_MESSAGE_ON_STDERR_H
