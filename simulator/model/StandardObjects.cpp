#include "simulator/model/StandardObjects.h"

#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/DefaultValue.h"
#include "simulator/model/EventAlgorithm.h"
#include "simulator/model/FileObject.h"
#include "simulator/model/LogObject.h"
#include "simulator/model/Notification.h"
#include "simulator/model/ServicesSupported.h"

#include <algorithm>
#include <cctype>

namespace sim {

namespace {

constexpr std::uint32_t UNITS_DEGREES_CELSIUS = 62;
constexpr std::uint32_t UNITS_PERCENT = 98;
constexpr std::uint32_t LOGGING_POLLED = 0;
constexpr unsigned OBJECT_TYPES = 55;     // bits of Protocol_Object_Types_Supported as of revision 14
constexpr unsigned OLD_OBJECT_TYPES = 38; // and of older ones

bool IsAnalog(BACSTAC_OBJECT_TYPE type) {
    return type <= OBJ_ANALOG_VALUE;
}
bool IsBinary(BACSTAC_OBJECT_TYPE type) {
    return type >= OBJ_BINARY_INPUT && type <= OBJ_BINARY_VALUE;
}
bool IsMultiState(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_MULTI_STATE_INPUT || type == OBJ_MULTI_STATE_OUTPUT || type == OBJ_MULTI_STATE_VALUE;
}
bool IsOutput(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_ANALOG_OUTPUT || type == OBJ_BINARY_OUTPUT || type == OBJ_MULTI_STATE_OUTPUT;
}
bool IsValue(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_ANALOG_VALUE || type == OBJ_BINARY_VALUE || type == OBJ_MULTI_STATE_VALUE;
}

Value NoFlags() {
    return Value::BitString(4, {});
}

// What inputs, outputs and values have in common.
void AddState(Object& object) {
    object.Set(PROP_STATUS_FLAGS, NoFlags());
    object.Set(PROP_EVENT_STATE, Value::Enumerated(0));
    object.Set(PROP_RELIABILITY, Value::Enumerated(0));
    object.Set(PROP_OUT_OF_SERVICE, Value::Boolean(false));
}

// Nothing is commanded at first: the present value is the default.
void AddPriorities(Object& object) {
    const Value* present = object.Find(PROP_PRESENT_VALUE);
    if (present == nullptr)
        return;
    const Value relinquishDefault = *present;
    const std::vector<Value> priorities(PRIORITIES, Value::Null());
    object.Set(PROP_PRIORITY_ARRAY, Value::Array(priorities));
    object.Set(PROP_RELINQUISH_DEFAULT, relinquishDefault);
}

// Properties given in a configuration, and what they mean for the others.
void AddGiven(const ObjectConfig& config, Object& object) {
    bool givesValue = false;
    bool givesDefault = false;
    for (const auto& [property, value] : config.Properties) {
        object.Set(property, value);
        givesValue = givesValue || property == PROP_PRESENT_VALUE;
        givesDefault = givesDefault || property == PROP_RELINQUISH_DEFAULT;
    }
    if (object.Find(PROP_PRIORITY_ARRAY) != nullptr && givesValue && !givesDefault)
        object.Set(PROP_RELINQUISH_DEFAULT, Value(*object.Find(PROP_PRESENT_VALUE)));
    object.Arbitrate();
    for (const BACSTAC_PROPERTY_ID property : config.ReadOnly)
        object.SetWritable(property, false);
    if (config.Permanent)
        object.MakePermanent();
}

void AddAnalog(Object& object) {
    const BACSTAC_OBJECT_ID id = object.Id();
    object.Set(PROP_PRESENT_VALUE, Value::Real(20.0F + static_cast<float>(id.Instance % 100) * 0.25F));
    AddState(object);
    object.Set(PROP_UNITS, Value::Enumerated(IsOutput(id.Type) ? UNITS_PERCENT : UNITS_DEGREES_CELSIUS));
}

// What all objects have that report by themselves.
void AddReporting(Object& object) {
    object.Set(PROP_TIME_DELAY, Value::Unsigned(10));
    object.Set(PROP_NOTIFICATION_CLASS, Value::Unsigned(1));
    object.Set(PROP_EVENT_ENABLE, Value::BitString(3, {0, 1, 2}));
    object.Set(PROP_ACKED_TRANSITIONS, Value::BitString(3, {0, 1, 2}));
    object.Set(PROP_NOTIFY_TYPE, Value::Enumerated(0));
    AddEventProperties(object);
}

void AddAnalogReporting(Object& object) {
    if (object.Id().Type == OBJ_ANALOG_INPUT) {
        object.Set(PROP_DEVICE_TYPE, Value::String("Pt1000"));
        object.Set(PROP_UPDATE_INTERVAL, Value::Unsigned(100));
    }
    object.Set(PROP_MIN_PRES_VALUE, Value::Real(-50.0F));
    object.Set(PROP_MAX_PRES_VALUE, Value::Real(150.0F));
    object.Set(PROP_RESOLUTION, Value::Real(0.1F));
    object.Set(PROP_COV_INCREMENT, Value::Real(0.5F));
    object.Set(PROP_HIGH_LIMIT, Value::Real(60.0F));
    object.Set(PROP_LOW_LIMIT, Value::Real(5.0F));
    object.Set(PROP_DEADBAND, Value::Real(1.0F));
    object.Set(PROP_LIMIT_ENABLE, Value::BitString(2, {0, 1}));
    AddReporting(object);
}

// Outputs report that what they command does not happen, all others that they are in an alarm state: the value that
// they do not start with, or the last one.
void AddStateReporting(Object& object) {
    const Value present = *object.Find(PROP_PRESENT_VALUE);
    if (IsOutput(object.Id().Type)) {
        object.Set(PROP_FEEDBACK_VALUE, present);
    } else if (IsBinary(object.Id().Type)) {
        object.Set(PROP_ALARM_VALUE, Value::Enumerated(present == Value::Enumerated(0) ? 1 : 0));
    } else {
        const Value last[] = {*object.Find(PROP_NUMBER_OF_STATES)};
        object.Set(PROP_ALARM_VALUES, Value::List(last));
    }
    AddReporting(object);
}

void AddBinary(Object& object) {
    const BACSTAC_OBJECT_ID id = object.Id();
    object.Set(PROP_PRESENT_VALUE, Value::Enumerated(id.Instance % 2));
    AddState(object);
    if (id.Type != OBJ_BINARY_VALUE)
        object.Set(PROP_POLARITY, Value::Enumerated(0));
    object.Set(PROP_INACTIVE_TEXT, Value::String("off"));
    object.Set(PROP_ACTIVE_TEXT, Value::String("on"));
}

void AddMultiState(Object& object) {
    const BACSTAC_OBJECT_ID id = object.Id();
    object.Set(PROP_PRESENT_VALUE, Value::Unsigned(1 + id.Instance % 4));
    AddState(object);
    object.Set(PROP_NUMBER_OF_STATES, Value::Unsigned(4));
    const Value texts[] = {Value::String("off"), Value::String("low"), Value::String("high"), Value::String("auto")};
    object.Set(PROP_STATE_TEXT, Value::Array(texts));
}

// One of the two is required; both let a client fill them in.
void AddSchedule(Object& object) {
    constexpr std::uint8_t EMPTY_DAY[] = {0x0E, 0x0F};
    const std::vector<Value> week(7, Value::Encoded(EMPTY_DAY));
    object.Set(PROP_WEEKLY_SCHEDULE, Value::Array(week));
    object.Set(PROP_EXCEPTION_SCHEDULE, Value::Array({}));
}

// An event log has events of one object in turn, to and from high limit.
void GenerateEvents(const LogConfig& log, LogBuffer& buffer) {
    constexpr std::uint32_t OUT_OF_RANGE = 5;
    EventTerms terms;
    terms.High = 60;
    terms.Deadband = 1;
    EventInputs inputs;
    inputs.Monitored = Value::Real(61.0F);
    inputs.StatusFlags.BitCount = 4;
    const std::uint64_t kept = std::min<std::uint64_t>(log.Generated, log.Capacity);
    for (std::uint64_t i = log.Generated - kept; i < log.Generated; ++i) {
        const bool raised = i % 2 == 0;
        Notification event;
        event.Device = {OBJ_DEVICE, BACSTAC_MAX_INSTANCE};
        event.Object = {OBJ_ANALOG_INPUT, 1};
        event.Time = log.Generator->Base + static_cast<LocalTime>(i) * log.Generator->Interval;
        event.Class = 1;
        event.Priority = 100;
        event.Type = OUT_OF_RANGE;
        event.Text = raised ? "too high" : "good again";
        event.AckRequired = raised;
        event.From = raised ? EVENT_NORMAL : EVENT_HIGH_LIMIT;
        event.To = raised ? EVENT_HIGH_LIMIT : EVENT_NORMAL;
        inputs.StatusFlags.Bits[0] = raised ? 1 : 0; // in alarm
        event.Values = EncodeValues(OUT_OF_RANGE, [&](bacnet::Writer& to) {
            FindAlgorithm(OUT_OF_RANGE)->PutValues(terms, inputs, EVENT_HIGH_LIMIT, to);
        });
        buffer.Append(ToRecord(event));
    }
}

void GenerateRecords(const ObjectConfig& config, LogBuffer& buffer) {
    const LogConfig& log = *config.Log;
    if (config.Id.Type == OBJ_EVENT_LOG)
        return GenerateEvents(log, buffer);
    buffer.SetGenerator(RecordGenerator(*log.Generator));
    buffer.Generate(log.Generated);
}

std::unique_ptr<Object> MakeLog(const ObjectConfig& config) {
    const LogConfig log = config.Log.value_or(LogConfig{});
    LogBuffer buffer(log.Capacity, log.InitialTotal);
    if (log.Generator)
        GenerateRecords(config, buffer);
    for (const LogRecord& record : log.Records)
        buffer.Append(record);
    return std::make_unique<LogObject>(config.Id, std::move(buffer), log.Enabled, log.StopWhenFull);
}

void AddLogProperties(const LogConfig& log, Object& object) {
    std::vector<Value> references;
    references.reserve(log.References.size());
    for (const BACSTAC_DEV_OBJ_PROP_REF& reference : log.References)
        references.push_back(Value::Reference(reference));
    if (object.Id().Type == OBJ_TREND_LOG_MULTIPLE)
        object.Set(PROP_LOG_DEVICE_OBJECT_PROPERTY, Value::Array(references));
    else if (!references.empty())
        object.Set(PROP_LOG_DEVICE_OBJECT_PROPERTY, references.front());
    if (object.Id().Type != OBJ_EVENT_LOG) {
        const LocalTime interval = log.Generator ? log.Generator->Interval : 6000;
        object.Set(PROP_LOG_INTERVAL, Value::Unsigned(static_cast<std::uint32_t>(std::max<LocalTime>(interval, 1))));
        object.Set(PROP_LOGGING_TYPE, Value::Enumerated(LOGGING_POLLED));
    }
    object.Set(PROP_EVENT_STATE, Value::Enumerated(0));
    object.Set(PROP_STATUS_FLAGS, NoFlags());
}

} // namespace

std::string DefaultName(BACSTAC_OBJECT_ID id) {
    const bacnet::ObjectTypeInfo* type = bacnet::FindObjectType(id.Type);
    if (type == nullptr)
        return "Object " + std::to_string(id.Type) + " " + std::to_string(id.Instance);
    // "analog-input" as "Analog Input"; a small word behind "multi" stays small.
    std::string name = type->Name;
    bool starts = true;
    for (char& c : name) {
        if (c == '-')
            c = ' ';
        else if (starts)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        starts = c == ' ';
    }
    if (name.starts_with("Multi State"))
        name.replace(0, 11, "Multi-state");
    return name + " " + std::to_string(id.Instance);
}

void AddDefaults(Object& object, bool all) {
    for (const bacnet::PropertyInfo& property : bacnet::ObjectProperties(object.Id().Type)) {
        // A file has a number of records only if it has records: then it computes it.
        const bool countsRecords = object.AsFile() != nullptr && property.Property == PROP_RECORD_COUNT;
        const bool wanted = (all || property.Required) && !countsRecords;
        if (wanted && property.Property != PROP_PROPERTY_LIST && !object.Has(property.Property))
            object.Set(property.Property, DefaultValue(object.Id(), property, all));
    }
}

std::unique_ptr<Object> MakeObject(const ObjectConfig& config) {
    const BACSTAC_OBJECT_TYPE type = config.Id.Type;
    const bool isLog = type == OBJ_TREND_LOG || type == OBJ_TREND_LOG_MULTIPLE || type == OBJ_EVENT_LOG;
    const FileConfig file = config.File.value_or(FileConfig{});
    std::unique_ptr<Object> object;
    if (isLog)
        object = MakeLog(config);
    else if (type == OBJ_FILE)
        object = std::make_unique<FileObject>(config.Id, file);
    else
        object = std::make_unique<Object>(config.Id);
    object->Set(PROP_OBJECT_IDENTIFIER, Value::ObjectId(config.Id));
    object->Set(PROP_OBJECT_NAME, Value::String(config.Name.empty() ? DefaultName(config.Id) : config.Name));
    object->Set(PROP_OBJECT_TYPE, Value::Enumerated(type));
    if (!config.Description.empty())
        object->Set(PROP_DESCRIPTION, Value::String(config.Description));
    if (IsAnalog(type)) {
        AddAnalog(*object);
        if (config.IntrinsicReporting)
            AddAnalogReporting(*object);
    } else if (IsBinary(type) || IsMultiState(type)) {
        IsBinary(type) ? AddBinary(*object) : AddMultiState(*object);
        if (config.IntrinsicReporting)
            AddStateReporting(*object);
    } else if (isLog) {
        AddLogProperties(config.Log.value_or(LogConfig{}), *object);
    } else if (type == OBJ_FILE) {
        object->Set(PROP_FILE_TYPE, Value::String(file.Type));
    } else {
        AddDefaults(*object, false);
    }
    if (config.AllProperties)
        AddDefaults(*object, true);
    else if (type == OBJ_SCHEDULE)
        AddSchedule(*object);
    if (IsOutput(type) || (config.Commandable && IsValue(type)))
        AddPriorities(*object);
    AddGiven(config, *object);
    return object;
}

namespace {

// Those that the device has or creates, as far as its revision knows them: types of later revisions are left out.
Value TypesSupported(const DeviceConfig& config) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = config.ProtocolRevision >= REVISION_PROPERTY_LIST ? OBJECT_TYPES : OLD_OBJECT_TYPES;
    for (const bacnet::ObjectTypeInfo& known : bacnet::AllObjectTypes())
        if (known.Type < bits.BitCount)
            bits.Bits[known.Type / 8] = static_cast<std::uint8_t>(bits.Bits[known.Type / 8] | 1U << known.Type % 8);
    return Value::BitString(bits);
}

} // namespace

