// The one process-wide file environment, created empty when the library loads.
#include "KZFileEnvironment.h"

KZFileEnvironment KZFileName::GlobalFileEnvironment;

KZFileEnvironment& KZFileName::getGlobalFileEnvironment()
{
    return GlobalFileEnvironment;
}

KZFileEnvironment& KZFileName::getGlobalFileEnv()
{
    return GlobalFileEnvironment;
}
