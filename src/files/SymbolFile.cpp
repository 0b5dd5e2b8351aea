// Reading directory symbols from a symbol file: white-space separated
// NAME=VALUE tokens.
#include "KZFileEnvironment.h"

#include "CrossPlatformApi.h"
#include "../platform/NativeFiles.h"

#include <fstream>

void KZFileEnvironment::defineSymbol(const std::string& token)
{
    const std::size_t equals = token.find('=');
    const std::string name = equals == std::string::npos ? token : token.substr(0, equals);
    const std::string value = equals == std::string::npos ? token : token.substr(equals + 1);
    if (name == kBaseDirSymbol)
        setBaseDir(value);
    m_symbols[name] = value;
}

bool KZFileEnvironment::readSymbolsFromFile(std::istream& in)
{
    // The token survives a failed extraction, so a stream ending in white
    // space defines its last symbol twice (harmlessly) and reports false.
    std::string token;
    while (in.good()) {
        in >> token;
        if (!token.empty())
            defineSymbol(token);
    }
    return !in.fail();
}

bool KZFileEnvironment::readSymbolsFromFile(const KZFileName& file)
{
    KZFileName symbolFile(file);
    if (symbolFile.compose().empty()) {
        symbolFile.clear();
        symbolFile.parse(kDefaultSymbolFile);
    }
    if (!symbolFile.exists())
        return false;
    std::ifstream in = KZBasicServices::native::openForReading(
        CrossPlatformApi::fileSystemEncoding(symbolFile.compose()), std::ios::binary);
    return readSymbolsFromFile(in);
}
