// The bare UDP limit: one process sends datagrams of a given size, another answers each, with nothing in between but
// the system calls.
#pragma once

#include <cstddef>

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

// Sizes of the two datagrams in octets, at most 1500.
struct TripSizes {
    std::size_t request;
    std::size_t answer;
};

// A ReadProperty of a present value, with all headers.
inline constexpr TripSizes kReadPropertyTrip{17, 25};

// Round trips a second over the given number of seconds, with the given number of requests outstanding.
double PingPongRate(Pinning pinning, int outstanding, double seconds, TripSizes sizes = kReadPropertyTrip);

} // namespace bench
