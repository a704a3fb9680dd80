#include "tests/support/FakeKernel.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

constexpr std::uint8_t HANDLE = 7;
constexpr std::uint32_t CHANNEL = 3;

std::string Text(std::uint64_t value) {
    return std::to_string(value);
}

void CopyText(const std::string& text, char* buffer, std::size_t size) {
    std::snprintf(buffer, size, "%s", text.c_str());
}

// "cleared" when nothing but the size word is set.
std::string StateOf(const TagDefinition& definition) {
    TagDefinition cleared{};
    cleared.size = definition.size;
    const bool isClear = std::memcmp(&definition, &cleared, sizeof(cleared)) == 0;
    return Text(definition.size) + (isClear ? " cleared" : " dirty");
}

} // namespace

void CFakeKernel::AddTag(std::uint32_t id, const std::string& name, double value, std::uint16_t type) {
    const std::lock_guard lock(m_mutex);
    m_tags[id] = {name, value, type, QL_OK, QL_OK};
}

void CFakeKernel::SetResult(const std::string& operation, QLResult result) {
    const std::lock_guard lock(m_mutex);
    m_results[operation] = result;
}

void CFakeKernel::SetDefinitionResult(std::uint32_t id, QLResult result) {
    const std::lock_guard lock(m_mutex);
    m_tags[id].definitionResult = result;
}

void CFakeKernel::SetValueResult(std::uint32_t id, QLResult result) {
    const std::lock_guard lock(m_mutex);
    m_tags[id].valueResult = result;
}

void CFakeKernel::OnCall(std::function<void(const std::string&)> hook) {
    const std::lock_guard lock(m_mutex);
    m_hook = std::move(hook);
}

void CFakeKernel::QueueMessage(std::vector<unsigned char> message) {
    const std::lock_guard lock(m_mutex);
    m_messages.push_back(std::move(message));
}

QLResult CFakeKernel::Call(const std::string& operation, const std::string& arguments) {
    m_events.Add(operation + "(" + arguments + ")");
    std::function<void(const std::string&)> hook;
    QLResult result = QL_OK;
    {
        const std::lock_guard lock(m_mutex);
        hook = m_hook;
        if (const auto it = m_results.find(operation); it != m_results.end())
            result = it->second;
    }
    if (hook)
        hook(operation);
    return result;
}

bool CFakeKernel::FindTag(std::uint32_t id, Tag& tag) const {
    const std::lock_guard lock(m_mutex);
    const auto it = m_tags.find(id);
    if (it == m_tags.end())
        return false;
    tag = it->second;
    return true;
}

QLResult CFakeKernel::GetStationStatus(std::uint8_t handle, std::uint32_t& status) {
    status = 0;
    return Call("GetStationStatus", Text(handle));
}

QLResult CFakeKernel::GetStationName(std::uint8_t handle, char* buffer, int, int, int, int, int) {
    CopyText("LOCAL", buffer, QL_STATION_NAME_SIZE);
    return Call("GetStationName", Text(handle));
}

QLResult CFakeKernel::Connect(const char* name, int mode, int option, std::uint8_t& handle) {
    handle = HANDLE;
    return Call("Connect", std::string(name) + ", " + std::to_string(mode) + ", " + std::to_string(option));
}

QLResult CFakeKernel::Disconnect(std::uint8_t handle) {
    return Call("Disconnect", Text(handle));
}

QLResult CFakeKernel::ReceiveMessage(std::uint8_t handle, void* buffer, std::uint32_t timeout) {
    const QLResult result = Call("ReceiveMessage", Text(handle) + ", " + Text(timeout));
    const std::lock_guard lock(m_mutex);
    if (result != QL_OK || m_messages.empty())
        return result != QL_OK ? result : QL_TIMEOUT;
    m_messages.front().resize(QL_MESSAGE_SIZE);
    std::memcpy(buffer, m_messages.front().data(), QL_MESSAGE_SIZE);
    m_messages.erase(m_messages.begin());
    return QL_OK;
}

QLResult CFakeKernel::GetTagDefinition(std::uint8_t handle, std::uint32_t tagId, TagDefinition& definition) {
    const QLResult result = Call("GetTagDefinition", Text(handle) + ", " + Text(tagId) + ", " + StateOf(definition));
    Tag tag;
    if (result != QL_OK)
        return result;
    if (!FindTag(tagId, tag))
        return QL_NO_SUCH_TAG;
    CopyText(tag.name, definition.name, sizeof(definition.name));
    definition.type = tag.type;
    return tag.definitionResult;
}

