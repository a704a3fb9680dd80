// The open channels into the historical store. Any thread may call any operation at any time; no lock is held while the
// store works.
#pragma once

#include "api/kernel/HistoryStore.h"
#include "api/kernel/QLProgramCore.h"
#include "platform/kernel/Connection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

class HistoryChannels {
public:
    static constexpr std::size_t MAX_CHANNELS = 1024;

    // store outlives the channels. report gets one line for each refusal of the store, on the caller's thread.
    HistoryChannels(HistoryStore& store, std::function<void(const std::string& text)> report);

    QLResult Open(const std::shared_ptr<Connection>& connection, std::uint32_t& channel);
    QLResult Close(std::uint32_t channel);
    QLResult Flush(std::uint32_t channel);
    // As IQLProgramCore::WriteHistory. A channel that closes while its block is written does not stop the block.
    QLResult Write(std::uint32_t channel, std::uint32_t count, const VfiRecord* records, std::int16_t& word);

private:
    bool IsOpen(std::uint32_t channel) const;
    QLResult StoreFailure(const HistoryError& error) const;

    HistoryStore& m_store;
    const std::function<void(const std::string&)> m_report;

    mutable std::mutex m_lock; // taken after the lock on what a connection owns
    std::unordered_map<std::uint32_t, std::weak_ptr<Connection>> m_channels; // guarded by m_lock, as is m_next
    std::uint32_t m_next = 1;
};
