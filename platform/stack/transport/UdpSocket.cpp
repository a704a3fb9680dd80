// The system's sockets. Everything that differs between systems stands in this file.

#include "platform/stack/transport/UdpSocket.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <vector>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
//
#include <iphlpapi.h>
#include <mswsock.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#endif
#if defined(__linux__)
#include <sys/eventfd.h>
#define BDC_SOCKET_BATCHES 1
#endif

namespace bacnet {

namespace {

sockaddr_in ToSockaddr(const BipAddress& address) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = htonl(address.Ip);
    result.sin_port = htons(address.Port);
    return result;
}

BipAddress FromSockaddr(const sockaddr_in& address) {
    return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

#if defined(_WIN32)
using SockLen = int;
using DataLen = int;

SOCKET Sock(UdpSocket::Handle handle) {
    return static_cast<SOCKET>(handle);
}
int LastError() {
    return WSAGetLastError();
}
void CloseHandle(UdpSocket::Handle handle) {
    closesocket(Sock(handle));
}

// Winsock is started once for the process and left running.
void StartSockets() {
    static const int started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    (void)started;
}
#else
using SockLen = socklen_t;
using DataLen = std::size_t;

int Sock(UdpSocket::Handle handle) {
    return handle;
}
int LastError() {
    return errno;
}
void CloseHandle(UdpSocket::Handle handle) {
    ::close(handle);
}
void StartSockets() {}
#endif

std::string ErrorText(const char* what, int error) {
    return std::string(what) + ": " + std::system_category().message(error);
}

template <typename T>
bool SetOption(UdpSocket::Handle handle, int option, const T& value) {
    return setsockopt(Sock(handle), SOL_SOCKET, option, reinterpret_cast<const char*>(&value), sizeof(value)) == 0;
}

// What the options ask for, before bind.
bool Configure(UdpSocket::Handle handle, const UdpSocket::Options& options) {
    const int on = 1;
    if (!SetOption(handle, SO_BROADCAST, on))
        return false;
    if (options.Shared && !SetOption(handle, SO_REUSEADDR, on))
        return false;
    if (options.ReceiveBuffer > 0) {
#if defined(__linux__)
        // Beyond the system's limit for everybody, where this process may.
        if (!SetOption(handle, SO_RCVBUFFORCE, options.ReceiveBuffer))
#endif
            SetOption(handle, SO_RCVBUF, options.ReceiveBuffer);
    }
    if (options.SendBuffer > 0)
        SetOption(handle, SO_SNDBUF, options.SendBuffer);
#if defined(_WIN32)
    const DWORD timeout = static_cast<DWORD>(options.ReceiveTimeoutMs);
    if (options.ReceiveTimeoutMs > 0 && !SetOption(handle, SO_RCVTIMEO, timeout))
        return false;
    // A port that is closed at the far end must not fail our next receive.
    BOOL report = FALSE;
    DWORD returned = 0;
    WSAIoctl(Sock(handle), SIO_UDP_CONNRESET, &report, sizeof(report), nullptr, 0, &returned, nullptr, nullptr);
#else
    if (options.ReceiveTimeoutMs > 0) {
        timeval timeout{};
        timeout.tv_sec = options.ReceiveTimeoutMs / 1000;
        timeout.tv_usec = static_cast<suseconds_t>(options.ReceiveTimeoutMs % 1000) * 1000;
        if (!SetOption(handle, SO_RCVTIMEO, timeout))
            return false;
    }
#endif
    return true;
}

} // namespace

struct DatagramBatch::Slots {
    struct Slot {
        std::uint8_t Octets[MAX_DATAGRAM];
        sockaddr_in From;
        std::size_t Length;
        bool Truncated;
    };
    Slot Items[CAPACITY];
#if defined(BDC_SOCKET_BATCHES)
    iovec Vectors[CAPACITY];
    mmsghdr Headers[CAPACITY];
#endif
};

DatagramBatch::DatagramBatch() : m_slots(std::make_unique<Slots>()) {
#if defined(BDC_SOCKET_BATCHES)
    for (std::size_t i = 0; i < CAPACITY; ++i) {
        m_slots->Vectors[i] = {m_slots->Items[i].Octets, MAX_DATAGRAM};
        msghdr& header = m_slots->Headers[i].msg_hdr;
        header = {};
        header.msg_name = &m_slots->Items[i].From;
        header.msg_iov = &m_slots->Vectors[i];
        header.msg_iovlen = 1;
    }
#endif
}

DatagramBatch::~DatagramBatch() = default;

std::span<const std::uint8_t> DatagramBatch::Octets(std::size_t index) const {
    const Slots::Slot& slot = m_slots->Items[index];
    return {slot.Octets, slot.Length};
}

BipAddress DatagramBatch::From(std::size_t index) const {
    return FromSockaddr(m_slots->Items[index].From);
}

bool DatagramBatch::Truncated(std::size_t index) const {
    return m_slots->Items[index].Truncated;
}

UdpSocket& UdpSocket::operator=(UdpSocket&& other) noexcept {
    if (this != &other) {
        Close();
        m_handle = other.m_handle;
        other.m_handle = NO_HANDLE;
    }
    return *this;
}

std::string UdpSocket::Open(const BipAddress& bind, const Options& options) {
    Close();
    StartSockets();
#if defined(__linux__)
    const int created = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
#else
    const auto created = ::socket(AF_INET, SOCK_DGRAM, 0);
#endif
    m_handle = static_cast<Handle>(created);
    if (m_handle == NO_HANDLE)
        return ErrorText("cannot create a socket", LastError());
    const sockaddr_in address = ToSockaddr(bind);
    if (!Configure(m_handle, options) ||
        ::bind(Sock(m_handle), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        const int error = LastError();
        Close();
        return ErrorText(("cannot bind to " + ToString(bind)).c_str(), error);
    }
    return {};
}

void UdpSocket::Close() {
    if (m_handle != NO_HANDLE)
        CloseHandle(m_handle);
    m_handle = NO_HANDLE;
}

BipAddress UdpSocket::LocalAddress() const {
    sockaddr_in address{};
    SockLen length = sizeof(address);
    if (m_handle == NO_HANDLE || getsockname(Sock(m_handle), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return {};
    return FromSockaddr(address);
}

bool UdpSocket::Send(const BipAddress& to, std::span<const std::uint8_t> datagram) const {
    const sockaddr_in address = ToSockaddr(to);
    for (;;) {
        const auto sent = ::sendto(Sock(m_handle), reinterpret_cast<const char*>(datagram.data()),
                                   static_cast<DataLen>(datagram.size()), 0,
                                   reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        if (sent >= 0)
            return true;
        if (LastError() != EINTR)
            return false;
    }
}

#if defined(BDC_SOCKET_BATCHES)

std::size_t UdpSocket::SendMany(std::span<const OutgoingDatagram> datagrams) const {
    constexpr std::size_t CHUNK = DatagramBatch::CAPACITY;
    sockaddr_in addresses[CHUNK];
    iovec vectors[CHUNK];
    mmsghdr headers[CHUNK];
    std::size_t sent = 0;
    while (!datagrams.empty()) {
        const std::size_t count = std::min(datagrams.size(), CHUNK);
        for (std::size_t i = 0; i < count; ++i) {
            addresses[i] = ToSockaddr(datagrams[i].Destination);
            // The system does not write to what is sent; its structure just has no const.
            vectors[i] = {const_cast<std::uint8_t*>(datagrams[i].Octets.data()), datagrams[i].Octets.size()};
            headers[i] = {};
            headers[i].msg_hdr.msg_name = &addresses[i];
            headers[i].msg_hdr.msg_namelen = sizeof(addresses[i]);
            headers[i].msg_hdr.msg_iov = &vectors[i];
            headers[i].msg_hdr.msg_iovlen = 1;
        }
        const int done = ::sendmmsg(m_handle, headers, static_cast<unsigned>(count), 0);
        if (done < 0 && errno == EINTR)
            continue;
        // A negative result speaks of the first datagram: it is skipped, the others are tried.
        const std::size_t taken = done > 0 ? static_cast<std::size_t>(done) : 1;
        sent += done > 0 ? taken : 0;
        datagrams = datagrams.subspan(taken);
    }
    return sent;
}

std::size_t UdpSocket::Receive(DatagramBatch& batch, std::size_t limit, bool block) const {
    DatagramBatch::Slots& slots = *batch.m_slots;
    batch.m_count = 0;
    limit = std::clamp<std::size_t>(limit, 1, DatagramBatch::CAPACITY);
    if (limit == 1) {
        DatagramBatch::Slots::Slot& slot = slots.Items[0];
        SockLen length = sizeof(slot.From);
        const auto got = ::recvfrom(m_handle, slot.Octets, sizeof(slot.Octets), MSG_TRUNC | (block ? 0 : MSG_DONTWAIT),
                                    reinterpret_cast<sockaddr*>(&slot.From), &length);
        if (got < 0)
            return 0;
        slot.Truncated = static_cast<std::size_t>(got) > sizeof(slot.Octets);
        slot.Length = std::min(static_cast<std::size_t>(got), sizeof(slot.Octets));
        return batch.m_count = 1;
    }
    for (std::size_t i = 0; i < limit; ++i)
        slots.Headers[i].msg_hdr.msg_namelen = sizeof(sockaddr_in);
    const int got = ::recvmmsg(m_handle, slots.Headers, static_cast<unsigned>(limit),
                               block ? MSG_WAITFORONE : MSG_DONTWAIT, nullptr);
    if (got <= 0)
        return 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
        slots.Items[i].Length = slots.Headers[i].msg_len;
        slots.Items[i].Truncated = (slots.Headers[i].msg_hdr.msg_flags & MSG_TRUNC) != 0;
    }
    return batch.m_count = static_cast<std::size_t>(got);
}

#else

std::size_t UdpSocket::SendMany(std::span<const OutgoingDatagram> datagrams) const {
    std::size_t sent = 0;
    for (const OutgoingDatagram& datagram : datagrams)
        sent += Send(datagram.Destination, datagram.Octets) ? 1 : 0;
    return sent;
}

std::size_t UdpSocket::Receive(DatagramBatch& batch, std::size_t limit, bool block) const {
    batch.m_count = 0;
    limit = std::clamp<std::size_t>(limit, 1, DatagramBatch::CAPACITY);
    while (batch.m_count < limit) {
        // After the first one only what is there already.
        if (!block || batch.m_count != 0) {
#if defined(_WIN32)
            WSAPOLLFD item{Sock(m_handle), POLLRDNORM, 0};
            if (WSAPoll(&item, 1, 0) <= 0)
                break;
#else
            pollfd item{m_handle, POLLIN, 0};
            if (::poll(&item, 1, 0) <= 0)
                break;
#endif
        }
        DatagramBatch::Slots::Slot& slot = batch.m_slots->Items[batch.m_count];
        SockLen length = sizeof(slot.From);
        const auto got =
            ::recvfrom(Sock(m_handle), reinterpret_cast<char*>(slot.Octets), static_cast<DataLen>(sizeof(slot.Octets)),
                       0, reinterpret_cast<sockaddr*>(&slot.From), &length);
#if defined(_WIN32)
        slot.Truncated = got < 0 && LastError() == WSAEMSGSIZE;
#else
        slot.Truncated = false;
#endif
        if (got < 0 && !slot.Truncated)
            break;
        slot.Length = slot.Truncated ? sizeof(slot.Octets) : static_cast<std::size_t>(got);
        ++batch.m_count;
    }
    return batch.m_count;
}

#endif

// The waiter is poll over the sockets and one descriptor more that Interrupt makes readable: an eventfd on Linux, a UDP
// socket that sends to itself elsewhere. The flag keeps repeated interrupts down to one system call.
struct SocketWaiter::Impl {
#if defined(__linux__)
    int Event = -1;
#else
    UdpSocket Event;
    BipAddress EventAddress;
#endif
    std::atomic<bool> Pending{false};
};

#if defined(__linux__)

SocketWaiter::SocketWaiter() : m_impl(std::make_unique<Impl>()) {
    m_impl->Event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

SocketWaiter::~SocketWaiter() {
    if (Valid())
        ::close(m_impl->Event);
}

bool SocketWaiter::Valid() const {
    return m_impl->Event >= 0;
}

void SocketWaiter::Interrupt() {
    if (m_impl->Pending.exchange(true))
        return;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_impl->Event, &one, sizeof(one));
}

#else

SocketWaiter::SocketWaiter() : m_impl(std::make_unique<Impl>()) {
    constexpr std::uint32_t LOCALHOST = 0x7F000001;
    m_impl->Event.Open({LOCALHOST, 0}, {});
    m_impl->EventAddress = m_impl->Event.LocalAddress();
}

SocketWaiter::~SocketWaiter() = default;

bool SocketWaiter::Valid() const {
    return m_impl->Event.IsOpen();
}

void SocketWaiter::Interrupt() {
    if (m_impl->Pending.exchange(true))
        return;
    const std::uint8_t one = 1;
    m_impl->Event.Send(m_impl->EventAddress, {&one, 1});
}

#endif

unsigned SocketWaiter::Wait(std::span<const UdpSocket* const> sockets, int timeoutMs) {
    constexpr std::size_t LIMIT = 8;
#if defined(_WIN32)
    WSAPOLLFD items[LIMIT + 1];
    constexpr short READABLE = POLLRDNORM;
#else
    pollfd items[LIMIT + 1];
    constexpr short READABLE = POLLIN;
#endif
    std::size_t bits[LIMIT];
    unsigned count = 0;
    for (std::size_t i = 0; i < std::min(sockets.size(), LIMIT); ++i)
        if (sockets[i] != nullptr && sockets[i]->IsOpen()) {
            bits[count] = i;
            items[count++] = {Sock(sockets[i]->Native()), READABLE, 0};
        }
#if defined(__linux__)
    items[count] = {m_impl->Event, READABLE, 0};
    const int ready = ::poll(items, count + 1, timeoutMs);
#elif defined(_WIN32)
    items[count] = {Sock(m_impl->Event.Native()), READABLE, 0};
    const int ready = WSAPoll(items, count + 1, timeoutMs);
#else
    items[count] = {m_impl->Event.Native(), READABLE, 0};
    const int ready = ::poll(items, count + 1, timeoutMs);
#endif
    if (ready <= 0)
        return 0;
    if (items[count].revents != 0) {
#if defined(__linux__)
        std::uint64_t value = 0;
        [[maybe_unused]] const ssize_t got = ::read(m_impl->Event, &value, sizeof(value));
#else
        DatagramBatch ignored;
        m_impl->Event.Receive(ignored, 1, false);
#endif
        // Cleared after the event is drained. Who interrupts in between writes nothing, but the exchange makes its
        // reason visible to this thread, which looks at everything after each wait.
        m_impl->Pending.exchange(false);
    }
    unsigned result = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (items[i].revents != 0)
            result |= 1U << bits[i];
    return result;
}

#if defined(_WIN32)

std::vector<InterfaceAddress> ListInterfaces() {
    std::vector<InterfaceAddress> result;
    ULONG size = 64 * 1024;
    std::vector<std::uint64_t> memory(size / 8);
    auto* first = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(memory.data());
    if (GetAdaptersAddresses(AF_INET, 0, nullptr, first, &size) != NO_ERROR)
        return result;
    for (auto* adapter = first; adapter != nullptr; adapter = adapter->Next)
        for (auto* unicast = adapter->FirstUnicastAddress; unicast != nullptr; unicast = unicast->Next) {
            const auto* address = reinterpret_cast<const sockaddr_in*>(unicast->Address.lpSockaddr);
            const unsigned prefix = unicast->OnLinkPrefixLength;
            const std::uint32_t mask = prefix == 0 ? 0 : 0xFFFFFFFFU << (32 - std::min(prefix, 32U));
            result.push_back({adapter->AdapterName, ntohl(address->sin_addr.s_addr), mask});
        }
    return result;
}

#else

std::vector<InterfaceAddress> ListInterfaces() {
    std::vector<InterfaceAddress> result;
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0)
        return result;
    const auto ip = [](const sockaddr* address) {
        sockaddr_in inet{};
        std::memcpy(&inet, address, sizeof(inet));
        return ntohl(inet.sin_addr.s_addr);
    };
    for (const ifaddrs* item = first; item != nullptr; item = item->ifa_next)
        if (item->ifa_addr != nullptr && item->ifa_netmask != nullptr && item->ifa_addr->sa_family == AF_INET)
            result.push_back({item->ifa_name, ip(item->ifa_addr), ip(item->ifa_netmask)});
    ::freeifaddrs(first);
    return result;
}

#endif

std::uint32_t BroadcastAddressOf(std::uint32_t ip) {
    for (const InterfaceAddress& item : ListInterfaces())
        if ((item.Ip & item.Mask) == (ip & item.Mask) && item.Mask != 0)
            return ip | ~item.Mask;
    return 0xFFFFFFFFU;
}

} // namespace bacnet
