#include "bench/Crowd.h"

#include "bench/Site.h"

#include "platform/stack/codec/Writer.h"
#include "platform/stack/network/Npdu.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/transport/Bvll.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

namespace bench {
namespace {

constexpr std::uint32_t kFirstIp = 0x7F200001;   // 127.32.0.1
constexpr std::uint32_t kEverybody = 0x7FFFFFFF; // 127.255.255.255
constexpr std::size_t kBatch = 64;               // datagrams that one system call sends

std::array<int, 2> OpenPipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        Fail("no pipe");
    return ends;
}

sockaddr_in SocketAddress(std::uint32_t ip, std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(ip);
    address.sin_port = htons(port);
    return address;
}

int Open(std::uint16_t port) {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    // Bound to the broadcast address alone: the asker has the port too. Each datagram says where it comes from.
    const sockaddr_in address = SocketAddress(kEverybody, port);
    if (socket < 0 || setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        setsockopt(socket, SOL_SOCKET, SO_BROADCAST, &on, sizeof on) != 0 ||
        bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        Fail("the port of the crowd cannot be opened");
    return socket;
}

// An I-Am to everybody on the local network, ready to be sent.
struct Announcement {
    explicit Announcement(std::uint32_t instance) {
        bacnet::Writer writer(std::span<std::uint8_t>(Octets).subspan(bacnet::BVLL_HEADER));
        const std::uint8_t headers[] = {bacnet::NPDU_VERSION, 0, 0x10, 0x00}; // NPDU, unconfirmed I-Am
        writer.Octets(headers);
        bacnet::EncodeIAm({instance, 1476, 0, 999}, writer);
        Size = bacnet::BVLL_HEADER + writer.Size();
        bacnet::WriteBvllHeader(Octets.data(), bacnet::BvlcFunction::original_broadcast, Size);
    }
    std::array<std::uint8_t, 40> Octets{};
    std::size_t Size = 0;
};

// A datagram with the address that it comes from.
struct Outgoing {
    Outgoing(Announcement& announcement, std::uint32_t from, sockaddr_in& to)
        : Part{announcement.Octets.data(), announcement.Size} {
        auto* const header = reinterpret_cast<cmsghdr*>(Control.data());
        header->cmsg_level = IPPROTO_IP;
        header->cmsg_type = IP_PKTINFO;
        header->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
        in_pktinfo info{};
        info.ipi_spec_dst.s_addr = htonl(from);
        std::memcpy(CMSG_DATA(header), &info, sizeof info);
        To = &to;
    }
    mmsghdr Header() {
        mmsghdr header{};
        header.msg_hdr.msg_name = To;
        header.msg_hdr.msg_namelen = sizeof *To;
        header.msg_hdr.msg_iov = &Part;
        header.msg_hdr.msg_iovlen = 1;
        header.msg_hdr.msg_control = Control.data();
        header.msg_hdr.msg_controllen = Control.size();
        return header;
    }
    iovec Part;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> Control{};
    sockaddr_in* To = nullptr;
};

void WaitForWhoIs(int socket) {
    std::array<std::uint8_t, 64> datagram{};
    for (;;) {
        const ssize_t size = recv(socket, datagram.data(), datagram.size(), 0);
        bacnet::BvllMessage message;
        bacnet::Npdu npdu;
        if (size > 0 &&
            bacnet::DecodeBvll(std::span(datagram).first(static_cast<std::size_t>(size)), message) ==
                bacnet::BvllError::none &&
            bacnet::DecodeNpdu(message.Payload, npdu) == bacnet::NpduError::none && npdu.Payload.size() >= 2 &&
            npdu.Payload[0] == 0x10 && npdu.Payload[1] == 0x08)
            return;
    }
}

void SendAll(int socket, std::span<mmsghdr> headers) {
    while (!headers.empty()) {
        const auto batch = static_cast<unsigned>(std::min(kBatch, headers.size()));
        const int sent = sendmmsg(socket, headers.data(), batch, 0);
        if (sent <= 0)
            Fail("the crowd cannot send");
        headers = headers.subspan(static_cast<std::size_t>(sent));
    }
}

void Answer(std::uint32_t count, std::uint16_t port, int pipeEnd) {
    const int socket = Open(port);
    sockaddr_in everybody = SocketAddress(kEverybody, port);
    std::vector<Announcement> announcements;
    for (std::uint32_t instance = 1; instance <= count; ++instance)
        announcements.emplace_back(instance);
    std::vector<Outgoing> outgoing;
    std::vector<mmsghdr> headers;
    std::uint32_t ip = kFirstIp;
    for (Announcement& announcement : announcements) {
        outgoing.emplace_back(announcement, ip, everybody);
        ip = sim::NextIp(ip);
    }
    for (Outgoing& datagram : outgoing)
        headers.push_back(datagram.Header());
    if (write(pipeEnd, "!", 1) != 1)
        Fail("the pipe is gone");
    WaitForWhoIs(socket);
    // The last one goes alone, so that its time is known. It is taken before: who keeps up has it when the system call
    // returns.
    SendAll(socket, std::span(headers).first(count - 1));
    const auto last = std::chrono::steady_clock::now().time_since_epoch().count();
    SendAll(socket, std::span(headers).last(1));
    if (write(pipeEnd, &last, sizeof last) != sizeof last)
        Fail("the pipe is gone");
    pause();
}

} // namespace

Crowd::Crowd(std::uint32_t count, std::uint16_t port)
    : m_pipe(OpenPipe()), m_child([&] { Answer(count, port, m_pipe[1]); }) {
    close(m_pipe[1]);
    char answer = 0;
    if (read(m_pipe[0], &answer, 1) != 1)
        Fail("the crowd did not gather");
}

Crowd::~Crowd() {
    close(m_pipe[0]);
}

std::chrono::steady_clock::time_point Crowd::LastSent() {
    std::chrono::steady_clock::rep last = 0;
    if (read(m_pipe[0], &last, sizeof last) != sizeof last)
        Fail("the crowd did not answer");
    return std::chrono::steady_clock::time_point(std::chrono::steady_clock::duration(last));
}

} // namespace bench
