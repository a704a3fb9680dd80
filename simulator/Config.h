// What a simulation consists of, as plain data: made by hand in tests, by counts (Generate.h) or from a file
// (ConfigFile.h), and given to a Simulator.
#pragma once

#include "platform/stack/services/ServiceChoice.h"
#include "simulator/model/Fault.h"
#include "simulator/model/LogRecord.h"
#include "simulator/model/RecordGenerator.h"
#include "simulator/model/Value.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sim {

// APDU_Timeout and Number_Of_APDU_Retries of all devices.
inline constexpr std::uint32_t APDU_TIMEOUT_MS = 3000;
inline constexpr std::uint32_t APDU_RETRIES = 3;

// Trend log and trend-log-multiple. The buffer holds at first the last Capacity of Generated records, then Records.
struct LogConfig {
    std::uint32_t Capacity = 1000;
    std::uint32_t InitialTotal = 0; // records that were logged and lost before; raises the sequence numbers
    bool Enabled = true;
    bool StopWhenFull = false;
    std::vector<BACSTAC_DEV_OBJ_PROP_REF> References; // what is logged; one for a trend log
    std::optional<GeneratorConfig> Generator;         // also of the records that a running simulation adds
    std::uint64_t Generated = 0;
    std::vector<LogRecord> Records;
};

// Contents of a file object.
struct FileConfig {
    bool OfRecords = false;            // record access; otherwise stream access
    std::string Octets;                // of a stream
    std::vector<std::string> Records;  // of the other form
    std::uint32_t MaxSize = 16U << 20; // octets; writes beyond are refused
    bool ReadOnly = false;
    std::string Type = "application/octet-stream"; // File_Type
    LocalTime Modified = 0;
};

// The event that an object is in when the simulation starts; it has the properties of event reporting then.
struct EventConfig {
    std::uint32_t State = 0; // BACnetEventState; 0: normal, nothing has happened
    bool Acked = false;
    std::uint32_t NotificationClass = 1;
    std::uint32_t NotifyType = 0; // 0 alarm, 1 event
};

// The standard properties of the type come by themselves; Properties adds to them or overrides them.
struct ObjectConfig {
    BACSTAC_OBJECT_ID Id{};
    std::string Name; // UTF-8; empty: made of type and instance
    std::string Description;
    // Analog objects: limits, event enable and the rest, some 25 properties in all; binary and multi-state objects:
    // alarm values, of outputs the feedback.
    bool IntrinsicReporting = false;
    bool Commandable = false; // value objects: a priority array; outputs always have one
    std::vector<std::pair<BACSTAC_PROPERTY_ID, Value>> Properties;
    std::vector<BACSTAC_PROPERTY_ID> ReadOnly; // that clients may not write, though they usually may
    std::optional<LogConfig> Log;              // types 20 and 27; without it such an object has an empty buffer
    std::optional<FileConfig> File;            // type 10; without it such an object is an empty stream
    std::optional<EventConfig> Event;
    bool AllProperties = false; // every property that the standard gives the type, not only what it requires
    bool Permanent = false;     // clients may not delete it
};

// The backup and restore procedure of a device.
struct BackupConfig {
    // Configuration_Files. What is not among the device's objects is made, and holds the properties that can be
    // written: backup and restore then really take them and put them back.
    std::vector<BACSTAC_OBJECT_ID> Files;
    std::uint32_t BackupPreparation = 0; // seconds, as are the others
    std::uint32_t RestorePreparation = 0;
    std::uint32_t CompletionTime = 0;     // System_Status stays so long after the end
    std::uint32_t FailureTimeout = 300;   // without use of the files; 0: never
    bool OldNumbers = false;              // preparation times are the properties 315 and 316
    bool WithoutPreparationTimes = false; // the device does not tell them
};

