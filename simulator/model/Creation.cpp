#include "simulator/model/Creation.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/Grammar.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::uint32_t RECORD_ACCESS = 0;
constexpr std::uint32_t STREAM_ACCESS = 1;

// The property as objects of this very type have it; null when they do not.
const bacnet::PropertyInfo* InfoOf(BACSTAC_OBJECT_TYPE type, BACSTAC_PROPERTY_ID property) {
    const auto properties = bacnet::ObjectProperties(type);
    const auto at = std::find_if(properties.begin(), properties.end(),
                                 [=](const bacnet::PropertyInfo& info) { return info.Property == property; });
    return at == properties.end() ? nullptr : &*at;
}

Shape ShapeOf(bacnet::PropertyShape shape) {
    switch (shape) {
    case bacnet::PropertyShape::array:
        return Shape::array;
    case bacnet::PropertyShape::list:
        return Shape::list;
    case bacnet::PropertyShape::single:
        break;
    }
    return Shape::single;
}

PropertyError SetAccess(std::span<const std::uint8_t> value, FileConfig& file) {
    bacnet::Reader in(value);
    std::uint32_t method = 0;
    if (!in.Enumerated(method))
        return INVALID_DATA_TYPE;
    if (method != RECORD_ACCESS && method != STREAM_ACCESS)
        return VALUE_OUT_OF_RANGE;
    file.OfRecords = method == RECORD_ACCESS;
    return {};
}

PropertyError SetFlag(std::span<const std::uint8_t> value, bool& flag) {
    bacnet::Reader in(value);
    return in.Boolean(flag) ? PropertyError{} : INVALID_DATA_TYPE;
}

PropertyError SetCapacity(std::span<const std::uint8_t> value, LogConfig& log) {
    bacnet::Reader in(value);
    std::uint32_t capacity = 0;
    if (!in.Unsigned(capacity))
        return INVALID_DATA_TYPE;
    if (capacity == 0 || capacity > INT32_MAX)
        return VALUE_OUT_OF_RANGE;
    log.Capacity = capacity;
    return {};
}

// Properties that objects compute from their own state. Nothing for all others.
std::optional<PropertyError> SetState(const WriteCommand& given, ObjectConfig& object) {
    const BACSTAC_OBJECT_TYPE type = object.Id.Type;
    const auto file = [&]() -> FileConfig& { return object.File ? *object.File : object.File.emplace(); };
    const auto log = [&]() -> LogConfig& { return object.Log ? *object.Log : object.Log.emplace(); };
    if (type == OBJ_FILE && given.Property == PROP_FILE_ACCESS_METHOD)
        return SetAccess(given.Value, file());
    if (type == OBJ_FILE && given.Property == PROP_READ_ONLY)
        return SetFlag(given.Value, file().ReadOnly);
    if (type != OBJ_TREND_LOG && type != OBJ_TREND_LOG_MULTIPLE && type != OBJ_EVENT_LOG)
        return std::nullopt;
    switch (given.Property) {
    case PROP_ENABLE:
        return SetFlag(given.Value, log().Enabled);
    case PROP_STOP_WHEN_FULL:
        return SetFlag(given.Value, log().StopWhenFull);
    case PROP_BUFFER_SIZE:
        return SetCapacity(given.Value, log());
    default:
        return std::nullopt;
    }
}

// What the object alone knows: nobody gives it an initial value.
constexpr BACSTAC_PROPERTY_ID OWN[] = {
    PROP_OBJECT_IDENTIFIER, PROP_OBJECT_TYPE,        PROP_PROPERTY_LIST, PROP_FILE_SIZE,
    PROP_MODIFICATION_DATE, PROP_TOTAL_RECORD_COUNT, PROP_LOG_BUFFER,    PROP_RECORD_COUNT,
    PROP_PRIORITY_ARRAY,    PROP_STATUS_FLAGS,       PROP_ARCHIVE,
};

} // namespace

PropertyError AddInitialValue(const WriteCommand& given, ObjectConfig& object) {
    const bacnet::PropertyInfo* info = InfoOf(object.Id.Type, given.Property);
    if (info == nullptr)
        return UNKNOWN_PROPERTY;
    if (given.Index != WHOLE)
        return info->Shape == bacnet::PropertyShape::array ? INVALID_ARRAY_INDEX : NOT_AN_ARRAY;
    if (std::find(std::begin(OWN), std::end(OWN), given.Property) != std::end(OWN))
        return WRITE_ACCESS_DENIED;
    const Shape shape = ShapeOf(info->Shape);
    const auto elements = SplitElements(given.Value, info->Type);
    const bool fits = shape == Shape::single ? IsOneOf(given.Value, info->Type) : elements.has_value();
    if (!fits)
        return INVALID_DATA_TYPE;
    if (const auto done = SetState(given, object))
        return *done;
    Value value = shape == Shape::single ? Value::Encoded(given.Value) : Value::Of(shape, *elements);
    object.Properties.emplace_back(given.Property, std::move(value));
    return {};
}

} // namespace sim
