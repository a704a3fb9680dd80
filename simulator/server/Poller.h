// Waits for any of many sockets. One thread waits; any thread may interrupt it.
#pragma once

#include "platform/stack/transport/UdpSocket.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace sim {

class Poller {
public:
    Poller();
    ~Poller();
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    // Empty text on success. tag comes back when the socket has something to receive.
    std::string Open();
    std::string Add(const bacnet::UdpSocket& socket, void* tag);

    // Tags of the sockets that are ready, at most as many as fit; none when the time (-1: no limit) is over or
    // Interrupt was called. Valid until the next call.
    std::span<void* const> Wait(int timeoutMs);
    void Interrupt();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

// Lets the process open this many sockets, as far as the system allows. Empty text on success.
std::string AllowOpenSockets(std::size_t count);

} // namespace sim
