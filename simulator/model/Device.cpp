#include "simulator/model/Device.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/DeviceObject.h"
#include "simulator/model/FileObject.h"
#include "simulator/model/StandardObjects.h"

#include <algorithm>
#include <iterator>

namespace sim {

Stats& Stats::operator+=(const Stats& other) {
    for (std::size_t i = 0; i < Values.size(); ++i)
        Values[i] += other.Values[i];
    return *this;
}

Device::Device(const DeviceConfig& config, std::function<LocalTime()> clock)
    : m_config(config), m_clock(std::move(clock)), m_backup(config.Backup.value_or(BackupConfig{})) {
    m_config.Objects.clear();
    m_config.Objects.shrink_to_fit();
    m_config.Faults.clear();
    if (m_config.Name.empty())
        m_config.Name = "Device " + std::to_string(m_config.Instance);
    m_faults.Set(config.Faults);
    m_quirks = config.Quirks;

    auto device = std::make_unique<DeviceObject>(Id(), *this);
    AddDeviceProperties(m_config, *device);
    Insert(std::move(device));
    m_objects.reserve(config.Objects.size() + 1);
    for (const ObjectConfig& object : config.Objects) {
        if (object.Id == Id()) {
            // Properties given for the device object itself.
            for (const auto& [property, value] : object.Properties)
                Find(Id())->Set(property, value);
            if (object.AllProperties)
                AddDefaults(*Find(Id()), true);
        } else {
            Insert(MakeObject(object));
            if (object.Event)
                StartEvent(object.Id, *object.Event);
        }
    }
    if (m_config.Backup)
        AddBackup();
    m_automation.FindObjects();
}

Device::~Device() = default;

bool Device::Insert(std::unique_ptr<Object> object) {
    const std::uint32_t key = KeyOf(object->Id());
    const auto at = std::lower_bound(m_objects.begin(), m_objects.end(), key,
                                     [](const Entry& entry, std::uint32_t k) { return entry.Key < k; });
    if (at != m_objects.end() && at->Key == key)
        return false;
    if (m_config.ProtocolRevision >= REVISION_PROPERTY_LIST)
        object->ShowPropertyList();
    m_objectList.push_back(object->Id());
    m_objects.insert(at, {key, std::move(object)});
    return true;
}

void Device::NoteChange() {
    Find(Id())->Set(PROP_DATABASE_REVISION, Value::Unsigned(++m_databaseRevision));
}

Object* Device::Find(BACSTAC_OBJECT_ID id) const {
    if (id.Type == OBJ_DEVICE && id.Instance == BACSTAC_MAX_INSTANCE)
        id.Instance = m_config.Instance;
    const std::uint32_t key = KeyOf(id);
    const auto at = std::lower_bound(m_objects.begin(), m_objects.end(), key,
                                     [](const Entry& entry, std::uint32_t k) { return entry.Key < k; });
    return at != m_objects.end() && at->Key == key ? at->Content.get() : nullptr;
}

LogObject* Device::FindLog(BACSTAC_OBJECT_ID id) const {
    Object* object = Find(id);
    return object == nullptr ? nullptr : object->AsLog();
}

bool Device::IsNameTaken(std::span<const std::uint8_t> name, const Object* except) const {
    return std::any_of(m_objects.begin(), m_objects.end(), [&](const Entry& entry) {
        const Value* other = entry.Content->Find(PROP_OBJECT_NAME);
        return entry.Content.get() != except && other != nullptr &&
               std::equal(name.begin(), name.end(), other->Wire().begin(), other->Wire().end());
    });
}

PropertyError Device::Write(BACSTAC_OBJECT_ID id, const WriteCommand& command) {
    Object* object = Find(id);
    if (object == nullptr)
        return UNKNOWN_OBJECT;
    const bool renames = command.Property == PROP_OBJECT_NAME && object->Has(PROP_OBJECT_NAME);
    if (renames && IsNameTaken(command.Value, object))
        return {CLASS_PROPERTY, CODE_DUPLICATE_NAME};
    const PropertyError error = object->Write(command, Now());
    if (error.Ok() && renames)
        NoteChange();
    if (error.Ok() && id.Type == OBJ_DEVICE && command.Property == PROP_BACKUP_FAILURE_TIMEOUT) {
        std::uint32_t seconds = 0;
        bacnet::Reader(command.Value).Unsigned(seconds);
        m_backup.SetFailureTimeout(seconds);
    }
    if (error.Ok())
        m_automation.OnChange(object->Id(), command.Property);
    return error;
}

PropertyError Device::ChangeList(BACSTAC_OBJECT_ID id, ChangeElements change, const WriteCommand& command,
                                 std::uint32_t& failed) {
    Object* object = Find(id);
    if (object == nullptr)
        return UNKNOWN_OBJECT;
    const PropertyError error = (object->*change)(command, failed);
    if (error.Ok())
        m_automation.OnChange(object->Id(), command.Property);
    return error;
}

bool Device::Update(Object& object, BACSTAC_PROPERTY_ID property, Value value) {
    const Value* present = object.Find(property);
    if (present != nullptr && *present == value)
        return false;
    object.Set(property, std::move(value));
    m_automation.OnChange(object.Id(), property);
    return true;
}

bool Device::IsOwn(const BACSTAC_DEV_OBJ_PROP_REF& reference) const {
    return reference.DevicePresent == 0 || reference.DeviceId.Instance == m_config.Instance;
}

void Device::Post(Message message) {
    constexpr std::size_t MAX_MESSAGES = 1000;
    if (m_messages.size() == MAX_MESSAGES)
        m_messages.pop_front();
    m_messages.push_back(std::move(message));
    m_hasMessages = true;
}

std::vector<Message> Device::TakeMessages() {
    const auto lock = Lock();
    std::vector<Message> messages(std::make_move_iterator(m_messages.begin()),
                                  std::make_move_iterator(m_messages.end()));
    m_messages.clear();
    m_hasMessages = false;
    return messages;
}

void Device::Run() {
    const auto lock = Lock();
    m_automation.OnTime();
}

void Device::SetFaults(const std::vector<Fault>& faults) {
    const auto lock = Lock();
    m_faults.Set(faults);
}

void Device::SetQuirks(const Quirks& quirks) {
    const auto lock = Lock();
    m_quirks = quirks;
}

bool Device::AddObject(const ObjectConfig& config) {
    std::unique_ptr<Object> object = MakeObject(config);
    const auto lock = Lock();
    if (!Insert(std::move(object)))
        return false;
    NoteChange();
    m_automation.FindObjects();
    return true;
}

bool Device::RemoveObject(BACSTAC_OBJECT_ID id) {
    const auto lock = Lock();
    if (id == Id() || Find(id) == nullptr)
        return false;
    Erase(id);
    return true;
}

void Device::Erase(BACSTAC_OBJECT_ID id) {
    std::erase_if(m_objects, [&](const Entry& entry) { return entry.Key == KeyOf(id); });
    std::erase(m_objectList, id);
    NoteChange();
    m_automation.FindObjects();
}

// Deletes what it creates.
bool Device::Creates(BACSTAC_OBJECT_TYPE type) const {
    if (m_config.Creates)
        return std::find(m_config.Creates->begin(), m_config.Creates->end(), type) != m_config.Creates->end();
    return type != OBJ_DEVICE && type != OBJ_NETWORK_PORT && bacnet::FindObjectType(type) != nullptr;
}

PropertyError Device::ChooseIdentifier(const BACSTAC_OBJECT_SPECIFIER& specifier, BACSTAC_OBJECT_ID& id) const {
    if (bacnet::FindObjectType(specifier.Type) == nullptr && !Creates(specifier.Type))
        return {CLASS_OBJECT, CODE_UNSUPPORTED_OBJECT_TYPE};
    if (!Creates(specifier.Type))
        return {CLASS_OBJECT, CODE_DYNAMIC_CREATION_NOT_SUPPORTED};
    if (m_objects.size() >= m_config.MaxObjects)
        return {CLASS_RESOURCES, CODE_NO_SPACE_FOR_OBJECT};
    id = {specifier.Type, specifier.Instance};
    if (specifier.ByIdentifier != 0 && specifier.Instance != BACSTAC_MAX_INSTANCE)
        return Find(id) == nullptr ? PropertyError{}
                                   : PropertyError{CLASS_OBJECT, CODE_OBJECT_IDENTIFIER_ALREADY_EXISTS};
    id.Instance = 1;
    while (Find(id) != nullptr)
        ++id.Instance;
    return {};
}

PropertyError Device::Create(const ObjectConfig& config) {
    ObjectConfig named = config;
    const auto givesName = [](const auto& entry) { return entry.first == PROP_OBJECT_NAME; };
    if (std::none_of(config.Properties.begin(), config.Properties.end(), givesName)) {
        named.Name = DefaultName(config.Id);
        while (IsNameTaken(Value::String(named.Name).Wire()))
            named.Name += "'";
    }
    if (!Insert(MakeObject(named)))
        return {CLASS_OBJECT, CODE_OBJECT_IDENTIFIER_ALREADY_EXISTS};
    NoteChange();
    m_automation.FindObjects();
    return {};
}

PropertyError Device::Delete(BACSTAC_OBJECT_ID id) {
    const Object* object = Find(id);
    if (object == nullptr)
        return UNKNOWN_OBJECT;
    if (!Creates(id.Type) || object->IsPermanent())
        return {CLASS_OBJECT, CODE_OBJECT_DELETION_NOT_PERMITTED};
    Erase(id);
    return {};
}

bool Device::SetProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, Value value) {
    const auto lock = Lock();
    Object* object = Find(id);
    if (object == nullptr)
        return false;
    Update(*object, property, std::move(value));
    return true;
}

