#include "platform/stack/services/WriteProperty.h"

#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

// Context tags of WriteProperty-Request, behind those of the target.
constexpr unsigned valueTag = 3;
constexpr int priorityTag = 4;

// Context tags of BACnetPropertyValue.
constexpr int itemPropertyTag = 0;
constexpr int itemIndexTag = 1;
constexpr unsigned itemValueTag = 2;
constexpr int itemPriorityTag = 3;

// Context tags of WriteAccessSpecification.
constexpr int objectTag = 0;
constexpr unsigned listTag = 1;

void PutPriority(int priority, int tag, Writer& writer) {
    if (priority != BACSTAC_NO_PRIORITY)
        writer.Unsigned(static_cast<std::uint32_t>(priority), tag);
}

bool GetPriority(Reader& reader, int tag, int& priority) {
    priority = BACSTAC_NO_PRIORITY;
    std::uint32_t number = 0;
    if (!reader.IsContext(static_cast<unsigned>(tag)))
        return reader.Ok();
    if (!reader.Unsigned(number, tag))
        return false;
    priority = number <= INT32_MAX ? static_cast<int>(number) : INT32_MAX;
    return true;
}

} // namespace

void BeginWriteProperty(const PropertyTarget& target, Writer& writer) {
    EncodePropertyTarget(target, writer);
    writer.Opening(valueTag);
}

void EndWriteProperty(int priority, Writer& writer) {
    writer.Closing(valueTag);
    PutPriority(priority, priorityTag, writer);
}

bool DecodeWriteProperty(std::span<const std::uint8_t> parameters, WriteRequest& request) {
    Reader reader(parameters);
    return DecodePropertyTarget(reader, request.Target) && reader.Enclosed(valueTag, request.Value) &&
           GetPriority(reader, priorityTag, request.Priority) && reader.AtEnd();
}

void BeginPropertyValue(BACSTAC_PROPERTY_ID property, std::int32_t arrayIndex, Writer& writer) {
    writer.Enumerated(property, itemPropertyTag);
    if (arrayIndex >= 0)
        writer.Unsigned(static_cast<std::uint32_t>(arrayIndex), itemIndexTag);
    writer.Opening(itemValueTag);
}

void EndPropertyValue(int priority, Writer& writer) {
    writer.Closing(itemValueTag);
    PutPriority(priority, itemPriorityTag, writer);
}

bool DecodePropertyValue(Reader& reader, WriteRequest& request) {
    std::uint32_t index = 0;
    request.Target.ArrayIndex = BACSTAC_NO_INDEX;
    reader.Enumerated(request.Target.Property, itemPropertyTag);
    if (reader.IsContext(itemIndexTag) && reader.Unsigned(index, itemIndexTag)) {
        if (index > INT32_MAX)
            return reader.Fail(DecodeError::badLength);
        request.Target.ArrayIndex = static_cast<std::int32_t>(index);
    }
    return reader.Enclosed(itemValueTag, request.Value) && GetPriority(reader, itemPriorityTag, request.Priority);
}

void BeginWriteObject(const BACSTAC_OBJECT_ID& object, Writer& writer) {
    writer.ObjectId(object, objectTag);
    writer.Opening(listTag);
}

void EndWriteObject(Writer& writer) {
    writer.Closing(listTag);
}

bool WpmRequestReader::Next(WriteRequest& request) {
    while (!m_open || m_reader.IsClosing(listTag)) {
        if (m_open)
            m_reader.Close(listTag);
        m_open = false;
        if (m_reader.AtEnd() || !m_reader.ObjectId(m_object, objectTag) || !m_reader.Open(listTag))
            return false;
        m_open = true;
    }
    request.Target.Object = m_object;
    return DecodePropertyValue(m_reader, request);
}

} // namespace bacnet
