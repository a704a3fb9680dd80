// A driver around a kernel, with settable answers. What the console asks of it in passing is recorded in the list of
// events.
#pragma once

#include "api/driver/AlarmConfig.h"
#include "api/driver/Driver.h"
#include "api/driver/Identity.h"
#include "module/console/Tag.h"
#include "tests/support/EventList.h"
#include "tests/support/FakeUsers.h"

#include <functional>
#include <string>

class CFakeAlarmRules : public AlarmRuleStore {
public:
    void Reload() override {}
    bool Find(const AlarmRuleKey& key, AlarmDefinition& definition) override;
    void Set(const AlarmRuleKey& key, const AlarmDefinition& definition) override { m_rules[key] = definition; }
    bool Remove(const AlarmRuleKey& key) override { return m_rules.erase(key) != 0; }
    const char* GetFileName() override { return ""; }
    std::filesystem::file_time_type GetFileTime() override { return {}; }
    std::map<AlarmRuleKey, AlarmDefinition> GetAll() override { return m_rules; }

private:
    std::map<AlarmRuleKey, AlarmDefinition> m_rules;
};

class CFakeDriver : public CDriver,
                    private IAlarmConfig,
                    private ISystemAlarmDefinitions,
                    private IBacnetIdentity,
                    private IUserAccess {
public:
    CEventList& m_events;

    CFakeDriver(CEventList& events, IQLProgramCore& kernel) : m_events(events), m_kernel(kernel) {}

    std::string m_name = "Test driver";
    bool m_isWarmStart = false;
    int m_transferChunk = 100;
    std::uint8_t m_gateId = 7;
    CTagList m_tags;
    CFakeUsers m_users{m_events};
    std::function<void(const std::string&)> m_onCall; // called inside each operation of CDriver's own, with its name
    std::string m_saveFailure;                        // what GetSaveFailure gives

    const char* GetName() override;
    void SaveSettings() override {
        m_events.Add("SaveSettings()");
        Call("SaveSettings");
    }
    std::string GetSaveFailure() override { return m_saveFailure; }
    CTagList& GetTagList() override {
        Call("GetTagList");
        return m_tags;
    }
    IAlarmConfig& GetAlarmConfig() override { return *this; }
    ISystemAlarmDefinitions& GetSystemAlarmDefinitions() override { return *this; }
    IBacnetIdentity& GetIdentity() override { return *this; }
    IUserAccess& GetUserAccess() override { return *this; }
    std::uint8_t GetGateId() override {
        Call("GetGateId");
        return m_gateId;
    }
    bool IsWarmStart() override {
        Call("IsWarmStart");
        return m_isWarmStart;
    }
    int GetTransferChunk() override {
        Call("GetTransferChunk");
        return m_transferChunk;
    }
    IQLProgramCore& GetKernel() override {
        Call("GetKernel");
        return m_kernel;
    }
    IQLUserManagement& GetUserManagement() override {
        Call("GetUserManagement");
        return m_users;
    }

private:
    void Call(const char* operation) {
        if (m_onCall)
            m_onCall(operation);
    }

    AlarmRuleStore* GetRules() override { return &m_rules; }
    std::vector<CEventFilter>& GetEventFilters() override { return m_filters; }
    AlarmDefinition& GetCommunicationError() override { return m_communicationError; }

    AlarmDefinition& GetOutOfService() override { return m_outOfService; }
    AlarmDefinition& GetOverridden() override { return m_overridden; }
    AlarmDefinition& GetDeviceRestart() override { return m_deviceRestart; }

    std::uint32_t GetDeviceInstance() override { return m_deviceInstance; }
    void SetDeviceInstance(std::uint32_t instance) override { m_deviceInstance = instance; }
    std::string GetDeviceName() override { return m_deviceName; }
    void SetDeviceName(const std::string& name) override { m_deviceName = name; }
    std::uint16_t GetLocalNetworkNumber() override { return 1; }
    std::uint32_t GetProcessIdentifier() override { return m_processIdentifier; }
    void SetProcessIdentifier(std::uint32_t identifier) override { m_processIdentifier = identifier; }

    std::string GetGroupName() override { return m_groupName; }
    void SetGroupName(const std::string& name) override { m_groupName = name; }
    std::vector<std::string> GetGroupNames() override { return {"Operators", "Engineers"}; }

    IQLProgramCore& m_kernel;
    CFakeAlarmRules m_rules;
    std::vector<CEventFilter> m_filters;
    AlarmDefinition m_communicationError;
    AlarmDefinition m_outOfService;
    AlarmDefinition m_overridden;
    AlarmDefinition m_deviceRestart;
    std::uint32_t m_deviceInstance = 1;
    std::string m_deviceName = "Test station";
    std::uint32_t m_processIdentifier = 1;
    std::string m_groupName = "Operators";
};
