#include "platform/kernel/ConnectionTable.h"

#include <mutex>
#include <utility>

ConnectionTable::ConnectionTable(std::size_t queueLimit) : m_queueLimit(queueLimit) {
    for (std::size_t handle = 1; handle < HANDLES; ++handle) {
        m_free.push_back(static_cast<std::uint8_t>(handle));
    }
}

QLResult ConnectionTable::Open(std::string name, std::uint8_t& handle) {
    const std::unique_lock lock(m_lock);
    if (m_shutDown) {
        return QL_SHUT_DOWN;
    }
    if (m_free.empty()) {
        return QL_NO_RESOURCES;
    }
    handle = m_free.front();
    m_free.pop_front();
    m_connections[handle] = std::make_shared<Connection>(handle, std::move(name), m_queueLimit);
    return QL_OK;
}

std::shared_ptr<Connection> ConnectionTable::Remove(std::uint8_t handle) {
    const std::unique_lock lock(m_lock);
    auto connection = std::exchange(m_connections[handle], nullptr);
    if (connection) {
        m_free.push_back(handle);
    }
    return connection;
}

std::shared_ptr<Connection> ConnectionTable::Find(std::uint8_t handle) const {
    const std::shared_lock lock(m_lock);
    return m_connections[handle];
}

void ConnectionTable::ShutDown() {
    const std::unique_lock lock(m_lock);
    m_shutDown = true;
    for (const auto& connection : m_connections) {
        if (connection) {
            connection->PostExit();
        }
    }
}
