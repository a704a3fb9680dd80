// Answers the confirmed services of a simulated device from its objects. The caller holds the device's lock. No
// allocation for a ReadProperty of a stored value.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadProperty.h"
#include "simulator/model/Device.h"
#include "simulator/server/Requester.h"

#include <cstdint>
#include <span>
#include <vector>

namespace sim {

// What a request comes to.
struct Outcome {
    enum class Kind : std::uint8_t {
        ack,
        done,
        error,
        reject,
        abort
    }; // done: an acknowledgement of nothing but success
    Kind What = Kind::ack;
    std::uint32_t Class = 0;                  // of an error
    std::uint32_t Code = 0;                   // of an error; reason of a reject or an abort
    std::span<const std::uint8_t> Parameters; // of an acknowledgement: in the scratch memory, until its next use
    std::uint32_t FailedElement = 0;          // of an error: its number from 1, where the service tells it
    bacnet::PropertyTarget Failed;            // of an error of WritePropertyMultiple
    bool Restarts = false;                    // the device restarts as soon as it has answered,
    RestartReason Reason{};                   // for this reason

    static Outcome Ack(std::span<const std::uint8_t> parameters) {
        return {Kind::ack, 0, 0, parameters, 0, {}, false, {}};
    }
    static Outcome Done() { return {Kind::done, 0, 0, {}, 0, {}, false, {}}; }
    static Outcome Error(PropertyError error, std::uint32_t failedElement = 0) {
        return {Kind::error, error.Class, error.Code, {}, failedElement, {}, false, {}};
    }
    static Outcome Reject(std::uint32_t reason) { return {Kind::reject, 0, reason, {}, 0, {}, false, {}}; }
    static Outcome Abort(std::uint32_t reason) { return {Kind::abort, 0, reason, {}, 0, {}, false, {}}; }
    // Success, or the error.
    static Outcome Of(PropertyError error) { return error.Ok() ? Done() : Error(error); }
};

// How long the answer to one request may be.
struct AnswerRoom {
    std::size_t Octets = 0;    // of all service parameters together, at most MAX_ANSWER
    bool Segmentation = false; // asker and device can do it; otherwise that is why an answer is too long
};

// The longest answer the simulator gives.
inline constexpr std::size_t MAX_ANSWER = 256 * 1024;

// Working memory of one thread.
struct Scratch {
    Scratch() : Answer(MAX_ANSWER), Items(MAX_ANSWER) {}
    std::vector<std::uint8_t> Answer;
    std::vector<std::uint8_t> Items;
    LogRecord Record;
};

Outcome Serve(Device& device, bacnet::ConfirmedService service, std::span<const std::uint8_t> parameters,
              const AnswerRoom& room, Scratch& scratch, const Requester& from = {});

// The service parameters of the Error that an outcome is (the Error productions of clause 21).
void EncodeError(bacnet::ConfirmedService service, const Outcome& outcome, bacnet::Writer& to);

} // namespace sim
