// CreateObject (ANSI/ASHRAE 135 clause 15.3) and DeleteObject (clause 15.4), both halves. Any thread; no allocation.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Reader;
class Writer;

// Initial values, each by BeginPropertyValue and EndPropertyValue (services/WriteProperty.h), stand between the two
// halves; without any, both are called with withValues false.
void BeginCreateObject(const BACSTAC_OBJECT_SPECIFIER& specifier, bool withValues, Writer& writer);
void EndCreateObject(bool withValues, Writer& writer);

struct CreateRequest {
    BACSTAC_OBJECT_SPECIFIER Specifier{};
    std::span<const std::uint8_t> Values; // the list of BACnetPropertyValue, for DecodePropertyValue
};

bool DecodeCreateObject(std::span<const std::uint8_t> parameters, CreateRequest& request);
void EncodeCreateObjectAck(const BACSTAC_OBJECT_ID& object, Writer& writer);
bool DecodeCreateObjectAck(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& object);

void EncodeDeleteObject(const BACSTAC_OBJECT_ID& object, Writer& writer);
bool DecodeDeleteObject(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& object);

} // namespace bacnet
