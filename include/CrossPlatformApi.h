// CrossPlatformApi.h - the platform layer: the Windows calls the applications
// were written against, on Linux with Qt 5, iconv and X11.
//
// Invariants: the library's own texts are Windows-1252; file-system texts are
// UTF-8. Nothing here throws. Functions hold no state unless noted.
// Threads: everything may be called from any thread, except that timezone()
// uses the C library's shared localtime() result, and GUI calls belong to the
// application's GUI thread.
// Linux choices: text conversions go through iconv; a character the target
// encoding cannot hold becomes '?'. keyState reads Qt's modifiers when a
// QGuiApplication exists and caps/num lock from X11 when a display is open.
#ifndef CROSS_PLATFORM_API_H
#define CROSS_PLATFORM_API_H

#include "KZExport.h"

#include <cstdint>
#include <ctime>
#include <string>

class QElapsedTimer;

namespace CrossPlatformApi {

// --- Local time and C-library shims ----------------------------------------

// Offset of local time from UTC in seconds, positive west of Greenwich, as in
// force now (daylight saving included): Central Europe gives -3600 in winter
// and -7200 in summer.
KZBS_API long timezone();

// The C library's `daylight` as it stands: non-zero when the zone has
// daylight-saving rules. tzset() is not called here.
KZBS_API int daylight();

// localtime_r with the Windows argument order (result first). Returns 0;
// EINVAL when either pointer is null.
KZBS_API int localtime_s(std::tm* result, const std::time_t* time);

// strcasecmp; a null pointer compares as the empty text.
KZBS_API int strCmpNoCase(const char* a, const char* b);

// Writes text to standard error as it stands: no line end is added.
KZBS_API void outputDebugString(const char* text);

// The clock behind "now" in this library (timezone(), today's KZDate, the
// current KZTime). Production code never sets it; tests and simulations pin
// "now" with it. nullptr restores the system clock.
using ClockFunction = std::time_t (*)();
KZBS_API void setClock(ClockFunction clock);
KZBS_API std::time_t now();

// --- Clocks and small system services --------------------------------------

// A stopwatch in milliseconds. It runs from construction; start() restarts it.
class KZBS_API MilliSecTimer {
public:
    MilliSecTimer();
    virtual ~MilliSecTimer();
    MilliSecTimer(const MilliSecTimer&) = delete;
    MilliSecTimer& operator=(const MilliSecTimer&) = delete;

    void start();
    std::int64_t elapsed() const;

private:
    QElapsedTimer* m_timer;
};

// Milliseconds since the system started (the monotonic clock). Callers that
// keep it in 32 bits see it wrap after about 49.7 days, as on Windows.
KZBS_API std::int64_t getTickCount();

// Pauses for the given milliseconds; the microsecond count is taken in 32
// bits, so values above 4294967 wrap. sleep(0) does not pause.
KZBS_API void sleep(unsigned int milliseconds);

// number * numerator / denominator with a 64-bit product, truncated toward
// zero (no rounding), low 32 bits returned. A zero denominator gives -1, as
// the Windows call does, instead of a division fault.
KZBS_API int MulDiv(int number, int numerator, int denominator);

// Rotates a 32-bit value left by shift modulo 32.
KZBS_API unsigned int rotl(unsigned int value, unsigned int shift);

// A new random UUID: 38 characters, lower-case hex 8-4-4-4-12 in braces.
KZBS_API std::string getUUID();

// UTF-8 -> Windows-1252. Input that is not valid UTF-8 is reported on stderr
// ("Fehler in internalEncoding:" and the input) and returned unchanged.
KZBS_API std::string internalEncoding(const std::string& utf8Text);

// Windows-1252 -> UTF-8. Bytes Windows-1252 leaves undefined are reported on
// stderr ("Fehler in fileSystemEncoding:" and the input), and the input is
// returned unchanged.
KZBS_API std::string fileSystemEncoding(const std::string& cp1252Text);

class KZBS_API KeyboardState {
public:
    // Windows virtual-key codes.
    enum KeyType {
        KeyShift = 16,
        KeyControl = 17,
        KeyCapsLock = 20,
        KeyCommand = 91,   // the left Windows (Super) key
        KeyNumLock = 144,
        KeyOption = 164    // the left Alt key; the generic Alt code 18 is not recognised
    };
    // 1 while the key is held (caps lock, num lock: while on), else 0.
    // Without a GUI application or display the answer is 0.
    static int keyState(KeyType key);
};

} // namespace CrossPlatformApi

#endif // CROSS_PLATFORM_API_H
