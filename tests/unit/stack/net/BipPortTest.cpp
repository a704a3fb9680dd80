#include "platform/stack/transport/BipPort.h"
#include "tests/support/Loopback.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>

#include <sys/socket.h>
#include <unistd.h>

using namespace bacnet;
using testing_support::LoopbackBlock;

namespace {

// Whether this process gets a receive buffer of 4 MB, by privilege or since everybody does.
bool MayHaveLargeBuffer() {
    const int wanted = 4 << 20;
    const int probe = ::socket(AF_INET, SOCK_DGRAM, 0);
    const bool forced = ::setsockopt(probe, SOL_SOCKET, SO_RCVBUFFORCE, &wanted, sizeof wanted) == 0;
    ::close(probe);
    int everybodys = 0;
    std::ifstream("/proc/sys/net/core/rmem_max") >> everybodys;
    return forced || everybodys >= wanted;
}

class Port : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_port.Open({m_block.Ip(1), m_block.Port()}), "");
        UdpSocket::Options options;
        options.ReceiveTimeoutMs = 2000;
        ASSERT_EQ(m_peer.Open({m_block.Ip(2), m_block.Port()}, options), "");
    }
    BipAddress Station() const { return {m_block.Ip(1), m_block.Port()}; }
    BipAddress Peer() const { return {m_block.Ip(2), m_block.Port()}; }
    // Directed traffic until something usable came, two seconds at most.
    std::size_t Receive() {
        for (int i = 0; i < 200; ++i) {
            const std::size_t count = m_port.ReceiveDirected(m_batch, NpduBatch::CAPACITY, IDataLink::Wait::tick);
            if (count != 0)
                return count;
        }
        return 0;
    }
    frames::Octets Npdu(std::size_t index) const {
        return {m_batch.Items[index].Npdu.begin(), m_batch.Items[index].Npdu.end()};
    }
    frames::Octets PeerReceives() {
        if (m_peer.Receive(m_datagrams, 1, true) == 0)
            return {};
        return {m_datagrams.Octets(0).begin(), m_datagrams.Octets(0).end()};
    }

    LoopbackBlock m_block;
    BipPort m_port;
    UdpSocket m_peer;
    NpduBatch m_batch;
    DatagramBatch m_datagrams;
};

TEST_F(Port, DirectedTrafficComesWithItsSource) {
    m_peer.Send(Station(), frames::READ_PROPERTY);
    ASSERT_EQ(Receive(), 1U);
    ASSERT_EQ(m_batch.Count, 1U);
    EXPECT_EQ(m_batch.Items[0].Source, ToMac(Peer()));
    EXPECT_FALSE(m_batch.Items[0].Broadcast);
    EXPECT_EQ(Npdu(0), frames::Octets(frames::READ_PROPERTY.begin() + 4, frames::READ_PROPERTY.end()));
}

TEST_F(Port, SendsAndBroadcastsWithItsHeader) {
    Frame frame;
    frame.Append(frames::Octets{0x01, 0x00, 0x42});
    ASSERT_TRUE(m_port.Send(ToMac(Peer()), frame));
    EXPECT_EQ(PeerReceives(), (frames::Octets{0x81, 0x0A, 0x00, 0x07, 0x01, 0x00, 0x42}));

    UdpSocket listener;
    UdpSocket::Options options;
    options.Shared = true;
    options.ReceiveTimeoutMs = 2000;
    ASSERT_EQ(listener.Open({LoopbackBlock::BROADCAST_IP, m_block.Port()}, options), "");
    frame.Clear();
    frame.Append(frames::Octets{0x01, 0x00, 0x42});
    ASSERT_TRUE(m_port.Broadcast(frame));
    ASSERT_EQ(listener.Receive(m_datagrams, 1, true), 1U);
    EXPECT_EQ(frames::Octets(m_datagrams.Octets(0).begin(), m_datagrams.Octets(0).end()),
              (frames::Octets{0x81, 0x0B, 0x00, 0x07, 0x01, 0x00, 0x42}));
    EXPECT_EQ(m_datagrams.From(0), Station());
}

