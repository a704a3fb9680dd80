// UDP over IPv4, the one place that calls the system's sockets. Linux receives and sends in batches with one system
// call; elsewhere one datagram a call.
//
// Sending may be done by any thread; receiving by one thread at a time.
#pragma once

#include "platform/stack/transport/Bvll.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace bacnet {

// Memory for one batch of datagrams; some 66 KiB, so never on the stack.
class DatagramBatch {
public:
    static constexpr std::size_t CAPACITY = 32;
    static constexpr std::size_t MAX_DATAGRAM = 2048; // a longer one is marked as truncated

    DatagramBatch();
    ~DatagramBatch();
    DatagramBatch(const DatagramBatch&) = delete;
    DatagramBatch& operator=(const DatagramBatch&) = delete;

    std::size_t Count() const { return m_count; }
    std::span<const std::uint8_t> Octets(std::size_t index) const;
    BipAddress From(std::size_t index) const;
    bool Truncated(std::size_t index) const;

private:
    friend class UdpSocket;
    struct Slots;
    std::unique_ptr<Slots> m_slots;
    std::size_t m_count = 0;
};

struct OutgoingDatagram {
    BipAddress Destination;
    std::span<const std::uint8_t> Octets;
};

class UdpSocket {
public:
#if defined(_WIN32)
    using Handle = std::uintptr_t;
#else
    using Handle = int;
#endif
    static constexpr Handle NO_HANDLE = static_cast<Handle>(-1);

    struct Options {
        bool Shared = false;      // SO_REUSEADDR before bind: several sockets get each broadcast
        int ReceiveBuffer = 0;    // octets asked of the system, best effort; 0: the system's default
        int ReceiveTimeoutMs = 0; // a blocking receive returns after it; 0: waits without limit
        int SendBuffer = 0;       // as ReceiveBuffer
    };

    UdpSocket() = default;
    ~UdpSocket() {
        Close();
    }
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;
    UdpSocket(UdpSocket&& other) noexcept : m_handle(other.m_handle) {
        other.m_handle = NO_HANDLE;
    }
    UdpSocket& operator=(UdpSocket&& other) noexcept;

    // Opens, allows broadcasts and binds. Empty text on success, otherwise the reason; the socket is closed then.
    std::string Open(const BipAddress& bind, const Options& options);
    void Close();
    bool IsOpen() const {
        return m_handle != NO_HANDLE;
    }
    Handle Native() const {
        return m_handle;
    }                                // for the caller's own event loop
    BipAddress LocalAddress() const; // the port too when bound to port 0

    bool Send(const BipAddress& to, std::span<const std::uint8_t> datagram) const;
    // The number sent, from the first on; a datagram that the system refuses is skipped and not counted.
    std::size_t SendMany(std::span<const OutgoingDatagram> datagrams) const;
    // Receives 1..limit datagrams. With block false, or when the receive timeout passes, there may be none. Returns
    // their number.
    std::size_t Receive(DatagramBatch& batch, std::size_t limit, bool block) const;

private:
    Handle m_handle = NO_HANDLE;
};

// Waits for some sockets, and can be interrupted from other threads. One thread waits at a time.
class SocketWaiter {
public:
    SocketWaiter();
    ~SocketWaiter();
    SocketWaiter(const SocketWaiter&) = delete;
    SocketWaiter& operator=(const SocketWaiter&) = delete;
    bool Valid() const; // false when the system had no descriptor left; it must not be used then

    // Bit n is set when sockets[n] (at most 8; null ones are skipped) has something to receive. timeoutMs -1: no limit.
    unsigned Wait(std::span<const UdpSocket* const> sockets, int timeoutMs);
    void Interrupt(); // ends the present or the next Wait

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

// The IPv4 networks of this machine.
struct InterfaceAddress {
    std::string Name;
    std::uint32_t Ip = 0;
    std::uint32_t Mask = 0;
};
// Empty when the system does not tell.
std::vector<InterfaceAddress> ListInterfaces();
// The broadcast address of the network that ip lies in (127.255.255.255 for 127.0.0.5); 255.255.255.255 when unknown.
std::uint32_t BroadcastAddressOf(std::uint32_t ip);

} // namespace bacnet
