#include "platform/kernel/Kernel.h"

#include "platform/kernel/Text.h"

#include <utility>
#include <vector>

namespace {

constexpr int CONNECT_MODE = 1;
constexpr int HISTORY_APPEND = 2;
constexpr unsigned STATION_SHIFT = 16;
constexpr std::uint32_t TAG_MASK = 0xFFFF;
constexpr char STATION_END = ':';

constexpr std::uint32_t STATION_ACTIVE = 0;
constexpr std::uint32_t STATION_PASSIVE = 1;

} // namespace

const char* Kernel::Fault(const KernelSettings& settings) {
    if (settings.stationName.size() >= QL_STATION_NAME_SIZE) {
        return "the station's name is longer than 15 bytes";
    }
    if (settings.stationName.find(STATION_END) != std::string::npos || HasControlCharacter(settings.stationName)) {
        return "the station's name holds a \":\" or a control character";
    }
    return nullptr;
}

Kernel::Kernel(KernelSettings settings, HistoryStore& history)
    : m_settings(std::move(settings)), m_connections(m_settings.queueLimit),
      m_channels(history, m_settings.storeFailed), m_traceMask(m_settings.traceMask) {}

AddTagResult Kernel::AddTag(const TagSettings& settings, std::uint32_t& id) {
    return m_tags.Add(settings, id);
}

QLResult Kernel::RemoveTag(std::uint32_t id) {
    return m_tags.Remove(id);
}

QLResult Kernel::SetTagValue(std::uint32_t id, double value) {
    return m_tags.SetNumber(id, value);
}

QLResult Kernel::SetTagValue(std::string_view name, double value) {
    const auto id = m_tags.Find(name);
    return id ? m_tags.SetNumber(*id, value) : QL_NO_SUCH_TAG;
}

QLResult Kernel::SetTagText(std::uint32_t id, std::string_view text) {
    return m_tags.SetText(id, text);
}

std::optional<TagInfo> Kernel::FindTag(std::string_view name) const {
    const auto id = m_tags.Find(name);
    return id ? m_tags.Get(*id) : std::nullopt;
}

void Kernel::ListTags(const std::function<bool(const TagInfo& tag)>& visitor) const {
    for (std::uint32_t id = 0; id < m_tags.Slots(); ++id) {
        const auto tag = m_tags.Get(id);
        if (tag && !visitor(*tag)) {
            return;
        }
    }
}

void Kernel::SetStationActive(bool active) {
    m_active = active;
}

void Kernel::SetCurrentUserName(std::string_view name) {
    const std::lock_guard lock(m_lock);
    m_userName = name;
}

bool Kernel::SetProductFolder(int folder, const std::string& path) {
    if (path.size() >= QL_FOLDER_SIZE) {
        return false;
    }
    const std::lock_guard lock(m_lock);
    m_folders[folder] = path;
    return true;
}

bool Kernel::SetHelpPath(const std::string& path) {
    if (path.size() >= QL_FOLDER_SIZE) {
        return false;
    }
    const std::lock_guard lock(m_lock);
    m_helpPath = path;
    return true;
}

void Kernel::SetTraceMask(unsigned mask) {
    m_traceMask = mask;
}

void Kernel::ShutDown() {
    m_connections.ShutDown();
}

QLResult Kernel::GetStationStatus(std::uint8_t handle, std::uint32_t& status) {
    if (!m_connections.Find(handle)) {
        return QL_NO_CONNECTION;
    }
    status = m_active ? STATION_ACTIVE : STATION_PASSIVE;
    return QL_OK;
}

QLResult Kernel::GetStationName(std::uint8_t handle, char* buffer, int, int, int, int, int) {
    if (!m_connections.Find(handle)) {
        return QL_NO_CONNECTION;
    }
    if (buffer == nullptr) {
        return QL_INVALID_ARGUMENT;
    }
    FillBuffer(buffer, QL_STATION_NAME_SIZE, m_settings.stationName);
    return QL_OK;
}

QLResult Kernel::Connect(const char* name, int mode, int option, std::uint8_t& handle) {
    if (name == nullptr || mode != CONNECT_MODE || option != 0) {
        return QL_INVALID_ARGUMENT;
    }
    return m_connections.Open(name, handle);
}

QLResult Kernel::Disconnect(std::uint8_t handle) {
    const auto connection = m_connections.Remove(handle);
    if (!connection) {
        return QL_NO_CONNECTION;
    }
    const Connection::Owned owned = connection->Close();
    for (const std::uint32_t channel : owned.channels) {
        m_channels.Close(channel);
    }
    for (const std::uint32_t tag : owned.tags) {
        m_tags.Forget(tag, *connection);
    }
    return QL_OK;
}

QLResult Kernel::ReceiveMessage(std::uint8_t handle, void* buffer, std::uint32_t timeout) {
    const auto connection = m_connections.Find(handle);
    if (!connection) {
        return QL_NO_CONNECTION;
    }
    return buffer != nullptr ? connection->Receive(buffer, timeout) : QL_INVALID_ARGUMENT;
}

QLResult Kernel::GetTagDefinition(std::uint8_t handle, std::uint32_t tagId, TagDefinition& definition) {
    if (!m_connections.Find(handle)) {
        return QL_NO_CONNECTION;
    }
    if (definition.size != sizeof definition) {
        return QL_INVALID_ARGUMENT;
    }
    const auto id = LocalId(tagId);
    return id ? m_tags.GetDefinition(*id, definition) : QL_NO_SUCH_TAG;
}

