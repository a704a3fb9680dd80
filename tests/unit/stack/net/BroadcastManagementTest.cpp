// Broadcasts between networks, over real sockets: two ports on networks of their own (told apart by the UDP port), each
// a broadcast management device or a foreign device, and scripted stations.
#include "platform/stack/transport/BipPort.h"
#include "tests/support/Loopback.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>

using namespace bacnet;
using namespace std::chrono_literals;
using testing_support::LoopbackBlock;

namespace {

const frames::Octets NPDU{0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08}; // Who-Is to all networks

frames::Octets Framed(std::uint8_t function, const frames::Octets& rest) {
    frames::Octets frame{0x81, function, 0x00, static_cast<std::uint8_t>(rest.size() + 4)};
    frame.insert(frame.end(), rest.begin(), rest.end());
    return frame;
}

frames::Octets Forwarded(const BipAddress& origin, const frames::Octets& npdu = NPDU) {
    frames::Octets rest(6);
    WriteBipAddress(rest.data(), origin);
    rest.insert(rest.end(), npdu.begin(), npdu.end());
    return Framed(0x04, rest);
}

// A port with a thread that receives as a port's own thread does, and what it has received.
class LivePort {
public:
    ~LivePort() { Stop(); }
    std::string Open(BipSettings settings) {
        settings.Now = [this] { return m_now.load(); };
        settings.Report = [this](bool error, const std::string& text) {
            const std::lock_guard lock(m_lock);
            m_reports.push_back((error ? "error: " : "") + text);
        };
        const std::string reason = Port.Open(settings);
        if (reason.empty())
            m_thread = std::thread([this] { Run(); });
        return reason;
    }
    void Stop() {
        m_stop = true;
        Port.Interrupt();
        if (m_thread.joinable())
            m_thread.join();
    }
    void Advance(std::int64_t seconds) {
        m_now += seconds * 1000;
        Port.Interrupt();
    }
    // What came, each as "source [broadcast]"; waits until there are so many.
    std::vector<std::string> Received(std::size_t count) { return Wait(count, m_received); }
    std::vector<std::string> Reports(std::size_t count) { return Wait(count, m_reports); }
    bool Broadcast() {
        Frame frame;
        frame.Append(NPDU);
        return Port.Broadcast(frame);
    }

    BipPort Port;

private:
    std::vector<std::string> Wait(std::size_t count, const std::vector<std::string>& list) {
        const auto until = std::chrono::steady_clock::now() + 5s;
        for (;;) {
            {
                const std::lock_guard lock(m_lock);
                if (list.size() >= count || std::chrono::steady_clock::now() > until)
                    return list;
            }
            std::this_thread::sleep_for(1ms);
        }
    }
    void Keep(const NpduBatch& batch) {
        const std::lock_guard lock(m_lock);
        for (std::size_t i = 0; i < batch.Count; ++i) {
            BipAddress source;
            FromMac(batch.Items[i].Source, source);
            EXPECT_EQ(frames::Octets(batch.Items[i].Npdu.begin(), batch.Items[i].Npdu.end()), NPDU);
            m_received.push_back(ToString(source) + (batch.Items[i].Broadcast ? " broadcast" : ""));
        }
    }
    void Run() {
        NpduBatch batch;
        while (!m_stop) {
            Port.Attend();
            const unsigned ready = Port.WaitReadable(IDataLink::DIRECTED | IDataLink::BROADCASTS, 1000);
            if ((ready & IDataLink::BROADCASTS) != 0) {
                Port.ReceiveBroadcasts(batch);
                Keep(batch);
            }
            if ((ready & IDataLink::DIRECTED) != 0) {
                Port.ReceiveDirected(batch, NpduBatch::CAPACITY, IDataLink::Wait::none);
                Keep(batch);
            }
        }
    }