TEST_F(Port, ManyFramesGoOutInTheirOrder) {
    std::array<Frame, 40> frames;
    std::vector<OutgoingNpdu> outgoing;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        frames[i].Append(frames::Octets{0x01, static_cast<std::uint8_t>(i)});
        outgoing.push_back({ToMac(Peer()), &frames[i]});
    }
    outgoing[7].Destination = MacAddress(frames::Octets{1, 2, 3}); // no station of this link
    EXPECT_EQ(m_port.SendMany(outgoing), 39U);
    for (std::size_t i = 0; i < frames.size(); ++i)
        if (i != 7) {
            EXPECT_EQ(PeerReceives(), (frames::Octets{0x81, 0x0A, 0x00, 0x06, 0x01, static_cast<std::uint8_t>(i)}));
        }
}

TEST_F(Port, BroadcastsAreReceivedByEachPortOfTheMachineButTheSender) {
    BipPort second;
    ASSERT_EQ(second.Open({m_block.Ip(3), m_block.Port()}), "");
    EXPECT_EQ(m_port.BroadcastAddress(), (BipAddress{LoopbackBlock::BROADCAST_IP, m_block.Port()}));
    Frame frame;
    frame.Append(frames::Octets{0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08});
    ASSERT_TRUE(m_port.Broadcast(frame));

    ASSERT_EQ(second.WaitReadable(IDataLink::BROADCASTS | IDataLink::DIRECTED, 2000), IDataLink::BROADCASTS);
    ASSERT_EQ(second.ReceiveBroadcasts(m_batch), 1U);
    ASSERT_EQ(m_batch.Count, 1U);
    EXPECT_TRUE(m_batch.Items[0].Broadcast);
    EXPECT_EQ(m_batch.Items[0].Source, ToMac(Station()));

    ASSERT_EQ(m_port.WaitReadable(IDataLink::BROADCASTS, 2000), IDataLink::BROADCASTS);
    EXPECT_EQ(m_port.ReceiveBroadcasts(m_batch), 1U);
    EXPECT_EQ(m_batch.Count, 0U);
    EXPECT_EQ(m_port.Counters().Own.Value(), 1U);
}

TEST_F(Port, ForwardedBroadcastsComeFromTheirOriginator) {
    m_peer.Send(Station(), frames::FORWARDED_I_AM);
    ASSERT_EQ(Receive(), 1U);
    ASSERT_EQ(m_batch.Count, 1U);
    EXPECT_TRUE(m_batch.Items[0].Broadcast);
    EXPECT_EQ(m_batch.Items[0].Source, ToMac(BipAddress{0x0A000105, 47808}));

    // Our own broadcast, sent back to us by a broadcast management device.
    Frame frame;
    frame.Append(frames::Octets{0x01, 0x00, 0x10, 0x08});
    ASSERT_TRUE(PrependForwarded(frame, Station()));
    m_peer.Send(Station(), frame.Octets());
    ASSERT_EQ(Receive(), 1U);
    EXPECT_EQ(m_batch.Count, 0U);
}

TEST_F(Port, FunctionsThatAreNotServedGetTheirNak) {
    m_peer.Send(Station(), frames::Octets{0x81, 0x05, 0x00, 0x06, 0x00, 0x3C}); // Register-Foreign-Device, 60 s
    ASSERT_EQ(Receive(), 1U);
    EXPECT_EQ(m_batch.Count, 0U);
    EXPECT_EQ(PeerReceives(), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x30}));
    // Results and acknowledgements get nothing, so that two stations never answer each other for ever.
    m_peer.Send(Station(), frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x30});
    m_peer.Send(Station(), frames::Octets{0x81, 0x03, 0x00, 0x04});
    m_peer.Send(Station(), frames::Octets{0x81, 0x06, 0x00, 0x04}); // Read-Foreign-Device-Table
    while (m_port.Counters().Unserved.Value() < 3)
        ASSERT_NE(Receive(), 0U);
    EXPECT_EQ(PeerReceives(), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x40}));
    EXPECT_EQ(m_port.Counters().Results.Value(), 1U);
}

