// KZFileEnvironment.h - directory symbols and the base directory.
//
// A file name may name a directory by a symbol in angle brackets,
// "<DATA>/x.dat"; every KZFileName expands such symbols while it parses,
// through the one process-wide environment KZFileName::GlobalFileEnvironment.
// The environment also holds the base directory against which names are made
// relative or absolute; it is available as the symbol SYS_BASEDIR.
//
// Invariants: symbol names are case-sensitive and the table is ordered by
// their bytes; values are kept as written and expanded each time they are
// used; the table only grows or has entries overwritten.
//
// The global environment starts empty. The library never fills it: an
// application sets it up once at start-up, typically
//     KZFileEnvironment& env = KZFileName::getGlobalFileEnvironment();
//     env.setBaseDir("/opt/app");
//     env.readSymbolsFromFile(KZFileName());   // <SYS_BASEDIR>/DirectorySymbols.dat
// and only then parses names, possibly from several threads.
//
// Threads: none; writes to the global environment must not overlap with
// parsing anywhere in the process.
#ifndef KZ_FILE_ENVIRONMENT_H
#define KZ_FILE_ENVIRONMENT_H

#include "KZExport.h"
#include "KZFileName.h"

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>

class KZBS_API KZFileEnvironment {
public:
    using SymbolTable = std::map<std::string, std::string>;
    using iterator = SymbolTable::const_iterator;

    // Opens and closes a symbol reference.
    static constexpr char sm_symbolOpenChar = '<';
    static constexpr char sm_symbolCloseChar = '>';
    // The symbol that always holds the base directory.
    static constexpr const char* kBaseDirSymbol = "SYS_BASEDIR";
    // What readSymbolsFromFile reads when given an empty name.
    static constexpr const char* kDefaultSymbolFile = "<SYS_BASEDIR>/DirectorySymbols.dat";
    // Bounds of one expandString call, far beyond any real symbol table:
    // substitutions, and bytes the text may grow by.
    static constexpr unsigned kMaxExpansions = 10000;
    static constexpr std::size_t kMaxGrowth = 64 * 1024;

    // No base directory, no symbols.
    KZFileEnvironment() = default;

    // Takes dir as the base directory (symbols expanded through the global
    // environment) and stores its composed form as SYS_BASEDIR. True if the
    // base directory is absolute.
    bool setBaseDir(const std::string& dir);
    const KZFileName& getBaseDir() const { return m_baseDir; }

    // The raw value of a symbol; empty for an unknown one.
    std::string getSymbol(const std::string& name) const;
    const SymbolTable& getSymbols() const { return m_symbols; }

    // The growth bound of expandString for this environment: kMaxGrowth
    // unless lowered. A caller who reads symbol tables it does not trust (or
    // a fuzzer, which meets self-referring tables all the time) can bound the
    // cost of every name lower; a copy keeps the bound.
    void setMaxGrowth(std::size_t bytes) { m_maxGrowth = bytes < kMaxGrowth ? bytes : kMaxGrowth; }
    std::size_t maxGrowth() const { return m_maxGrowth; }

    // Replaces every "<NAME>" by the symbol's value; unknown names become
    // nothing, an unclosed '<' and what follows stay. Scanning resumes at the
    // start of each inserted value, so values may refer to other symbols:
    // with ROOT=C:/Prog and DATA=<ROOT>/Data, "<DATA>/x.dat" gives
    // "C:/Prog/Data/x.dat". A symbol that refers to itself, directly or through
    // others, would expand for ever; to keep such a table from hanging the
    // application, expansion stops after kMaxExpansions substitutions, or once
    // the text has grown by more than maxGrowth() bytes, and leaves the rest
    // as it stands. So the result is at most the text's length + maxGrowth() +
    // the longest value, and one call takes time in proportion to the text
    // and the values it inserts, whatever the table holds.
    std::string expandString(const std::string& text) const;

    // Reads white-space separated tokens. "NAME=VALUE" (split at the first '=')
    // defines NAME; a token without '=' is its own name and value. SYS_BASEDIR
    // also sets the base directory. Values are stored unexpanded; later
    // definitions overwrite earlier ones. The result is true only when the
    // stream ends directly after the last token: a trailing line end, an empty
    // stream or a read error give false. Look at the table, not the result, to
    // know whether symbols were read.
    bool readSymbolsFromFile(std::istream& in);
    // Reads the named file, or the default symbol file when the name is empty.
    // False when the file does not exist, else as above.
    bool readSymbolsFromFile(const KZFileName& file);

    // "NAME = VALUE (expanded and parsed value)", for example
    // "DATA = <ROOT>/Data (C:/Prog/Data)".
    std::string outputLine(iterator entry) const;
    // prefix, outputLine and std::endl for every entry in table order.
    void printSymbols(std::ostream& out, const std::string& prefix) const;
    // outputLine and "\r\n" for every entry in table order.
    std::string symbolsAsString() const;

private:
    void defineSymbol(const std::string& token);

    KZFileName m_baseDir;
    SymbolTable m_symbols;
    std::size_t m_maxGrowth = kMaxGrowth;
};

#endif // KZ_FILE_ENVIRONMENT_H
