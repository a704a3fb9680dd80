// A datagram as a BACnet/IP port and the network layer take it: decoded, and where it decodes, encoded again to the
// same meaning. Then the network layer gets it as received, with a link that sends nowhere.

#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transport/Bvll.h"

#include <cstdlib>

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span datagram(data, size);
    BvllMessage message;
    const BvllError error = DecodeBvll(datagram, message);
    const auto npdu = error == BvllError::none ? message.Payload : datagram;
    RoundTrip(npdu);

    NowhereLink link;
    NetworkLayer network;
    network.AddPort(link, Resolver::OWN_NETWORK);
    Resolver user(network);
    network.SetUser(&user);
    const MacAddress source = ToMac(BipAddress{0x0A000005, 47808});
    for (const bool broadcast : {false, true})
        network.OnNpdu(0, {source, broadcast, npdu});
    return 0;
}
