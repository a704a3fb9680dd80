// What an operator changes in the console and the driver keeps: identity, object window group, alarm presentations and
// event filters. One JSON file in the data folder, replaced whole.
//
// Identity and access may be used by any thread. What is given by reference (filters and definitions) is changed under
// the module lock only, which Load's and Save's caller holds too.
#pragma once

#include "api/driver/AlarmConfig.h"
#include "api/driver/Identity.h"
#include "host/Config.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

inline constexpr const char* STATION_FILE = "station.json"; // in the data folder

class CStationStore : public IBacnetIdentity, public IUserAccess, public ISystemAlarmDefinitions {
public:
    // Starts with the configuration's values.
    CStationStore(std::string path, const IdentityConfig& config);

    // A missing file is none to complain about. False: the file is damaged, is put aside as PATH.damaged, and what it
    // should have told is as it was before.
    bool Load(std::string& error);
    // False: the old file stands. Writes only when something has changed.
    bool Save(std::string& error);

    // Called after each change of the device's instance or name, by the thread that changes it; empty: by none.
    void SetIdentityListener(std::function<void()> listener);

    // Asked for the number of the local network where the configuration has none, by any thread; empty: there is none.
    void SetNetworkNumberSource(std::function<std::uint16_t()> source);

    std::vector<CEventFilter>& EventFilters() { return m_filters; }
    AlarmDefinition& CommunicationError() { return m_communicationError; }

    std::uint32_t GetDeviceInstance() override;
    void SetDeviceInstance(std::uint32_t instance) override;
    std::string GetDeviceName() override;
    void SetDeviceName(const std::string& name) override;
    std::uint16_t GetLocalNetworkNumber() override;
    std::uint32_t GetProcessIdentifier() override;
    void SetProcessIdentifier(std::uint32_t identifier) override;

    std::string GetGroupName() override;
    void SetGroupName(const std::string& name) override;
    std::vector<std::string> GetGroupNames() override;

    AlarmDefinition& GetOutOfService() override { return m_outOfService; }
    AlarmDefinition& GetOverridden() override { return m_overridden; }
    AlarmDefinition& GetDeviceRestart() override { return m_deviceRestart; }

private:
    // change tells whether it has changed something.
    void ChangeIdentity(const std::function<bool()>& change);
    std::string Encode();
    bool Decode(const std::string& text, std::string& error);

    const std::string m_path;
    const std::uint16_t m_localNetwork;
    const std::vector<std::string> m_groups;

    std::mutex m_lock;
    std::uint32_t m_instance; // these four are guarded by m_lock
    std::string m_name;
    std::uint32_t m_processIdentifier;
    std::string m_group;
    std::function<void()> m_identityChanged;        // m_lock
    std::function<std::uint16_t()> m_networkNumber; // m_lock

    std::vector<CEventFilter> m_filters; // these and below by the module lock
    AlarmDefinition m_communicationError;
    AlarmDefinition m_outOfService;
    AlarmDefinition m_overridden;
    AlarmDefinition m_deviceRestart;
    std::string m_stored; // the file's content as it is known
};
