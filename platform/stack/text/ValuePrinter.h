// Prints decoded values by walking the type table. One thread uses one printer; nothing here throws.
#pragma once

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/text/TextWriter.h"

namespace bacnet {

class ValuePrinter {
public:
    // references: the buffer that offsets within the values count from.
    ValuePrinter(TextWriter& out, const BufferView& references) : m_out(out), m_buffer(references) {}

    // count elements from offset on: one as it is, any other number of them in braces.
    void Elements(const TypeInfo& type, std::uint64_t offset, std::uint32_t count, ENUM_TYPE_ID names);
    // names: of an enumerated value or of the bits of a bit string.
    void Element(const TypeInfo& type, const std::uint8_t* element, ENUM_TYPE_ID names);

private:
    void List(const TypeInfo& type, std::uint64_t offset, std::uint32_t count, ENUM_TYPE_ID names);
    void Primitive(const TypeInfo& type, const std::uint8_t* element, ENUM_TYPE_ID names);
    bool Phrase(const TypeInfo& type, const std::uint8_t* element);
    void Sequence(const TypeInfo& type, const std::uint8_t* record);
    void Choice(const TypeInfo& type, const std::uint8_t* record);
    void Variant(const TypeInfo& type, const std::uint8_t* record);
    void TimeValue(const std::uint8_t* record);
    void MemberValue(const Member& member, const std::uint8_t* record);
    void Any(const std::uint8_t* anyValue, ENUM_TYPE_ID names);

    TextWriter& m_out;
    BufferView m_buffer;
    int m_depth = 0;
};

} // namespace bacnet
