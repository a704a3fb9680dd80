// Times and limits of the transaction layer. Milliseconds unless said otherwise.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bacnet {

struct TransactionSettings {
    std::uint32_t TimeoutMs = 3000; // APDU timeout of one attempt
    std::uint8_t Retries = 3;       // attempts after the first
    std::uint64_t PatienceMs() const { return std::uint64_t{TimeoutMs} * (1U + Retries); } // of all attempts
    // A window of a segmented request is repeated after this time, as often as Retries says; a segmented answer, or
    // request of another station, has stopped after four times this (clauses 5.4.4.2, 5.4.4.3, 5.4.5.2).
    std::uint32_t SegmentTimeoutMs = 2000;
    std::uint32_t AnswerTimeoutMs = 300000; // longest life of a segmented answer as a whole, or of a segmented request
    std::uint8_t WindowSize = 32;           // segments that we take, or offer, between two acknowledgements, 1..127
    std::size_t AssemblyLimit = 64U * 1024 * 1024; // octets of all segmented answers under way
    std::uint32_t RouterWaitMs = 3000;             // for an answer to Who-Is-Router-To-Network
    // An invoke id whose request was sent more than once, or never answered, rests this long before it is used again,
    // so that a late answer finds nobody.
    std::uint32_t IdRestMs = 12000;
    // Where each peer's invoke ids begin. Who may be followed by another process on the same addresses gives a random
    // one, so that an answer to the other's request finds nobody; 0 begins with id 0.
    std::uint32_t IdSeed = 0;
    // A thread for each port that receives when no caller does. Only tests that drive everything from one thread go
    // without.
    bool BackgroundThread = true;
};

} // namespace bacnet
