// Time text: the 12-hour clock output and strftime formatting.
#include "KZTime.h"

#include "CrossPlatformApi.h"

#include <ctime>
#include <ostream>
#include <sstream>

namespace {

std::string formatTime(const KZTime& time)
{
    std::ostringstream text;
    if (KZTime::PrintDateFlag)
        text << KZDate(time) << " ";
    const unsigned hour = time.Hour();
    text << (hour > 12 ? hour - 12 : hour) << ":";
    text.width(2);
    text.fill('0');
    text << time.Minute() << ":";
    text.width(2);
    text << time.Second() << " " << (hour <= 11 ? "am" : "pm");
    return text.str();
}

} // namespace

std::ostream& operator<<(std::ostream& out, const KZTime& time)
{
    return out << formatTime(time).c_str();
}

std::string KZTime::asString() const
{
    return formatTime(*this);
}

int KZTime::PrintDate(int flag)
{
    const int previous = PrintDateFlag;
    PrintDateFlag = flag;
    return previous;
}

std::string KZTime::asFormatString(const std::string& format) const
{
    const std::time_t t = get_time_t();
    std::tm local{};
    CrossPlatformApi::localtime_s(&local, &t);
    char buffer[64];
    const bool useDefault = format.empty();
    const std::size_t length =
        useDefault ? std::strftime(buffer, 9, "%H:%M:%S", &local) : std::strftime(buffer, 63, format.c_str(), &local);
    // strftime reports 0 when the text does not fit and leaves the buffer
    // undefined; a format that legitimately yields nothing also gives "".
    return length == 0 ? std::string() : std::string(buffer, length);
}