// What a device says wrongly; see Profiles.cpp.
struct Quirks {
    bool WrongCharacterSet = false;
    bool WrongTypes = false;
    bool TruncatedTags = false;
    bool NestedForever = false;
    bool LyingCounts = false;
    bool GrowingObjectList = false;
    bool EmptyFiles = false;
    bool SecondClaimant = false;                   // of its instance; from the start of the simulation
    std::uint32_t ObjectListSize = 0;              // what it claims; 0: what it has
    std::optional<BACSTAC_PROPERTY_ID> Unreadable; // of all objects

    bool Any() const {
        return WrongCharacterSet || WrongTypes || TruncatedTags || NestedForever || LyingCounts || GrowingObjectList ||
               EmptyFiles || ObjectListSize != 0 || Unreadable.has_value();
    }
};

// Which forms of ReadRange by time a device understands.
enum class ByTimeForms : std::uint8_t {
    byRevision, // from protocol revision 4 on the present one, before it that of the 2001 standard
    both,
};

struct DeviceConfig {
    std::uint32_t Instance = 1; // at most 4194302
    std::string Name;           // empty: made of the instance
    std::string Description;
    std::uint32_t VendorId = 999;
    std::uint32_t ProtocolRevision = 14;
    std::uint32_t MaxApdu = 1476; // 50 to 1476; what the device sends, too, is no longer
    bacnet::Segmentation Segmentation = bacnet::Segmentation::transmit;
    std::uint8_t WindowSize = 16;          // of segmented answers, proposed, and of requests, the most; 1 to 127
    std::uint32_t MaxSegments = 64;        // of one request, when the device receives segments
    std::uint32_t SegmentTimeoutMs = 2000; // waiting for a SegmentACK; a request stops after four times this
    std::uint32_t SegmentRetries = 3;
    ByTimeForms ByTime = ByTimeForms::byRevision;
    std::vector<bacnet::ConfirmedService> LacksServices; // known to the simulator but not to this device

    std::uint32_t Ip = 0;   // 127.x.y.z as a number; not for devices behind a router
    std::uint16_t Port = 0; // 0: the simulation's
    std::uint8_t Mac = 0;   // of a device behind a router

    std::string Password;           // of ReinitializeDevice and DeviceCommunicationControl; empty: any will do
    std::uint32_t RestartMs = 1000; // how long it is gone when it restarts
    std::optional<BackupConfig> Backup;

    // What clients may create and delete; nothing: all that the standard knows, but devices and network ports.
    std::optional<std::vector<BACSTAC_OBJECT_TYPE>> Creates;
    std::uint32_t EventsPerAnswer = 0;    // of GetEventInformation, then "more events"; 0: as many as fit
    std::uint32_t MaxObjects = 1'000'000; // with the device object; creating beyond is refused

    std::vector<ObjectConfig> Objects; // without the device object
    std::vector<Fault> Faults;
    sim::Quirks Quirks;
};

struct NetworkConfig {
    std::uint16_t Number = 1; // 1 to 65534
    std::vector<DeviceConfig> Devices;
};

// A router between the IP network and networks of one-octet addresses, all simulated.
struct RouterConfig {
    std::uint32_t Ip = 0;
    std::uint16_t Port = 0; // 0: the simulation's
    std::vector<NetworkConfig> Networks;
};

// Where I-Am goes in answer to a broadcast Who-Is; one that came to a device alone is answered to the asker.
enum class IAmMode : std::uint8_t { broadcast, unicast };

struct SimulatorConfig {
    std::uint16_t Port = 47808;
    std::uint32_t BroadcastIp = 0x7FFFFFFF; // 127.255.255.255, the broadcast address of the loopback network
    unsigned Threads = 1;
    IAmMode IAm = IAmMode::broadcast;
    std::uint32_t IAmPerMs = 50;      // devices that answer a broadcast Who-Is in one millisecond; 0: all at once
    std::uint32_t AppendEveryMs = 0;  // every log's generator adds one record; 0: never
    std::function<LocalTime()> Clock; // of all devices; empty: the machine's. Called on any thread
    std::vector<DeviceConfig> Devices;
    std::vector<RouterConfig> Routers;
};

} // namespace sim
