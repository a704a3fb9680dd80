// The tables of a broadcast management device, and where it sends what.
#include "platform/stack/transport/Bbmd.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

using namespace bacnet;

namespace {

using Targets = std::vector<BipAddress>;

constexpr BipAddress SELF{0x0A000001, 47808};     // 10.0.0.1
constexpr BipAddress PEER{0x0A000101, 47808};     // 10.0.1.1, gets unicasts
constexpr BipAddress ONE_HOP{0x0A000201, 47808};  // 10.0.2.1, behind a router that lets broadcasts through
constexpr BipAddress DEVICE{0x0A000005, 47808};   // of our network
constexpr BipAddress FOREIGN{0xC0A80107, 47900};  // 192.168.1.7:47900
constexpr BipAddress FOREIGN2{0xC0A80108, 47900}; // 192.168.1.8:47900
constexpr std::int64_t NOW = 1000000;

BbmdSettings Settings() {
    BbmdSettings settings;
    settings.Table = {{SELF}, {PEER}, {ONE_HOP, 0xFFFFFF00}};
    settings.ForeignDevices = 2;
    return settings;
}

class BroadcastManagementDevice : public testing::Test {
protected:
    // The answer to a whole datagram; empty when there is none.
    frames::Octets Ask(const frames::Octets& datagram, const BipAddress& from = FOREIGN, std::int64_t now = NOW) {
        BvllMessage message;
        EXPECT_EQ(DecodeBvll(datagram, message), BvllError::none);
        frames::Octets answer;
        return m_device->Serve(message, from, now, answer) ? answer : frames::Octets{};
    }
    // "no" when it must not be sent on.
    std::string Goes(Bbmd::Way way, const BipAddress& from, const BipAddress& origin, std::int64_t now = NOW) {
        Targets targets;
        if (!m_device->Targets(way, from, origin, now, targets))
            return "no";
        std::string text;
        for (const BipAddress& target : targets)
            text += ToString(target) + " ";
        return text;
    }
    void Start(const BbmdSettings& settings) { m_device.emplace(SELF, settings); }
    void SetUp() override { Start(Settings()); }

