// One simulated device: its objects, its faults and its counters. What is public under "Any thread" may be called at
// any time, also while the simulation runs; the rest belongs to the server, which holds Lock while it answers.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Automation.h"
#include "simulator/model/BackupProcedure.h"
#include "simulator/model/Events.h"
#include "simulator/model/LogObject.h"
#include "simulator/model/Message.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>

namespace sim {

// BACnetRestartReason, as far as the simulator restarts.
enum class RestartReason : std::uint32_t { unknown = 0, coldstart = 1, warmstart = 2 };

// As DeviceCommunicationControl numbers them.
enum class Communication : std::uint8_t { enabled = 0, disabled = 1, initiationDisabled = 2 };

enum class Counter : std::uint8_t {
    readProperty, // requests
    readPropertyMultiple,
    readRange,
    writeProperty,
    writePropertyMultiple,
    otherService,
    whoIs,   // that asked for this device
    answers, // sent, of any kind; a segmented one counts once
    errors,
    rejects,
    aborts,
    segments,    // sent, repeated ones included
    segmentAcks, // received
    withheld,    // answers that a fault kept back for good
    count,
};

// A snapshot of counters, of one device or of many.
struct Stats {
    std::array<std::uint64_t, static_cast<std::size_t>(Counter::count)> Values{};

    std::uint64_t operator[](Counter counter) const { return Values[static_cast<std::size_t>(counter)]; }
    std::uint64_t Requests() const {
        std::uint64_t sum = 0;
        for (auto i = static_cast<std::size_t>(Counter::readProperty);
             i <= static_cast<std::size_t>(Counter::otherService); ++i)
            sum += Values[i];
        return sum;
    }
    Stats& operator+=(const Stats& other);
};

class Device {
public:
    // clock has to be callable on any thread for as long as the device lives.
    Device(const DeviceConfig& config, std::function<LocalTime()> clock);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // ---- Any thread

    // Without objects, and without faults: those are the device's own and change.
    const DeviceConfig& Config() const { return m_config; }
    std::uint32_t Instance() const { return m_config.Instance; }
    BACSTAC_OBJECT_ID Id() const { return {OBJ_DEVICE, m_config.Instance}; }

    void SetFaults(const std::vector<Fault>& faults);
    void SetFault(const Fault& fault) { SetFaults({fault}); }
    void ClearFaults() { SetFaults({}); }

    void SetQuirks(const Quirks& quirks); // but for the second claimant

