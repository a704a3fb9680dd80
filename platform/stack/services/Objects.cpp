#include "platform/stack/services/Objects.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

constexpr unsigned specifierTag = 0;
constexpr int typeTag = 0;
constexpr int identifierTag = 1;
constexpr unsigned valuesTag = 1;

bool OneObjectId(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& object) {
    Reader reader(parameters);
    BACSTAC_OBJECT_ID decoded{};
    if (!reader.ObjectId(decoded) || !reader.AtEnd())
        return false;
    object = decoded;
    return true;
}

} // namespace

void BeginCreateObject(const BACSTAC_OBJECT_SPECIFIER& specifier, bool withValues, Writer& writer) {
    writer.Opening(specifierTag);
    if (specifier.ByIdentifier != 0)
        writer.ObjectId({specifier.Type, specifier.Instance}, identifierTag);
    else
        writer.Enumerated(specifier.Type, typeTag);
    writer.Closing(specifierTag);
    if (withValues)
        writer.Opening(valuesTag);
}

void EndCreateObject(bool withValues, Writer& writer) {
    if (withValues)
        writer.Closing(valuesTag);
}

bool DecodeCreateObject(std::span<const std::uint8_t> parameters, CreateRequest& request) {
    Reader reader(parameters);
    CreateRequest decoded;
    reader.Open(specifierTag);
    if (reader.IsContext(identifierTag)) {
        BACSTAC_OBJECT_ID id{};
        reader.ObjectId(id, identifierTag);
        decoded.Specifier = {1, id.Type, id.Instance};
    } else {
        reader.Enumerated(decoded.Specifier.Type, typeTag);
    }
    reader.Close(specifierTag);
    if (reader.IsOpening(valuesTag))
        reader.Enclosed(valuesTag, decoded.Values);
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = decoded;
    return true;
}

void EncodeCreateObjectAck(const BACSTAC_OBJECT_ID& object, Writer& writer) {
    writer.ObjectId(object);
}

bool DecodeCreateObjectAck(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& object) {
    return OneObjectId(parameters, object);
}

void EncodeDeleteObject(const BACSTAC_OBJECT_ID& object, Writer& writer) {
    writer.ObjectId(object);
}

bool DecodeDeleteObject(std::span<const std::uint8_t> parameters, BACSTAC_OBJECT_ID& object) {
    return OneObjectId(parameters, object);
}

} // namespace bacnet
