// One run of the driver: makes every part, connects them, and takes them down again.
//
//     lock and current directory are the caller's
//     Open           log, history, kernel with its tags, BACnet with its directory, settings
//     StartConsole   the console, network triggers, control socket
//     End            in reverse, in bounded time
//
// Used by the main thread; what the accessors give may be used by any thread between Open and End.
#pragma once

#include "host/AlarmRuleFile.h"
#include "host/Config.h"
#include "host/ControlServer.h"
#include "host/FieldDriver.h"
#include "host/HistoryMonitor.h"
#include "host/SettingsGuard.h"
#include "host/StationStore.h"
#include "host/Tags.h"
#include "host/login/UserManagement.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class Kernel;
class SqliteHistoryStore;
struct HistoryCount;

namespace bacnet {
class BacnetClient;
}

class CRuntime {
public:
    // folder is the data folder, absolute, and the current directory already.
    CRuntime(const Config& config, std::string folder);
    // After End, or without a Start.
    ~CRuntime();

    bool Open(std::string& error);
    // show: asks for a login at once, and opens the console's window.
    bool StartConsole(bool show, std::string& error);
    // False when a part did not end within its time: the process should then end without taking anything apart.
    bool End();

    const Config& GetConfig() const { return m_config; }
    const std::string& Folder() const { return m_folder; }
    std::chrono::steady_clock::time_point StartTime() const { return m_startTime; }
    Kernel& GetKernel() { return *m_kernel; }
    SqliteHistoryStore& History() { return *m_history; }
    // The ids under which a tag's records may stand in the history: they carry the station, but for a transfer on a
    // station without a name. The second one may equal the first.
    std::array<std::uint32_t, 2> HistoryIds(std::uint32_t tag) const;
    std::uint64_t RecordsOf(const std::vector<HistoryCount>& counts, std::uint32_t tag) const;
    CFieldDriver& Driver() { return *m_driver; }
    CHistoryMonitor& Monitor() { return m_monitor; }
    bacnet::BacnetClient& Client() { return *m_client; }

private:
    bool OpenHistory(std::string& error);
    bool OpenKernel(std::string& error);
    bool OpenStack(std::string& error);
    // Of the network that has no number here, as its routers tell it; 0 while nobody has.
    std::uint16_t ToldNetworkNumber() const;
    bool LoadSettings(std::string& error);

    const Config m_config;
    const std::string m_folder;
    const std::chrono::steady_clock::time_point m_startTime = std::chrono::steady_clock::now();

    CSettingsGuard m_settings;
    CStationStore m_station;
    CHistoryMonitor m_monitor;
    CUserStore m_users;
    CUserManagement m_userManagement;
    std::unique_ptr<CAlarmRuleFile> m_rules;
    std::unique_ptr<SqliteHistoryStore> m_history;
    std::unique_ptr<Kernel> m_kernel;
    std::unique_ptr<CFieldDriver> m_driver;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    std::unique_ptr<CControlServer> m_control;
    bool m_isConsoleStarted = false;
};
