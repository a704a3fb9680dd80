#include "platform/stack/services/ReadPropertyMultiple.h"

#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

// Context tags of ReadAccessSpecification and ReadAccessResult.
constexpr int objectTag = 0;
constexpr unsigned listTag = 1;
constexpr int requestPropertyTag = 0;
constexpr int requestIndexTag = 1;
constexpr int resultPropertyTag = 2;
constexpr int resultIndexTag = 3;
constexpr unsigned resultValueTag = 4;
constexpr unsigned resultErrorTag = 5;

void StartObject(Writer& writer, const BACSTAC_OBJECT_ID& object, BACSTAC_OBJECT_ID& current, bool& open) {
    if (open && object == current)
        return;
    if (open)
        writer.Closing(listTag);
    writer.ObjectId(object, objectTag);
    writer.Opening(listTag);
    current = object;
    open = true;
}

void PutReference(Writer& writer, const PropertyTarget& target, int propertyTag, int indexTag) {
    writer.Enumerated(target.Property, propertyTag);
    if (target.ArrayIndex >= 0)
        writer.Unsigned(static_cast<std::uint32_t>(target.ArrayIndex), indexTag);
}

// Moves to the next reference, over the ends and starts of objects, also of such that hold none. False at the end of
// the octets and on a fault.
bool NextReference(Reader& reader, BACSTAC_OBJECT_ID& object, bool& open) {
    while (!open || reader.IsClosing(listTag)) {
        if (open)
            reader.Close(listTag);
        open = false;
        if (reader.AtEnd() || !reader.ObjectId(object, objectTag) || !reader.Open(listTag))
            return false;
        open = true;
    }
    return reader.Ok();
}

bool GetReference(Reader& reader, PropertyTarget& target, int propertyTag, int indexTag) {
    std::uint32_t index = 0;
    target.ArrayIndex = BACSTAC_NO_INDEX;
    reader.Enumerated(target.Property, propertyTag);
    if (reader.IsContext(static_cast<unsigned>(indexTag)) && reader.Unsigned(index, indexTag)) {
        if (index > INT32_MAX)
            return reader.Fail(DecodeError::badLength);
        target.ArrayIndex = static_cast<std::int32_t>(index);
    }
    return reader.Ok();
}

} // namespace

void RpmRequestWriter::Add(const PropertyTarget& target) {
    StartObject(m_writer, target.Object, m_object, m_open);
    PutReference(m_writer, target, requestPropertyTag, requestIndexTag);
}

void RpmRequestWriter::Finish() {
    if (m_open)
        m_writer.Closing(listTag);
    m_open = false;
}

bool RpmRequestReader::Next(PropertyTarget& target) {
    if (!NextReference(m_reader, m_object, m_open) ||
        !GetReference(m_reader, target, requestPropertyTag, requestIndexTag))
        return false;
    target.Object = m_object;
    return true;
}

void RpmAckWriter::Head(const PropertyTarget& target) {
    StartObject(m_writer, target.Object, m_object, m_open);
    PutReference(m_writer, target, resultPropertyTag, resultIndexTag);
}

void RpmAckWriter::BeginValue(const PropertyTarget& target) {
    Head(target);
    m_valueFrom = m_writer.Size();
    m_writer.Opening(resultValueTag);
}

void RpmAckWriter::EndValue() {
    m_writer.Closing(resultValueTag);
}

void RpmAckWriter::Error(const PropertyTarget& target, std::uint32_t errorClass, std::uint32_t errorCode) {
    Head(target);
    m_valueFrom = m_writer.Size();
    ErrorInstead(errorClass, errorCode);
}

void RpmAckWriter::ErrorInstead(std::uint32_t errorClass, std::uint32_t errorCode) {
    m_writer.Rewind(m_valueFrom);
    m_writer.Opening(resultErrorTag);
    m_writer.Enumerated(errorClass);
    m_writer.Enumerated(errorCode);
    m_writer.Closing(resultErrorTag);
}

void RpmAckWriter::Finish() {
    if (m_open)
        m_writer.Closing(listTag);
    m_open = false;
}

bool RpmAckReader::Next(RpmResult& result) {
    if (!NextReference(m_reader, m_object, m_open) ||
        !GetReference(m_reader, result.Target, resultPropertyTag, resultIndexTag))
        return false;
    result.Target.Object = m_object;
    result.Success = m_reader.IsOpening(resultValueTag);
    if (result.Success)
        return m_reader.Enclosed(resultValueTag, result.Value);
    result.Value = {};
    m_reader.Open(resultErrorTag);
    m_reader.Enumerated(result.ErrorClass);
    m_reader.Enumerated(result.ErrorCode);
    return m_reader.Close(resultErrorTag);
}

} // namespace bacnet
