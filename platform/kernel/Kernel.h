// The product kernel: a station's tags, the connections to it, and the way into the historical store. The host makes
// one, fills its tags, and hands it to the driver and the console; whoever acquires values sets them here.
//
// Any thread may call any operation at any time, but for the constructor and the destructor. No operation waits for a
// slow historical store but those of that channel.
#pragma once

#include "api/kernel/HistoryStore.h"
#include "api/kernel/QLProgramCore.h"
#include "platform/kernel/ConnectionTable.h"
#include "platform/kernel/HistoryChannels.h"
#include "platform/kernel/TagTable.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

struct KernelSettings {
    std::string stationName;         // UTF-8, at most 15 bytes, no ":"; may be empty
    std::uint16_t stationNumber = 0; // the high half of its tag ids
    std::size_t queueLimit = 65536;  // messages kept for a connection that does not fetch them
    unsigned traceMask = 0;          // levels of Trace that are kept
    // Where trace lines and the historical store's refusals go. Called on the thread of the operation, any number of
    // threads at once, without a lock. May be empty.
    std::function<void(unsigned level, const char* text)> trace;
    std::function<void(const std::string& text)> storeFailed;
};

class Kernel : public IQLProgramCore {
public:
    // What is wrong with settings, one line; null when they can be used.
    static const char* Fault(const KernelSettings& settings);

    // settings has no Fault; history outlives the kernel.
    Kernel(KernelSettings settings, HistoryStore& history);

    // The owner's side: tags. Ids are local, without a station.
    AddTagResult AddTag(const TagSettings& settings, std::uint32_t& id);
    // Leaves a deleted slot; the number comes back only with a tag of the same name.
    QLResult RemoveTag(std::uint32_t id);
    // QL_WRONG_TYPE for a text tag. Subscribers hear of a value that differs from the old one.
    QLResult SetTagValue(std::uint32_t id, double value);
    QLResult SetTagValue(std::string_view name, double value);
    // For text tags only.
    QLResult SetTagText(std::uint32_t id, std::string_view text);
    std::optional<TagInfo> FindTag(std::string_view name) const;
    // Shows each tag in ascending order of ids until the visitor returns false. It runs without a lock.
    void ListTags(const std::function<bool(const TagInfo& tag)>& visitor) const;

    // The owner's side: station, user, folders, trace.
    void SetStationActive(bool active);
    void SetCurrentUserName(std::string_view name);             // given as far as 87 bytes go
    bool SetProductFolder(int folder, const std::string& path); // false: longer than 259 bytes, and a path is never cut
    bool SetHelpPath(const std::string& path);                  // likewise; with a separator behind it
    void SetTraceMask(unsigned mask);
    // Sends every connection the exit message, and refuses new ones. Everything else works on, so that whoever is
    // connected can end in order. The destructor must wait until they have.
    void ShutDown();

    // The console's and the driver's side.
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
    // The tag's number, if the id is one of this station.
    std::optional<std::uint32_t> LocalId(std::uint32_t tagId) const;

    const KernelSettings m_settings;
    TagTable m_tags;
    ConnectionTable m_connections;
    HistoryChannels m_channels;
    std::atomic<bool> m_active{true};
    std::atomic<unsigned> m_traceMask;

    mutable std::mutex m_lock;
    std::string m_userName;               // guarded by m_lock
    std::map<int, std::string> m_folders; // guarded by m_lock
    std::string m_helpPath;               // guarded by m_lock
};
