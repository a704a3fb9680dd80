#include "platform/stack/services/WhoHas.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

// Context tags of the request.
constexpr int lowTag = 0;
constexpr int highTag = 1;
constexpr int objectTag = 2;
constexpr int nameTag = 3;

} // namespace

void EncodeWhoHas(const WhoHas& request, Writer& writer) {
    EncodeWhoIs(request.Devices, writer); // the same limits, left out alike
    if (request.Object)
        writer.ObjectId(*request.Object, objectTag);
    else
        writer.CharacterString(request.Name, nameTag);
}

bool DecodeWhoHas(std::span<const std::uint8_t> parameters, WhoHas& request) {
    Reader reader(parameters);
    WhoHas decoded;
    if (reader.IsContext(lowTag)) {
        reader.Unsigned(decoded.Devices.Low, lowTag);
        reader.Unsigned(decoded.Devices.High, highTag);
    }
    if (reader.IsContext(objectTag)) {
        BACSTAC_OBJECT_ID object{};
        reader.ObjectId(object, objectTag);
        decoded.Object = object;
    } else {
        std::span<const std::uint8_t> name;
        reader.CharacterString(name, nameTag);
        decoded.Name = DecodeText(name);
    }
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = std::move(decoded);
    return true;
}

void EncodeIHave(const IHave& announcement, Writer& writer) {
    writer.ObjectId({OBJ_DEVICE, announcement.Device});
    writer.ObjectId(announcement.Object);
    writer.CharacterString(announcement.Name);
}

bool DecodeIHave(std::span<const std::uint8_t> parameters, IHave& announcement) {
    Reader reader(parameters);
    BACSTAC_OBJECT_ID device{};
    IHave decoded;
    std::span<const std::uint8_t> name;
    reader.ObjectId(device);
    reader.ObjectId(decoded.Object);
    reader.CharacterString(name);
    if (!reader.Ok() || device.Type != OBJ_DEVICE || device.Instance >= BACSTAC_MAX_INSTANCE)
        return false;
    decoded.Device = device.Instance;
    decoded.Name = DecodeText(name);
    announcement = std::move(decoded);
    return true;
}

} // namespace bacnet
