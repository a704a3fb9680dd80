// WriteProperty (ANSI/ASHRAE 135 clause 15.9) and WritePropertyMultiple (clause 15.10), both halves. Values stay
// encoded. Any thread; no allocation.
#pragma once

#include "platform/stack/codec/Reader.h"
#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

// The value is written between the two halves. priority 1..16, or BACSTAC_NO_PRIORITY.
void BeginWriteProperty(const PropertyTarget& target, Writer& writer);
void EndWriteProperty(int priority, Writer& writer);

struct WriteRequest {
    PropertyTarget Target;
    std::span<const std::uint8_t> Value;
    int Priority = BACSTAC_NO_PRIORITY;
};

bool DecodeWriteProperty(std::span<const std::uint8_t> parameters, WriteRequest& request);

// One BACnetPropertyValue (clause 21): of WritePropertyMultiple and of CreateObject. Between the halves the value.
void BeginPropertyValue(BACSTAC_PROPERTY_ID property, std::int32_t arrayIndex, Writer& writer);
void EndPropertyValue(int priority, Writer& writer);
// The object of request.Target is left alone.
bool DecodePropertyValue(Reader& reader, WriteRequest& request);

// Values of one object stand between the two halves; objects follow one another.
void BeginWriteObject(const BACSTAC_OBJECT_ID& object, Writer& writer);
void EndWriteObject(Writer& writer);

// Walks a WritePropertyMultiple request: one value at a time.
class WpmRequestReader {
public:
    explicit WpmRequestReader(std::span<const std::uint8_t> parameters) : m_reader(parameters) {}
    bool Next(WriteRequest& request); // false at the end and on a fault; Ok tells which
    bool Ok() const { return m_reader.Ok(); }

private:
    Reader m_reader;
    BACSTAC_OBJECT_ID m_object{};
    bool m_open = false;
};

} // namespace bacnet
