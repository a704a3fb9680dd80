// The recipients of a notification class (BACnetDestination, clause 21). Any thread; no state.
#pragma once

#include "api/bacnet/Services.h"

#include <cstdint>
#include <optional>
#include <span>

namespace sim {

struct Destination {
    std::uint8_t Days = 0; // bit 0: Monday
    BACSTAC_TIME From{};
    BACSTAC_TIME To{}; // still within
    BACSTAC_RECIPIENT Recipient{};
    std::uint32_t Process = 0;
    bool Confirmed = false;
    std::uint8_t Transitions = 0; // bit n: transition n

    bool IsValidAt(const BACSTAC_DATE_TIME& now) const;
};

// Nothing when it is not encoded right.
std::optional<Destination> ReadDestination(std::span<const std::uint8_t> element);

bool IsSame(const BACSTAC_RECIPIENT& a, const BACSTAC_RECIPIENT& b);

} // namespace sim
