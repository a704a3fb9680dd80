// ReadRange (ANSI/ASHRAE 135 clause 15.8), both halves. Any thread; no state, no allocation.
#pragma once

#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <span>

namespace bacnet {

struct ReadRangeRequest {
    PropertyTarget Target;
    BACSTAC_READ_RANGE_SPEC Range{};
};

// Kinds: 0 no range; 1 [3] by position; 2 [4] by time, the form of the 2001 standard; 4 [6] by sequence number; 5 [7]
// by time. Counts go out as they are. The weekday of a reference date is computed: the standard wants a specific time.
// False, nothing written, for a kind that does not exist.
bool EncodeReadRange(const ReadRangeRequest& request, Writer& writer);
bool DecodeReadRange(std::span<const std::uint8_t> parameters, ReadRangeRequest& request);

// The items are written between the two halves, each a complete encoding of its own.
// flags: BACSTAC_RANGE_FIRST_ITEM and so on, three bits.
void BeginReadRangeAck(const PropertyTarget& target, const BACSTAC_BIT_STRING& flags, std::uint32_t itemCount,
                       Writer& writer);
// firstSequenceNumber is sent when withSequence, which the standard wants for kinds 4 and 5 with items.
void EndReadRangeAck(bool withSequence, std::uint32_t firstSequenceNumber, Writer& writer);

struct ReadRangeAck {
    PropertyTarget Target;
    BACSTAC_BIT_STRING Flags{};
    std::uint32_t ItemCount = 0; // as the device says; the items themselves count
    std::span<const std::uint8_t> Items;
    std::uint32_t FirstSequenceNumber = 0; // 0 when the answer carries none
};

bool DecodeReadRangeAck(std::span<const std::uint8_t> parameters, ReadRangeAck& ack);

// 1 Monday to 7 Sunday for a date that exists, else 0.
std::uint32_t WeekdayOf(const BACSTAC_DATE& date);

} // namespace bacnet
