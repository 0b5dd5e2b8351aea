// KZFileEnvironment: the base directory, the symbol table and the expansion
// of symbols in texts.
#include "KZFileEnvironment.h"

#include <ostream>

bool KZFileEnvironment::setBaseDir(const std::string& dir)
{
    m_baseDir.setFullPath(dir);
    m_symbols[kBaseDirSymbol] = m_baseDir.compose();
    return m_baseDir.isAbsPath();
}

std::string KZFileEnvironment::getSymbol(const std::string& name) const
{
    const auto entry = m_symbols.find(name);
    return entry == m_symbols.end() ? std::string() : entry->second;
}

std::string KZFileEnvironment::expandString(const std::string& text) const
{
    std::string result = text;
    std::size_t open = result.find(sm_symbolOpenChar);
    const std::size_t maxLength = text.size() + kMaxGrowth;
    for (unsigned expansions = 0; open != std::string::npos && expansions < kMaxExpansions; ++expansions) {
        if (result.size() > maxLength)
            break;
        const std::size_t close = result.find(sm_symbolCloseChar, open);
        if (close == std::string::npos)
            break;
        const std::string name = result.substr(open + 1, close - open - 1);
        const auto entry = m_symbols.find(name);
        if (entry == m_symbols.end())
            result.erase(open, close - open + 1);
        else
            result.replace(open, close - open + 1, entry->second);
        // Resuming at the inserted value expands the symbols inside it too.
        open = result.find(sm_symbolOpenChar, open);
    }
    return result;
}

std::string KZFileEnvironment::outputLine(iterator entry) const
{
    const KZFileName value(entry->second);
    return entry->first + " = " + entry->second + " (" + value.compose() + ")";
}

void KZFileEnvironment::printSymbols(std::ostream& out, const std::string& prefix) const
{
    for (auto entry = m_symbols.begin(); entry != m_symbols.end(); ++entry)
        out << prefix << outputLine(entry) << std::endl;
}

std::string KZFileEnvironment::symbolsAsString() const
{
    std::string text;
    for (auto entry = m_symbols.begin(); entry != m_symbols.end(); ++entry) {
        text += outputLine(entry);
        text += "\r\n";
    }
    return text;
}