bool Device::RemoveProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) {
    const auto lock = Lock();
    Object* object = Find(id);
    if (object == nullptr || object->Find(property) == nullptr)
        return false;
    object->Remove(property);
    m_automation.OnChange(id, property);
    return true;
}

std::optional<Value> Device::GetProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) const {
    const auto lock = Lock();
    const Object* object = Find(id);
    const Value* value = object == nullptr ? nullptr : object->Find(property);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::vector<BACSTAC_OBJECT_ID> Device::ObjectList() const {
    const auto lock = Lock();
    return m_objectList;
}

bool Device::Append(BACSTAC_OBJECT_ID log, LogRecord record) {
    const auto lock = Lock();
    LogObject* object = FindLog(log);
    const bool appended = object != nullptr && object->Append(std::move(record));
    NoteValue(log, PROP_TOTAL_RECORD_COUNT);
    return appended;
}

bool Device::Generate(BACSTAC_OBJECT_ID log, std::uint64_t count) {
    const auto lock = Lock();
    LogObject* object = FindLog(log);
    const bool generated = object != nullptr && object->Generate(count);
    NoteValue(log, PROP_TOTAL_RECORD_COUNT);
    return generated;
}

void Device::GenerateAll(std::uint64_t count) {
    const auto lock = Lock();
    for (const Entry& entry : m_objects)
        if (LogObject* log = entry.Content->AsLog(); log != nullptr && log->Generate(count))
            NoteValue(log->Id(), PROP_TOTAL_RECORD_COUNT);
}

bool Device::SetLogEnabled(BACSTAC_OBJECT_ID log, bool enabled) {
    const auto lock = Lock();
    LogObject* object = FindLog(log);
    if (object == nullptr)
        return false;
    object->SetEnabled(enabled, Now());
    return true;
}

bool Device::PurgeLog(BACSTAC_OBJECT_ID log) {
    const auto lock = Lock();
    LogObject* object = FindLog(log);
    if (object == nullptr)
        return false;
    object->Purge(Now());
    return true;
}

std::vector<LogRecord> Device::Records(BACSTAC_OBJECT_ID log) const {
    const auto lock = Lock();
    std::vector<LogRecord> records;
    const LogObject* object = FindLog(log);
    if (object == nullptr)
        return records;
    const LogBuffer& buffer = object->Buffer();
    records.reserve(buffer.Count());
    LogRecord scratch;
    for (std::uint64_t i = buffer.Begin(); i != buffer.End(); ++i)
        records.push_back(buffer.At(i, scratch));
    return records;
}

std::optional<std::uint32_t> Device::TotalRecordCount(BACSTAC_OBJECT_ID log) const {
    const auto lock = Lock();
    const LogObject* object = FindLog(log);
    return object == nullptr ? std::nullopt : std::optional(object->Buffer().TotalRecordCount());
}

std::optional<std::string> Device::FileOctets(BACSTAC_OBJECT_ID file) const {
    const auto lock = Lock();
    Object* object = Find(file);
    const FileObject* found = object == nullptr ? nullptr : object->AsFile();
    return found == nullptr || found->IsOfRecords() ? std::nullopt : std::optional(std::string(found->Octets()));
}

std::optional<std::vector<std::string>> Device::FileRecords(BACSTAC_OBJECT_ID file) const {
    const auto lock = Lock();
    Object* object = Find(file);
    const FileObject* found = object == nullptr ? nullptr : object->AsFile();
    return found == nullptr || !found->IsOfRecords() ? std::nullopt : std::optional(found->Records());
}

Stats Device::GetStats() const {
    Stats stats;
    for (std::size_t i = 0; i < stats.Values.size(); ++i)
        stats.Values[i] = m_counters[i].load(std::memory_order_relaxed);
    return stats;
}

bool Device::Offers(bacnet::ConfirmedService service) const {
    const auto& lacks = m_config.LacksServices;
    return std::find(lacks.begin(), lacks.end(), service) == lacks.end();
}

bool Device::AcceptsByTime() const {
    return m_config.ByTime == ByTimeForms::both || m_config.ProtocolRevision >= REVISION_BY_TIME;
}

bool Device::AcceptsByTime2001() const {
    return m_config.ByTime == ByTimeForms::both || m_config.ProtocolRevision < REVISION_BY_TIME;
}

} // namespace sim