TEST_F(Port, RubbishIsCountedAndWhatFollowsIsReceived) {
    frames::CutAtEveryOctet(frames::READ_PROPERTY, [this](auto cut) { m_peer.Send(Station(), cut); });
    const frames::Octets huge(4000, 0x81);
    m_peer.Send(Station(), huge);
    m_peer.Send(Station(), frames::READ_PROPERTY);
    std::size_t received = 0;
    while (received < frames::READ_PROPERTY.size() + 2) {
        const std::size_t count = Receive();
        ASSERT_NE(count, 0U);
        received += count;
    }
    ASSERT_EQ(m_batch.Count, 1U);
    EXPECT_EQ(m_port.Counters().Malformed.Value(), frames::READ_PROPERTY.size());
    EXPECT_EQ(m_port.Counters().Truncated.Value(), 1U);
}

TEST_F(Port, OneAtATimeNoticesTruncationToo) {
    const frames::Octets huge(4000, 0x81);
    m_peer.Send(Station(), huge);
    while (m_port.Counters().Truncated.Value() == 0)
        ASSERT_LE(m_port.ReceiveDirected(m_batch, 1, IDataLink::Wait::tick), 1U);
    EXPECT_EQ(m_batch.Count, 0U);
}

TEST_F(Port, AnAddressInUseIsRefusedWithAReason) {
    BipPort second;
    const std::string reason = second.Open({m_block.Ip(1), m_block.Port()});
    EXPECT_NE(reason.find(m_block.Text(1)), std::string::npos) << reason;
    EXPECT_EQ(BipPort().Open({m_block.Ip(4), m_block.Port()}), "");
}

TEST_F(Port, ABurstOfAThousandDatagramsIsHeldUntilItIsReceived) {
    // The system's default holds some 250 of them; several MB are asked for. Where the system would not grant that to
    // anybody, less can be shown.
    const std::size_t count = MayHaveLargeBuffer() ? 4000 : 100;
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_TRUE(m_peer.Send(Station(), frames::READ_PROPERTY));
    std::size_t received = 0;
    while (const std::size_t taken = m_port.ReceiveDirected(m_batch, NpduBatch::CAPACITY, IDataLink::Wait::none))
        received += taken;
    EXPECT_EQ(received, count);
}

TEST_F(Port, AnInterruptEndsTheWait) {
    m_port.Interrupt();
    m_port.Interrupt();
    EXPECT_EQ(m_port.WaitReadable(IDataLink::BROADCASTS, 60000), 0U);
    EXPECT_EQ(m_port.WaitReadable(IDataLink::BROADCASTS, 0), 0U);
    m_port.Interrupt();
    EXPECT_EQ(m_port.WaitReadable(IDataLink::BROADCASTS, 60000), 0U);
}

TEST_F(Port, FramesThatAreTooLongAreNotSent) {
    Frame frame;
    frame.Append(1498);
    EXPECT_FALSE(m_port.Send(ToMac(Peer()), frame));
    frame.Clear();
    std::uint8_t* at = frame.Append(1497);
    std::fill_n(at, 1497, std::uint8_t{0x55});
    EXPECT_TRUE(m_port.Send(ToMac(Peer()), frame));
    EXPECT_EQ(PeerReceives().size(), 1501U);
}

TEST(Interfaces, TheLoopbackNetworkHasItsBroadcastAddress) {
    EXPECT_EQ(BroadcastAddressOf(0x7F010203), 0x7FFFFFFFU);
    EXPECT_FALSE(ListInterfaces().empty());
}

} // namespace