void AddDeviceProperties(const DeviceConfig& config, Object& device) {
    device.Set(PROP_OBJECT_IDENTIFIER, Value::ObjectId(device.Id()));
    device.Set(PROP_OBJECT_NAME, Value::String(config.Name));
    device.Set(PROP_OBJECT_TYPE, Value::Enumerated(OBJ_DEVICE));
    if (!config.Description.empty())
        device.Set(PROP_DESCRIPTION, Value::String(config.Description));

    device.Set(PROP_VENDOR_NAME, Value::String("Simulation"));
    device.Set(PROP_VENDOR_IDENTIFIER, Value::Unsigned(config.VendorId));
    device.Set(PROP_MODEL_NAME, Value::String("bdcsim"));
    device.Set(PROP_FIRMWARE_REVISION, Value::String("1"));
    device.Set(PROP_APPLICATION_SOFTWARE_VERSION, Value::String("1"));
    device.Set(PROP_PROTOCOL_VERSION, Value::Unsigned(1));
    device.Set(PROP_PROTOCOL_REVISION, Value::Unsigned(config.ProtocolRevision));
    device.Set(PROP_PROTOCOL_SERVICES_SUPPORTED, ServicesSupported(config));
    device.Set(PROP_PROTOCOL_OBJECT_TYPES_SUPPORTED, TypesSupported(config));
    device.Set(PROP_MAX_APDU_LENGTH_ACCEPTED, Value::Unsigned(config.MaxApdu));
    device.Set(PROP_SEGMENTATION_SUPPORTED, Value::Enumerated(static_cast<std::uint32_t>(config.Segmentation)));
    device.Set(PROP_APDU_TIMEOUT, Value::Unsigned(APDU_TIMEOUT_MS));
    device.Set(PROP_NUMBER_OF_APDU_RETRIES, Value::Unsigned(APDU_RETRIES));
    if (config.Segmentation == bacnet::Segmentation::both || config.Segmentation == bacnet::Segmentation::receive)
        device.Set(PROP_MAX_SEGMENTS_ACCEPTED, Value::Unsigned(config.MaxSegments));
    if (config.Segmentation != bacnet::Segmentation::none)
        device.Set(PROP_APDU_SEGMENT_TIMEOUT, Value::Unsigned(config.SegmentTimeoutMs));
    device.Set(PROP_UTC_OFFSET, Value::Signed(0));
    device.Set(PROP_DAYLIGHT_SAVINGS_STATUS, Value::Boolean(false));
    device.Set(PROP_DEVICE_ADDRESS_BINDING, Value::List({}));
    device.Set(PROP_DATABASE_REVISION, Value::Unsigned(1));
}

} // namespace sim
