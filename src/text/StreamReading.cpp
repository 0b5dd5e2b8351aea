// Reading a line, and the rest of a stream, into a string.
#include "KZStringFunctions.h"

#include <climits>
#include <cstring>
#include <istream>

bool KZStringFunctions::readLine(std::istream& in, std::string& line)
{
    char buffer[512];
    in.getline(buffer, sizeof buffer, in.widen('\n'));
    if (in.rdstate() != std::ios_base::goodbit)
        return false;
    line.assign(buffer, ::strnlen(buffer, sizeof buffer));
    return true;
}

int KZStringFunctions::readFromFile(std::istream& in, std::string& text)
{
    text.clear();
    if (in.rdstate() != std::ios_base::goodbit)
        return -1;
    std::size_t total = 0;
    char buffer[1024];
    while (!in.eof()) {
        in.get(buffer, sizeof buffer, '\0');
        const std::streamsize count = in.gcount();
        total += static_cast<std::size_t>(count);
        text.append(buffer, static_cast<std::size_t>(count));
        if (count == 0 && !in.eof() && in.fail()) {
            // A NUL byte is next: get() neither takes it nor moves on. Skip it
            // so reading reaches the end of the stream.
            in.clear();
            if (in.ignore(1).gcount() == 0)
                break;
        }
    }
    return total > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(total);
}
