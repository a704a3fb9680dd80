// Many devices that answer one Who-Is at once, each from an address of its own.
#pragma once

#include "bench/Child.h"

#include <array>
#include <chrono>
#include <cstdint>

namespace bench {

class Crowd {
public:
    // Devices of the instances 1 to count in a child process. They listen when the constructor returns.
    Crowd(std::uint32_t count, std::uint16_t port);
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    // Waits for the answer to the first Who-Is: when the last I-Am was given to the system.
    std::chrono::steady_clock::time_point LastSent();

private:
    std::array<int, 2> m_pipe; // before the child, which writes to it
    Child m_child;
};

} // namespace bench
