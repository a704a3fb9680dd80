// The words that a description of a simulation uses for numbers, and the texts that it writes for composed values.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/ServiceChoice.h"
#include "simulator/model/Fault.h"
#include "simulator/model/Value.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace sim {

std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeOf(std::string_view text);     // "analog-input" or "0"
std::optional<BACSTAC_PROPERTY_ID> PropertyOf(std::string_view text);       // "present-value" or "85"
std::optional<BACSTAC_OBJECT_ID> ObjectIdOf(std::string_view text);         // "analog-input,1"
std::optional<BACSTAC_DEV_OBJ_PROP_REF> ReferenceOf(std::string_view text); // "analog-input,1,present-value"
std::optional<bacnet::ConfirmedService> ServiceOf(std::string_view text);   // "read-property"
std::optional<FaultKind> FaultKindOf(std::string_view text);                // "silent"
std::optional<bacnet::Segmentation> SegmentationOf(std::string_view text);  // "both", "transmit", "receive", "none"
std::optional<std::uint32_t> DatumKindOf(std::string_view text);            // "real": BACSTAC_LOG_*, or MIXED_KINDS
std::optional<BACSTAC_BIT_STRING> BitsOf(std::string_view text);            // "0100": bit 0 first, 96 at most
std::optional<std::vector<std::uint8_t>> OctetsOf(std::string_view text);   // "44 41A2 0000"
// "127.1.0.1" or "127.1.0.1:47808"; port 0 when none is given.
bool ParseAddress(std::string_view text, std::uint32_t& ip, std::uint16_t& port);

} // namespace sim
