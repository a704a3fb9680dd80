#include "platform/stack/client/Values.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/ValueCodec.h"

namespace bacnet {

namespace {

void SetEmpty(BACSTAC_PROPERTY_CONTENTS& contents) {
    contents.DataType = TYPE_NONE;
    contents.ElementCount = 0;
}

// Callers give text as much room as they show; longer text is cut.
bool CutText(std::span<const std::uint8_t> value, BACSTAC_PROPERTY_CONTENTS& contents) {
    Reader reader(value);
    std::span<const std::uint8_t> octets;
    if (contents.BufferSize == 0 || !reader.CharacterString(octets) || !reader.AtEnd())
        return false;
    DecodeText(octets, static_cast<char*>(contents.Buffer), contents.BufferSize);
    contents.DataType = TYPE_STRING;
    contents.ElementCount = 1;
    return true;
}

BACSTAC_DATA_TYPE RecordType(const PropertyTarget& target) {
    if (target.Property != PROP_LOG_BUFFER)
        return TYPE_NONE;
    switch (target.Object.Type) {
    case OBJ_TREND_LOG:
        return TYPE_LOG_RECORD;
    case OBJ_TREND_LOG_MULTIPLE:
        return TYPE_LOG_MULTIPLE_RECORD;
    case OBJ_EVENT_LOG:
        return TYPE_EVENT_LOG_RECORD;
    default:
        return TYPE_NONE;
    }
}

} // namespace

BACSTAC_STATUS ValueInto(std::span<const std::uint8_t> value, const PropertyTarget& target,
                         BACSTAC_PROPERTY_CONTENTS& contents) {
    switch (DecodeProperty(value, target.Object.Type, target.Property, target.ArrayIndex, contents)) {
    case DecodeResult::ok:
    case DecodeResult::raw:
        return BACSTAC_OK;
    case DecodeResult::noRoom:
        if (CutText(value, contents))
            return BACSTAC_OK;
        SetEmpty(contents);
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    case DecodeResult::malformed:
        break;
    }
    SetEmpty(contents);
    return BACSTAC_STATUS_INVALID_ANSWER;
}

BACSTAC_STATUS ItemsInto(std::span<const std::uint8_t> items, const PropertyTarget& target,
                         BACSTAC_PROPERTY_CONTENTS& contents, bool& dropped) {
    const BACSTAC_DATA_TYPE type = RecordType(target);
    const DecodeResult result =
        type != TYPE_NONE ? DecodeRecords(items, type, contents)
                          : DecodeProperty(items, target.Object.Type, target.Property, BACSTAC_NO_INDEX, contents);
    dropped = result == DecodeResult::noRoom || result == DecodeResult::malformed;
    if (!dropped || contents.ElementCount != 0)
        return BACSTAC_OK;
    SetEmpty(contents);
    return result == DecodeResult::noRoom ? BACSTAC_STATUS_BUFFER_TOO_SMALL : BACSTAC_STATUS_INVALID_ANSWER;
}

} // namespace bacnet
