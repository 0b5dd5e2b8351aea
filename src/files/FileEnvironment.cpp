// KZFileEnvironment: the base directory, the symbol table and the expansion
// of symbols in texts.
#include "KZFileEnvironment.h"

#include <cstddef>
#include <cstring>
#include <ostream>
#include <string>
#include <utility>

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
    // Room in front for the values of a name's usual one or two symbols,
    // taken with the one allocation the copy of the text needs anyway.
    static constexpr std::size_t kFrontRoom = 64;

    PendingText(const std::string& text, std::size_t from)
        : m_buffer(kFrontRoom + text.size() - from, '\0'), m_begin(kFrontRoom)
    {
        text.copy(&m_buffer[m_begin], text.size() - from, from);
    }

    std::size_t size() const { return m_buffer.size() - m_begin; }

    // Offset of the first c from the front, or npos. memchr itself: the
    // texts are short, and string::find is a call around the same call.
    std::size_t find(char c) const
    {
        const char* front = m_buffer.data() + m_begin;
        const void* at = std::memchr(front, c, size());
        return at ? static_cast<std::size_t>(static_cast<const char*>(at) - front) : std::string::npos;
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
        value.copy(&m_buffer[m_begin], value.size());
    }

    // The whole text, taking the buffer: no copy when nothing came before it.
    std::string take() &&
    {
        m_buffer.erase(0, m_begin);
        return std::move(m_buffer);
    }

    // Appends the whole text to out, sizing out once.
    void appendTo(std::string& out) const
    {
        out.reserve(out.size() + size());
        out.append(m_buffer, m_begin, std::string::npos);
    }

private:
    std::string m_buffer;
    std::size_t m_begin; // where the text starts in m_buffer
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
    PendingText pending(text, first); // starts with the open character
    const std::size_t maxLength = text.size() + m_maxGrowth;
    std::string name; // reused: a hostile table may ask for many substitutions
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
    if (done.empty())
        return std::move(pending).take();
    pending.appendTo(done);
    return done;
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
