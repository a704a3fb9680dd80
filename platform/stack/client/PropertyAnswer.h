// What ReadProperty and its like do with an answer. Any thread; no state.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <span>

namespace bacnet {

// For CallOptions::Check. An answer about another property is of a request that was given up: it is dropped. One that
// cannot be decoded is let through, so that the caller learns of it.
bool IsOfSameProperty(std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer);

// The encoded value in a ReadProperty answer; false when it is none about target.
bool ReadAnswer(std::span<const std::uint8_t> answer, const PropertyTarget& target,
                std::span<const std::uint8_t>& value);

// The decoded value, as ValueInto says.
BACSTAC_STATUS ReadAnswerInto(std::span<const std::uint8_t> answer, const PropertyTarget& target,
                              BACSTAC_PROPERTY_CONTENTS& contents);

} // namespace bacnet
