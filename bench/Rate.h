// The rate of a call that is made over and over.
#pragma once

#include <chrono>
#include <cstdint>

namespace bench {

// Calls a second over some seconds, one after the other on this thread.
template <class Call>
double CallRate(double seconds, Call call) {
    using Clock = std::chrono::steady_clock;
    std::uint64_t calls = 0;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration<double>(seconds);
    while ((calls & 0x3F) != 0 || Clock::now() < end) {
        call();
        ++calls;
    }
    return static_cast<double>(calls) / std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace bench
