// Headers of application PDUs (ANSI/ASHRAE 135 clause 20.1): pure functions over octets, used by the transaction layer
// and by the simulator. Octets are of unknown origin; reserved bits are ignored as the standard asks.
#pragma once

#include "platform/stack/transport/Frame.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

enum class PduType : std::uint8_t {
    confirmed_request = 0,
    unconfirmed_request = 1,
    simple_ack = 2,
    complex_ack = 3,
    segment_ack = 4,
    error = 5,
    reject = 6,
    abort = 7,
};

enum class ApduError : std::uint8_t { none, too_short, unknown_type };

// Clause 20.1.2.4: how many segments the sender of a request takes, as the code on the wire.
enum class MaxSegments : std::uint8_t {
    unspecified = 0,
    two = 1,
    four = 2,
    eight = 3,
    sixteen = 4,
    thirty_two = 5,
    sixty_four = 6,
    more_than_64 = 7,
};

// Fields that a type does not have keep their defaults.
struct Apdu {
    PduType Type = PduType::unconfirmed_request;
    bool Segmented = false;                                  // confirmed request, complex ack
    bool MoreFollows = false;                                // confirmed request, complex ack
    bool SegmentedResponseAccepted = false;                  // confirmed request
    MaxSegments SegmentsAccepted = MaxSegments::unspecified; // confirmed request
    std::uint8_t MaxApduCode = 0;                            // confirmed request; see MaxApduFromCode
    bool FromServer = false;               // segment ack, abort: sent by the side that serves the request
    bool Negative = false;                 // segment ack
    std::uint8_t InvokeId = 0;             // all but the unconfirmed request
    std::uint8_t SequenceNumber = 0;       // segmented ones, segment ack
    std::uint8_t WindowSize = 0;           // segmented ones: proposed; segment ack: actual
    std::uint8_t Service = 0;              // service choice; also of acks and errors
    std::uint8_t Reason = 0;               // reject, abort
    std::span<const std::uint8_t> Payload; // service parameters, or one segment of them
};

ApduError DecodeApdu(std::span<const std::uint8_t> octets, Apdu& apdu);
const char* ToString(ApduError error);

// Puts the header of apdu.Type in front of the frame, which holds the payload already (Payload is not looked at). False
// when the frame has no room.
bool PrependApdu(Frame& frame, const Apdu& apdu);
// Octets that PrependApdu will take.
std::size_t ApduHeaderSize(const Apdu& apdu);

// Clause 20.1.2.5: 50, 128, 206, 480, 1024, 1476; 0 for a reserved code.
std::uint16_t MaxApduFromCode(std::uint8_t code);
// The largest code whose size is not above octets; 0 (50 octets) below that.
std::uint8_t MaxApduToCode(std::uint16_t octets);

inline constexpr std::uint16_t MAX_APDU_IP = 1476;

// Reject reasons, clause 18.9, and abort reasons, clause 18.10, as far as the stack itself says them.
inline constexpr std::uint8_t REJECT_UNRECOGNIZED_SERVICE = 9;
inline constexpr std::uint8_t ABORT_OTHER = 0;
inline constexpr std::uint8_t ABORT_BUFFER_OVERFLOW = 1;
inline constexpr std::uint8_t ABORT_INVALID_APDU_IN_THIS_STATE = 2;
inline constexpr std::uint8_t ABORT_SEGMENTATION_NOT_SUPPORTED = 4;
inline constexpr std::uint8_t ABORT_WINDOW_SIZE_OUT_OF_RANGE = 7;
inline constexpr std::uint8_t ABORT_OUT_OF_RESOURCES = 9;
inline constexpr std::uint8_t ABORT_TSM_TIMEOUT = 10;
inline constexpr std::uint8_t ABORT_APDU_TOO_LONG = 11;

} // namespace bacnet
