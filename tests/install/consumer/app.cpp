// A program outside the project, built against an installed library.
#include <CrossPlatformApi.h>
#include <KZCalendar.h>
#include <KZDate.h>

#include <iostream>

int main()
{
    std::cout << CrossPlatformApi::MulDiv(6, 7, 1) << '\n';
    const KZDate easter = KZCalendar::easter(2024);
    std::cout << KZDate(1, 1, 2000).Hash() << ' ' << easter.DayOfMonth() << '.' << easter.Month() << '\n';
    return 0;
}
