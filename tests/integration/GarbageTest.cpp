// Datagrams that are no BACnet, or nearly some, rain on the station and on the devices while a transfer runs.
#include "tests/integration/TransferFixture.h"
#include "tests/unit/stack/codec/GoldenValues.h"
#include "tests/unit/stack/codec/Hex.h"
#include "tests/unit/stack/net/Frames.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <random>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace integration {
namespace {

using Datagram = std::vector<std::uint8_t>;
using ::testing::IsEmpty;

Datagram WithBvll(std::uint8_t function, std::span<const std::uint8_t> npdu) {
    const std::size_t length = npdu.size() + 4;
    Datagram frame{0x81, function, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)};
    frame.insert(frame.end(), npdu.begin(), npdu.end());
    return frame;
}

void SetLength(Datagram& frame, std::size_t length) {
    if (frame.size() < 4)
        return;
    frame[2] = static_cast<std::uint8_t>(length >> 8);
    frame[3] = static_cast<std::uint8_t>(length);
}

// Whole frames to spoil: requests, announcements, answers with every kind of value, a segment, acknowledgements.
std::vector<Datagram> GoldenFrames() {
    std::vector<Datagram> whole{frames::READ_PROPERTY, frames::WHO_IS, frames::FORWARDED_I_AM,
                                WithBvll(0x0A, frames::ROUTED_ACK), WithBvll(0x0B, frames::I_AM_ROUTER)};
    for (const GoldenValue& value : GOLDEN_VALUES) {
        // NPDU; complex ack, invoke id 1, ReadProperty; analog-input 1, present-value, the value.
        Datagram answer{0x01, 0x00, 0x30, 0x01, 0x0C, 0x0C, 0x00, 0x00, 0x00, 0x01, 0x19, 0x55, 0x3E};
        const auto octets = Hex(value.Hex);
        answer.insert(answer.end(), octets.begin(), octets.end());
        answer.push_back(0x3F);
        whole.push_back(WithBvll(0x0A, answer));
    }
    for (std::uint8_t id = 0; id < 64; ++id) {
        // Segment 1 of an answer to ReadRange, more follow; segment ack; error; abort by the server.
        whole.push_back(WithBvll(0x0A, Datagram{0x01, 0x00, 0x3C, id, 0x01, 0x10, 0x1A, 0x0C, 0x05}));
        whole.push_back(WithBvll(0x0A, Datagram{0x01, 0x00, 0x41, id, 0x00, 0x10}));
        whole.push_back(WithBvll(0x0A, Datagram{0x01, 0x00, 0x50, id, 0x1A, 0x91, 0x02, 0x91, 0x1F}));
        whole.push_back(WithBvll(0x0A, Datagram{0x01, 0x00, 0x71, id, 0x04}));
    }
    return whole;
}

// Every frame cut at every octet, with the length as it was and as it is, and whole ones with wrong lengths.
std::vector<Datagram> SpoiltFrames() {
    std::vector<Datagram> spoilt;
    for (const Datagram& whole : GoldenFrames()) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            Datagram cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            spoilt.push_back(cut);
            SetLength(cut, length);
            spoilt.push_back(std::move(cut));
        }
        for (const std::size_t length : {std::size_t{0}, std::size_t{3}, std::size_t{4}, whole.size() - 1,
                                         whole.size() + 1, std::size_t{0xFFFF}}) {
            Datagram wrong = whole;
            SetLength(wrong, length);
            spoilt.push_back(std::move(wrong));
        }
    }
    return spoilt;
}

// Sends from an address of its own to some others, in turn, until it is destroyed.
class Rain {
public:
    Rain(std::uint32_t from, std::vector<std::uint32_t> to, std::uint16_t port) : m_to(std::move(to)), m_port(port) {
        m_socket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address = Address(from);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("no socket for the rain");
        m_thread = std::thread([this] { Run(); });
    }
    ~Rain() {
        Stop();
        close(m_socket);
    }
    Rain(const Rain&) = delete;
    Rain& operator=(const Rain&) = delete;

    std::size_t Stop() {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        return m_sent;
    }
    std::size_t Rounds() const { return m_rounds; }

private:
    static constexpr std::size_t BURST = 20; // no more, for the sockets' buffers must hold what is meant, too

    sockaddr_in Address(std::uint32_t ip) const {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(ip);
        address.sin_port = htons(m_port);
        return address;
    }
    void Send(const Datagram& datagram) {
        for (const std::uint32_t ip : m_to) {
            const sockaddr_in address = Address(ip);
            sendto(m_socket, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address),
                   sizeof address);
        }
        if (++m_sent % BURST == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    Datagram RandomDatagram() {
        Datagram datagram(m_random() % (m_random() % 8 == 0 ? 1500 : 60));
        for (std::uint8_t& octet : datagram)
            octet = static_cast<std::uint8_t>(m_random());
        switch (m_random() % 3) {
        case 0:
            return datagram;
        case 1:
            return WithBvll(static_cast<std::uint8_t>(m_random() % 13), datagram);
        default: // up to the APDU it is right
            datagram.insert(datagram.begin(), {0x01, 0x00});
            return WithBvll(0x0A, datagram);
        }
    }
    void Run() {
        const std::vector<Datagram> spoilt = SpoiltFrames();
        for (; !m_stop; ++m_rounds) {
            for (std::size_t i = 0; i < spoilt.size() && !m_stop; ++i) {
                Send(spoilt[i]);
                Send(RandomDatagram());
            }
        }
    }

    const std::vector<std::uint32_t> m_to;
    const std::uint16_t m_port;
    int m_socket = -1;
    std::mt19937 m_random{2026};
    std::atomic<bool> m_stop{false};
    std::atomic<std::size_t> m_sent{0};
    std::atomic<std::size_t> m_rounds{0};
    std::thread m_thread;
};

class GarbageTest : public TransferFixture {
protected:
    GarbageTest() {
        settings.transactions.Retries = 5;
        counts.Records = 1000;
        settings.chunk = 10;
        counts.Capacity = 100'000;
    }

    // Transfers again and again, with new records, until every spoilt frame has been sent.
    void ExpectExactTransfersInTheRain() {
        for (std::size_t i = 0; i < simulator->DeviceCount(); ++i)
            Device(i).SetFault(sim::Fault::Slow(2)); // so that the rain meets calls under way
        const auto station = NewStation();
        std::vector<std::uint32_t> targets{block.Ip(1)};
        for (unsigned host = 10; host < 15; ++host)
            targets.push_back(block.Ip(host));
        Rain rain(block.Ip(200), targets, block.Port());
        for (int run = 0; run < 40 && rain.Rounds() == 0; ++run) {
            ASSERT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
            ASSERT_EQ(Difference(Expected(), station->Stored()), "");
            for (std::size_t i = 0; i < simulator->DeviceCount(); ++i)
                Device(i).GenerateAll(100);
        }
        EXPECT_GE(rain.Rounds(), 1U);
        EXPECT_GT(rain.Stop(), 5000U);
        EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
        EXPECT_EQ(Difference(Expected(), station->Stored()), "");
    }
};

TEST_F(GarbageTest, ATransferIsExactInARainOfGarbage) {
    counts.Devices = 2;
    counts.Multiples = 1;
    counts.Networks = {7};
    counts.RoutedDevices = 1;
    StartSite();
    ExpectExactTransfersInTheRain();
}

TEST_F(GarbageTest, ATransferInSmallSegmentsIsExactInARainOfGarbage) {
    counts.MaxApdu = 128;
    StartSite();
    ExpectExactTransfersInTheRain();
}

} // namespace
} // namespace integration
