// Who-Has and I-Have (ANSI/ASHRAE 135 clause 16.9), both halves. Any thread; no state.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/WhoIs.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace bacnet {

class Writer;

// Asks the devices of a range for an object, by its identifier or else by its name.
struct WhoHas {
    WhoIs Devices;
    std::optional<BACSTAC_OBJECT_ID> Object;
    std::string Name; // UTF-8
};

void EncodeWhoHas(const WhoHas& request, Writer& writer);
bool DecodeWhoHas(std::span<const std::uint8_t> parameters, WhoHas& request);

struct IHave {
    std::uint32_t Device = 0; // instance
    BACSTAC_OBJECT_ID Object{};
    std::string Name; // UTF-8
};

void EncodeIHave(const IHave& announcement, Writer& writer);
// False also for an identifier that is not of a device.
bool DecodeIHave(std::span<const std::uint8_t> parameters, IHave& announcement);

} // namespace bacnet