    // False where the object is missing (or present already, for AddObject; or no log, for the log functions).
    bool AddObject(const ObjectConfig& config);
    bool RemoveObject(BACSTAC_OBJECT_ID id);
    bool SetProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, Value value);
    bool RemoveProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property);
    std::optional<Value> GetProperty(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) const; // stored ones
    std::vector<BACSTAC_OBJECT_ID> ObjectList() const; // the device object first

    // The object goes to that event state (0 normal, 1 fault, others offnormal) until something of it changes: its
    // transition wants to be acknowledged where its notification class says so, the event logs record it, and its
    // recipients are told. False without the object.
    bool RaiseEvent(BACSTAC_OBJECT_ID id, std::uint32_t state);
    bool AcknowledgeEvent(BACSTAC_OBJECT_ID id, Transition transition, const std::string& by = {});

    // What is due by the device's clock is done. The server calls it some ten times in a second; a test that steps the
    // clock may do so itself.
    void Run();

    // Every log gets a record of the change.
    void SetClock(LocalTime now);
    Communication CommunicationState() const;
    BackupState GetBackupState() const;
    void SetSystemStatus(std::uint32_t status); // what it is outside backup and restore; 0 at first: operational

    bool Append(BACSTAC_OBJECT_ID log, LogRecord record);
    bool Generate(BACSTAC_OBJECT_ID log, std::uint64_t count);
    void GenerateAll(std::uint64_t count); // in every enabled log that has a generator
    bool SetLogEnabled(BACSTAC_OBJECT_ID log, bool enabled);
    bool PurgeLog(BACSTAC_OBJECT_ID log);
    std::vector<LogRecord> Records(BACSTAC_OBJECT_ID log) const; // those in the buffer, oldest first
    std::optional<std::uint32_t> TotalRecordCount(BACSTAC_OBJECT_ID log) const;

    // Contents of a file object: its octets, or its records. Nothing when it is no file of that form.
    std::optional<std::string> FileOctets(BACSTAC_OBJECT_ID file) const;
    std::optional<std::vector<std::string>> FileRecords(BACSTAC_OBJECT_ID file) const;

    Stats GetStats() const;

    // Whether Run may have something to do.
    bool IsAtWork() const { return m_automation.IsAtWork(); }
    // What the device wants to have sent, in order; the newest thousand when nobody takes them.
    std::vector<Message> TakeMessages();
    bool HasMessages() const { return m_hasMessages; }

    // ---- The server

    std::unique_lock<std::mutex> Lock() const { return std::unique_lock(m_mutex); }
    // Null when there is none. The device object is also found as device 4194303, "whichever".
    Object* Find(BACSTAC_OBJECT_ID id) const;
    // What a client writes; also what concerns more than the object, such as that names are unique.
    PropertyError Write(BACSTAC_OBJECT_ID id, const WriteCommand& command);
    // AddElements or RemoveElements of the object.
    using ChangeElements = PropertyError (Object::*)(const WriteCommand&, std::uint32_t&);
    PropertyError ChangeList(BACSTAC_OBJECT_ID id, ChangeElements change, const WriteCommand& command,
                             std::uint32_t& failed);
    // The device's own doing, without asking whether clients may; false when the value is that already.
    bool Update(Object& object, BACSTAC_PROPERTY_ID property, Value value);
    // A value of the object has changed otherwise.
    void NoteValue(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) { m_automation.OnChange(id, property); }
    void Post(Message message);
    void LogEvent(const LogRecord& record); // in all event logs
    EventMonitor& Events() { return m_automation.Events(); }
    PropertyError Subscribe(const CovRequest& request) { return m_automation.Subscribe(request); }
    void Unsubscribe(const CovRequest& request) { m_automation.Cov().Cancel(request); }
    const Subscriptions& Cov() const { return m_automation.Cov(); }
    // Whether the reference is to one of its own objects, there or not.
    bool IsOwn(const BACSTAC_DEV_OBJ_PROP_REF& reference) const;
    // Creation and deletion by a client. The identifier is that of the specifier, or the first one free.
    PropertyError ChooseIdentifier(const BACSTAC_OBJECT_SPECIFIER& specifier, BACSTAC_OBJECT_ID& id) const;
    PropertyError Create(const ObjectConfig& config);
    PropertyError Delete(BACSTAC_OBJECT_ID id);
    bool IsNameTaken(std::span<const std::uint8_t> name, const Object* except = nullptr) const; // name as encoded
    LocalTime Now() const { return m_clock() + m_clockOffset; }
    LocalTime Uptime() const { return m_clock(); } // what no client can change
    const std::vector<BACSTAC_OBJECT_ID>& Objects() const { return m_objectList; }

    // What the notification class of that number says; the usual where there is none.
    const Object* FindClass(std::uint32_t number) const; // null when there is none
    NotificationClass ClassOf(std::uint32_t number, const BACSTAC_RECIPIENT* recipient, std::uint32_t process) const;
    void AdjustClock(LocalTime now);
    LocalTime FromUtc(LocalTime utc) const;
    bool IsPassword(std::span<const std::uint8_t> encoded) const; // encoded: empty when none was given
    PropertyError ControlCommunication(Communication state, std::uint32_t minutes); // 0: until further notice
    Communication GetCommunication() const;
    void NoteRestart(RestartReason reason);
    std::uint32_t SystemStatus() const;
    const BackupProcedure& Backup() const { return m_backup; }
    PropertyError StartBackup();
    PropertyError EndBackup();
    PropertyError StartRestore();
    PropertyError EndRestore();
    PropertyError AbortRestore();
    // Before a file is read or written: refuses while the device prepares itself.
    PropertyError UseFile(BACSTAC_OBJECT_ID file);
    const Quirks& GetQuirks() const { return m_quirks; }
    const FaultList& Faults() const { return m_faults; }
    FaultList& Faults() { return m_faults; }
    void Count(Counter counter) {
        m_counters[static_cast<std::size_t>(counter)].fetch_add(1, std::memory_order_relaxed);
    }
    bool Offers(bacnet::ConfirmedService service) const;
    bool AcceptsByTime() const;
    bool AcceptsByTime2001() const;

private:
    static std::uint32_t KeyOf(BACSTAC_OBJECT_ID id) { return id.Type << 22 | (id.Instance & BACSTAC_MAX_INSTANCE); }
    LogObject* FindLog(BACSTAC_OBJECT_ID id) const;
    bool Creates(BACSTAC_OBJECT_TYPE type) const;
    void AddBackup();
    void StartEvent(BACSTAC_OBJECT_ID id, const EventConfig& event);
    FileObject* FindSnapshot() const;
    void Erase(BACSTAC_OBJECT_ID id);
    bool Insert(std::unique_ptr<Object> object);
    void NoteChange(); // of the object list: Database_Revision

    struct Entry {
        std::uint32_t Key;
        std::unique_ptr<Object> Content;
    };

    DeviceConfig m_config;
    std::function<LocalTime()> m_clock;
    mutable std::mutex m_mutex;                  // of all below but the counters
    std::vector<Entry> m_objects;                // sorted by key
    std::vector<BACSTAC_OBJECT_ID> m_objectList; // as they were added
    std::uint32_t m_databaseRevision = 1;
    FaultList m_faults;
    Quirks m_quirks;
    std::atomic<LocalTime> m_clockOffset = 0;
    Communication m_communication = Communication::enabled;
    LocalTime m_communicationUntil = 0; // uptime; 0: until further notice
    std::uint32_t m_systemStatus = 0;
    Automation m_automation{*this};
    std::deque<Message> m_messages;
    std::atomic<bool> m_hasMessages = false;
    BackupProcedure m_backup;
    std::optional<BACSTAC_OBJECT_ID> m_snapshot; // the file that holds the device's own configuration
    std::array<std::atomic<std::uint64_t>, static_cast<std::size_t>(Counter::count)> m_counters{};
};

} // namespace sim
