// A kernel for the history tests: it answers from a script, records each call as one line with the operation's export
// number, and keeps every block that was written. Any thread may call it; the test reads its records through the
// functions below.
#pragma once

#include "api/kernel/QLProgramCore.h"
#include "tests/support/EventList.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

class RecordingKernel : public IQLProgramCore {
public:
    struct Message {
        QLResult result = QL_OK;
        bool fills = true; // copies bytes into the receiver's buffer
        std::vector<unsigned char> bytes;
    };

    CEventList* events = nullptr; // receives each call as well

    // ---- script; set before the calls, or from a hook
    QLResult connectResult = QL_OK;
    QLResult disconnectResult = QL_OK;
    QLResult statusResult = QL_OK;
    std::uint32_t stationStatus = 0;
    QLResult stationNameResult = QL_OK;
    std::string stationName = "LOCAL";
    QLResult openResult = QL_OK;
    QLResult flushResult = QL_OK;
    QLResult closeResult = QL_OK;
    QLResult receiveResult = QL_TIMEOUT; // when no message is queued
    std::uint32_t receiveWait = 2;       // ms that an empty queue is waited for; RECEIVE_FULL: the caller's timeout
    static constexpr std::uint32_t RECEIVE_FULL = 0xFFFFFFFF;
    std::map<std::uint32_t, TagDefinition> definitions; // by tag id
    std::map<std::string, std::uint32_t> tagIds;        // of GetTagIdWithStation
    std::function<QLResult(std::uint32_t count, const VfiRecord* records)> onWrite;
    std::function<void()> onReceive; // on the receive thread, before each wait
    std::function<void()> onDisconnect;

    void AddTag(std::uint32_t id, const std::string& name, bool historyEnabled = false);
    void Post(std::uint16_t code, QLResult result = QL_OK);
    void Post(Message message);

    // ---- records
    std::vector<std::string> GetCalls() const; // without receives
    std::vector<std::string> GetTrace() const;
    std::vector<VfiRecord> GetRecords() const;    // of all good writes
    std::vector<std::uint32_t> GetBlocks() const; // record count of each write
    TagDefinition GetAskedDefinition() const;     // the last definition as it came in
    std::array<char, QL_STATION_NAME_SIZE> GetAskedStationName() const;
    int GetReceiveCount() const { return m_receives; }
    std::uint32_t GetReceiveTimeout() const { return m_receiveTimeout; }
    void ClearCalls();

    QLResult GetStationStatus(std::uint8_t handle, std::uint32_t& status) override;
    QLResult GetStationName(std::uint8_t handle, char* buffer, int, int, int, int, int) override;
    QLResult Connect(const char* name, int mode, int option, std::uint8_t& handle) override;
    QLResult Disconnect(std::uint8_t handle) override;
    QLResult ReceiveMessage(std::uint8_t handle, void* buffer, std::uint32_t timeout) override;
    QLResult GetTagDefinition(std::uint8_t handle, std::uint32_t tagId, TagDefinition& definition) override;
    QLResult GetTagIdWithStation(std::uint8_t handle, const char* name, std::uint32_t& tagId) override;
    QLResult FlushHistory(std::uint32_t channel) override;
    QLResult CloseHistory(std::uint32_t channel) override;
    QLResult OpenHistory(std::uint8_t handle, int, int mode, int, int option, std::uint32_t& channel) override;
    QLResult WriteHistory(std::uint32_t channel, int, std::uint32_t count, const VfiRecord* records,
                          std::int16_t& word) override;
    QLResult RqGateMsg(std::uint8_t, int, const std::uint32_t*, int) override;
    QLResult GetTagValue(std::uint8_t, int, std::uint32_t, double&, int, int) override;
    QLResult OpenTagEnumeration(std::uint8_t, std::uint32_t&, std::uint32_t&, int, int) override;
    QLResult GetTagIdByName(std::uint8_t, const char*, std::uint32_t&) override;
    QLResult GetProductFolder(int, char*, int) override;
    QLResult GetHelpPath(char*) override;
    QLResult GetCurrentUserName(std::uint8_t, char*) override;
    void Trace(unsigned level, const char* text) override;

private:
    void Record(std::string call);

    mutable std::mutex m_mutex; // guards all below
    std::condition_variable m_posted;
    std::deque<Message> m_messages;
    std::vector<std::string> m_calls;
    std::vector<std::string> m_trace;
    std::vector<VfiRecord> m_records;
    std::vector<std::uint32_t> m_blocks;
    TagDefinition m_askedDefinition{};
    std::array<char, QL_STATION_NAME_SIZE> m_askedStationName{};
    std::atomic<int> m_receives{0};
    std::atomic<std::uint32_t> m_receiveTimeout{0};
};
