#include "simulator/Museum.h"

#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/DefaultValue.h"
#include "simulator/model/Standard.h"

namespace sim {

namespace {

constexpr BACSTAC_OBJECT_ID BACKUP_FILE{OBJ_FILE, 2};

ObjectConfig Exhibit(BACSTAC_OBJECT_ID id) {
    ObjectConfig object;
    object.Id = id;
    object.AllProperties = true;
    return object;
}

LogConfig SmallLog(BACSTAC_OBJECT_TYPE type) {
    LogConfig log;
    log.Capacity = 100;
    log.Generated = 20;
    GeneratorConfig& generator = log.Generator.emplace();
    generator.Base = DEFAULT_RECORD_BASE;
    generator.Kinds = {MIXED_KINDS};
    generator.WithStatusFlags = type == OBJ_TREND_LOG;
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    reference.ObjectId = {OBJ_ANALOG_INPUT, 1};
    reference.Property = PROP_PRESENT_VALUE;
    reference.ArrayIndex = static_cast<std::uint32_t>(BACSTAC_NO_INDEX);
    reference.DeviceId.Type = OBJ_DEVICE;
    log.References.push_back(reference);
    return log;
}

ObjectConfig Enrollment(std::uint32_t eventType) {
    ObjectConfig object;
    object.Id = {OBJ_EVENT_ENROLLMENT, EnrollmentOf(eventType)};
    object.Properties.emplace_back(PROP_EVENT_TYPE, Value::Enumerated(eventType));
    object.Properties.emplace_back(PROP_EVENT_PARAMETERS, DefaultElement(TYPE_EVENT_PARAMETER, eventType));
    return object;
}

} // namespace

DeviceConfig MuseumDevice(std::uint32_t instance) {
    DeviceConfig device;
    device.Instance = instance;
    device.Name = "Museum " + std::to_string(instance);
    device.ProtocolRevision = 19;
    device.Segmentation = bacnet::Segmentation::both;
    device.Backup.emplace().Files = {BACKUP_FILE};
    device.Objects.push_back(Exhibit({OBJ_DEVICE, instance}));
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes()) {
        if (type.Type == OBJ_DEVICE)
            continue;
        ObjectConfig object = Exhibit({type.Type, 1});
        if (type.Type == OBJ_TREND_LOG || type.Type == OBJ_TREND_LOG_MULTIPLE || type.Type == OBJ_EVENT_LOG)
            object.Log = SmallLog(type.Type);
        if (type.Type == OBJ_FILE)
            object.File.emplace().Octets = "Some text in a file.\n";
        device.Objects.push_back(std::move(object));
    }
    for (std::uint32_t eventType = 0; eventType < Alternatives(TYPE_EVENT_PARAMETER); ++eventType)
        device.Objects.push_back(Enrollment(eventType));
    return device;
}

} // namespace sim
