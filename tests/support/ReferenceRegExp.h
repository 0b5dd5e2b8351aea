// An independent reading of KZRegExp's pattern language, for differential
// tests: the unit test and the fuzz target both compare KZRegExp::find with
// refFind. It covers what those generate: ASCII patterns without escapes or
// newlines that compile with status 0, and texts without NUL bytes. Elements
// with an optional closure are matched by index recursion; failures are
// remembered per (element, position), so even nested closures stay cheap.
#ifndef KZBS_TEST_REFERENCE_REGEXP_H
#define KZBS_TEST_REFERENCE_REGEXP_H

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace refregexp {

using Found = std::pair<int, unsigned long>; // offset and length

struct Element {
    enum Kind { Literal, Any, Class, Bol, Eol } kind = Literal;
    char literal = 0, closure = 0;
    std::bitset<128> members;

    bool consumes(const std::string& text, std::size_t pos) const
    {
        if (pos >= text.size())
            return false;
        return kind == Literal ? text[pos] == literal
               : kind == Any   ? text[pos] != '\n'
                               : kind == Class && members[static_cast<unsigned char>(text[pos]) & 0x7F];
    }
};

inline std::vector<Element> parse(const std::string& p)
{
    std::vector<Element> elements;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const char c = p[i];
        Element e;
        if (c == '*' || c == '+' || c == '?') {
            elements.back().closure = c;
            continue;
        }
        if (c == '^' && i == 0) {
            e.kind = Element::Bol;
        } else if (c == '$' && i + 1 == p.size()) {
            e.kind = Element::Eol;
        } else if (c == '.') {
            e.kind = Element::Any;
        } else if (c == '[') {
            e.kind = Element::Class;
            std::size_t j = i + 1;
            const bool negate = j < p.size() && p[j] == '^';
            j += negate;
            for (; j < p.size() && p[j] != ']'; ++j) {
                if (p[j] == '-' && j > i + 1 + negate && j + 1 < p.size()) {
                    // the character before the '-' is in already ("c-a" is b and c)
                    for (int m = std::min(p[j - 1], p[j + 1]) + 1; m <= std::max(p[j - 1], p[j + 1]); ++m)
                        e.members.set(static_cast<std::size_t>(m));
                    ++j;
                } else {
                    e.members.set(static_cast<unsigned char>(p[j]) & 0x7F);
                }
            }
            if (negate)
                e.members.flip();
            i = j;
        } else {
            e.literal = c;
        }
        elements.push_back(e);
    }
    return elements;
}

class Matcher {
public:
    Matcher(const std::vector<Element>& es, const std::string& text, std::size_t start)
        : m_es(es), m_text(text), m_start(start), m_failed(es.size() * (text.size() + 1))
    {
    }

    // The end of the greedy match of elements index.. at pos, if any.
    std::optional<std::size_t> match(std::size_t index, std::size_t pos)
    {
        if (index == m_es.size())
            return pos;
        const std::size_t key = index * (m_text.size() + 1) + pos;
        if (m_failed[key])
            return std::nullopt;
        const std::optional<std::size_t> end = matchElement(index, pos);
        if (!end)
            m_failed[key] = true;
        return end;
    }

private:
    std::optional<std::size_t> matchElement(std::size_t index, std::size_t pos)
    {
        const Element& e = m_es[index];
        if (e.kind == Element::Bol || e.kind == Element::Eol) {
            const bool at = e.kind == Element::Bol ? pos == m_start : pos == m_text.size() || m_text[pos] == '\n';
            return at ? match(index + 1, pos) : std::nullopt;
        }
        if (e.closure == '?')
            return match(index + 1, pos + e.consumes(m_text, pos));
        std::size_t most = 0;
        while (e.consumes(m_text, pos + most) && (e.closure || most == 0))
            ++most;
        for (std::size_t n = most + 1; n-- > (e.closure == '*' ? 0u : 1u);)
            if (auto end = match(index + 1, pos + n))
                return end;
        return std::nullopt;
    }

    const std::vector<Element>& m_es;
    const std::string& m_text;
    std::size_t m_start;
    std::vector<bool> m_failed;
};

// What KZRegExp(pattern).find(text, &length, start) should give.
inline Found refFind(const std::string& pattern, const std::string& text, std::size_t start)
{
    const std::vector<Element> es = parse(pattern);
    if (start >= text.size()) {
        const bool anchorsOnly =
            es[0].kind == Element::Eol
            || (es[0].kind == Element::Bol && (es.size() == 1 || (es.size() == 2 && es[1].kind == Element::Eol)));
        return start == text.size() && anchorsOnly ? Found{static_cast<int>(start), 1} : Found{-1, 0};
    }
    Matcher matcher(es, text, start);
    for (std::size_t at = start; at < text.size(); ++at)
        if (auto end = matcher.match(0, at))
            return {static_cast<int>(at), *end == start ? 1 : *end - at};
    return {-1, 0};
}

} // namespace refregexp

#endif // KZBS_TEST_REFERENCE_REGEXP_H
