// A program outside the project, built against an installed library.
#include <CrossPlatformApi.h>

#include <iostream>

int main()
{
    std::cout << CrossPlatformApi::MulDiv(6, 7, 1) << '\n';
    return 0;
}
