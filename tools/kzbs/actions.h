// Commands whose first word names an action (kzbs path parse, kzbs ini get)
// dispatch it from one table each, of this shape.
#ifndef KZBS_ACTIONS_H
#define KZBS_ACTIONS_H

#include "checked.h"

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kzbs {

template <typename Request>
struct Action {
    const char* name;
    const char* words;       // what follows the name, for messages: "FILE SECTION KEY [DEFAULT]"
    std::size_t least, most; // how many words may follow
    int (*run)(const Request& request, const std::vector<std::string>& words); // the words after the name
};

constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

// The action that words[0] names, with the number of words after it checked.
template <typename Request, std::size_t N>
Checked<const Action<Request>*> chooseAction(const std::string& command, const Action<Request> (&table)[N],
                                             const std::vector<std::string>& words)
{
    const std::string help = " (kzbs " + command + " --help)";
    if (words.empty()) {
        std::string names;
        for (std::size_t i = 0; i < N; ++i)
            names += std::string(i == 0 ? "" : i + 1 == N ? " or " : ", ") + table[i].name;
        return refuse(command + " needs an action: " + names + help);
    }
    for (const Action<Request>& action : table) {
        if (words[0] != action.name)
            continue;
        const std::size_t count = words.size() - 1;
        if (count < action.least || count > action.most)
            return refuse(command + " " + action.name + " takes " + action.words + help);
        return &action;
    }
    return refuse("unknown " + command + " action '" + printable(words[0]) + "'" + help);
}

} // namespace kzbs

#endif // KZBS_ACTIONS_H
