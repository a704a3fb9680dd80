#include "module/history/Clock.h"

#include <chrono>
#include <ctime>

SYSTEM_TIME CSystemClock::GetLocalSystemTime() const {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto second = floor<seconds>(now);
    const std::time_t seconds = system_clock::to_time_t(second);
    std::tm local{};
#if defined(_WIN32)
    ::localtime_s(&local, &seconds);
#else
    ::localtime_r(&seconds, &local);
#endif
    SYSTEM_TIME time{};
    time.Year = static_cast<std::uint16_t>(local.tm_year + 1900);
    time.Month = static_cast<std::uint16_t>(local.tm_mon + 1);
    time.DayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
    time.Day = static_cast<std::uint16_t>(local.tm_mday);
    time.Hour = static_cast<std::uint16_t>(local.tm_hour);
    time.Minute = static_cast<std::uint16_t>(local.tm_min);
    time.Second = static_cast<std::uint16_t>(local.tm_sec);
    time.Milliseconds = static_cast<std::uint16_t>((now - second).count());
    return time;
}

std::uint32_t CSystemClock::TickCount() const {
    using namespace std::chrono;
    return static_cast<std::uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}
