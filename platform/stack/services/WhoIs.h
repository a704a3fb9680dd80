// Who-Is and I-Am (ANSI/ASHRAE 135 clauses 16.10 and 16.9), both halves. Any thread; no state.
#pragma once

#include "platform/stack/services/ServiceChoice.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

// Instances asked for, both included; the whole range is sent without limits.
struct WhoIs {
    std::uint32_t Low = 0;
    std::uint32_t High = 4194303;

    bool AsksFor(std::uint32_t instance) const { return instance >= Low && instance <= High; }
};

void EncodeWhoIs(const WhoIs& request, Writer& writer);
bool DecodeWhoIs(std::span<const std::uint8_t> parameters, WhoIs& request);

struct IAm {
    std::uint32_t Device = 0;       // instance, at most 4194302
    std::uint32_t MaxApdu = 0;      // octets the device accepts in one APDU
    std::uint32_t Segmentation = 3; // Segmentation, or what the device says instead
    std::uint32_t Vendor = 0;
};

void EncodeIAm(const IAm& announcement, Writer& writer);
// False also for an identifier that is not of a device.
bool DecodeIAm(std::span<const std::uint8_t> parameters, IAm& announcement);

} // namespace bacnet
