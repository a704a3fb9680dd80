// What a device sends to others without being asked: a request that its server takes to the recipient.
#pragma once

#include "api/bacnet/Services.h"

#include <cstdint>
#include <string>

namespace sim {

struct Message {
    BACSTAC_RECIPIENT To{};
    bool Confirmed = false;
    std::uint8_t Service = 0; // a confirmed or an unconfirmed service choice
    std::string Parameters;
};

} // namespace sim
