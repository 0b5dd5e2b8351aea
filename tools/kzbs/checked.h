// What kzbs makes of the words a user typed: a value, or the message that
// says why there is none. Parsers and lookups return Checked values and print
// nothing; a command takes the value with value(), and a refusal then ends
// the command through InputError, which Program reports as kzbs's one line.
#ifndef KZBS_CHECKED_H
#define KZBS_CHECKED_H

#include "cli.h"

#include <optional>
#include <string>
#include <utility>

namespace kzbs {

// Why a word was refused: the message, without the "kzbs: ".
struct Refusal {
    std::string message;
};

inline Refusal refuse(std::string message)
{
    return {std::move(message)};
}

template <typename T>
class Checked {
public:
    Checked(T value) : m_value(std::move(value)) {}
    Checked(Refusal refusal) : m_refusal(std::move(refusal)) {}

    bool ok() const { return m_value.has_value(); }
    // The refusal, to pass on from a parser built on another one.
    const Refusal& refusal() const { return m_refusal; }
    // The value; throws InputError with the message when there is none.
    const T& value() const&
    {
        if (!m_value)
            throw InputError(m_refusal.message);
        return *m_value;
    }
    T value() &&
    {
        if (!m_value)
            throw InputError(m_refusal.message);
        return std::move(*m_value);
    }

private:
    std::optional<T> m_value;
    Refusal m_refusal;
};

} // namespace kzbs

#endif // KZBS_CHECKED_H
