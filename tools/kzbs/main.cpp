// kzbs - the library's services from the command line.
#include "kzbs_main.h"

int main(int argc, char** argv)
{
    return kzbs::kzbsMain(argc, argv);
}
