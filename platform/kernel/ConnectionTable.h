// The kernel's connections by handle. Any thread may call any operation at any time.
#pragma once

#include "platform/kernel/Connection.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <shared_mutex>
#include <string>

class ConnectionTable {
public:
    explicit ConnectionTable(std::size_t queueLimit);

    // QL_SHUT_DOWN, or QL_NO_RESOURCES when all 255 handles are taken.
    QLResult Open(std::string name, std::uint8_t& handle);
    // The connection, no longer in the table; null when there is none of this handle. Its handle is given again after
    // all other free ones, so that a stale handle is soon told.
    std::shared_ptr<Connection> Remove(std::uint8_t handle);
    // Null when there is none.
    std::shared_ptr<Connection> Find(std::uint8_t handle) const;
    // Posts the exit message to every connection; none opens afterwards.
    void ShutDown();

private:
    static constexpr std::size_t HANDLES = 256; // 0 is none

    const std::size_t m_queueLimit;
    mutable std::shared_mutex m_lock;
    std::array<std::shared_ptr<Connection>, HANDLES> m_connections; // these three are guarded by m_lock
    std::deque<std::uint8_t> m_free;
    bool m_shutDown = false;
};
