#include "platform/stack/services/DeviceManagement.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadRange.h"

namespace bacnet {

namespace {

// Context tags.
constexpr int durationTag = 0;
constexpr int communicationValueTag = 1;
constexpr int communicationPasswordTag = 2;
constexpr int stateTag = 0;
constexpr int reinitializePasswordTag = 1;

void PutPassword(std::string_view password, int tag, Writer& writer) {
    if (!password.empty())
        writer.CharacterString(password, tag);
}

void GetPassword(Reader& reader, int tag, std::span<const std::uint8_t>& password) {
    if (reader.IsContext(static_cast<unsigned>(tag)))
        reader.CharacterString(password, tag);
}

} // namespace

void EncodeCommunicationControl(std::uint32_t minutes, std::uint32_t value, std::string_view password, Writer& writer) {
    if (minutes != 0)
        writer.Unsigned(minutes, durationTag);
    writer.Enumerated(value, communicationValueTag);
    PutPassword(password, communicationPasswordTag, writer);
}

bool DecodeCommunicationControl(std::span<const std::uint8_t> parameters, CommunicationRequest& request) {
    Reader reader(parameters);
    CommunicationRequest decoded;
    if (reader.IsContext(durationTag))
        reader.Unsigned(decoded.Minutes, durationTag);
    reader.Enumerated(decoded.Value, communicationValueTag);
    GetPassword(reader, communicationPasswordTag, decoded.Password);
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = decoded;
    return true;
}

void EncodeReinitialize(std::uint32_t state, std::string_view password, Writer& writer) {
    writer.Enumerated(state, stateTag);
    PutPassword(password, reinitializePasswordTag, writer);
}

bool DecodeReinitialize(std::span<const std::uint8_t> parameters, ReinitializeRequest& request) {
    Reader reader(parameters);
    ReinitializeRequest decoded;
    reader.Enumerated(decoded.State, stateTag);
    GetPassword(reader, reinitializePasswordTag, decoded.Password);
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = decoded;
    return true;
}

void EncodeTimeSynchronization(const BACSTAC_DATE_TIME& time, Writer& writer) {
    BACSTAC_DATE date = time.Date;
    date.Weekday = WeekdayOf(date);
    writer.Date(date);
    writer.Time(time.Time);
}

bool DecodeTimeSynchronization(std::span<const std::uint8_t> parameters, BACSTAC_DATE_TIME& time) {
    Reader reader(parameters);
    BACSTAC_DATE_TIME decoded{};
    if (!reader.Date(decoded.Date) || !reader.Time(decoded.Time) || !reader.AtEnd())
        return false;
    time = decoded;
    return true;
}

} // namespace bacnet
