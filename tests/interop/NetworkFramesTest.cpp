// Messages of the network layer and of BACnet/IP itself, as an independent decoder reads them: the whole reading is
// kept in tests/golden/interop/network.txt.
#include "platform/stack/network/Npdu.h"
#include "platform/stack/transport/BroadcastTables.h"
#include "platform/stack/transport/Bvll.h"
#include "tests/interop/Recording.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace interop {
namespace {

using bacnet::BipAddress;
using bacnet::BvlcFunction;
using bacnet::NetworkMessage;
using bacnet::Npdu;
using Octets = std::vector<std::uint8_t>;

constexpr BipAddress STATION{0xC0A80A05, 47809};
const Octets WHO_IS{0x10, 0x08}; // unconfirmed request, without limits

struct Entry {
    std::string Name;
    Octets Datagram;
};

Octets Finish(bacnet::Frame& frame, BvlcFunction function) {
    EXPECT_TRUE(bacnet::PrependBvll(frame, function));
    return {frame.Data(), frame.Data() + frame.Size()};
}

Octets WithNpdu(const Npdu& npdu, const Octets& payload, BvlcFunction function = BvlcFunction::original_unicast) {
    bacnet::Frame frame;
    EXPECT_TRUE(frame.Append(payload));
    EXPECT_TRUE(bacnet::PrependNpdu(frame, npdu));
    return Finish(frame, function);
}

Octets Message(NetworkMessage message, const Octets& payload) {
    Npdu npdu;
    npdu.IsNetworkMessage = true;
    npdu.Message = message;
    return WithNpdu(npdu, payload, BvlcFunction::original_broadcast);
}

void AddHeaders(std::vector<Entry>& entries) {
    Npdu npdu;
    entries.push_back({"local broadcast", WithNpdu(npdu, WHO_IS, BvlcFunction::original_broadcast)});
    npdu.DestinationNetwork = bacnet::GLOBAL_BROADCAST;
    entries.push_back({"global broadcast", WithNpdu(npdu, WHO_IS, BvlcFunction::original_broadcast)});
    npdu.Priority = bacnet::NpduPriority::life_safety;
    npdu.DestinationNetwork = 5;
    npdu.HopCount = 254;
    entries.push_back({"remote broadcast of the highest priority", WithNpdu(npdu, WHO_IS)});
    npdu.Priority = bacnet::NpduPriority::normal;
    npdu.ExpectingReply = true;
    const std::array<std::uint8_t, 1> station{127};
    npdu.Destination = bacnet::MacAddress(station);
    npdu.SourceNetwork = 65534;
    npdu.Source = bacnet::ToMac(STATION);
    entries.push_back({"from station to station", WithNpdu(npdu, WHO_IS)});
}

void AddNetworkMessages(std::vector<Entry>& entries) {
    const Octets networks{0x07, 0xD1, 0xFF, 0xFE}; // 2001, 65534
    entries.push_back({"Who-Is-Router-To-Network for all", Message(NetworkMessage::who_is_router_to_network, {})});
    entries.push_back({"Who-Is-Router-To-Network", Message(NetworkMessage::who_is_router_to_network, {0x07, 0xD1})});
    entries.push_back({"I-Am-Router-To-Network", Message(NetworkMessage::i_am_router_to_network, networks)});
    entries.push_back(
        {"I-Could-Be-Router-To-Network", Message(NetworkMessage::i_could_be_router_to_network, {0x07, 0xD1, 3})});
    for (std::uint8_t reason = 0; reason <= 4; ++reason)
        entries.push_back({"Reject-Message-To-Network " + std::to_string(reason),
                           Message(NetworkMessage::reject_message_to_network, {reason, 0x07, 0xD1})});
    entries.push_back({"Router-Busy-To-Network", Message(NetworkMessage::router_busy_to_network, networks)});
    entries.push_back({"Router-Available-To-Network", Message(NetworkMessage::router_available_to_network, networks)});
    entries.push_back({"What-Is-Network-Number", Message(NetworkMessage::what_is_network_number, {})});
    for (const std::uint8_t configured : Octets{0, 1})
        entries.push_back({configured != 0 ? "Network-Number-Is, configured" : "Network-Number-Is, learnt",
                           Message(NetworkMessage::network_number_is, {0x07, 0xD1, configured})});
}

void AddBroadcastManagement(std::vector<Entry>& entries) {
    const std::vector<bacnet::BdtEntry> table{{STATION, 0xFFFFFFFF}, {{0x0A000001, 47808}, 0xFFFFFF00}};
    const std::vector<bacnet::FdtEntry> foreign{{STATION, 300, 330}, {{0x0A000001, 47808}, 65535, 1}};
    entries.push_back({"Write-BDT", bacnet::EncodeBdt(BvlcFunction::write_bdt, table)});
    entries.push_back({"Read-BDT", bacnet::EncodeBvllRequest(BvlcFunction::read_bdt)});
    entries.push_back({"Read-BDT-Ack", bacnet::EncodeBdt(BvlcFunction::read_bdt_ack, table)});
    entries.push_back({"Read-BDT-Ack of an empty table", bacnet::EncodeBdt(BvlcFunction::read_bdt_ack, {})});
    entries.push_back({"Register-Foreign-Device", bacnet::EncodeRegisterForeignDevice(300)});
    entries.push_back({"Read-FDT", bacnet::EncodeBvllRequest(BvlcFunction::read_fdt)});
    entries.push_back({"Read-FDT-Ack", bacnet::EncodeReadFdtAck(foreign)});
    entries.push_back({"Delete-FDT-Entry", bacnet::EncodeDeleteFdtEntry(STATION)});
    for (const auto result :
         {bacnet::BvlcResult::success, bacnet::BvlcResult::write_bdt_nak, bacnet::BvlcResult::read_bdt_nak,
          bacnet::BvlcResult::register_foreign_device_nak, bacnet::BvlcResult::read_fdt_nak,
          bacnet::BvlcResult::delete_fdt_entry_nak, bacnet::BvlcResult::distribute_broadcast_nak}) {
        std::array<std::uint8_t, 6> octets{};
        bacnet::EncodeResult(result, octets);
        entries.push_back(
            {"Result " + std::to_string(static_cast<unsigned>(result)), Octets(octets.begin(), octets.end())});
    }
    entries.push_back({"Distribute-Broadcast-To-Network", WithNpdu({}, WHO_IS, BvlcFunction::distribute_broadcast)});
    bacnet::Frame forwarded;
    EXPECT_TRUE(forwarded.Append(WHO_IS));
    EXPECT_TRUE(bacnet::PrependNpdu(forwarded, {}));
    EXPECT_TRUE(bacnet::PrependForwarded(forwarded, STATION));
    entries.push_back({"Forwarded-NPDU", {forwarded.Data(), forwarded.Data() + forwarded.Size()}});
}

TEST(NetworkFrames, AreReadAsTheyAreMeant) {
    if (!HasDecoder())
        GTEST_SKIP() << "tshark is not installed: nothing decodes the frames independently";
    std::vector<Entry> entries;
    AddHeaders(entries);
    AddNetworkMessages(entries);
    AddBroadcastManagement(entries);
    Recording recording;
    for (const Entry& entry : entries)
        recording.AddDatagram(entry.Datagram);
    const std::vector<Frame> frames = recording.DecodeAll();
    ASSERT_EQ(frames.size(), entries.size());
    std::string reading;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(Objection(frames[i]), "") << entries[i].Name << "\n" << frames[i].Text();
        reading += entries[i].Name + "\n" + Reading(frames[i], "bvlc") + Reading(frames[i], "bacnet");
    }
    ExpectGolden("network.txt", reading);
}

} // namespace
} // namespace interop
