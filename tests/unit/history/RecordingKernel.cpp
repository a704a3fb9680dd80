#include "tests/unit/history/RecordingKernel.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::uint8_t HANDLE = 7;
constexpr std::uint32_t CHANNEL = 42;

std::string Text(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Text(const char* format, ...) {
    char buffer[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

} // namespace

void RecordingKernel::AddTag(std::uint32_t id, const std::string& name, bool historyEnabled) {
    TagDefinition definition{};
    definition.size = sizeof definition;
    std::snprintf(definition.name, sizeof definition.name, "%s", name.c_str());
    definition.type = TAG_TYPE_ANALOG;
    definition.historyEnabled = historyEnabled ? 1 : 0;
    definitions[id] = definition;
}

void RecordingKernel::Post(std::uint16_t code, QLResult result) {
    Message message;
    message.result = result;
    message.bytes = {static_cast<unsigned char>(code & 0xFF), static_cast<unsigned char>(code >> 8)};
    Post(std::move(message));
}

void RecordingKernel::Post(Message message) {
    {
        const std::lock_guard lock(m_mutex);
        m_messages.push_back(std::move(message));
    }
    m_posted.notify_all();
}

void RecordingKernel::Record(std::string call) {
    if (events != nullptr)
        events->Add(call);
    const std::lock_guard lock(m_mutex);
    m_calls.push_back(std::move(call));
}

std::vector<std::string> RecordingKernel::GetCalls() const {
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::vector<std::string> RecordingKernel::GetTrace() const {
    const std::lock_guard lock(m_mutex);
    return m_trace;
}

std::vector<VfiRecord> RecordingKernel::GetRecords() const {
    const std::lock_guard lock(m_mutex);
    return m_records;
}

std::vector<std::uint32_t> RecordingKernel::GetBlocks() const {
    const std::lock_guard lock(m_mutex);
    return m_blocks;
}

TagDefinition RecordingKernel::GetAskedDefinition() const {
    const std::lock_guard lock(m_mutex);
    return m_askedDefinition;
}

std::array<char, QL_STATION_NAME_SIZE> RecordingKernel::GetAskedStationName() const {
    const std::lock_guard lock(m_mutex);
    return m_askedStationName;
}

void RecordingKernel::ClearCalls() {
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
}

QLResult RecordingKernel::GetStationStatus(std::uint8_t handle, std::uint32_t& status) {
    Record(Text("3(%d)", handle));
    status = stationStatus;
    return statusResult;
}

QLResult RecordingKernel::GetStationName(std::uint8_t handle, char* buffer, int a, int b, int c, int d, int e) {
    Record(Text("7(%d, %d, %d, %d, %d, %d)", handle, a, b, c, d, e));
    {
        const std::lock_guard lock(m_mutex);
        std::copy_n(buffer, QL_STATION_NAME_SIZE, m_askedStationName.begin());
    }
    if (stationNameResult == QL_OK)
        std::snprintf(buffer, QL_STATION_NAME_SIZE, "%s", stationName.c_str());
    return stationNameResult;
}

QLResult RecordingKernel::Connect(const char* name, int mode, int option, std::uint8_t& handle) {
    Record(Text("27(%s, %d, %d)", name, mode, option));
    if (connectResult == QL_OK)
        handle = HANDLE;
    return connectResult;
}

QLResult RecordingKernel::Disconnect(std::uint8_t handle) {
    Record(Text("29(%d)", handle));
    if (onDisconnect)
        onDisconnect();
    return disconnectResult;
}

QLResult RecordingKernel::ReceiveMessage(std::uint8_t, void* buffer, std::uint32_t timeout) {
    if (onReceive)
        onReceive();
    ++m_receives;
    m_receiveTimeout = timeout;
    std::unique_lock lock(m_mutex);
    const auto wait = std::chrono::milliseconds(receiveWait == RECEIVE_FULL ? timeout : receiveWait);
    if (!m_posted.wait_for(lock, wait, [&] { return !m_messages.empty(); }))
        return receiveResult;
    const Message message = std::move(m_messages.front());
    m_messages.pop_front();
    if (message.fills)
        std::copy_n(message.bytes.begin(), std::min(message.bytes.size(), QL_MESSAGE_SIZE),
                    static_cast<unsigned char*>(buffer));
    return message.result;
}

QLResult RecordingKernel::GetTagDefinition(std::uint8_t handle, std::uint32_t tagId, TagDefinition& definition) {
    Record(Text("102(%d, %u)", handle, tagId));
    {
        const std::lock_guard lock(m_mutex);
        m_askedDefinition = definition;
    }
    const auto found = definitions.find(tagId);
    if (found == definitions.end())
        return QL_NO_SUCH_TAG;
    definition = found->second;
    return QL_OK;
}

QLResult RecordingKernel::GetTagIdWithStation(std::uint8_t handle, const char* name, std::uint32_t& tagId) {
    Record(Text("143(%d, %s)", handle, name));
    const auto found = tagIds.find(name);
    if (found == tagIds.end())
        return QL_NO_SUCH_TAG;
    tagId = found->second;
    return QL_OK;
}

QLResult RecordingKernel::FlushHistory(std::uint32_t channel) {
    Record(Text("214(%u)", channel));
    return flushResult;
}

QLResult RecordingKernel::CloseHistory(std::uint32_t channel) {
    Record(Text("216(%u)", channel));
    return closeResult;
}

QLResult RecordingKernel::OpenHistory(std::uint8_t handle, int a, int mode, int b, int option, std::uint32_t& channel) {
    Record(Text("236(%d, %d, %d, %d, %d)", handle, a, mode, b, option));
    if (openResult == QL_OK)
        channel = CHANNEL;
    return openResult;
}

QLResult RecordingKernel::WriteHistory(std::uint32_t channel, int a, std::uint32_t count, const VfiRecord* records,
                                       std::int16_t& word) {
    Record(Text("239(%u, %d, %u, %d)", channel, a, count, word));
    {
        const std::lock_guard lock(m_mutex);
        m_blocks.push_back(count);
    }
    const QLResult result = onWrite ? onWrite(count, records) : QL_OK;
    if (result == QL_OK) {
        const std::lock_guard lock(m_mutex);
        m_records.insert(m_records.end(), records, records + count);
    }
    return result;
}

QLResult RecordingKernel::RqGateMsg(std::uint8_t, int, const std::uint32_t*, int) {
    Record("141");
    return QL_INVALID_ARGUMENT;
}

QLResult RecordingKernel::GetTagValue(std::uint8_t, int, std::uint32_t, double&, int, int) {
    Record("171");
    return QL_NO_SUCH_TAG;
}

QLResult RecordingKernel::OpenTagEnumeration(std::uint8_t, std::uint32_t&, std::uint32_t&, int, int) {
    Record("181");
    return QL_NO_SUCH_TAG;
}

QLResult RecordingKernel::GetTagIdByName(std::uint8_t, const char*, std::uint32_t&) {
    Record("527");
    return QL_NO_SUCH_TAG;
}

QLResult RecordingKernel::GetProductFolder(int, char*, int) {
    Record("232");
    return QL_INVALID_ARGUMENT;
}

QLResult RecordingKernel::GetHelpPath(char*) {
    Record("XosGetHelpPath");
    return QL_INVALID_ARGUMENT;
}

QLResult RecordingKernel::GetCurrentUserName(std::uint8_t, char*) {
    Record("303");
    return QL_INVALID_ARGUMENT;
}

void RecordingKernel::Trace(unsigned level, const char* text) {
    if (events != nullptr)
        events->Add(Text("329(0x%x, %s)", level, text));
    const std::lock_guard lock(m_mutex);
    m_trace.push_back(Text("0x%x %s", level, text));
}
