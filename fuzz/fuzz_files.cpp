// File names on arbitrary bytes: parsing, composing with either separator,
// relative, absolute and parameterised forms, appending names. The input up
// to its first NUL is a symbol file for the global environment (so names
// expand symbols), the next part a base directory, the rest two names.
// Properties:
//  - the normalised form has no backslash, and asString leaves the shared
//    separator as it found it;
//  - the comparison key is the composed text in upper case with '/';
//  - folding ".." keeps a relative text relative;
//  - add() refuses without changing the name, or appends below it.
#include "FuzzSupport.h"
#include "KZFileName.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

bool startsWithSeparator(const std::string& s)
{
    return !s.empty() && KZFileName::isDirSeparator(s[0]);
}

void checkName(const std::string& text, const std::string& other)
{
    KZFileName name(text);
    const std::string composed = name.compose();
    FUZZ_CHECK(name.normalizedString().find('\\') == std::string::npos);
    name.asString('\\');
    FUZZ_CHECK(KZFileName::sm_dirSeparatorChar == '/');
    std::string key = name.normalizedString();
    for (char& c : key)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    FUZZ_CHECK(KZFileName::getNormalizedString(composed) == key);
    name.asRelPathString();
    name.asParmeterisedString("A");
    name.isValid();
    name.isDriveRelPath();

    KZFileName copy(name);
    const KZFileName appended(other);
    if (!copy.add(appended))
        FUZZ_CHECK(copy.compose() == composed);
    copy.makeAbsPath(true);
    copy.makeRelPath();

    std::string path = text;
    KZFileName::removeRedundantDirSeperators(path);
    FUZZ_CHECK(startsWithSeparator(text) || !startsWithSeparator(path));
    KZFileName::getLeftDir(text, text.size() / 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    KZFileName::GlobalFileEnvironment = KZFileEnvironment();
    // Self-referring tables grow names to the bound; a low one keeps runs fast.
    KZFileName::GlobalFileEnvironment.setMaxGrowth(4096);
    std::istringstream symbols(input.untilNul());
    KZFileName::GlobalFileEnvironment.readSymbolsFromFile(symbols);
    KZFileName::GlobalFileEnvironment.setBaseDir(input.untilNul());
    const std::string text = input.untilNul();
    const std::string other = input.rest();
    checkName(text, other);
    checkName(other, text);
    return 0;
}