    std::optional<Bbmd> m_device;
};

const frames::Octets SUCCESS{0x81, 0x00, 0x00, 0x06, 0x00, 0x00};
const frames::Octets REGISTER_60_S{0x81, 0x05, 0x00, 0x06, 0x00, 0x3C};
const frames::Octets REGISTER_NAK{0x81, 0x00, 0x00, 0x06, 0x00, 0x30};
const frames::Octets READ_FDT{0x81, 0x06, 0x00, 0x04};

TEST_F(BroadcastManagementDevice, ABroadcastOfItsNetworkGoesToTheTableByItsMasks) {
    EXPECT_EQ(Goes(Bbmd::Way::own_network, DEVICE, DEVICE), "10.0.1.1:47808 10.0.2.255:47808 ");
    EXPECT_EQ(Goes(Bbmd::Way::own_network, SELF, SELF), "10.0.1.1:47808 10.0.2.255:47808 ") << "its own ones too";
}

TEST_F(BroadcastManagementDevice, WhatTheTableSendsGoesToForeignDevicesOnly) {
    Ask(REGISTER_60_S);
    EXPECT_EQ(Goes(Bbmd::Way::table, PEER, DEVICE), "192.168.1.7:47900 ");
    EXPECT_EQ(Goes(Bbmd::Way::table, PEER, FOREIGN), "") << "never back to where it comes from";
    EXPECT_EQ(Goes(Bbmd::Way::table, {PEER.Ip, 47809}, DEVICE), "no") << "who is not in the table";
    EXPECT_EQ(Goes(Bbmd::Way::own_network, PEER, PEER), "no") << "it distributes its broadcasts itself";
}

TEST_F(BroadcastManagementDevice, ForeignDevicesSpeakThroughItOnceTheyAreRegistered) {
    EXPECT_EQ(Goes(Bbmd::Way::foreign, FOREIGN, FOREIGN), "no");
    EXPECT_EQ(Ask(REGISTER_60_S, FOREIGN), SUCCESS);
    EXPECT_EQ(Ask(REGISTER_60_S, FOREIGN2), SUCCESS);
    EXPECT_EQ(Goes(Bbmd::Way::foreign, FOREIGN, FOREIGN), "10.0.1.1:47808 10.0.2.255:47808 192.168.1.8:47900 ");
    EXPECT_EQ(Goes(Bbmd::Way::own_network, DEVICE, DEVICE),
              "10.0.1.1:47808 10.0.2.255:47808 192.168.1.7:47900 192.168.1.8:47900 ");
}

TEST_F(BroadcastManagementDevice, ARegistrationEndsAfterItsTimeAndTheGrace) {
    Ask(REGISTER_60_S);
    EXPECT_EQ(m_device->ForeignDevices(NOW), (std::vector<FdtEntry>{{FOREIGN, 60, 90}}));
    EXPECT_EQ(m_device->ForeignDevices(NOW + 60000), (std::vector<FdtEntry>{{FOREIGN, 60, 30}}));
    EXPECT_EQ(Goes(Bbmd::Way::foreign, FOREIGN, FOREIGN, NOW + 89999), "10.0.1.1:47808 10.0.2.255:47808 ");
    EXPECT_EQ(Goes(Bbmd::Way::foreign, FOREIGN, FOREIGN, NOW + 90000), "no");
    EXPECT_TRUE(m_device->ForeignDevices(NOW + 90000).empty());
    // Renewed, with another time.
    Ask(REGISTER_60_S);
    Ask({0x81, 0x05, 0x00, 0x06, 0x00, 0x0A}, FOREIGN, NOW + 50000);
    EXPECT_EQ(m_device->ForeignDevices(NOW + 50000), (std::vector<FdtEntry>{{FOREIGN, 10, 40}}));
    // The longest one is told as what the message holds.
    Ask({0x81, 0x05, 0x00, 0x06, 0xFF, 0xFF}, FOREIGN, NOW);
    EXPECT_EQ(m_device->ForeignDevices(NOW), (std::vector<FdtEntry>{{FOREIGN, 65535, 65535}}));
}

TEST_F(BroadcastManagementDevice, NoMoreForeignDevicesThanThereIsRoomFor) {
    Ask(REGISTER_60_S, FOREIGN);
    Ask(REGISTER_60_S, FOREIGN2);
    const BipAddress third{0xC0A80109, 47900};
    EXPECT_EQ(Ask(REGISTER_60_S, third), REGISTER_NAK);
    EXPECT_EQ(Ask(REGISTER_60_S, FOREIGN2), SUCCESS) << "a renewal needs no room";
    EXPECT_EQ(Ask(REGISTER_60_S, third, NOW + 90000), SUCCESS) << "room is made as registrations end";
    EXPECT_EQ(Ask(REGISTER_60_S, PEER), REGISTER_NAK) << "it would get everything twice";
    BbmdSettings none = Settings();
    none.ForeignDevices = 0;
    Start(none);
    EXPECT_EQ(Ask(REGISTER_60_S), REGISTER_NAK);
}

TEST_F(BroadcastManagementDevice, TellsItsTables) {
    // 10.0.0.1:47808 and 10.0.1.1:47808 with all ones, 10.0.2.1:47808 with 255.255.255.0
    EXPECT_EQ(Ask({0x81, 0x02, 0x00, 0x04}),
              (frames::Octets{0x81, 0x03, 0x00, 0x22, 0x0A, 0x00, 0x00, 0x01, 0xBA, 0xC0, 0xFF, 0xFF,
                              0xFF, 0xFF, 0x0A, 0x00, 0x01, 0x01, 0xBA, 0xC0, 0xFF, 0xFF, 0xFF, 0xFF,
                              0x0A, 0x00, 0x02, 0x01, 0xBA, 0xC0, 0xFF, 0xFF, 0xFF, 0x00}));
    EXPECT_EQ(Ask(READ_FDT), (frames::Octets{0x81, 0x07, 0x00, 0x04}));
    Ask(REGISTER_60_S);
    // 192.168.1.7:47900, 60 s, 80 s remain
    EXPECT_EQ(Ask(READ_FDT, FOREIGN2, NOW + 10000),
              (frames::Octets{0x81, 0x07, 0x00, 0x0E, 0xC0, 0xA8, 0x01, 0x07, 0xBB, 0x1C, 0x00, 0x3C, 0x00, 0x50}));
}

TEST_F(BroadcastManagementDevice, IsInItsOwnTableAlwaysAndNobodyTwice) {
    BbmdSettings settings;
    settings.Table = {{PEER}, {PEER, 0xFFFFFF00}};
    Start(settings);
    EXPECT_EQ(m_device->Table(), (std::vector<BdtEntry>{{SELF}, {PEER}}));
    for (std::uint32_t i = 0; i < 2 * MAX_TABLE_ENTRIES; ++i)
        settings.Table.push_back({{0x0B000000 + i, 47808}});
    Start(settings);
    EXPECT_EQ(m_device->Table().size(), MAX_TABLE_ENTRIES);
    EXPECT_EQ(m_device->Table()[0], BdtEntry{SELF});
    EXPECT_TRUE(m_device->GetsUnicasts());
    settings.Table = {{SELF, 0xFFFFFF00}};
    Start(settings);
    EXPECT_FALSE(m_device->GetsUnicasts());
}

TEST_F(BroadcastManagementDevice, ItsTableIsWrittenOnlyWhereThatIsAllowed) {
    // Write-Broadcast-Distribution-Table: 10.0.3.1:47808, all ones
    const frames::Octets write{0x81, 0x01, 0x00, 0x0E, 0x0A, 0x00, 0x03, 0x01, 0xBA, 0xC0, 0xFF, 0xFF, 0xFF, 0xFF};
    const frames::Octets nak{0x81, 0x00, 0x00, 0x06, 0x00, 0x10};
    EXPECT_EQ(Ask(write), nak);
    EXPECT_EQ(m_device->Table().size(), 3U);
    BbmdSettings settings = Settings();
    settings.AcceptWrite = true;
    Start(settings);
    EXPECT_EQ(Ask(write), SUCCESS);
    EXPECT_EQ(m_device->Table(), (std::vector<BdtEntry>{{SELF}, {{0x0A000301, 47808}}}));
    EXPECT_EQ(Ask({0x81, 0x01, 0x00, 0x0D, 0x0A, 0x00, 0x03, 0x02, 0xBA, 0xC0, 0xFF, 0xFF, 0xFF}), nak)
        << "not whole entries";
    frames::Octets huge = EncodeBdt(BvlcFunction::write_bdt, std::vector<BdtEntry>(MAX_TABLE_ENTRIES + 1));
    EXPECT_EQ(Ask(huge), nak);
    EXPECT_EQ(m_device->Table()[1], (BdtEntry{{0x0A000301, 47808}})) << "unchanged";
}

TEST_F(BroadcastManagementDevice, ForeignDevicesAreDeletedOnRequest) {
    Ask(REGISTER_60_S, FOREIGN);
    const frames::Octets remove = EncodeDeleteFdtEntry(FOREIGN);
    EXPECT_EQ(Ask(remove, FOREIGN2), SUCCESS);
    EXPECT_TRUE(m_device->ForeignDevices(NOW).empty());
    EXPECT_EQ(Ask(remove, FOREIGN2), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x50})) << "gone already";
}

