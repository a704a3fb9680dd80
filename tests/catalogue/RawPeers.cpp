#include "tests/catalogue/RawPeers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <optional>
#include <stdexcept>

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace catalogue {

namespace {

constexpr unsigned strangerHost = 250;
constexpr std::string_view goodAnswer = "30 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F";

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t to = std::min(text.find(separator, from), text.size());
        parts.push_back(text.substr(from, to - from));
        from = to + 1;
    }
    return parts;
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words = Split(text, ' ');
    std::erase_if(words, [](std::string_view word) { return word.empty(); });
    return words;
}

unsigned Number(std::string_view digits, int base) {
    return static_cast<unsigned>(std::stoul(std::string(digits), nullptr, base));
}

Octets WithBvll(const Octets& npdu) {
    const std::size_t length = npdu.size() + 4;
    Octets frame{0x81, 0x0A, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)};
    frame.insert(frame.end(), npdu.begin(), npdu.end());
    return frame;
}

Datagram Assemble(std::string_view text, const Octets& request) {
    Datagram datagram;
    std::string rest;
    for (const std::string_view word : Words(text)) {
        if (word == "raw")
            datagram.Layer = Datagram::Form::whole;
        else if (word == "npdu")
            datagram.Layer = Datagram::Form::npdu;
        else if (word.starts_with("after="))
            datagram.AfterMs = Number(word.substr(6), 10);
        else if (word.starts_with("times="))
            datagram.Times = Number(word.substr(6), 10);
        else if (word == "from=port")
            datagram.Sender = Datagram::From::other_port;
        else if (word == "from=stranger")
            datagram.Sender = Datagram::From::stranger;
        else
            rest.append(word).append(" ");
    }
    datagram.Bytes = AssembleOctets(rest, request);
    return datagram;
}

// The headers that the datagram lacks; asked is the remote station that it comes from, if any.
Octets Wrapped(const Datagram& datagram, const Octets& asked) {
    if (datagram.Layer == Datagram::Form::whole)
        return datagram.Bytes;
    Octets npdu;
    if (datagram.Layer == Datagram::Form::apdu) {
        npdu = {0x01, static_cast<std::uint8_t>(asked.empty() ? 0x00 : 0x08)};
        npdu.insert(npdu.end(), asked.begin(), asked.end());
    }
    npdu.insert(npdu.end(), datagram.Bytes.begin(), datagram.Bytes.end());
    return WithBvll(npdu);
}

// The APDU of an NPDU that asks this station, or one behind it; empty for anything else.
Octets ApduOf(const std::uint8_t* datagram, std::size_t size, Octets& asked) {
    asked.clear();
    if (size <= 6 || datagram[0] != 0x81 || datagram[1] != 0x0A || (datagram[5] & 0x88) != 0)
        return {};
    const std::uint8_t* at = datagram + 6;
    const std::uint8_t* const end = datagram + size;
    if ((datagram[5] & 0x20) != 0) {
        const std::ptrdiff_t station = end - at > 3 ? 3 + at[2] : 3;
        if (end - at <= station + 1)
            return {};
        asked.assign(at, at + station);
        at += station + 1; // and the hop count
    }
    return {at, end};
}

// Position of the invoke id in a request; what else comes has it in octet 1.
std::size_t IdAt(const Octets& apdu) {
    return apdu[0] >> 4 == 0 ? 2 : 1;
}

} // namespace

Octets AssembleOctets(std::string_view tokens, const Octets& request) {
    Octets octets;
    const std::uint8_t id = request.at(IdAt(request));
    for (const std::string_view word : Words(tokens)) {
        if (word == "ID") {
            octets.push_back(id);
        } else if (word == "ID+1") {
            octets.push_back(static_cast<std::uint8_t>(id + 1));
        } else if (word == "SV") {
            octets.push_back(request.at((request.at(0) & 0x08) != 0 ? 5 : 3));
        } else if (word == "OBJ") {
            octets.insert(octets.end(), request.begin() + 4, request.begin() + 9);
        } else if (word == "GOOD") {
            const Octets good = AssembleOctets(goodAnswer, request);
            octets.insert(octets.end(), good.begin(), good.end());
        } else {
            const std::size_t star = word.find('*');
            const auto octet = static_cast<std::uint8_t>(Number(word.substr(0, star), 16));
            octets.insert(octets.end(), star == std::string_view::npos ? 1 : Number(word.substr(star + 1), 10), octet);
        }
    }
    return octets;
}

Datagram ApduDatagram(const Octets& apdu) {
    Datagram datagram;
    datagram.Bytes = apdu;
    return datagram;
}

Script FromText(std::string text) {
    auto step = std::make_shared<std::size_t>(0);
    return [text = std::move(text), step](const Octets& apdu) {
        std::vector<Datagram> answers;
        const unsigned type = apdu[0] >> 4;
        if (type > 1) // acknowledgements of segments, and aborts
            return answers;
        const auto steps = Split(text, ';');
        const std::string_view now = steps[std::min(*step, steps.size() - 1)];
        ++*step;
        for (const std::string_view each : Split(now, '|'))
            if (Words(each) != std::vector<std::string_view>{"-"})
                answers.push_back(Assemble(each, apdu));
        return answers;
    };
}

