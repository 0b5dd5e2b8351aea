// Stopwatch, tick count, sleep and the small arithmetic and identity helpers.
#include "CrossPlatformApi.h"

#include <QElapsedTimer>
#include <QUuid>

#include <cstdint>
#include <unistd.h>

namespace CrossPlatformApi {

MilliSecTimer::MilliSecTimer() : m_timer(new QElapsedTimer)
{
    m_timer->start();
}
MilliSecTimer::~MilliSecTimer()
{
    delete m_timer;
}
void MilliSecTimer::start()
{
    m_timer->start();
}
std::int64_t MilliSecTimer::elapsed() const
{
    return m_timer->elapsed();
}

// The monotonic clock's own reading: on Linux its origin is the system's start,
// which is what the Windows tick count counts.
std::int64_t getTickCount()
{
    QElapsedTimer now;
    now.start();
    return now.msecsSinceReference();
}

void sleep(unsigned int milliseconds)
{
    const std::uint32_t micros = static_cast<std::uint32_t>(milliseconds) * 1000u;
    if (micros != 0)
        ::usleep(micros);
}

int MulDiv(int number, int numerator, int denominator)
{
    if (denominator == 0)
        return -1;
    const std::int64_t quotient = static_cast<std::int64_t>(number) * numerator / denominator;
    return static_cast<int>(static_cast<std::uint32_t>(quotient));
}

unsigned int rotl(unsigned int value, unsigned int shift)
{
    const std::uint32_t v = value;
    shift %= 32;
    return shift == 0 ? v : static_cast<std::uint32_t>((v << shift) | (v >> (32 - shift)));
}

std::string getUUID()
{
    return QUuid::createUuid().toString().toLatin1().toStdString();
}

} // namespace CrossPlatformApi
