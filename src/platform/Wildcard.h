// The regular expression behind getDirectoryEntries' Windows wildcards.
// Internal to the platform layer.
#ifndef KZBS_PLATFORM_WILDCARD_H
#define KZBS_PLATFORM_WILDCARD_H

#include <QRegularExpression>

#include <string>

namespace kzplatform {

// The wildcard (local 8-bit) as an expression that matches whole names. Only
// "*", "." and "$" are translated; the other regular-expression characters
// keep their meaning. The grammar is the one the layer always used (QRegExp's):
// a pattern that grammar refuses gives an expression that matches nothing.
QRegularExpression wildcardExpression(const std::string& pattern);

} // namespace kzplatform

#endif
