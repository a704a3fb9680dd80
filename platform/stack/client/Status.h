// The one place where the outcome of a call becomes a status of the contract. Any thread; no state.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/ServiceChoice.h"
#include "platform/stack/transaction/Outcome.h"

#include <cstdint>
#include <span>

namespace bacnet {

// Kinds of BACSTAC_ERROR.
inline constexpr std::uint32_t ERROR_KIND_REFUSED = 1; // reject or abort: Class is the reason
inline constexpr std::uint32_t ERROR_KIND_ERROR = 2;

// answer: what the call left in its buffer. error may be null; it is filled for an Error, Reject or Abort PDU.
BACSTAC_STATUS ToStatus(const CallResult& result, ConfirmedService service, std::span<const std::uint8_t> answer,
                        BACSTAC_ERROR* error);

// Of what was sent without waiting for an answer.
BACSTAC_STATUS ToStatus(Outcome sent);

// Whether single reads may do what a multiple read could not: the device does not know the service, or the answer was
// too much for it. Never after a time-out or any other local failure.
bool CanReadSingly(BACSTAC_STATUS status, const BACSTAC_ERROR& error);

// Whether the answer, not the request's content, was the trouble: asking for less may help.
bool IsTooMuch(BACSTAC_STATUS status, const BACSTAC_ERROR& error);

// Whether the device says that it does not have the service at all.
bool LacksService(BACSTAC_STATUS status, const BACSTAC_ERROR& error);

} // namespace bacnet
