#include "platform/stack/network/Npdu.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <array>

using namespace bacnet;

namespace {

MacAddress Mac(std::initializer_list<std::uint8_t> octets) {
    return MacAddress(std::span(octets.begin(), octets.size()));
}

frames::Octets Encode(const Npdu& npdu, const frames::Octets& payload) {
    Frame frame;
    EXPECT_TRUE(frame.Append(payload));
    EXPECT_TRUE(PrependNpdu(frame, npdu));
    const auto octets = frame.Octets();
    return {octets.begin(), octets.end()};
}

TEST(Npdu, SourceOfARoutedMessageIsRead) {
    Npdu npdu;
    ASSERT_EQ(DecodeNpdu(frames::ROUTED_ACK, npdu), NpduError::none);
    EXPECT_EQ(npdu.SourceNetwork, 2001);
    EXPECT_EQ(npdu.Source, Mac({7}));
    EXPECT_EQ(npdu.DestinationNetwork, 0);
    EXPECT_FALSE(npdu.IsNetworkMessage);
    EXPECT_EQ(npdu.Payload.size(), frames::ROUTED_ACK.size() - 6);
}

TEST(Npdu, AHeaderCutAnywhereIsRefused) {
    // Destination and source, hop count; network message of a vendor.
    const frames::Octets whole{0x01, 0xA8, 0x07, 0xD1, 0x01, 0x07, 0x00, 0x05,
                               0x02, 0x01, 0x02, 0xFE, 0x90, 0x01, 0x04};
    frames::CutAtEveryOctet(whole, [](std::span<const std::uint8_t> cut) {
        Npdu npdu;
        EXPECT_EQ(DecodeNpdu(cut, npdu), NpduError::too_short);
    });
    Npdu npdu;
    ASSERT_EQ(DecodeNpdu(whole, npdu), NpduError::none);
    EXPECT_EQ(npdu.Destination, Mac({7}));
    EXPECT_EQ(npdu.Source, Mac({1, 2}));
    EXPECT_EQ(npdu.HopCount, 0xFE);
    EXPECT_EQ(static_cast<unsigned>(npdu.Message), 0x90U);
    EXPECT_EQ(npdu.VendorId, 260);
    EXPECT_TRUE(npdu.Payload.empty());
}

TEST(Npdu, ImpossibleStationsAreRefused) {
    Npdu npdu;
    EXPECT_EQ(DecodeNpdu(frames::Octets{0x02, 0x00}, npdu), NpduError::wrong_version);
    // Source network 0, source network 65535, source of no octets, destination network 0.
    EXPECT_EQ(DecodeNpdu(frames::Octets{0x01, 0x08, 0x00, 0x00, 0x01, 0x07}, npdu), NpduError::bad_source);
    EXPECT_EQ(DecodeNpdu(frames::Octets{0x01, 0x08, 0xFF, 0xFF, 0x01, 0x07}, npdu), NpduError::bad_source);
    EXPECT_EQ(DecodeNpdu(frames::Octets{0x01, 0x08, 0x00, 0x05, 0x00}, npdu), NpduError::bad_source);
    EXPECT_EQ(DecodeNpdu(frames::Octets{0x01, 0x20, 0x00, 0x00, 0x00, 0xFF}, npdu), NpduError::bad_destination);
    frames::Octets longest{0x01, 0x20, 0x00, 0x05, 18};
    longest.resize(longest.size() + 18, 0x11);
    longest.push_back(0xFF);
    EXPECT_EQ(DecodeNpdu(longest, npdu), NpduError::none);
    longest[4] = 19;
    longest.push_back(0xFF);
    EXPECT_EQ(DecodeNpdu(longest, npdu), NpduError::bad_length);
}

TEST(Npdu, EachFormIsWrittenAsItIsRead) {
    const frames::Octets payload{0x10, 0x08};
    for (const std::uint16_t destination : {std::uint16_t{0}, std::uint16_t{2001}, GLOBAL_BROADCAST})
        for (const std::uint16_t source : {std::uint16_t{0}, std::uint16_t{65534}})
            for (const bool reply : {false, true})
                for (const unsigned message : {0x100U, 0x01U, 0x7FU, 0x80U, 0xFFU}) {
                    Npdu npdu;
                    npdu.IsNetworkMessage = message != 0x100;
                    npdu.Message = static_cast<NetworkMessage>(message & 0xFF);
                    npdu.VendorId = npdu.IsNetworkMessage && message >= 0x80 ? 0x0104 : 0;
                    npdu.ExpectingReply = reply;
                    npdu.Priority = NpduPriority::urgent;
                    npdu.DestinationNetwork = destination;
                    npdu.Destination = destination == 2001 ? Mac({1, 2, 3, 4, 5, 6}) : MacAddress();
                    npdu.SourceNetwork = source;
                    npdu.Source = source != 0 ? Mac({9}) : MacAddress();
                    npdu.HopCount = destination != 0 ? 7 : MAX_HOPS;
                    Npdu read;
                    const frames::Octets octets = Encode(npdu, payload);
                    ASSERT_EQ(DecodeNpdu(octets, read), NpduError::none);
                    EXPECT_EQ(read.IsNetworkMessage, npdu.IsNetworkMessage);
                    EXPECT_EQ(read.ExpectingReply, reply);
                    EXPECT_EQ(read.Priority, NpduPriority::urgent);
                    EXPECT_EQ(read.DestinationNetwork, destination);
                    EXPECT_EQ(read.Destination, npdu.Destination);
                    EXPECT_EQ(read.SourceNetwork, source);
                    EXPECT_EQ(read.Source, npdu.Source);
                    EXPECT_EQ(read.HopCount, npdu.HopCount);
                    EXPECT_EQ(read.VendorId, npdu.VendorId);
                    EXPECT_EQ(frames::Octets(read.Payload.begin(), read.Payload.end()), payload);
                }
}

TEST(Npdu, ALocalRequestHasTwoOctetsOfHeader) {
    Npdu npdu;
    npdu.ExpectingReply = true;
    EXPECT_EQ(Encode(npdu, {0x42}), (frames::Octets{0x01, 0x04, 0x42}));
}

TEST(Npdu, AGlobalBroadcastIsWrittenWithoutAddress) {
    Npdu npdu;
    npdu.DestinationNetwork = GLOBAL_BROADCAST;
    EXPECT_EQ(Encode(npdu, {0x10, 0x08}), (frames::Octets{0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08}));
}

} // namespace
