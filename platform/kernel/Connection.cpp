#include "platform/kernel/Connection.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

Connection::Connection(std::uint8_t handle, std::string name, std::size_t queueLimit)
    : m_handle(handle), m_name(std::move(name)), m_queueLimit(std::max<std::size_t>(queueLimit, 1)) {}

void Connection::Post(const QLMessage& message) {
    const std::lock_guard lock(m_queueLock);
    if (m_closed || m_exit != Exit::No) {
        return;
    }
    if (m_queue.size() == m_queueLimit) {
        m_queue.pop_front();
        m_lost = true;
    }
    m_queue.push_back(message);
    m_changed.notify_one();
}

void Connection::PostExit() {
    const std::lock_guard lock(m_queueLock);
    if (m_exit == Exit::No) {
        m_exit = Exit::Posted;
        m_changed.notify_one();
    }
}

QLResult Connection::Receive(void* buffer, std::uint32_t timeout) {
    std::unique_lock lock(m_queueLock);
    m_changed.wait_for(lock, std::chrono::milliseconds(timeout),
                       [&] { return m_closed || !m_queue.empty() || m_exit == Exit::Posted; });
    if (m_closed) {
        return QL_NO_CONNECTION;
    }
    if (!m_queue.empty()) {
        std::memcpy(buffer, m_queue.front().data(), QL_MESSAGE_SIZE);
        m_queue.pop_front();
        return std::exchange(m_lost, false) ? QL_MESSAGES_LOST : QL_OK;
    }
    if (m_exit == Exit::Posted) {
        m_exit = Exit::Delivered;
        static_assert(QL_MSG_EXIT == 0);
        std::memset(buffer, 0, QL_MESSAGE_SIZE);
        return QL_OK;
    }
    return QL_TIMEOUT;
}

Connection::Owned Connection::Close() {
    {
        const std::lock_guard lock(m_queueLock);
        m_closed = true;
        m_queue.clear();
        m_changed.notify_all();
    }
    const std::lock_guard lock(m_ownedLock);
    m_released = true;
    return std::exchange(m_owned, {});
}
