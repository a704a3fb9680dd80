// A datagram as a BACnet/IP port and the network layer take it: decoded, and where it decodes, encoded again to the
// same meaning. A broadcast management device and a foreign one serve it, and the network layer gets it as received,
// with links that send nowhere.

#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transport/BroadcastManagement.h"
#include "platform/stack/transport/Bvll.h"

#include <cstdlib>
#include <optional>
#include <vector>

using namespace bacnet;

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

class NowhereLink final : public IDataLink {
public:
    bool Send(const MacAddress&, Frame&) override { return true; }
    bool Broadcast(Frame&) override { return true; }
    std::size_t SendMany(std::span<OutgoingNpdu> frames) override { return frames.size(); }
    std::size_t ReceiveDirected(NpduBatch& batch, std::size_t, Wait) override { return batch.Count = 0; }
    std::size_t ReceiveBroadcasts(NpduBatch& batch) override { return batch.Count = 0; }
    unsigned WaitReadable(unsigned, int) override { return 0; }
    void Interrupt() override {}
    std::size_t IdentityLength(const MacAddress& station) const override { return station.Length() == 6 ? 4 : 0; }
    std::size_t MaxNpdu() const override { return 1497; }
};

class Resolver final : public IApduUser {
public:
    explicit Resolver(NetworkLayer& network) : m_network(network) {}
    void OnApdu(const ApduIndication& indication) override {
        // What came from a station can be answered: its address resolves to the way it came.
        BACSTAC_ADDRESS address{};
        Station station;
        if (m_network.ToAddress(indication.Source, address) && address.Network != OWN_NETWORK) {
            Require(m_network.Resolve(address, station) == NetworkLayer::Route::found);
            Require(station == indication.Source);
        }
    }
    static constexpr std::uint16_t OWN_NETWORK = 5;

private:
    NetworkLayer& m_network;
};

void RoundTrip(std::span<const std::uint8_t> octets) {
    Npdu npdu;
    if (DecodeNpdu(octets, npdu) != NpduError::none)
        return;
    Frame frame;
    if (!frame.Append(npdu.Payload))
        return;
    Require(PrependNpdu(frame, npdu));
    Npdu again;
    Require(DecodeNpdu(frame.Octets(), again) == NpduError::none);
    Require(again.IsNetworkMessage == npdu.IsNetworkMessage && again.ExpectingReply == npdu.ExpectingReply &&
            again.Priority == npdu.Priority && again.DestinationNetwork == npdu.DestinationNetwork &&
            again.Destination == npdu.Destination && again.SourceNetwork == npdu.SourceNetwork &&
            again.Source == npdu.Source && again.HopCount == npdu.HopCount && again.Message == npdu.Message &&
            again.VendorId == npdu.VendorId && again.Payload.size() == npdu.Payload.size());
}

// Tables as they came, encoded again to the same octets.
void TablesRoundTrip(const BvllMessage& message) {
    std::vector<BdtEntry> bdt;
    std::vector<FdtEntry> fdt;
    if (DecodeBdt(message.Payload, bdt)) {
        const auto again = EncodeBdt(BvlcFunction::read_bdt_ack, bdt);
        Require(std::vector(again.begin() + BVLL_HEADER, again.end()) ==
                std::vector(message.Payload.begin(), message.Payload.end()));
    }
    if (DecodeFdt(message.Payload, fdt)) {
        const auto again = EncodeReadFdtAck(fdt);
        Require(std::vector(again.begin() + BVLL_HEADER, again.end()) ==
                std::vector(message.Payload.begin(), message.Payload.end()));
    }
}

const BipAddress SELF{0x0A000001, 47808};
const BipAddress PEER{0x0A000101, 47808};
const BipAddress STRANGER{0x0A000005, 47808};

// Whatever comes, from whomever: what is sent is well formed and never goes to this station itself, and the tables stay
// within their limits.
void Manage(const BvllMessage& message, bool foreign) {
    std::int64_t now = 0;
    BroadcastManagement::Environment environment;
    environment.Local = SELF;
    environment.Broadcast = {0x0A0000FF, 47808};
    environment.Send = [](const BipAddress& to, std::span<const std::uint8_t> datagram) {
        BvllMessage sent;
        Require(DecodeBvll(datagram, sent) == BvllError::none && to != SELF);
        return true;
    };
    environment.Now = [&now] { return now; };
    std::optional<ForeignSettings> asForeign;
    std::optional<BbmdSettings> asBbmd;
    if (foreign)
        asForeign = ForeignSettings{PEER, 60};
    else
        asBbmd = BbmdSettings{{{PEER}}, 2, true};
    BroadcastManagement management(environment, asForeign, asBbmd);
    for (const BipAddress& from : {PEER, STRANGER}) {
        management.Attend();
        if (!message.Payload.empty() && message.Payload.size() <= 1400)
            for (const auto channel : {BroadcastManagement::Channel::directed, BroadcastManagement::Channel::broadcast,
                                       BroadcastManagement::Channel::unknown})
                management.OnBroadcast(message, from, channel);
        management.OnControl(message, from);
        now += 40000;
    }
    const BroadcastStatus status = management.Status();
    Require(status.Table.size() <= MAX_TABLE_ENTRIES && status.ForeignDevices.size() <= 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span datagram(data, size);
    BvllMessage message;
    const BvllError error = DecodeBvll(datagram, message);
    const auto npdu = error == BvllError::none ? message.Payload : datagram;
    RoundTrip(npdu);
    if (error == BvllError::none) {
        TablesRoundTrip(message);
        Manage(message, true);
        Manage(message, false);
    }

    NowhereLink link;
    NetworkLayer network;
    network.AddPort(link, Resolver::OWN_NETWORK);
    network.AddPort(link);
    Resolver user(network);
    network.SetUser(&user);
    const MacAddress source = ToMac(BipAddress{0x0A000005, 47808});
    for (const bool broadcast : {false, true})
        network.OnNpdu(0, {source, broadcast, npdu});
    return 0;
}