RawPeers::RawPeers(const testing_support::LoopbackBlock& block) : m_block(block) {
    if (pipe2(m_wake, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::runtime_error("no pipe");
    m_stranger = NewSocket(strangerHost, block.Port());
    m_thread = std::thread([this] { Run(); });
}

RawPeers::~RawPeers() {
    {
        const std::lock_guard lock(m_lock);
        m_stop = true;
    }
    [[maybe_unused]] const auto woken = write(m_wake[1], "", 1);
    m_thread.join();
    for (const auto& [host, peer] : m_peers) {
        close(peer.Socket);
        close(peer.OtherPort);
    }
    close(m_stranger);
    close(m_wake[0]);
    close(m_wake[1]);
}

int RawPeers::NewSocket(unsigned host, std::uint16_t port) const {
    const int handle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(m_block.Ip(host));
    address.sin_port = htons(port);
    if (handle < 0 || bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no socket for " + m_block.Text(host));
    return handle;
}

void RawPeers::Open(unsigned host, Script script) {
    Peer peer{NewSocket(host, m_block.Port()), NewSocket(host, 0), std::move(script), false};
    {
        const std::lock_guard lock(m_lock);
        m_peers[host] = std::move(peer);
    }
    [[maybe_unused]] const auto woken = write(m_wake[1], "", 1);
}

void RawPeers::Behave(unsigned host) {
    const std::lock_guard lock(m_lock);
    m_peers.at(host).Good = true;
}

void RawPeers::Run() {
    std::vector<pollfd> polls;
    std::vector<unsigned> hosts;
    std::unique_lock lock(m_lock);
    while (!m_stop) {
        polls.assign(1, {m_wake[0], POLLIN, 0});
        hosts.assign(1, 0);
        for (const auto& [host, peer] : m_peers) {
            polls.push_back({peer.Socket, POLLIN, 0});
            hosts.push_back(host);
        }
        int wait = -1;
        if (!m_later.empty())
            wait = std::max(0, static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                                    m_later.begin()->first - Clock::now())
                                                    .count()) +
                                   1);
        lock.unlock();
        poll(polls.data(), polls.size(), wait);
        lock.lock();
        std::array<char, 64> woken{};
        while (read(m_wake[0], woken.data(), woken.size()) > 0) {}
        for (std::size_t i = 1; i < polls.size(); ++i)
            if ((polls[i].revents & POLLIN) != 0)
                Receive(hosts[i]);
        while (!m_later.empty() && m_later.begin()->first <= Clock::now()) {
            const Later due = m_later.begin()->second;
            m_later.erase(m_later.begin());
            Send(due.Host, due.What, due.To);
        }
    }
}

void RawPeers::Receive(unsigned host) {
    Peer& peer = m_peers.at(host);
    std::array<std::uint8_t, 2048> octets{};
    sockaddr_in from{};
    socklen_t length = sizeof from;
    for (;;) {
        const ssize_t size =
            recvfrom(peer.Socket, octets.data(), octets.size(), 0, reinterpret_cast<sockaddr*>(&from), &length);
        if (size < 0)
            return;
        Asker asker{ntohl(from.sin_addr.s_addr), ntohs(from.sin_port), {}};
        const Octets apdu = ApduOf(octets.data(), static_cast<std::size_t>(size), asker.Asked);
        if (apdu.size() < 2 || (apdu[0] >> 4 == 0 && apdu.size() < 4))
            continue;
        std::vector<Datagram> answers;
        if (!peer.Good)
            answers = peer.Answer(apdu);
        else if (apdu[0] >> 4 == 0)
            answers.push_back(ApduDatagram(AssembleOctets(apdu[3] == 0x0C ? goodAnswer : "60 ID 09", apdu)));
        for (const Datagram& answer : answers) {
            if (answer.AfterMs == 0)
                Send(host, answer, asker);
            else
                m_later.emplace(Clock::now() + std::chrono::milliseconds(answer.AfterMs), Later{host, answer, asker});
        }
    }
}

void RawPeers::AnnounceNetwork(unsigned host, unsigned stationHost, std::uint16_t network) {
    Datagram datagram;
    datagram.Layer = Datagram::Form::npdu;
    datagram.Bytes = {0x01, 0x80, 0x01, static_cast<std::uint8_t>(network >> 8), static_cast<std::uint8_t>(network)};
    const std::lock_guard lock(m_lock);
    Send(host, datagram, {m_block.Ip(stationHost), m_block.Port(), {}});
}

void RawPeers::Send(unsigned host, const Datagram& datagram, const Asker& asker) {
    const Peer& peer = m_peers.at(host);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(asker.Ip);
    to.sin_port = htons(asker.Port);
    int handle = peer.Socket;
    if (datagram.Sender == Datagram::From::other_port)
        handle = peer.OtherPort;
    else if (datagram.Sender == Datagram::From::stranger)
        handle = m_stranger;
    const Octets bytes = Wrapped(datagram, asker.Asked);
    for (unsigned i = 0; i < datagram.Times; ++i)
        sendto(handle, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
}

} // namespace catalogue
