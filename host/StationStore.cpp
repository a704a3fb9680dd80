#include "host/StationStore.h"

#include "base/DurableFile.h"
#include "host/AlarmJson.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace {

using Json = nlohmann::json;

constexpr std::size_t MAX_FILE_SIZE = 64 << 20;
constexpr std::uint32_t MAX_DEVICE_INSTANCE = 4194302;

} // namespace

CStationStore::CStationStore(std::string path, const IdentityConfig& config)
    : m_path(std::move(path)), m_localNetwork(config.localNetwork), m_groups(config.groups),
      m_instance(config.instance), m_name(config.name), m_processIdentifier(config.processIdentifier),
      m_group(config.groups.empty() ? std::string() : config.groups.front()) {}

bool CStationStore::Load(std::string& error) {
    if (access(m_path.c_str(), F_OK) != 0)
        return true;
    std::string text;
    if (ReadWholeFile(m_path, MAX_FILE_SIZE, text, &error) != FileRead::Ok)
        return false;
    if (Decode(text, error)) {
        m_stored = text;
        return true;
    }
    const std::string damaged = m_path + ".damaged";
    rename(m_path.c_str(), damaged.c_str());
    error = damaged + ": " + error;
    return false;
}

bool CStationStore::Save(std::string& error) {
    std::string text = Encode();
    if (text == m_stored)
        return true;
    if (!ReplaceWholeFile(m_path, text, FileAccess::OwnerOnly, &error))
        return false;
    m_stored = std::move(text);
    return true;
}

std::string CStationStore::Encode() {
    Json json;
    {
        const std::lock_guard guard(m_lock);
        json["identity"] = {{"instance", m_instance}, {"name", m_name}, {"processIdentifier", m_processIdentifier}};
        json["group"] = m_group;
    }
    json["eventFilters"] = m_filters;
    json["communicationError"] = m_communicationError;
    json["outOfService"] = m_outOfService;
    json["overridden"] = m_overridden;
    json["deviceRestart"] = m_deviceRestart;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

bool CStationStore::Decode(const std::string& text, std::string& error) {
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) {
        error = "is not a JSON object";
        return false;
    }
    try {
        const Json identity = json.value("identity", Json::object());
        const auto instance = identity.value("instance", m_instance);
        auto name = identity.value("name", m_name);
        const auto identifier = identity.value("processIdentifier", m_processIdentifier);
        auto group = json.value("group", m_group);
        auto filters = json.value("eventFilters", m_filters);
        auto communicationError = json.value("communicationError", m_communicationError);
        auto outOfService = json.value("outOfService", m_outOfService);
        auto overridden = json.value("overridden", m_overridden);
        auto deviceRestart = json.value("deviceRestart", m_deviceRestart);
        if (instance > MAX_DEVICE_INSTANCE) {
            error = "has a device instance that cannot be";
            return false;
        }
        const std::lock_guard guard(m_lock);
        m_instance = instance;
        m_name = std::move(name);
        m_processIdentifier = identifier;
        m_group = std::move(group);
        m_filters = std::move(filters);
        m_communicationError = std::move(communicationError);
        m_outOfService = std::move(outOfService);
        m_overridden = std::move(overridden);
        m_deviceRestart = std::move(deviceRestart);
        return true;
    } catch (const Json::exception&) {
        error = "has a member of another kind than it should";
        return false;
    }
}

void CStationStore::SetIdentityListener(std::function<void()> listener) {
    const std::lock_guard guard(m_lock);
    m_identityChanged = std::move(listener);
}

void CStationStore::SetNetworkNumberSource(std::function<std::uint16_t()> source) {
    const std::lock_guard guard(m_lock);
    m_networkNumber = std::move(source);
}

void CStationStore::ChangeIdentity(const std::function<bool()>& change) {
    std::function<void()> listener;
    {
        const std::lock_guard guard(m_lock);
        if (change())
            listener = m_identityChanged;
    }
    if (listener) // which asks this store
        listener();
}

std::uint32_t CStationStore::GetDeviceInstance() {
    const std::lock_guard guard(m_lock);
    return m_instance;
}

void CStationStore::SetDeviceInstance(std::uint32_t instance) {
    ChangeIdentity([&] { return std::exchange(m_instance, instance) != instance; });
}

std::string CStationStore::GetDeviceName() {
    const std::lock_guard guard(m_lock);
    return m_name;
}

void CStationStore::SetDeviceName(const std::string& name) {
    ChangeIdentity([&] { return std::exchange(m_name, name) != name; });
}

std::uint16_t CStationStore::GetLocalNetworkNumber() {
    if (m_localNetwork != 0)
        return m_localNetwork;
    const std::lock_guard guard(m_lock);
    return m_networkNumber ? m_networkNumber() : std::uint16_t{0};
}

std::uint32_t CStationStore::GetProcessIdentifier() {
    const std::lock_guard guard(m_lock);
    return m_processIdentifier;
}

void CStationStore::SetProcessIdentifier(std::uint32_t identifier) {
    const std::lock_guard guard(m_lock);
    m_processIdentifier = identifier;
}

std::string CStationStore::GetGroupName() {
    const std::lock_guard guard(m_lock);
    return m_group;
}

void CStationStore::SetGroupName(const std::string& name) {
    const std::lock_guard guard(m_lock);
    m_group = name;
}

std::vector<std::string> CStationStore::GetGroupNames() {
    return m_groups;
}