QLResult CFakeKernel::GetTagIdWithStation(std::uint8_t handle, const char* name, std::uint32_t& tagId) {
    const QLResult result = Call("GetTagIdWithStation", Text(handle) + ", " + name);
    const std::lock_guard lock(m_mutex);
    const auto it =
        std::ranges::find_if(m_tags, [name](const auto& tag) { return "LOCAL:" + tag.second.name == name; });
    if (result != QL_OK || it == m_tags.end())
        return result != QL_OK ? result : QL_NO_SUCH_TAG;
    tagId = it->first;
    return QL_OK;
}

QLResult CFakeKernel::FlushHistory(std::uint32_t channel) {
    return Call("FlushHistory", Text(channel));
}

QLResult CFakeKernel::CloseHistory(std::uint32_t channel) {
    return Call("CloseHistory", Text(channel));
}

QLResult CFakeKernel::OpenHistory(std::uint8_t handle, int, int mode, int, int option, std::uint32_t& channel) {
    channel = CHANNEL;
    return Call("OpenHistory", Text(handle) + ", " + std::to_string(mode) + ", " + std::to_string(option));
}

QLResult CFakeKernel::WriteHistory(std::uint32_t channel, int, std::uint32_t count, const VfiRecord*,
                                   std::int16_t& word) {
    return Call("WriteHistory", Text(channel) + ", " + Text(count) + ", " + std::to_string(word));
}

QLResult CFakeKernel::RqGateMsg(std::uint8_t gate, int count, const std::uint32_t* tagIds, int mode) {
    std::string ids;
    for (int i = 0; i < count; ++i)
        ids += (i ? " " : "") + Text(tagIds[i]);
    return Call("RqGateMsg", Text(gate) + ", [" + ids + "], " + std::to_string(mode));
}

QLResult CFakeKernel::GetTagValue(std::uint8_t gate, int kind, std::uint32_t tagId, double& value, int, int) {
    const QLResult result = Call("GetTagValue", Text(gate) + ", " + std::to_string(kind) + ", " + Text(tagId));
    Tag tag;
    if (result != QL_OK)
        return result;
    if (!FindTag(tagId, tag))
        return QL_NO_SUCH_TAG;
    value = tag.value;
    return tag.valueResult;
}

QLResult CFakeKernel::OpenTagEnumeration(std::uint8_t gate, std::uint32_t& first, std::uint32_t& count, int, int) {
    const QLResult result = Call("OpenTagEnumeration", Text(gate));
    const std::lock_guard lock(m_mutex);
    first = 0;
    count = static_cast<std::uint32_t>(m_tags.size());
    return result != QL_OK ? result : m_tags.empty() ? QL_NO_SUCH_TAG : QL_OK;
}

QLResult CFakeKernel::GetTagIdByName(std::uint8_t gate, const char* name, std::uint32_t& tagId) {
    const QLResult result = Call("GetTagIdByName", Text(gate) + ", " + name);
    const std::lock_guard lock(m_mutex);
    const auto it = std::ranges::find_if(m_tags, [name](const auto& tag) { return tag.second.name == name; });
    if (result != QL_OK || it == m_tags.end())
        return result != QL_OK ? result : QL_NO_SUCH_TAG;
    tagId = it->first;
    return QL_OK;
}

QLResult CFakeKernel::GetProductFolder(int folder, char* buffer, int) {
    CopyText("/folder", buffer, QL_FOLDER_SIZE);
    return Call("GetProductFolder", std::to_string(folder));
}

QLResult CFakeKernel::GetHelpPath(char* buffer) {
    const QLResult result = Call("GetHelpPath", "");
    if (result == QL_OK)
        CopyText(m_helpPath, buffer, QL_FOLDER_SIZE);
    return result;
}

QLResult CFakeKernel::GetCurrentUserName(std::uint8_t gate, char* buffer) {
    const QLResult result = Call("GetCurrentUserName", Text(gate));
    if (result == QL_OK)
        CopyText("operator", buffer, QL_USER_NAME_SIZE);
    return result;
}

void CFakeKernel::Trace(unsigned level, const char* text) {
    Call("Trace", Text(level) + ", " + text);
}
