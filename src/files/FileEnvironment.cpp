// KZFileEnvironment: the base directory, the symbol table and the expansion
// of symbols in texts.
#include "KZFileEnvironment.h"

#include <cstddef>
#include <ostream>
#include <string>

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

namespace {

// The part of a text that expansion has still to scan. It sits at the end of
// a buffer with free room in front, so that taking characters from its front
// and putting a value in front of it cost the length of what is taken or
// put, not of the whole remainder: a symbol table that refers to itself then
// costs time in proportion to the substitutions it makes, not to their
// number times the length of the text.
class PendingText {
public:
    PendingText(const std::string& text, std::size_t from) : m_buffer(text, from) {}

    std::size_t size() const { return m_buffer.size() - m_begin; }

    // Offset of the first c from the front, or npos.
    std::size_t find(char c) const
    {
        const std::size_t at = m_buffer.find(c, m_begin);
        return at == std::string::npos ? at : at - m_begin;
    }

    // Puts characters from..from+n-1 into out, replacing its contents.
    void copy(std::size_t from, std::size_t n, std::string& out) const { out.assign(m_buffer, m_begin + from, n); }

    // Removes the first n characters, appending them to out.
    void moveTo(std::string& out, std::size_t n)
    {
        out.append(m_buffer, m_begin, n);
        m_begin += n;
    }

    void drop(std::size_t n) { m_begin += n; }

    void prepend(const std::string& value)
    {
        if (value.size() > m_begin) {
            // Room for this value and as much as the text holds, so that
            // values put in front again and again cost amortised linear time.
            const std::size_t room = value.size() + size();
            std::string grown(room, '\0');
            grown.append(m_buffer, m_begin, std::string::npos);
            m_buffer.swap(grown);
            m_begin = room;
        }
        m_begin -= value.size();
        m_buffer.replace(m_begin, value.size(), value);
    }

    std::string str() const { return m_buffer.substr(m_begin); }

private:
    std::string m_buffer;
    std::size_t m_begin = 0;   // where the text starts in m_buffer
};

} // namespace

std::string KZFileEnvironment::expandString(const std::string& text) const
{
    const std::size_t first = text.find(sm_symbolOpenChar);
    if (first == std::string::npos)
        return text;
    // Everything before the symbol being expanded is final: scanning never
    // goes back.
    std::string done = text.substr(0, first);
    PendingText pending(text, first);   // starts with the open character
    const std::size_t maxLength = text.size() + m_maxGrowth;
    std::string name;   // reused: a hostile table may ask for many substitutions
    for (unsigned expansions = 0; expansions < kMaxExpansions; ++expansions) {
        if (done.size() + pending.size() > maxLength)
            break;
        const std::size_t close = pending.find(sm_symbolCloseChar);
        if (close == std::string::npos)
            break;
        pending.copy(1, close - 1, name);
        pending.drop(close + 1);
        const auto entry = m_symbols.find(name);
        if (entry != m_symbols.end())
            pending.prepend(entry->second);
        // Resuming at the inserted value expands the symbols inside it too.
        const std::size_t open = pending.find(sm_symbolOpenChar);
        if (open == std::string::npos)
            break;
        pending.moveTo(done, open);
    }
    return done + pending.str();
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