TEST_F(BroadcastManagementDevice, DamagedParametersGetTheNakOfTheirFunction) {
    const auto cut = [](frames::Octets datagram) {
        datagram.pop_back();
        datagram[3] = static_cast<std::uint8_t>(datagram.size());
        return datagram;
    };
    const auto grown = [](frames::Octets datagram) {
        datagram.push_back(0);
        datagram[3] = static_cast<std::uint8_t>(datagram.size());
        return datagram;
    };
    const frames::Octets deleteEntry = EncodeDeleteFdtEntry(FOREIGN);
    Ask(REGISTER_60_S);
    for (const auto& damaged : {cut(REGISTER_60_S), grown(REGISTER_60_S)})
        EXPECT_EQ(Ask(damaged), REGISTER_NAK);
    for (const auto& damaged : {cut(deleteEntry), grown(deleteEntry)})
        EXPECT_EQ(Ask(damaged), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x50}));
    EXPECT_EQ(Ask(grown(READ_FDT)), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x40}));
    EXPECT_EQ(Ask(grown({0x81, 0x02, 0x00, 0x04})), (frames::Octets{0x81, 0x00, 0x00, 0x06, 0x00, 0x20}));
    EXPECT_EQ(m_device->ForeignDevices(NOW).size(), 1U);
    // Acknowledgements are never answered, so that two devices cannot answer each other for ever.
    EXPECT_EQ(Ask({0x81, 0x03, 0x00, 0x04}), frames::Octets{});
    EXPECT_EQ(Ask({0x81, 0x07, 0x00, 0x04}), frames::Octets{});
    EXPECT_EQ(Ask({0x81, 0x0C, 0x00, 0x04}), frames::Octets{});
}

