// Loopback addresses and a UDP port that no other test uses at the same time, also not in another process or another
// build tree. Broadcasts on the loopback network reach every process; with a port of its own a test hears only itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace testing_support {

// A block 127.x.y.0/24 and a port. Held by a socket in the abstract namespace, which the system releases with the
// process, however it ends.
class LoopbackBlock {
public:
    static constexpr std::uint32_t BLOCKS = 12000;

    LoopbackBlock() {
        const auto start = static_cast<std::uint32_t>(::getpid()) * 7U;
        for (std::uint32_t i = 0; i < BLOCKS; ++i) {
            m_index = (start + i) % BLOCKS;
            if (Reserve())
                return;
        }
        throw std::runtime_error("no free block of loopback addresses");
    }
    ~LoopbackBlock() { ::close(m_lock); }
    LoopbackBlock(const LoopbackBlock&) = delete;
    LoopbackBlock& operator=(const LoopbackBlock&) = delete;

    // 127.x.y.HOST as a number; host 1 to 254.
    std::uint32_t Ip(unsigned host) const { return 0x7F400000U + (m_index << 8) + host; }
    std::string Text(unsigned host) const {
        const std::uint32_t ip = Ip(host);
        return std::to_string(ip >> 24) + "." + std::to_string(ip >> 16 & 0xFF) + "." + std::to_string(ip >> 8 & 0xFF) +
               "." + std::to_string(ip & 0xFF);
    }
    std::uint16_t Port() const { return static_cast<std::uint16_t>(20000U + m_index); }
    static constexpr std::uint32_t BROADCAST_IP = 0x7FFFFFFF; // 127.255.255.255

private:
    bool Reserve() {
        m_lock = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (m_lock < 0)
            throw std::runtime_error("no socket for the lock of loopback addresses");
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        // A name that begins with NUL lies in the abstract namespace: no file, nothing to clean up.
        const std::string name = "bdc-loopback-" + std::to_string(m_index);
        name.copy(address.sun_path + 1, name.size());
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
        if (::bind(m_lock, reinterpret_cast<const sockaddr*>(&address), length) == 0)
            return true;
        ::close(m_lock);
        return false;
    }

    std::uint32_t m_index = 0;
    int m_lock = -1;
};

} // namespace testing_support
