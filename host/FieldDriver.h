// The driver that carries the console: what it asks for through CDriver, and the thread that hands the kernel's tag
// changes to it.
#pragma once

#include "api/driver/AlarmConfig.h"
#include "api/driver/Driver.h"
#include "host/AlarmRuleFile.h"
#include "host/HistoryMonitor.h"
#include "host/SettingsGuard.h"
#include "host/StationStore.h"
#include "module/console/Tag.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

class IQLProgramCore;
class IQLUserManagement;

class CFieldDriver : public CDriver, private IAlarmConfig {
public:
    static constexpr const char* NAME = "BACnet driver";

    // What it is given outlives it. onTagChange gets every change of a tag that was asked for, on the thread of the
    // messages.
    CFieldDriver(IQLProgramCore& kernel, CStationStore& station, AlarmRuleStore& rules, CSettingsGuard& settings,
                 CHistoryMonitor& history, IQLUserManagement& users, int transferChunk,
                 std::function<void(std::uint32_t tagId, double value)> onTagChange);
    ~CFieldDriver() override; // disconnects

    // Connects to the kernel and starts the thread of the messages.
    bool Connect(std::string& error);
    // Ends the thread and the connection. No change is given afterwards.
    void Disconnect();
    // True once the kernel has told that it shuts down.
    bool HasKernelEnded() const { return m_kernelEnded; }

    // Stores allPropPages and what the station keeps, from a copy made under the module lock. Empty, or what could not
    // be stored and why, which is logged too; "\r\n" between two failures.
    std::string Store();

    const char* GetName() override { return NAME; }
    void SaveSettings() override;
    std::string GetSaveFailure() override { return m_saveFailure; }
    CTagList& GetTagList() override { return m_tags; }
    IAlarmConfig& GetAlarmConfig() override { return *this; }
    ISystemAlarmDefinitions& GetSystemAlarmDefinitions() override { return m_station; }
    IBacnetIdentity& GetIdentity() override { return m_station; }
    IUserAccess& GetUserAccess() override { return m_station; }
    std::uint8_t GetGateId() override { return m_gate; }
    bool IsWarmStart() override { return false; }
    int GetTransferChunk() override { return m_transferChunk; }
    IQLProgramCore& GetKernel() override { return m_kernel; }
    IQLUserManagement& GetUserManagement() override { return m_users; }
    IHistoryObserver* GetHistoryObserver() override { return &m_history; }

private:
    AlarmRuleStore* GetRules() override { return &m_rules; }
    std::vector<CEventFilter>& GetEventFilters() override { return m_station.EventFilters(); }
    AlarmDefinition& GetCommunicationError() override { return m_station.CommunicationError(); }

    void ReceiveMessages();
    void GiveAllValues();

    IQLProgramCore& m_kernel;
    CStationStore& m_station;
    AlarmRuleStore& m_rules;
    CSettingsGuard& m_settings;
    CHistoryMonitor& m_history;
    IQLUserManagement& m_users;
    const int m_transferChunk;
    const std::function<void(std::uint32_t, double)> m_onTagChange;
    CTagList m_tags;
    std::string m_saveFailure; // console thread only
    std::uint8_t m_gate = 0;
    std::atomic<bool> m_stopping{false};
    std::atomic<bool> m_kernelEnded{false};
    std::thread m_messages;
};
