#include "host/bacnet/LogRecordJson.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Records.h"
#include "host/bacnet/ValueJson.h"
#include "platform/stack/codec/Elements.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace {

// The kinds of a trend log's datum; those of a log-multiple's items stand one before.
constexpr const char* DATUM_KINDS[] = {"log-status", "boolean", "real",    "enumerated",  "unsigned", "signed",
                                       "bit-string", "null",    "failure", "time-change", "any"};

Json KindName(std::uint32_t kind) {
    return kind < std::size(DATUM_KINDS) ? Json(DATUM_KINDS[kind]) : Json(kind);
}

// A value of one of the types that need nothing but their own bytes.
template <class T>
Json Plain(BACSTAC_DATA_TYPE type, T value) {
    return ElementJson({type, &value, sizeof value, 1}, OBJ_NO_TYPE, PROP_NO_PROPERTY);
}

Json DatumValue(const BACSTAC_PROPERTY_CONTENTS& contents, std::uint32_t kind, const BACSTAC_LOG_VALUE& value) {
    switch (kind) {
    case BACSTAC_LOG_STATUS:
        return BitsText(value.LogStatus, ENUM_LOG_STATUS);
    case BACSTAC_LOG_BOOLEAN:
        return value.Boolean != 0;
    case BACSTAC_LOG_REAL:
        return Plain(TYPE_REAL, value.Real);
    case BACSTAC_LOG_ENUMERATED:
        return value.Enumerated;
    case BACSTAC_LOG_UNSIGNED:
        return value.Unsigned;
    case BACSTAC_LOG_SIGNED:
        return value.Signed;
    case BACSTAC_LOG_BITSTRING:
        return BitsText(value.BitString, ENUM_NONE);
    case BACSTAC_LOG_FAILURE: {
        const BACSTAC_ERROR error{2, value.Failure.Class, value.Failure.Code};
        return CBacGeneral::GetErrorText(BACSTAC_STATUS_ERROR, &error);
    }
    case BACSTAC_LOG_TIME_CHANGE:
        return Plain(TYPE_REAL, value.TimeChange);
    case BACSTAC_LOG_ANY: {
        const BACSTAC_PROPERTY_CONTENTS any = AnyValue(contents, value.Any);
        return any.DataType < 0 ? Json(nullptr) : ElementJson(any, OBJ_NO_TYPE, PROP_NO_PROPERTY);
    }
    default:
        return nullptr;
    }
}

Json TrendRecord(const BACSTAC_PROPERTY_CONTENTS& contents, const BACSTAC_LOG_RECORD& record) {
    Json json{{"time", DateTimeText(record.TimeStamp)},
              {"kind", KindName(record.DatumType)},
              {"value", DatumValue(contents, record.DatumType, record.Value)}};
    if (record.HasStatus != 0)
        json["status"] = BitsText(record.StatusFlags, ENUM_STATUS_FLAGS);
    return json;
}

Json MultipleRecord(const BACSTAC_PROPERTY_CONTENTS& contents, const BACSTAC_LOG_MULTIPLE_RECORD& record) {
    Json json{{"time", DateTimeText(record.TimeStamp)}};
    if (record.RecordType == BACSTAC_LOG_MULTIPLE_STATUS) {
        json["kind"] = "log-status";
        json["value"] = BitsText(record.LogStatus, ENUM_LOG_STATUS);
    } else if (record.RecordType == BACSTAC_LOG_MULTIPLE_TIME_CHANGE) {
        json["kind"] = "time-change";
        json["value"] = Plain(TYPE_REAL, record.TimeChange);
    } else {
        json["kind"] = "data";
        Json values = Json::array();
        const BACSTAC_LOG_ITEM* const items = LogItems(contents, record);
        constexpr std::uint32_t ITEM_FAILURE = 7;
        for (std::uint32_t i = 0; items != nullptr && i < record.Data.ItemCount; ++i) {
            const auto item = bacnet::LoadAs<BACSTAC_LOG_ITEM>(items + i);
            const std::uint32_t kind = item.Kind > ITEM_FAILURE ? BACSTAC_LOG_ANY : item.Kind + 1;
            values.push_back(DatumValue(contents, kind, item.Value));
        }
        json["value"] = std::move(values);
    }
    return json;
}

Json EventRecord(const BACSTAC_PROPERTY_CONTENTS& contents, const BACSTAC_EVENT_LOG_RECORD& record) {
    Json json{{"time", DateTimeText(record.TimeStamp)}};
    if (record.RecordType == BACSTAC_EVENT_LOG_STATUS) {
        json["kind"] = "log-status";
        json["value"] = BitsText(record.LogStatus, ENUM_LOG_STATUS);
    } else if (record.RecordType == BACSTAC_EVENT_LOG_TIME_CHANGE) {
        json["kind"] = "time-change";
        json["value"] = Plain(TYPE_REAL, record.TimeChange);
    } else {
        char text[4096];
        CBacGeneral::PrintEventNotif(text, sizeof text, record.Notification, contents);
        json["kind"] = "notification";
        json["value"] = text;
    }
    return json;
}

Json Record(const BACSTAC_PROPERTY_CONTENTS& contents, const std::uint8_t* element, BACSTAC_OBJECT_TYPE objectType,
            BACSTAC_PROPERTY_ID property) {
    switch (contents.DataType) {
    case TYPE_LOG_RECORD:
        return TrendRecord(contents, bacnet::LoadAs<BACSTAC_LOG_RECORD>(element));
    case TYPE_LOG_MULTIPLE_RECORD:
        return MultipleRecord(contents, bacnet::LoadAs<BACSTAC_LOG_MULTIPLE_RECORD>(element));
    case TYPE_EVENT_LOG_RECORD:
        return EventRecord(contents, bacnet::LoadAs<BACSTAC_EVENT_LOG_RECORD>(element));
    default: {
        const auto offset = static_cast<std::uint32_t>(element - static_cast<const std::uint8_t*>(contents.Buffer));
        const BACSTAC_PROPERTY_CONTENTS one{contents.DataType, const_cast<std::uint8_t*>(element),
                                            contents.BufferSize - offset, 1};
        return {{"value", ElementJson(one, objectType, property)}};
    }
    }
}

} // namespace

Json LogRecords(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                BACSTAC_PROPERTY_ID property) {
    Json records = Json::array();
    const bacnet::TypeInfo* const type = bacnet::FindType(contents.DataType);
    if (type == nullptr)
        return records;
    bacnet::ForEachElement(bacnet::BufferView::Of(contents), *type, 0, contents.ElementCount,
                           [&](const std::uint8_t* element) {
                               records.push_back(Record(contents, element, objectType, property));
                               return true;
                           });
    return records;
}
