// DeviceCommunicationControl, ReinitializeDevice and the two time synchronizations (ANSI/ASHRAE 135 clauses 16.1, 16.4,
// 16.7 and 16.8), both halves. Any thread; no allocation.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace bacnet {

class Writer;

struct CommunicationRequest {
    std::uint32_t Minutes = 0; // 0: no duration, that is until further notice
    std::uint32_t Value = 0;   // BACSTAC_DCC_VALUE
    // As encoded, character set octet first; empty when there is none.
    std::span<const std::uint8_t> Password;
};

struct ReinitializeRequest {
    std::uint32_t State = 0; // BACSTAC_REINIT_TYPE
    std::span<const std::uint8_t> Password;
};

// password: UTF-8; empty sends none.
void EncodeCommunicationControl(std::uint32_t minutes, std::uint32_t value, std::string_view password, Writer& writer);
bool DecodeCommunicationControl(std::span<const std::uint8_t> parameters, CommunicationRequest& request);

void EncodeReinitialize(std::uint32_t state, std::string_view password, Writer& writer);
bool DecodeReinitialize(std::span<const std::uint8_t> parameters, ReinitializeRequest& request);

// The same for local time and UTC; the weekday is computed, since the standard wants a specific date.
void EncodeTimeSynchronization(const BACSTAC_DATE_TIME& time, Writer& writer);
bool DecodeTimeSynchronization(std::span<const std::uint8_t> parameters, BACSTAC_DATE_TIME& time);

} // namespace bacnet
