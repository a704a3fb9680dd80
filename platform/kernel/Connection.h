// One connection to the kernel: its message queue, and the subscriptions and channels that end with it. Any thread may
// call any operation at any time.
#pragma once

#include "api/kernel/QLProgramCore.h"

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <unordered_set>

using QLMessage = std::array<std::byte, QL_MESSAGE_SIZE>;

class Connection {
public:
    // queueLimit: messages kept for a receiver that does not fetch them, at least 1.
    Connection(std::uint8_t handle, std::string name, std::size_t queueLimit);

    std::uint8_t Handle() const { return m_handle; }
    const std::string& Name() const { return m_name; }

    // Puts a message at the end of the queue; a full queue loses its oldest one. Nothing follows the exit message.
    void Post(const QLMessage& message);
    // Puts the exit message behind all others. It is never lost, and is delivered once.
    void PostExit();
    // As IQLProgramCore::ReceiveMessage.
    QLResult Receive(void* buffer, std::uint32_t timeout);

    // What the connection owns; guarded by the lock that ChangeOwned holds.
    struct Owned {
        std::unordered_set<std::uint32_t> tags; // with a subscription; may hold tags that were removed since
        std::unordered_set<std::uint32_t> channels;
    };
    // Runs change (Owned& -> QLResult) unless the connection is closed: then the result is QL_NO_CONNECTION. change may
    // post messages, to this connection too.
    template <typename Change>
    QLResult ChangeOwned(Change change) {
        const std::lock_guard lock(m_ownedLock);
        return m_released ? QL_NO_CONNECTION : change(m_owned);
    }
    // Ends the connection: receivers return QL_NO_CONNECTION. Gives what it owned, for the caller to end; nothing is
    // added afterwards.
    Owned Close();

private:
    const std::uint8_t m_handle;
    const std::string m_name;
    const std::size_t m_queueLimit;

    std::mutex m_queueLock; // a leaf: nothing else is locked under it
    std::condition_variable m_changed;
    std::deque<QLMessage> m_queue; // these four are guarded by m_queueLock
    bool m_lost = false;           // messages were dropped since the last one that was delivered
    bool m_closed = false;
    enum class Exit { No, Posted, Delivered } m_exit = Exit::No;

    std::mutex m_ownedLock;  // taken before the tag table's locks
    Owned m_owned;           // guarded by m_ownedLock
    bool m_released = false; // guarded by m_ownedLock
};
