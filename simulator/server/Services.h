// Answers the confirmed services of a simulated device from its objects: ReadProperty (clause 15.5),
// ReadPropertyMultiple (15.7) and ReadRange (15.8). The caller holds the device's lock. No allocation for a
// ReadProperty of a stored value.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadProperty.h"
#include "simulator/model/Device.h"

#include <cstdint>
#include <span>
#include <vector>

namespace sim {

// What a request comes to.
struct Outcome {
    enum class Kind : std::uint8_t { ack, error, reject, abort };
    Kind What = Kind::ack;
    std::uint32_t Class = 0;                  // of an error
    std::uint32_t Code = 0;                   // of an error; reason of a reject or an abort
    std::span<const std::uint8_t> Parameters; // of an acknowledgement: in the scratch memory, until its next use

    static Outcome Ack(std::span<const std::uint8_t> parameters) { return {Kind::ack, 0, 0, parameters}; }
    static Outcome Error(PropertyError error) { return {Kind::error, error.Class, error.Code, {}}; }
    static Outcome Reject(std::uint32_t reason) { return {Kind::reject, 0, reason, {}}; }
    static Outcome Abort(std::uint32_t reason) { return {Kind::abort, 0, reason, {}}; }
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

Outcome Serve(const Device& device, bacnet::ConfirmedService service, std::span<const std::uint8_t> parameters,
              const AnswerRoom& room, Scratch& scratch);

// ---- parts that the services share

std::uint32_t IndexOf(const bacnet::PropertyTarget& target); // or WHOLE
// A request without any parameters is told apart from one that is not encoded right.
Outcome Malformed(std::span<const std::uint8_t> parameters);
Outcome TooLong(const AnswerRoom& room);
bacnet::Writer AnswerWriter(const AnswerRoom& room, Scratch& scratch);
// The acknowledgement that was written, or that it is too long.
Outcome Written(const bacnet::Writer& writer, const AnswerRoom& room);

} // namespace sim
