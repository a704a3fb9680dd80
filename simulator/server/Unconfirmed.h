// The unconfirmed services that simulated devices take: Who-Is, Who-Has, the two time synchronizations and I-Am
// (clauses 16.9, 16.10, 16.7 and 16.8).
#pragma once

#include "platform/stack/services/WhoIs.h"
#include "simulator/model/Device.h"

#include <cstdint>
#include <span>
#include <vector>

namespace sim {

struct UnconfirmedRequest {
    bacnet::UnconfirmedService Service{};
    bacnet::WhoIs Who;                        // of a Who-Is
    std::uint32_t Announced = 0;              // of an I-Am
    std::span<const std::uint8_t> Parameters; // of the others
};

// False for an APDU that is none of those services, or that is not encoded right.
bool ReadUnconfirmed(std::span<const std::uint8_t> apdu, UnconfirmedRequest& request);

// The parameters of the I-Have that answers; empty when the device does not have the object. The caller holds the
// device's lock.
std::vector<std::uint8_t> AnswerWhoHas(const Device& device, std::span<const std::uint8_t> parameters);

// Sets the device's clock by a time synchronization of either form; one that names no certain time changes nothing.
// Takes the device's lock.
void SynchronizeTime(Device& device, const UnconfirmedRequest& request);

} // namespace sim
