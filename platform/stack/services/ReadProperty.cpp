#include "platform/stack/services/ReadProperty.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

constexpr unsigned valueTag = 3;

} // namespace

bool Answers(const PropertyTarget& requested, const PropertyTarget& answered) {
    const bool whichever = requested.Object.Type == OBJ_DEVICE && requested.Object.Instance == BACSTAC_MAX_INSTANCE &&
                           answered.Object.Type == OBJ_DEVICE;
    return (requested.Object == answered.Object || whichever) && requested.Property == answered.Property &&
           requested.ArrayIndex == answered.ArrayIndex;
}

void EncodePropertyTarget(const PropertyTarget& target, Writer& writer) {
    writer.ObjectId(target.Object, 0);
    writer.Enumerated(target.Property, 1);
    if (target.ArrayIndex >= 0)
        writer.Unsigned(static_cast<std::uint32_t>(target.ArrayIndex), 2);
}

bool DecodePropertyTarget(Reader& reader, PropertyTarget& target) {
    std::uint32_t index = 0;
    target.ArrayIndex = BACSTAC_NO_INDEX;
    reader.ObjectId(target.Object, 0);
    reader.Enumerated(target.Property, 1);
    if (reader.IsContext(2) && reader.Unsigned(index, 2)) {
        if (index > INT32_MAX)
            return reader.Fail(DecodeError::badLength); // beyond what a request of ours can name
        target.ArrayIndex = static_cast<std::int32_t>(index);
    }
    return reader.Ok();
}

void EncodeReadProperty(const PropertyTarget& request, Writer& writer) {
    EncodePropertyTarget(request, writer);
}

bool DecodeReadProperty(std::span<const std::uint8_t> parameters, PropertyTarget& request) {
    Reader reader(parameters);
    return DecodePropertyTarget(reader, request) && reader.AtEnd();
}

void BeginReadPropertyAck(const PropertyTarget& request, Writer& writer) {
    EncodePropertyTarget(request, writer);
    writer.Opening(valueTag);
}

void EndReadPropertyAck(Writer& writer) {
    writer.Closing(valueTag);
}

bool DecodeReadPropertyAck(std::span<const std::uint8_t> parameters, ReadPropertyAck& ack) {
    Reader reader(parameters);
    return DecodePropertyTarget(reader, ack.Target) && reader.Enclosed(valueTag, ack.Value);
}

} // namespace bacnet
