// What clients do to a device as a whole: its clock, its communication, backup and restore, restarts.
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "simulator/model/Configuration.h"
#include "simulator/model/Device.h"
#include "simulator/model/FileObject.h"
#include "simulator/model/StandardObjects.h"

#include <algorithm>

namespace sim {

namespace {

constexpr LocalTime MINUTE = 60 * HUNDREDTHS_PER_SECOND;
constexpr PropertyError NOT_SUPPORTED{CLASS_SERVICES, CODE_OPTIONAL_FUNCTIONALITY_NOT_SUPPORTED};

} // namespace

// ---- clock

void Device::SetClock(LocalTime now) {
    const auto lock = Lock();
    AdjustClock(now);
}

void Device::AdjustClock(LocalTime now) {
    const LocalTime change = now - Now();
    if (change == 0)
        return;
    m_clockOffset += change;
    LogRecord record;
    record.Time = now;
    record.Data.push_back(LogDatum::TimeChange(static_cast<float>(change) / HUNDREDTHS_PER_SECOND));
    for (const Entry& entry : m_objects)
        if (LogObject* log = entry.Content->AsLog())
            log->Append(record);
    m_automation.OnTime();
}

// UTC_Offset counts minutes to the west (clause 12.11.24).
LocalTime Device::FromUtc(LocalTime utc) const {
    const Object& device = *Find(Id());
    std::int32_t offset = 0;
    bool summer = false;
    if (const Value* value = device.Find(PROP_UTC_OFFSET))
        bacnet::Reader(value->Wire()).Signed(offset);
    if (const Value* value = device.Find(PROP_DAYLIGHT_SAVINGS_STATUS))
        bacnet::Reader(value->Wire()).Boolean(summer);
    return utc - offset * MINUTE + (summer ? 60 * MINUTE : 0);
}

// ---- events

const Object* Device::FindClass(std::uint32_t number) const {
    const Value wanted = Value::Unsigned(number);
    for (const Entry& entry : m_objects) {
        const Value* own = entry.Content->Find(PROP_NOTIFICATION_CLASS);
        if (entry.Content->Id().Type == OBJ_NOTIFICATION_CLASS && own != nullptr && *own == wanted)
            return entry.Content.get();
    }
    return nullptr;
}

NotificationClass Device::ClassOf(std::uint32_t number, const BACSTAC_RECIPIENT* recipient,
                                  std::uint32_t process) const {
    const Object* found = FindClass(number);
    return found == nullptr ? NotificationClass{} : ReadClass(*found, recipient, process);
}

void Device::LogEvent(const LogRecord& record) {
    for (const Entry& entry : m_objects)
        if (LogObject* log = entry.Content->AsLog(); log != nullptr && log->Id().Type == OBJ_EVENT_LOG)
            log->Append(record);
}

bool Device::RaiseEvent(BACSTAC_OBJECT_ID id, std::uint32_t state) {
    const auto lock = Lock();
    Object* object = Find(id);
    if (object == nullptr)
        return false;
    Events().Enter(*object, state);
    return true;
}

bool Device::AcknowledgeEvent(BACSTAC_OBJECT_ID id, Transition transition, const std::string& by) {
    const auto lock = Lock();
    Object* object = Find(id);
    if (object == nullptr || !StatusOf(*object))
        return false;
    Events().Acknowledge(*object, transition, by);
    return true;
}

void Device::StartEvent(BACSTAC_OBJECT_ID id, const EventConfig& event) {
    Object& object = *Find(id);
    object.Set(PROP_NOTIFICATION_CLASS, Value::Unsigned(event.NotificationClass));
    object.Set(PROP_NOTIFY_TYPE, Value::Enumerated(event.NotifyType));
    AddEventProperties(object);
    if (event.State != EVENT_NORMAL)
        EnterState(object, event.State, !event.Acked, Now());
}

// ---- communication

bool Device::IsPassword(std::span<const std::uint8_t> encoded) const {
    if (m_config.Password.empty())
        return true;
    return !encoded.empty() && bacnet::DecodeText(encoded) == m_config.Password;
}

PropertyError Device::ControlCommunication(Communication state, std::uint32_t minutes) {
    if (state == Communication::disabled && m_config.ProtocolRevision >= REVISION_NO_DISABLE)
        return {CLASS_SERVICES, CODE_SERVICE_REQUEST_DENIED};
    m_communication = state;
    m_communicationUntil = minutes == 0 ? 0 : Uptime() + minutes * MINUTE;
    return {};
}

Communication Device::GetCommunication() const {
    const bool over = m_communicationUntil != 0 && Uptime() >= m_communicationUntil;
    return over ? Communication::enabled : m_communication;
}

Communication Device::CommunicationState() const {
    const auto lock = Lock();
    return GetCommunication();
}

// ---- restart, backup and restore

void Device::NoteRestart(RestartReason reason) {
    m_communication = Communication::enabled;
    m_communicationUntil = 0;
    m_backup.Reset();
    m_automation.Cov().Clear();
    Object& device = *Find(Id());
    device.Set(PROP_LAST_RESTART_REASON, Value::Enumerated(static_cast<std::uint32_t>(reason)));
    device.Set(PROP_TIME_OF_DEVICE_RESTART, Value::TimeStamp(ToDateTime(Now())));
}

std::uint32_t Device::SystemStatus() const {
    return m_backup.SystemStatus(Uptime()).value_or(m_systemStatus);
}

void Device::SetSystemStatus(std::uint32_t status) {
    const auto lock = Lock();
    m_systemStatus = status;
}

BackupState Device::GetBackupState() const {
    const auto lock = Lock();
    return m_backup.GetState(Uptime());
}

FileObject* Device::FindSnapshot() const {
    Object* object = m_config.Backup && m_snapshot ? Find(*m_snapshot) : nullptr;
    return object == nullptr ? nullptr : object->AsFile();
}

PropertyError Device::StartBackup() {
    if (!m_config.Backup)
        return NOT_SUPPORTED;
    const PropertyError error = m_backup.StartBackup(Uptime());
    FileObject* snapshot = FindSnapshot();
    if (!error.Ok() || snapshot == nullptr)
        return error;
    std::string text = ConfigurationHead(Instance());
    for (const BACSTAC_OBJECT_ID& id : m_objectList)
        AppendConfiguration(*Find(id), text);
    snapshot->SetOctets(std::move(text), Now());
    return {};
}

PropertyError Device::EndBackup() {
    return m_config.Backup ? m_backup.EndBackup(Uptime()) : NOT_SUPPORTED;
}

PropertyError Device::StartRestore() {
    return m_config.Backup ? m_backup.StartRestore(Uptime()) : NOT_SUPPORTED;
}

PropertyError Device::EndRestore() {
    if (!m_config.Backup)
        return NOT_SUPPORTED;
    bool valid = true;
    const FileObject* snapshot = FindSnapshot();
    if (snapshot != nullptr && m_backup.GetState(Uptime()) == BackupState::performingRestore) {
        const auto restore = [this](BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, Value value) {
            Object* object = Find(id);
            if (object != nullptr && object->Find(property) != nullptr)
                Update(*object, property, std::move(value));
        };
        valid = ReadConfiguration(std::string(snapshot->Octets()), Instance(), restore);
    }
    const PropertyError error = m_backup.EndRestore(Uptime(), valid);
    if (!error.Ok())
        return error;
    for (const Entry& entry : m_objects)
        entry.Content->Arbitrate();
    Find(Id())->Set(PROP_LAST_RESTORE_TIME, Value::TimeStamp(ToDateTime(Now())));
    NoteChange();
    return {};
}

PropertyError Device::AbortRestore() {
    return m_config.Backup ? m_backup.AbortRestore(Uptime()) : NOT_SUPPORTED;
}

PropertyError Device::UseFile(BACSTAC_OBJECT_ID file) {
    if (!m_config.Backup)
        return {};
    const auto& files = m_config.Backup->Files;
    const bool configures = std::find(files.begin(), files.end(), file) != files.end();
    if (configures && m_backup.IsPreparing(Uptime()))
        return {CLASS_DEVICE, CODE_DEVICE_BUSY};
    m_backup.Touch(Uptime());
    return {};
}

// Files that the configuration does not describe hold what the device saves.
void Device::AddBackup() {
    const BackupConfig& backup = *m_config.Backup;
    std::vector<Value> files;
    for (const BACSTAC_OBJECT_ID& id : backup.Files) {
        files.push_back(Value::ObjectId(id));
        if (Find(id) != nullptr)
            continue;
        ObjectConfig file;
        file.Id = id;
        Insert(MakeObject(file));
        if (!m_snapshot)
            m_snapshot = id;
    }
    Object& device = *Find(Id());
    device.Set(PROP_CONFIGURATION_FILES, Value::Array(files));
    device.Set(PROP_BACKUP_FAILURE_TIMEOUT, Value::Unsigned(backup.FailureTimeout));
    if (!backup.WithoutPreparationTimes) {
        const bool old = backup.OldNumbers;
        device.Set(old ? OLD_BACKUP_PREPARATION_TIME : PROP_BACKUP_PREPARATION_TIME,
                   Value::Unsigned(backup.BackupPreparation));
        device.Set(old ? OLD_RESTORE_PREPARATION_TIME : PROP_RESTORE_PREPARATION_TIME,
                   Value::Unsigned(backup.RestorePreparation));
        device.Set(PROP_RESTORE_COMPLETION_TIME, Value::Unsigned(backup.CompletionTime));
    }
}

} // namespace sim
