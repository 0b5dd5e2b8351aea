#include "cli.h"

#include "CrossPlatformApi.h"

#include <iostream>

namespace kzbs {

std::optional<std::string> Args::option(const std::string& name)
{
    std::optional<std::string> value;
    for (size_t i = 0; i < m_words.size();) {
        const std::string& word = m_words[i];
        if (word == name) {
            if (i + 1 >= m_words.size()) {
                m_error = name + " needs a value";
                m_words.erase(m_words.begin() + static_cast<long>(i));
                continue;
            }
            value = m_words[i + 1];
            m_words.erase(m_words.begin() + static_cast<long>(i), m_words.begin() + static_cast<long>(i) + 2);
        } else if (word.compare(0, name.size() + 1, name + "=") == 0) {
            value = word.substr(name.size() + 1);
            m_words.erase(m_words.begin() + static_cast<long>(i));
        } else {
            ++i;
        }
    }
    return value;
}

bool Args::flag(const std::string& name, const std::string& shortName)
{
    bool found = false;
    for (size_t i = 0; i < m_words.size();) {
        if (m_words[i] == name || (!shortName.empty() && m_words[i] == shortName)) {
            found = true;
            m_words.erase(m_words.begin() + static_cast<long>(i));
        } else {
            ++i;
        }
    }
    return found;
}

bool Args::answeredHelp(const char* usage)
{
    if (!wantsHelp())
        return false;
    std::cout << usage;
    return true;
}

const std::vector<std::string>& Args::positional()
{
    for (const std::string& word : m_words)
        if (m_error.empty() && word.size() > 2 && word.compare(0, 2, "--") == 0)
            m_error = "unknown option " + word;
    return m_words;
}

int fail(const std::string& message)
{
    std::cerr << "kzbs: " << message << '\n';
    return 2;
}

std::string toTerminal(const std::string& cp1252) { return CrossPlatformApi::fileSystemEncoding(cp1252); }
std::string fromTerminal(const std::string& utf8) { return CrossPlatformApi::internalEncoding(utf8); }

} // namespace kzbs