TEST(BroadcastTables, AreTheSameBehindTheWire) {
    const std::vector<BdtEntry> bdt{{SELF}, {ONE_HOP, 0xFFFFFF00}};
    const std::vector<FdtEntry> fdt{{FOREIGN, 300, 17}};
    BvllMessage message;
    std::vector<BdtEntry> bdtAgain;
    std::vector<FdtEntry> fdtAgain;
    const auto bdtFrame = EncodeBdt(BvlcFunction::read_bdt_ack, bdt);
    ASSERT_EQ(DecodeBvll(bdtFrame, message), BvllError::none);
    EXPECT_TRUE(DecodeBdt(message.Payload, bdtAgain));
    EXPECT_EQ(bdtAgain, bdt);
    const auto fdtFrame = EncodeReadFdtAck(fdt);
    ASSERT_EQ(DecodeBvll(fdtFrame, message), BvllError::none);
    EXPECT_TRUE(DecodeFdt(message.Payload, fdtAgain));
    EXPECT_EQ(fdtAgain, fdt);
    // Cut anywhere: refused, and what was there stays; whole entries are a table.
    for (std::size_t length = 0; length < bdtFrame.size() - BVLL_HEADER; ++length) {
        const auto part = std::span(bdtFrame).subspan(BVLL_HEADER, length);
        std::vector<BdtEntry> kept{{PEER}};
        EXPECT_EQ(DecodeBdt(part, kept), length % 10 == 0);
        EXPECT_EQ(kept.size(), length % 10 == 0 ? length / 10 : 1U);
        EXPECT_EQ(DecodeFdt(part, fdtAgain), length % 10 == 0);
    }
}

TEST(BipAddressText, IsReadWithAndWithoutAPort) {
    BipAddress address;
    EXPECT_TRUE(ParseBipAddress("192.168.1.7", address));
    EXPECT_EQ(address, (BipAddress{0xC0A80107, 47808}));
    EXPECT_TRUE(ParseBipAddress("192.168.1.7:47900", address));
    EXPECT_EQ(address, FOREIGN);
    for (const char* text : {"", ":47808", "192.168.1.7:", "192.168.1.7:0", "192.168.1.7:65536", "192.168.1.7:1x",
                             "192.168.1:47808", "host:47808", "192.168.1.7:47808:1"})
        EXPECT_FALSE(ParseBipAddress(text, address)) << text;
    EXPECT_EQ(address, FOREIGN);
}

} // namespace
