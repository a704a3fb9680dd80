#include "platform/kernel/HistoryChannels.h"

#include <algorithm>
#include <limits>
#include <utility>

HistoryChannels::HistoryChannels(HistoryStore& store, std::function<void(const std::string& text)> report)
    : m_store(store), m_report(std::move(report)) {}

QLResult HistoryChannels::Open(const std::shared_ptr<Connection>& connection, std::uint32_t& channel) {
    return connection->ChangeOwned([&](Connection::Owned& owned) -> QLResult {
        const std::lock_guard lock(m_lock);
        if (m_channels.size() == MAX_CHANNELS) {
            return QL_NO_RESOURCES;
        }
        while (m_next == 0 || m_channels.count(m_next) != 0) {
            ++m_next;
        }
        channel = m_next++;
        m_channels.emplace(channel, connection);
        owned.channels.insert(channel);
        return QL_OK;
    });
}

QLResult HistoryChannels::Close(std::uint32_t channel) {
    std::shared_ptr<Connection> connection;
    {
        const std::lock_guard lock(m_lock);
        const auto found = m_channels.find(channel);
        if (found == m_channels.end()) {
            return QL_NO_CHANNEL;
        }
        connection = found->second.lock();
        m_channels.erase(found);
    }
    if (connection) {
        connection->ChangeOwned([&](Connection::Owned& owned) {
            owned.channels.erase(channel);
            return QL_OK;
        });
    }
    return QL_OK;
}

QLResult HistoryChannels::Flush(std::uint32_t channel) {
    if (!IsOpen(channel)) {
        return QL_NO_CHANNEL;
    }
    HistoryError error;
    return m_store.Flush(error) ? QL_OK : StoreFailure(error);
}

QLResult HistoryChannels::Write(std::uint32_t channel, std::uint32_t count, const VfiRecord* records,
                                std::int16_t& word) {
    if (!IsOpen(channel)) {
        return QL_NO_CHANNEL;
    }
    if (records == nullptr && count != 0) {
        return QL_INVALID_ARGUMENT;
    }
    HistoryError error;
    if (m_store.Write({records, count}, error)) {
        return QL_OK;
    }
    if (error.recordIndex) {
        constexpr std::size_t LAST = std::numeric_limits<std::int16_t>::max();
        word = static_cast<std::int16_t>(std::min(*error.recordIndex, LAST));
    }
    return StoreFailure(error);
}

bool HistoryChannels::IsOpen(std::uint32_t channel) const {
    const std::lock_guard lock(m_lock);
    return m_channels.count(channel) != 0;
}

QLResult HistoryChannels::StoreFailure(const HistoryError& error) const {
    if (m_report) {
        m_report(error.text);
    }
    return QL_STORE_FAILURE;
}
