// The service parameters of an Error PDU (ANSI/ASHRAE 135 clause 20.1.7 and the Error productions of clause 21). Any
// thread; no state.
#pragma once

#include "platform/stack/services/ServiceChoice.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

struct ErrorAnswer {
    std::uint32_t Class = 0;
    std::uint32_t Code = 0;
    std::uint32_t FirstFailed = 0; // CreateObject: number of the first value that failed, 1-based; 0 when unknown
};

// service: of the request. Most answer a class and a code; CreateObject and some others put them into [0] and add what
// failed. Either form is understood whatever the service, because devices confuse them. False when neither is there.
bool DecodeErrorAnswer(ConfirmedService service, std::span<const std::uint8_t> parameters, ErrorAnswer& error);

void EncodeErrorAnswer(ConfirmedService service, const ErrorAnswer& error, Writer& writer);

} // namespace bacnet
