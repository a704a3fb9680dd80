// A kernel with a few tags that records each call as text, such as "RqGateMsg(7, [17], 1)". Any thread may call it.
#pragma once

#include "api/kernel/QLProgramCore.h"
#include "tests/support/EventList.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

class CFakeKernel : public IQLProgramCore {
public:
    explicit CFakeKernel(CEventList& events) : m_events(events) {}

    void AddTag(std::uint32_t id, const std::string& name, double value = 0, std::uint16_t type = TAG_TYPE_DIGITAL);
    // The result of every later call of an operation, named as in IQLProgramCore. QL_OK lets the fake answer by itself.
    void SetResult(const std::string& operation, QLResult result);
    // The result of GetTagDefinition for one tag, and of GetTagValue for one tag.
    void SetDefinitionResult(std::uint32_t id, QLResult result);
    void SetValueResult(std::uint32_t id, QLResult result);
    // Called inside each call, behind its recording and with no lock held, with the operation's name.
    void OnCall(std::function<void(const std::string&)> hook);
    // Delivered by ReceiveMessage, in this order; without one it answers QL_TIMEOUT at once.
    void QueueMessage(std::vector<unsigned char> message);

    std::string m_helpPath = "/help/"; // what GetHelpPath gives

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
    QLResult RqGateMsg(std::uint8_t gate, int count, const std::uint32_t* tagIds, int mode) override;
    QLResult GetTagValue(std::uint8_t gate, int kind, std::uint32_t tagId, double& value, int, int) override;
    QLResult OpenTagEnumeration(std::uint8_t gate, std::uint32_t& first, std::uint32_t& count, int, int) override;
    QLResult GetTagIdByName(std::uint8_t gate, const char* name, std::uint32_t& tagId) override;
    QLResult GetProductFolder(int folder, char* buffer, int) override;
    QLResult GetHelpPath(char* buffer) override;
    QLResult GetCurrentUserName(std::uint8_t gate, char* buffer) override;
    void Trace(unsigned level, const char* text) override;

private:
    struct Tag {
        std::string name;
        double value = 0;
        std::uint16_t type = TAG_TYPE_DIGITAL;
        QLResult definitionResult = QL_OK;
        QLResult valueResult = QL_OK;
    };

    // Records the call and gives the result that was set for the operation.
    QLResult Call(const std::string& operation, const std::string& arguments);
    bool FindTag(std::uint32_t id, Tag& tag) const;

    CEventList& m_events;
    mutable std::mutex m_mutex; // of all below
    std::map<std::uint32_t, Tag> m_tags;
    std::map<std::string, QLResult> m_results;
    std::function<void(const std::string&)> m_hook;
    std::vector<std::vector<unsigned char>> m_messages;
};
