// The 256 invoke ids of one peer. They are given out in turn, so that each rests as long as can be, and one that was
// freed with a rest is not given out before that is over. No lock, no clock: both are the owner's.
#pragma once

#include "platform/stack/transaction/Clock.h"

#include <bitset>
#include <cstdint>
#include <deque>

namespace bacnet {

class InvokeIds {
public:
    static constexpr std::size_t COUNT = 256;

    explicit InvokeIds(std::uint8_t first = 0) : m_next(first) {}

    // False when all are in use or at rest.
    bool Take(Millis now, std::uint8_t& id);
    // restUntil <= now: none. Rests are expected in the order of their ends, as equal rests are.
    void Free(std::uint8_t id, Millis now, Millis restUntil);

private:
    struct Rest {
        Millis Until;
        std::uint8_t Id;
    };
    std::bitset<COUNT> m_taken; // in use or at rest
    std::deque<Rest> m_resting;
    std::uint8_t m_next;
};

} // namespace bacnet
