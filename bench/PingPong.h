// The bare UDP limit: one process sends 17 bytes (a ReadProperty request with its headers), another answers with 25
// bytes, with nothing in between but the system calls.
#pragma once

namespace bench {

struct Pinning {
    int client; // processor of the side that asks
    int server; // processor of the side that answers
};

// Processor sets that the figures name.
inline constexpr Pinning kOneCore{0, 0};
inline constexpr Pinning kTwoCores{0, 1};

// Pins the calling thread; -1 leaves it alone.
void PinThread(int processor);

// Round trips a second over the given number of seconds, with the given number of requests outstanding.
double PingPongRate(Pinning pinning, int outstanding, double seconds);

} // namespace bench
