// CrossPlatformApi.h - the platform layer: the Windows calls the applications
// were written against, on Linux with Qt 6 or Qt 5 (KZBS_QT_VERSION), iconv and X11.
//
// Invariants: the library's own texts are Windows-1252; file-system texts are
// UTF-8. Nothing here throws. Functions hold no state unless noted.
// Threads: everything may be called from any thread (timezone() reads local
// time with localtime_r, not into the C library's shared localtime() result);
// GUI calls belong to the application's GUI thread.
#ifndef CROSS_PLATFORM_API_H
#define CROSS_PLATFORM_API_H

#include "KZExport.h"

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

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

// UTF-8 -> Windows-1252, by iconv; a character Windows-1252 cannot hold becomes
// '?'. Input that is not valid UTF-8 is reported on stderr ("Fehler in
// internalEncoding:" and the input) and returned unchanged.
KZBS_API std::string internalEncoding(const std::string& utf8Text);

// Windows-1252 -> UTF-8, by iconv. Bytes Windows-1252 leaves undefined are reported on
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
        KeyCommand = 91, // the left Windows (Super) key
        KeyNumLock = 144,
        KeyOption = 164 // the left Alt key; the generic Alt code 18 is not recognised
    };
    // 1 while the key is held (caps lock, num lock: while on), else 0. Qt's
    // modifiers are read when a QGuiApplication exists, caps and num lock from
    // X11 when a display is open; without either the answer is 0.
    static int keyState(KeyType key);
};

// --- Configuration (INI) files ----------------------------------------------
// The Windows private-profile calls on QSettings in IniFormat, whose INI codec
// and fallbacks stay as Qt sets them. Every call opens
// the file by name, does its one job and closes it again; nothing is cached and
// nothing is reported. A missing or unreadable file reads like an empty one.
// The file name is local 8-bit; sections, keys, defaults and values are
// Latin-1 (Windows-1252 for the Latin-1 characters); results are Latin-1.
// A null pointer reads as the empty text. Qt's INI syntax applies: a value
// with commas must be quoted ("a, b") when written by hand; unquoted it is a
// list, which reads as the empty text.

// The text under `key` in [section]; `defaultValue` where file, section or key
// is missing.
KZBS_API std::string getIniString(const char* section, const char* key, const char* defaultValue, const char* fileName);

// The value under `key` in [section] as an integer; `defaultValue` where the key
// is missing. A stored text that is no number gives 0, not the default.
KZBS_API int getIniInt(const char* section, const char* key, int defaultValue, const char* fileName);

// Stores `value` as text under `key` in [section], creating section and file
// where missing. A write that cannot be done is lost silently.
KZBS_API void writeIniString(const char* section, const char* key, const char* value, const char* fileName);

// The top-level sections of the file, in QSettings' order.
KZBS_API std::vector<std::string> getIniSections(const char* fileName);

// One "key=value" text per key of [section], in QSettings' order. Unlike the
// calls above, this one decodes `section` as local 8-bit, not Latin-1: on a
// UTF-8 system a non-ASCII section name may address another section. The
// difference is deliberate and kept for compatibility.
KZBS_API std::vector<std::string> getIniSectionEntries(const char* section, const char* fileName);

// --- Processes and documents ------------------------------------------------
// Paths may use Windows separators: every backslash becomes a slash.

// Starts `program` detached, in `workingDirectory` (null or empty: the caller's
// folder), with the arguments split from the one line `arguments` (UTF-8).
// `program` may be an application bundle, any folder X.app (a trailing slash
// is allowed): its Contents/Info.plist names the executable in Contents/MacOS
// under "CFBundleExecutable"; without the list or the key it is X.
// An existing file without the execute right is a document: it is opened with
// executeAssociatedAppAndOpenFile and arguments and folder are ignored.
// True when the program was started (or the document opened).
//
// The splitter knows double quotes only: 'a "b c"' gives [a] [b c], and a lone
// '"' one empty argument. For compatibility it keeps one odd habit: it moves on
// by the length of each match, not past its end, so an argument found after
// some skipped text is taken more than once: '"x" y' gives [x] [y] [y], and
// two blanks then "a" give [a] [a] [a]. (It runs on QRegularExpression, whose
// alternatives match in order where QRegExp took the longest.)
KZBS_API bool exec(const char* program, const char* arguments, const char* workingDirectory);

// Waits up to about 60 seconds for the child `pid` to end. True when it ended,
// or when waitpid fails (for example: no child of this process); false when the
// time ran out. The exit status is discarded. A pid of 0 or less names no
// single child (waitpid would reap any child) and answers true at once. Polls
// every millisecond rather than spinning.
KZBS_API bool waitForProcess(int pid);

// Opens the file (a Latin-1 path) with the application the desktop associates
// with it: QDesktopServices::openUrl of the file URL, its result returned. Needs
// a QGuiApplication unless a "file" URL handler is registered.
KZBS_API bool executeAssociatedAppAndOpenFile(const char* path);

// The same for a Windows-1252 path: it is converted to UTF-8 and opened under
// that name, so non-ASCII names reach the file system as they are stored.
KZBS_API bool executeAssociatedAppAndOpenFileCp1252(const char* path);

// Opens the address (local 8-bit) with the desktop's handler.
KZBS_API bool openUrl(const char* url);

// --- Files and folders ------------------------------------------------------