    std::atomic<std::int64_t> m_now{1000000};
    std::atomic<bool> m_stop{false};
    std::mutex m_lock;
    std::vector<std::string> m_received; // m_lock
    std::vector<std::string> m_reports;  // m_lock
    std::thread m_thread;
};

// A station that the test plays: its own socket, and one that hears its network's broadcasts.
class Scripted {
public:
    Scripted(std::uint32_t ip, std::uint16_t port) : Address{ip, port} {
        UdpSocket::Options options;
        options.ReceiveTimeoutMs = 5000;
        EXPECT_EQ(m_socket.Open(Address, options), "");
        options.Shared = true;
        EXPECT_EQ(m_network.Open({LoopbackBlock::BROADCAST_IP, port}, options), "");
    }
    void Send(const BipAddress& to, const frames::Octets& octets) { EXPECT_TRUE(m_socket.Send(to, octets)); }
    void Broadcast(const frames::Octets& octets) { Send({LoopbackBlock::BROADCAST_IP, Address.Port}, octets); }
    frames::Octets Receives() { return Next(m_socket); }
    // The next broadcast of the network that is not its own.
    frames::Octets Hears() {
        for (;;) {
            frames::Octets octets = Next(m_network);
            if (octets.empty() || m_batch.From(0) != Address)
                return octets;
        }
    }
    bool Quiet() {
        m_socket.Receive(m_batch, 1, false);
        return m_batch.Count() == 0;
    }

    const BipAddress Address;

private:
    frames::Octets Next(UdpSocket& socket) {
        if (socket.Receive(m_batch, 1, true) == 0)
            return {};
        return {m_batch.Octets(0).begin(), m_batch.Octets(0).end()};
    }
    UdpSocket m_socket;
    UdpSocket m_network;
    DatagramBatch m_batch;
};

class TwoNetworks : public testing::Test {
protected:
    BipAddress First() const { return {m_blockA.Ip(1), m_blockA.Port()}; }
    BipAddress Second() const { return {m_blockB.Ip(1), m_blockB.Port()}; }
    void OpenBoth() {
        BbmdSettings bbmd;
        bbmd.Table = {{First()}, {Second()}};
        BipSettings settings{First().Ip, First().Port};
        settings.Bbmd = bbmd;
        ASSERT_EQ(m_first.Open(settings), "");
        settings.Ip = Second().Ip;
        settings.Port = Second().Port;
        ASSERT_EQ(m_second.Open(settings), "");
    }

    LoopbackBlock m_blockA;
    LoopbackBlock m_blockB;
    LivePort m_first;
    LivePort m_second;
    Scripted m_deviceA{m_blockA.Ip(5), m_blockA.Port()};
    Scripted m_deviceB{m_blockB.Ip(5), m_blockB.Port()};
    Scripted m_outside{m_blockB.Ip(9), static_cast<std::uint16_t>(m_blockB.Port() + 20000)};
};

TEST_F(TwoNetworks, ABroadcastOfOneIsHeardOnceOnTheOther) {
    OpenBoth();
    m_deviceA.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_deviceB.Hears(), Forwarded(m_deviceA.Address));
    EXPECT_EQ(m_first.Received(1), std::vector<std::string>{ToString(m_deviceA.Address) + " broadcast"});
    EXPECT_EQ(m_second.Received(1), std::vector<std::string>{ToString(m_deviceA.Address) + " broadcast"});
    // The next thing heard on either network is the next broadcast: nothing went in circles.
    m_deviceB.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_deviceA.Hears(), Forwarded(m_deviceB.Address));
    ASSERT_TRUE(m_first.Broadcast());
    EXPECT_EQ(m_deviceA.Hears(), Framed(0x0B, NPDU));
    EXPECT_EQ(m_deviceB.Hears(), Forwarded(First())) << "the device's own broadcasts too";
    EXPECT_EQ(m_second.Received(3).size(), 3U);
}

TEST_F(TwoNetworks, AForeignDeviceHearsAndIsHeardThroughEither) {
    OpenBoth();
    m_outside.Send(First(), Framed(0x05, {0x00, 0x3C}));
    EXPECT_EQ(m_outside.Receives(), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x00}));

    m_outside.Send(First(), Framed(0x09, NPDU));
    EXPECT_EQ(m_deviceA.Hears(), Forwarded(m_outside.Address));
    EXPECT_EQ(m_deviceB.Hears(), Forwarded(m_outside.Address));
    EXPECT_EQ(m_first.Received(1), std::vector<std::string>{ToString(m_outside.Address) + " broadcast"});
    EXPECT_EQ(m_second.Received(1), std::vector<std::string>{ToString(m_outside.Address) + " broadcast"});

    m_deviceA.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_outside.Receives(), Forwarded(m_deviceA.Address)) << "not its own one, which went before";
    m_deviceB.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_outside.Receives(), Forwarded(m_deviceB.Address));

    // Its time and the grace are over.
    m_first.Advance(91);
    m_outside.Send(First(), Framed(0x09, NPDU));
    EXPECT_EQ(m_outside.Receives(), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x60}));
    EXPECT_EQ(m_first.Received(3).size(), 3U) << "and what it said is not taken";
}

