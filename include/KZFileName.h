// KZFileName.h - a file or directory name of the host file system, split into
// five text parts (UNC prefix, drive, directory, base name, extension), that
// can be normalised, compared, re-assembled with any separator, made relative
// to a base directory, made absolute, parameterised with a directory symbol,
// and asked about the file it names.
//
// Names are accepted in Windows style (drive letters, '\', UNC prefixes) and
// Unix style ('/') alike. Before it is parsed, every text has its directory
// symbols ("<DATA>/x.dat") expanded through the process-wide
// KZFileName::GlobalFileEnvironment (see KZFileEnvironment.h). Texts are
// Windows-1252; every file-system call converts the composed name to UTF-8
// with CrossPlatformApi::fileSystemEncoding first.
//
// Invariants kept by the operations (not by direct assignment of the parts):
// at most one of the UNC and drive parts is set; the directory ends in a
// separator (or in "." / "..") and its separators are the current separator
// character; an extension comes with a base name in a valid name.
//
// Parsing keeps some old habits on purpose, because stored names depend on
// them: the text is never trimmed (blanks and quotes stay in the parts), any
// text before the first ':' is the drive, a single leading backslash already
// makes a UNC prefix, and ".." folding works on the plain text "/..".
//
// Long names: a name's text after expansion is bounded as
// KZFileEnvironment::expandString says (text + 64 KiB + one value). Parsing
// and the relative, absolute and parameterised forms take time linear in
// that length.
//
// Threads: none. asString switches the shared separator character for the
// length of one call, and parsing reads the shared global environment; use
// both from one thread at a time.
//
// Linux: makeAbsPath(false) uses realpath (PATH_MAX buffer), UTF-8 in and out.
#ifndef KZ_FILE_NAME_H
#define KZ_FILE_NAME_H

#include "KZExport.h"
#include "KZTime.h"

#include <string>

class KZFileEnvironment;

class KZBS_API KZFileName {
public:
    // --- construction ------------------------------------------------------

    KZFileName() = default;
    // Starts empty, then parse(s).
    KZFileName(const std::string& s);
    // Starts empty, then parses s unless it is null.
    KZFileName(const char* s);

    // Empties all five parts.
    void clear();

    // Splits s into the parts, after expanding its symbols:
    //  1. Everything up to and including the first ':' is the drive
    //     ("C:", " C:", "http:"); the UNC part is emptied.
    //  2. Without a colon, a text starting with '\' is a UNC name: the UNC part
    //     runs to the first separator from position 2 on, included ("\\srv\",
    //     "\dir\"), or is the whole text when there is none.
    //  3. Up to the last separator is the directory; runs of separators become
    //     one current separator and "x/.." pairs are folded.
    //  4. A remaining "." or ".." joins the directory ("a/.." has no name).
    //  5. The rest splits at its last '.': "archive.tar.gz" is "archive.tar"
    //     and "gz", ".profile" is "" and "profile", "name." is "name" and "".
    // It does not clear first: the drive, UNC and directory parts it does not
    // find keep their values. Callers clear() before parsing a new name.
    void parse(const std::string& s);

    // Takes s (symbols expanded) as a directory: a separator is added unless
    // it is empty or ends in one, then the parts are replaced by its parse.
    void setFullPath(const std::string& s);
    // Drive, UNC prefix and directory, the directory ending in a separator;
    // an empty directory adds nothing.
    std::string getFullPath() const;
    // Replaces base name and extension by those of s; a directory in s goes
    // below the current one, a drive or UNC prefix in s is dropped.
    void setFileName(const std::string& s);

    // --- the parts -----------------------------------------------------------

    const std::string& getUNC() const { return m_unc; }
    const std::string& getDrive() const { return m_drive; }
    const std::string& getDir() const { return m_dir; }
    const std::string& getName() const { return m_name; }
    const std::string& getExt() const { return m_ext; }

    // --- queries ---------------------------------------------------------------

    bool isUNCPath() const;
    bool isDrivePath() const;
    // A drive or UNC prefix, or a directory starting with a separator.
    bool isAbsPath() const;
    // A drive followed by a directory that does not start with a separator
    // ("C:dir\x"); "C:" alone is not drive-relative.
    bool isDriveRelPath() const;
    // False with both a drive and a UNC prefix, or an extension without name.
    bool isValid() const;