QLResult Kernel::GetTagIdWithStation(std::uint8_t handle, const char* name, std::uint32_t& tagId) {
    if (!m_connections.Find(handle)) {
        return QL_NO_CONNECTION;
    }
    if (name == nullptr) {
        return QL_INVALID_ARGUMENT;
    }
    std::string_view tag = name;
    const std::size_t colon = tag.find(STATION_END);
    if (colon != std::string_view::npos) {
        if (colon == 0 || tag.substr(0, colon) != m_settings.stationName) {
            return QL_NO_SUCH_TAG;
        }
        tag.remove_prefix(colon + 1);
    }
    const auto id = m_tags.Find(tag);
    if (!id) {
        return QL_NO_SUCH_TAG;
    }
    tagId = std::uint32_t{m_settings.stationNumber} << STATION_SHIFT | *id;
    return QL_OK;
}

QLResult Kernel::FlushHistory(std::uint32_t channel) {
    return m_channels.Flush(channel);
}

QLResult Kernel::CloseHistory(std::uint32_t channel) {
    return m_channels.Close(channel);
}

QLResult Kernel::OpenHistory(std::uint8_t handle, int, int mode, int, int option, std::uint32_t& channel) {
    const auto connection = m_connections.Find(handle);
    if (!connection) {
        return QL_NO_CONNECTION;
    }
    if (mode != HISTORY_APPEND || option != 0) {
        return QL_INVALID_ARGUMENT;
    }
    return m_channels.Open(connection, channel);
}

QLResult Kernel::WriteHistory(std::uint32_t channel, int, std::uint32_t count, const VfiRecord* records,
                              std::int16_t& word) {
    return m_channels.Write(channel, count, records, word);
}

QLResult Kernel::RqGateMsg(std::uint8_t gate, int count, const std::uint32_t* tagIds, int mode) {
    const auto connection = m_connections.Find(gate);
    if (!connection) {
        return QL_NO_CONNECTION;
    }
    if (count < 0 || (tagIds == nullptr && count != 0) || (mode != QL_GATE_SUBSCRIBE && mode != QL_GATE_CANCEL)) {
        return QL_INVALID_ARGUMENT;
    }
    std::vector<std::uint32_t> ids;
    for (int i = 0; i < count; ++i) {
        const auto id = LocalId(tagIds[i]);
        if (!id) {
            return QL_NO_SUCH_TAG;
        }
        ids.push_back(*id);
    }
    return connection->ChangeOwned([&](Connection::Owned& owned) -> QLResult {
        if (mode == QL_GATE_CANCEL) {
            return m_tags.Cancel(ids, *connection);
        }
        const QLResult result = m_tags.Subscribe(ids, connection);
        if (result == QL_OK) {
            owned.tags.insert(ids.begin(), ids.end());
        }
        return result;
    });
}

QLResult Kernel::GetTagValue(std::uint8_t gate, int kind, std::uint32_t tagId, double& value, int, int) {
    if (!m_connections.Find(gate)) {
        return QL_NO_CONNECTION;
    }
    if (kind != QL_VALUE_AS_DOUBLE) {
        return QL_INVALID_ARGUMENT;
    }
    const auto id = LocalId(tagId);
    return id ? m_tags.GetNumber(*id, value) : QL_NO_SUCH_TAG;
}

QLResult Kernel::OpenTagEnumeration(std::uint8_t gate, std::uint32_t& first, std::uint32_t& count, int, int) {
    if (!m_connections.Find(gate)) {
        return QL_NO_CONNECTION;
    }
    first = 0;
    count = m_tags.Slots();
    return m_tags.IsEmpty() ? QL_NO_SUCH_TAG : QL_OK;
}

QLResult Kernel::GetTagIdByName(std::uint8_t gate, const char* name, std::uint32_t& tagId) {
    if (!m_connections.Find(gate)) {
        return QL_NO_CONNECTION;
    }
    if (name == nullptr) {
        return QL_INVALID_ARGUMENT;
    }
    const auto id = m_tags.Find(name);
    if (!id) {
        return QL_NO_SUCH_TAG;
    }
    tagId = *id;
    return QL_OK;
}

QLResult Kernel::GetProductFolder(int folder, char* buffer, int) {
    const std::lock_guard lock(m_lock);
    const auto found = m_folders.find(folder);
    if (buffer == nullptr || found == m_folders.end()) {
        return QL_INVALID_ARGUMENT;
    }
    FillBuffer(buffer, QL_FOLDER_SIZE, found->second);
    return QL_OK;
}

QLResult Kernel::GetHelpPath(char* buffer) {
    const std::lock_guard lock(m_lock);
    if (buffer == nullptr || m_helpPath.empty()) {
        return QL_INVALID_ARGUMENT;
    }
    FillBuffer(buffer, QL_FOLDER_SIZE, m_helpPath);
    return QL_OK;
}

QLResult Kernel::GetCurrentUserName(std::uint8_t gate, char* buffer) {
    if (!m_connections.Find(gate)) {
        return QL_NO_CONNECTION;
    }
    if (buffer == nullptr) {
        return QL_INVALID_ARGUMENT;
    }
    const std::lock_guard lock(m_lock);
    if (m_userName.empty()) {
        return QL_NO_VALUE;
    }
    FillBuffer(buffer, QL_USER_NAME_SIZE, m_userName);
    return QL_OK;
}

void Kernel::Trace(unsigned level, const char* text) {
    if ((m_traceMask & level) != 0 && m_settings.trace && text != nullptr) {
        m_settings.trace(level, text);
    }
}

std::optional<std::uint32_t> Kernel::LocalId(std::uint32_t tagId) const {
    const std::uint32_t station = tagId >> STATION_SHIFT;
    if (station != 0 && station != m_settings.stationNumber) {
        return std::nullopt;
    }
    return tagId & TAG_MASK;
}
