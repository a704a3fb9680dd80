// How a confirmed request ended, and what the caller may say about it. The one place where these become a status of the
// contract is client/.
#pragma once

#include <cstdint>
#include <span>

namespace bacnet {

enum class Outcome : std::uint8_t {
    // The device answered.
    simple_ack,
    complex_ack, // the service's result is in the answer buffer
    error,       // the answer buffer holds what follows the service choice of the Error PDU (class and code, or more)
    reject,      // Reason
    abort,       // Reason; the device aborted
    // The device did not, or not well.
    timeout,          // silence after all retries
    segments_stopped, // a segmented answer broke off; it was aborted
    answer_too_long,  // the answer passed the buffer's limit; it was aborted
    invalid_answer,   // a segmented answer broke the protocol; it was aborted
    // We could not ask.
    no_route,         // no router to the network answered
    invalid_address,  // not the address of one station
    request_too_long, // does not fit the device's APDU, or the link's, and the device takes no segments, or too few
    send_failure,     // the operating system refused
    busy,             // all 256 invoke ids of the peer stayed taken for as long as a call may last
    cancelled,        // the caller's observer gave up
    shutdown,         // the layer is closing
};

const char* ToString(Outcome outcome);

struct CallResult {
    Outcome How = Outcome::timeout;
    std::uint8_t Reason = 0; // reject, abort: as sent by the device
    // The device has answered something, so it lives.
    bool Answered() const { return How <= Outcome::abort; }
};

// Asked on the calling thread some hundred times in ten seconds while a call waits; returning false gives the call up.
class ICallObserver {
public:
    virtual ~ICallObserver() = default;
    virtual bool KeepWaiting() = 0;
};

// Tells whether an answer (of the right peer, invoke id and service) can belong to the request; one that can't is
// dropped as if it had not come. Runs under a lock on the receiving thread: a plain comparison of octets, nothing that
// waits.
using AnswerCheck = bool (*)(std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer);

// Zero means: as the layer's settings say.
struct CallOptions {
    std::uint32_t TimeoutMs = 0; // of one attempt
    std::int16_t Retries = -1;   // -1: as the settings say
    std::uint16_t MaxApdu = 0;   // that the device accepts; 0: what the link carries
    // The device has said that it takes segmented requests: only then is one that does not fit sent in segments.
    bool TakesSegments = false;
    std::uint32_t MaxSegments = 0; // that it takes; 0: unknown, any number
    AnswerCheck Check = nullptr;
    ICallObserver* Observer = nullptr; // Call only; borrowed
};

} // namespace bacnet