TEST_F(TwoNetworks, StrangersCannotHaveTheirFramesForwarded) {
    OpenBoth();
    // Forwarded by somebody outside of the table: taken as said to this station, and not sent on.
    m_outside.Send(First(), Forwarded(m_outside.Address));
    EXPECT_EQ(m_first.Received(1), std::vector<std::string>{ToString(m_outside.Address) + " broadcast"});
    // A broadcast that was sent to this station alone is not distributed either.
    m_outside.Send(First(), Framed(0x0B, NPDU));
    EXPECT_EQ(m_first.Received(2).size(), 2U);
    // What claims to come from this station itself is nothing at all.
    m_outside.Send(First(), Forwarded(First()));
    m_deviceA.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_deviceB.Hears(), Forwarded(m_deviceA.Address)) << "the first thing heard";
    EXPECT_EQ(m_first.Received(3).size(), 3U);
    EXPECT_TRUE(m_outside.Quiet());
}

TEST_F(TwoNetworks, AStationRegistersAsForeignDeviceAndRenews) {
    BipSettings settings{First().Ip, First().Port};
    settings.Foreign = ForeignSettings{m_outside.Address, 60};
    ASSERT_EQ(m_first.Open(settings), "");
    const frames::Octets registration = Framed(0x05, {0x00, 0x3C});
    EXPECT_EQ(m_outside.Receives(), registration);
    m_outside.Send(First(), Framed(0x00, {0x00, 0x00}));
    EXPECT_EQ(m_first.Reports(1),
              std::vector<std::string>{"Registered as a foreign device with " + ToString(m_outside.Address)});
    EXPECT_EQ(m_first.Port.Broadcasting().Registration, ForeignRegistration::State::registered);
    ASSERT_TRUE(m_first.Broadcast());
    EXPECT_EQ(m_outside.Receives(), Framed(0x09, NPDU));
    m_outside.Send(First(), Forwarded(m_deviceB.Address));
    EXPECT_EQ(m_first.Received(1), std::vector<std::string>{ToString(m_deviceB.Address) + " broadcast"});

    m_first.Advance(30);
    EXPECT_EQ(m_outside.Receives(), registration) << "renewed at half its time";
    m_outside.Send(First(), Framed(0x00, {0x00, 0x30}));
    EXPECT_EQ(m_first.Reports(2)[1], "error: " + ToString(m_outside.Address) +
                                         " refuses this station as a foreign device: no broadcasts are sent");
    EXPECT_FALSE(m_first.Broadcast()) << "it would reach nobody";
    EXPECT_EQ(m_first.Port.Broadcasting().Registration, ForeignRegistration::State::refused);
    EXPECT_TRUE(m_outside.Quiet());
}

TEST_F(TwoNetworks, AForeignDeviceThatClosesLeaves) {
    BipSettings settings{First().Ip, First().Port};
    settings.Foreign = ForeignSettings{m_outside.Address, 60};
    const frames::Octets registration = Framed(0x05, {0x00, 0x3C});
    for (const bool accepted : {true, false}) {
        {
            LivePort leaving;
            ASSERT_EQ(leaving.Open(settings), "");
            EXPECT_EQ(m_outside.Receives(), registration);
            m_outside.Send(First(), Framed(0x00, {0x00, static_cast<std::uint8_t>(accepted ? 0x00 : 0x30)}));
            EXPECT_EQ(leaving.Reports(1).size(), 1U);
        }
        if (accepted) {
            EXPECT_EQ(m_outside.Receives(), EncodeDeleteFdtEntry(First()));
        }
    }
    EXPECT_TRUE(m_outside.Quiet()) << "who was refused has nothing to take back";
}

