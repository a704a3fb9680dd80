// What the console edits and the settings file holds, apart from report jobs and what lies behind CDriver's interfaces.
//
// The one instance of AllPropPages is allPropPages (Globals.h), guarded by the module lock. A job that runs for long
// takes a copy under the lock and works on the copy. All text is 8-bit in the narrow code page and kept byte for byte;
// device instances in lists are decimal text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// LogSettings::flags.
inline constexpr std::uint32_t LOG_ONLINE_ENABLED = 1u << 0;
inline constexpr std::uint32_t LOG_ONLINE_LIMIT_SIZE = 1u << 1;
inline constexpr std::uint32_t LOG_HISTORICAL_ENABLED = 1u << 2;
inline constexpr std::uint32_t LOG_HISTORICAL_LIMIT_SIZE = 1u << 3;
inline constexpr std::uint32_t LOG_HISTORICAL_LIMIT_SESSIONS = 1u << 4;

struct LogSettings {
    std::uint32_t flags =
        LOG_ONLINE_ENABLED | LOG_ONLINE_LIMIT_SIZE | LOG_HISTORICAL_ENABLED | LOG_HISTORICAL_LIMIT_SIZE;
    std::uint32_t level = 2;                   // index among "Trace", "Normal", "Info", "Low info"
    std::int32_t onlineSizeLimit = 1;          // Mb
    std::int32_t historicalSizeLimit = 10;     // Mb
    std::int32_t historicalSessionLimit = 100; // sessions
    std::uint32_t categoryMask = 0x00001FFF;   // 13 message categories
    std::uint32_t filter = 0;                  // derived from categoryMask when the log tab loads

    bool operator==(const LogSettings&) const = default;
};

// TimeSyncSettings::flags.
inline constexpr std::uint32_t TIMESYNC_CYCLIC = 1u << 0;
inline constexpr std::uint32_t TIMESYNC_DEVICE_IS_MASTER = 1u << 1; // clear: the local system is
inline constexpr std::uint32_t TIMESYNC_UTC = 1u << 2;

struct TimeSyncSettings {
    std::uint32_t flags = TIMESYNC_UTC;
    std::uint32_t period = 24; // hours
    std::string masterDevice;  // empty when none
    std::vector<std::string> devices;

    bool operator==(const TimeSyncSettings&) const = default;
};

// CDeviceSettings::limitKind.
inline constexpr std::int32_t HISTORY_LIMIT_BY_RECORDS = 0;
inline constexpr std::int32_t HISTORY_LIMIT_BY_TIME = 1; // seconds

// What is transferred from one device.
struct CDeviceSettings {
    std::string device;
    std::int32_t force2001 = 0;      // "Force use of 2001 standard mode"
    std::int32_t definitionMode = 0; // 0 "Trend objects", 1 "Data objects"
    std::int32_t limitEnabled = 0;
    std::int32_t limitKind = HISTORY_LIMIT_BY_RECORDS;
    std::int32_t limitValue = 100;    // records or seconds; any value can stand in a file
    std::vector<std::string> objects; // names of the selected objects

    bool operator==(const CDeviceSettings&) const = default;
};

// "Start date and time" or "End date and time". Date and time are seconds since 1970.
struct HistoryTimeLimit {
    std::uint32_t indicator = 0; // index among "Absolute", "Relative"
    std::int64_t date = 0;
    std::int64_t time = 0;
    std::uint32_t amount = 0; // of the relative form

    bool operator==(const HistoryTimeLimit&) const = default;
};

struct HistorySettings {
    std::string selectedDevice; // empty when none
    // One entry per configured device. An entry may be null: readers pass over it, it is not stored.
    std::vector<std::unique_ptr<CDeviceSettings>> devices;
    HistoryTimeLimit startRange;
    HistoryTimeLimit endRange;
    std::string flushTag; // tag of the trigger "FlushAllTrendLog"

    // A copy has devices of its own. Inline, since the driver copies settings too and sees only what the module
    // exports.
    HistorySettings() = default;
    HistorySettings(HistorySettings&&) = default;
    HistorySettings(const HistorySettings& other)
        : selectedDevice(other.selectedDevice), startRange(other.startRange), endRange(other.endRange),
          flushTag(other.flushTag) {
        for (const auto& device : other.devices)
            devices.push_back(device ? std::make_unique<CDeviceSettings>(*device) : nullptr);
    }
    HistorySettings& operator=(HistorySettings other) {
        selectedDevice = std::move(other.selectedDevice);
        devices = std::move(other.devices);
        startRange = other.startRange;
        endRange = other.endRange;
        flushTag = std::move(other.flushTag);
        return *this;
    }
    bool operator==(const HistorySettings& other) const {
        const auto same = [](const auto& a, const auto& b) { return a && b ? *a == *b : !a && !b; };
        return selectedDevice == other.selectedDevice && startRange == other.startRange && endRange == other.endRange &&
               flushTag == other.flushTag && std::ranges::equal(devices, other.devices, same);
    }
};

// GeneralSettings::flags.
inline constexpr std::uint32_t GENERAL_SYNC_TIME_ON_STARTUP = 1u << 0;
inline constexpr std::uint32_t GENERAL_TRANSFER_HISTORY_ON_STARTUP = 1u << 1;
inline constexpr std::uint32_t GENERAL_REFRESH_ALARMS_ON_STARTUP = 1u << 2;

struct GeneralSettings {
    std::uint32_t flags = 0;
    std::string reserved1;                            // read, written and otherwise unused
    std::string reserved2;                            // read, written and otherwise unused
    std::map<std::uint16_t, std::string> networkTags; // control tag of a network
    std::string helpFileFormat;                       // "Automatic help file &format"

    bool operator==(const GeneralSettings&) const = default;
};

inline constexpr std::uint32_t NO_DEVICE_INSTANCE = 0xFFFFFFFF;

struct BackupDevice {
    std::uint32_t instance = NO_DEVICE_INSTANCE;
    std::string password; // for ReinitializeDevice
    std::string restoreTag;

    bool operator==(const BackupDevice&) const = default;
};

struct BackupSettings {
    std::uint32_t enabled = 0; // not 0: automatic backup and restore
    std::string backupTag;     // tag of the trigger "BackupDevices"
    std::vector<BackupDevice> devices;
    std::string folder;

    bool operator==(const BackupSettings&) const = default;
};

struct AllPropPages {
    LogSettings log;
    TimeSyncSettings timeSync;
    HistorySettings history;
    GeneralSettings general;
    BackupSettings backup;

    bool operator==(const AllPropPages&) const = default;
};
