// ReadProperty (ANSI/ASHRAE 135 clause 15.5), both halves. Values stay encoded: spans refer to the octets they were
// decoded from. Any thread; no state, no allocation.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Reader;
class Writer;

// What ReadProperty, ReadPropertyMultiple and ReadRange name: a property of an object, or one element of it.
struct PropertyTarget {
    BACSTAC_OBJECT_ID Object{};
    BACSTAC_PROPERTY_ID Property = 0;
    std::int32_t ArrayIndex = BACSTAC_NO_INDEX; // not negative: one element (0 is the size)
    friend bool operator==(const PropertyTarget&, const PropertyTarget&) = default;
};

// Whether an answer about answered belongs to a request for requested. A device answers the instance 4194303, which
// means whichever device it is, with its own.
bool Answers(const PropertyTarget& requested, const PropertyTarget& answered);

// The three leading parameters that these services share: [0] object, [1] property, [2] array index if there is one.
void EncodePropertyTarget(const PropertyTarget& target, Writer& writer);
bool DecodePropertyTarget(Reader& reader, PropertyTarget& target);

void EncodeReadProperty(const PropertyTarget& request, Writer& writer);
bool DecodeReadProperty(std::span<const std::uint8_t> parameters, PropertyTarget& request);

// The value, as one or more application-tagged or constructed items, is written between the two halves.
void BeginReadPropertyAck(const PropertyTarget& request, Writer& writer);
void EndReadPropertyAck(Writer& writer);

struct ReadPropertyAck {
    PropertyTarget Target;
    std::span<const std::uint8_t> Value; // what stands between the tags [3]
};

bool DecodeReadPropertyAck(std::span<const std::uint8_t> parameters, ReadPropertyAck& ack);

} // namespace bacnet
