#include "platform/stack/services/WhoIs.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

void EncodeWhoIs(const WhoIs& request, Writer& writer) {
    if (request.Low == 0 && request.High >= BACSTAC_MAX_INSTANCE)
        return;
    writer.Unsigned(request.Low, 0);
    writer.Unsigned(request.High, 1);
}

bool DecodeWhoIs(std::span<const std::uint8_t> parameters, WhoIs& request) {
    WhoIs decoded;
    if (!parameters.empty()) {
        Reader reader(parameters);
        if (!reader.Unsigned(decoded.Low, 0) || !reader.Unsigned(decoded.High, 1))
            return false;
    }
    request = decoded;
    return true;
}

void EncodeIAm(const IAm& announcement, Writer& writer) {
    writer.ObjectId({OBJ_DEVICE, announcement.Device});
    writer.Unsigned(announcement.MaxApdu);
    writer.Enumerated(announcement.Segmentation);
    writer.Unsigned(announcement.Vendor);
}

bool DecodeIAm(std::span<const std::uint8_t> parameters, IAm& announcement) {
    Reader reader(parameters);
    BACSTAC_OBJECT_ID id{};
    IAm decoded;
    reader.ObjectId(id);
    reader.Unsigned(decoded.MaxApdu);
    reader.Enumerated(decoded.Segmentation);
    reader.Unsigned(decoded.Vendor);
    if (!reader.Ok() || id.Type != OBJ_DEVICE || id.Instance >= BACSTAC_MAX_INSTANCE)
        return false;
    decoded.Device = id.Instance;
    announcement = decoded;
    return true;
}

} // namespace bacnet