    // getFullPath(), the name, and "." with the extension if there is one.
    std::string compose() const;
    // compose() with every separator written as '/'; letter case is kept.
    std::string normalizedString() const;
    // The name composed with `separator` in the directory; the UNC prefix keeps
    // the separators it was written with. The composed text is parsed again on
    // the way, so symbols it contains are expanded.
    std::string asString(char separator) const;

    // --- the file system ---------------------------------------------------------

    // Without a base name: whether the directory exists (false when there is
    // none). With one: whether the file can be opened for reading.
    bool exists() const;
    // Whether a valid, existing file may be written by this process (for root
    // that includes files without write permission, as the system says).
    bool isWritable() const;
    // The file's modification time; the zero time when it cannot be read.
    KZTime getFileTime() const;

    // --- relative, absolute and parameterised forms --------------------------------
    // Path elements are compared ignoring case and the separator style.

    // Rewrites an absolute name relative to the global base directory, with
    // one "../" per base level below the common part. True if the name is
    // relative afterwards. A name on another drive than the base (drive letters
    // compared ignoring case) stays as it is and gives false; a relative name
    // gives true unchanged.
    bool makeRelPath();
    // useBaseDir false: the name becomes the system's canonical form (".",
    // ".." and symbolic links resolved), or stays unchanged when the system
    // cannot resolve it. useBaseDir true: a relative name is put below the
    // global base directory. Returns isAbsPath() afterwards.
    bool makeAbsPath(bool useBaseDir);
    // Appends a relative name below this directory: false, and no change, when
    // this name already has a base name or `other` is absolute (drive-relative
    // names count as absolute).
    bool add(const KZFileName& other);
    // compose() of a copy after makeRelPath().
    std::string asRelPathString() const;
    // compose() with the directory of symbol `symbolName` at its start replaced
    // by "<symbolName>/" (a textual prefix test ignoring case and separator
    // style); the plain composed name when the symbol is unknown or empty, or
    // its directory is not a prefix.
    std::string asParmeterisedString(const std::string& symbolName) const;

    // --- helpers ---------------------------------------------------------------

    // '\' or '/'.
    static bool isDirSeparator(char c);
    static bool hasTrailingDirSeparator(const std::string& s);
    // Appends the current separator unless s ends in one ("" gets one).
    static void addTrailingDirSeparator(std::string& s);
    // Removes every trailing separator.
    static void removeTrailingDirSeparator(std::string& s);
    // The comparison key of a name: upper case (ASCII letters only), separators
    // written as the current separator.
    static std::string getNormalizedString(const std::string& s);
    // Runs of separators become one current separator, then
    // removeRedundantPathElements.
    static void removeRedundantDirSeperators(std::string& s);
    // Folds each "x/.." with the element before it: "a/b/../c/" -> "a/c/",
    // "a/../../b" -> "../b", "/../a" stays. The match is on the plain text
    // "/..", so "a/..b/c" becomes "b/c". A relative text stays relative.
    static void removeRedundantPathElements(std::string& s);
    // The element that ends at pos, with its leading separator if it has one;
    // empty at pos 0 and for the elements "/..", ".." and "./", which are never
    // cancelled.
    static std::string getLeftDir(const std::string& s, unsigned long pos);

    // --- process-wide state ----------------------------------------------------

    // The characters accepted as separators: '\' and '/'.
    static const char sm_dirSeparators[3];
    // Separates base name and extension: '.'.
    static const char sm_extensionChar;
    // The separator every operation writes: '/', changed by asString for the
    // length of one call.
    static char sm_dirSeparatorChar;
    // The base directory and directory symbols used by every parse.
    static KZFileEnvironment GlobalFileEnvironment;
    static KZFileEnvironment& getGlobalFileEnvironment();
    static KZFileEnvironment& getGlobalFileEnv();

private:
    std::string m_unc;
    std::string m_drive;
    std::string m_dir;
    std::string m_name;
    std::string m_ext;
};

// The global environment's class, so that this header is enough to use it.
#include "KZFileEnvironment.h"

#endif // KZ_FILE_NAME_H