enum SysFolder {
    TempFolder = 0,
    ApplicationSupportFolder = 1,
    ApplicationSupportFolder2 = 2, // the same folder as 1; kept apart for the callers
    DocumentsFolder = 3,
    HomeFolder = 4
};

// The folder, Latin-1, without a trailing separator; "" for a value outside the
// enumeration. Temp: $TMPDIR or /tmp; both application-support values: the XDG
// data home (~/.local/share); documents: the XDG documents folder; home: $HOME.
KZBS_API std::string getSystemFolder(SysFolder folder);

// The folder holding the running program's executable, in Windows-1252; read
// from /proc/self/exe when no QCoreApplication exists.
KZBS_API std::string getApplicationfolder();

// Names (not paths) of the entries of `folder` (local 8-bit) matching the
// Windows wildcard `pattern`, in the order the folder yields them; "." and ".."
// and hidden names are never listed. The pattern becomes a regular expression:
// "*.*" -> "*", "$" -> "\$", "." -> "\.", "*" -> ".*"; nothing else is
// translated, so "?", "+", brackets and parentheses act as regular-expression
// characters ("ab?.txt" matches a.txt and ab.txt). Matching is case-sensitive
// and on the whole name. A missing folder gives an empty list. The pattern
// runs on QRegularExpression (no Qt5Compat) but is read with the grammar
// QRegExp had: what QRegExp refused, such as "x??", a lone "{" or "]", still
// matches nothing.
KZBS_API std::vector<std::string> getDirectoryEntries(const std::string& folder, const std::string& pattern);

// Removes the folder if it is empty; a relative name counts from "/".
KZBS_API bool deleteDirectory(const std::string& folder);

// Removes the file (a Latin-1 path). True on success.
KZBS_API bool deleteFile(const std::string& path);

// The size of the file at the Windows-1252 `path`, in its low 32 bits; 0 when
// it cannot be opened.
KZBS_API unsigned long getFileSize(const char* path);

// Windows drive type of the medium the application runs from: 5 (read-only
// medium) when the bundle folder is not writable and lies on a removable
// volume, else 0 (unknown). `path` is not looked at.
KZBS_API unsigned int getDriveType(const char* path);

// Splits `path` (local 8-bit) into folder, name and extension with the buffer
// and size pairs of _splitpath_s; always returns 0. `drive` is never written.
// - A path ending in "/" or "\" is a folder: `dir` gets it plus "/" (so "d/"
//   gives "d//"), `fname` gets "".
// - Otherwise `dir` gets the canonical folder of an existing file, or the path
//   without its last part for a missing one ("noext" gives "./"), plus "/";
//   `fname` the name without its extension.
// - `ext` gets "." and the text after the name's last dot; without one it is
//   left untouched.
// Guards: a null path or buffer (or a size of 0) leaves that part unwritten.
// A part that does not fit is cut so that it stays terminated within its
// size; `dir` keeps its "/" as long as the size is at least 2.
KZBS_API int splitpath_s(const char* path, char* drive, unsigned long driveSize, char* dir, unsigned long dirSize,
                         char* fname, unsigned long fnameSize, char* ext, unsigned long extSize);

// --- Message box and debugging ----------------------------------------------

// Windows MessageBox on a modal QMessageBox. The low four bits of `type` pick
// the buttons: 4 "Ja"/"Nein" (6 / 7), 6 "Abbrechen"/"Wiederholen"/"Weiter"
// (2 / 10 / 11), anything else "OK" alone (1). Any of the bits 0x30 shows the
// critical form. `text` and `caption` are Windows-1252, decoded by a table of
// the library's own (Qt 6 has no QTextCodec in QtCore). A box closed without
// a click (Escape, the window's close button) answers as its escape button:
// 1 for the OK box, 7 ("Nein") for Ja/Nein, 2 ("Abbrechen") for the three
// buttons. Without a QApplication, or off the GUI thread, "caption: text" goes
// to stderr and the answer is 2.
KZBS_API int messageBox(const char* text, const char* caption, int type);

// Always false.
KZBS_API bool isDebuggerPresent();

} // namespace CrossPlatformApi

// --- Application bundle -----------------------------------------------------
// A bundle is a "*.app" folder with Contents/Info.plist (XML) and
// Contents/MacOS. The application's folder stands for its bundle: X.app when
// that folder is X.app/Contents/MacOS, else the folder itself.

// Where the application's bundle folder lies, asked by getDriveType.
struct BundlePathInfo {
    bool isWritable;  // the folder may be written by this process
    bool isOnVolumes; // the folder lies on a removable volume (/media/, /run/media/)
};

KZBS_API BundlePathInfo getBundlePathInfo();

// Brings the application's window to the front: the focus window, or else the
// first visible one; nothing without a GUI.
KZBS_API void activateApp();

// The identifier the application presents itself under: for a program nested
// three folders deep in another bundle (Outer.app/Contents/Helpers/Inner.app)
// whose Info.plist "CFBundleIdentifier" shares the own identifier's prefix up
// to its last ".", the outer one; otherwise bundleId().
KZBS_API std::string mainBundleId();

// The application's own identifier, Windows-1252: "CFBundleIdentifier" of
// its bundle's Contents/Info.plist, else its desktop file name
// (QGuiApplication::setDesktopFileName), else "unknownBundleID".
KZBS_API std::string bundleId();

#endif // CROSS_PLATFORM_API_H