TEST_F(TwoNetworks, OurPortsServeEachOther) {
    BipSettings settings{First().Ip, First().Port};
    settings.Bbmd = BbmdSettings{};
    ASSERT_EQ(m_first.Open(settings), "");
    BipSettings foreign{Second().Ip, Second().Port};
    foreign.Foreign = ForeignSettings{First(), 60};
    ASSERT_EQ(m_second.Open(foreign), "");
    EXPECT_EQ(m_second.Reports(1).size(), 1U);
    ASSERT_TRUE(m_second.Broadcast());
    EXPECT_EQ(m_first.Received(1), std::vector<std::string>{ToString(Second()) + " broadcast"});
    ASSERT_TRUE(m_first.Broadcast());
    EXPECT_EQ(m_second.Received(1), std::vector<std::string>{ToString(First()) + " broadcast"});

    std::vector<BdtEntry> bdt;
    std::vector<FdtEntry> fdt;
    EXPECT_EQ(m_second.Port.ReadTable(First(), bdt, 2000ms), TableRead::done);
    EXPECT_EQ(bdt, std::vector<BdtEntry>{{First()}});
    EXPECT_EQ(m_second.Port.ReadTable(First(), fdt, 2000ms), TableRead::done);
    EXPECT_EQ(fdt, (std::vector<FdtEntry>{{Second(), 60, 90}}));
    EXPECT_EQ(m_first.Port.ReadTable(Second(), bdt, 2000ms), TableRead::refused) << "that one is no such device";
    EXPECT_EQ(m_first.Port.ReadTable(m_outside.Address, bdt, 1ms), TableRead::silent);
    const BroadcastStatus status = m_first.Port.Broadcasting();
    EXPECT_TRUE(status.IsBbmd);
    EXPECT_EQ(status.ForeignDevices, fdt);
}

TEST_F(TwoNetworks, ATableThatIsNoneIsAFailure) {
    BipSettings settings{First().Ip, First().Port};
    ASSERT_EQ(m_first.Open(settings), "");
    std::thread answerer([this] {
        EXPECT_EQ(m_outside.Receives(), Framed(0x02, {}));
        m_deviceA.Send(First(), Framed(0x03, {})); // from somebody else: not the answer
        m_outside.Send(First(), Framed(0x07, {})); // another table: not the answer
        m_outside.Send(First(), Framed(0x03, {1, 2, 3}));
    });
    std::vector<BdtEntry> bdt;
    EXPECT_EQ(m_first.Port.ReadTable(m_outside.Address, bdt, 5000ms), TableRead::failed);
    answerer.join();
}

TEST_F(TwoNetworks, HostileFramesOfEveryFunctionLeaveTheDeviceAtWork) {
    OpenBoth();
    std::uint32_t state = 12345;
    const auto random = [&state] {
        state = state * 1664525 + 1013904223;
        return static_cast<std::uint8_t>(state >> 24);
    };
    for (int function = 0; function < 256; ++function)
        for (std::size_t length = 0; length < 24; ++length) {
            // Functions that carry an NPDU would deliver it.
            if (function == 0x04 || function == 0x09 || function == 0x0A || function == 0x0B)
                continue;
            frames::Octets rest(length);
            for (std::uint8_t& octet : rest)
                octet = random();
            m_outside.Send(First(), Framed(static_cast<std::uint8_t>(function), rest));
            if (length == 23)
                std::this_thread::yield();
        }
    m_deviceA.Broadcast(Framed(0x0B, NPDU));
    EXPECT_EQ(m_deviceB.Hears(), Forwarded(m_deviceA.Address));
    EXPECT_EQ(m_first.Port.Broadcasting().Table.size(), 2U);
}

TEST(BroadcastManagementPort, RefusesSettingsThatCannotWork) {
    const LoopbackBlock block;
    BipSettings settings;
    settings.Port = block.Port();
    settings.Bbmd = BbmdSettings{};
    EXPECT_NE(BipPort().Open(settings), "") << "without an address of its own";
    settings.Ip = block.Ip(1);
    settings.Foreign = ForeignSettings{{block.Ip(2), block.Port()}};
    EXPECT_NE(BipPort().Open(settings), "") << "both at once";
    settings.Bbmd.reset();
    EXPECT_EQ(BipPort().Open(settings), "");
    settings.Foreign = ForeignSettings{{block.Ip(1), block.Port()}};
    EXPECT_NE(BipPort().Open(settings), "") << "with itself";
    settings.Ip = 0;
    settings.Foreign = ForeignSettings{{0x7F000001, block.Port()}};
    EXPECT_NE(BipPort().Open(settings), "") << "with itself, by one of its addresses";
}

} // namespace
