// Answers ReadRange (clause 15.8) from the log buffers and the lists of a simulated device. The caller holds the
// device's lock.
#pragma once

#include "simulator/server/Services.h"

namespace sim {

Outcome AnswerReadRange(const Device& device, std::span<const std::uint8_t> parameters, const AnswerRoom& room,
                        Scratch& scratch);

} // namespace sim
