// What a station receives that nobody asked for: a sequence of NPDUs at the network layer, whose requests the station
// answers as a device, and whose announcements and router messages it learns from. After each an octet says whether it
// was a broadcast, where it came from and how much time passed.
#include "fuzz/Input.h"
#include "fuzz/QueuedLink.h"
#include "platform/stack/client/DeviceServer.h"
#include "platform/stack/directory/LiveDirectory.h"

#include <cstdlib>

using namespace bacnet;

namespace {

constexpr std::uint16_t ownNetwork = 5;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

class CountingLink final : public QueuedLink {
public:
    using QueuedLink::QueuedLink;
    std::size_t Frames = 0;

private:
    void Sent(const Mac&, std::span<const std::uint8_t> npdu) override {
        ++Frames;
        Require(npdu.size() <= MaxNpdu());
        Npdu decoded;
        Require(DecodeNpdu(npdu, decoded) == NpduError::none);
    }
};

// The station's application: as the client does it, but at once.
class Application final : public IApduUser {
public:
    Application(NetworkLayer& network, TransactionLayer& layer, DeviceServer& server)
        : m_network(network), m_layer(layer), m_server(server) {}

    void OnApdu(const ApduIndication& received) override {
        RequestIndication request;
        request.From = received.Source;
        request.Broadcast = received.Broadcast;
        if (!m_network.ToAddress(received.Source, request.Source) ||
            DecodeApdu(received.Apdu, request.Header) != ApduError::none)
            return;
        const PduType type = request.Header.Type;
        if (type != PduType::confirmed_request && type != PduType::unconfirmed_request)
            return;
        request.Confirmed = type == PduType::confirmed_request;
        IAm announcement;
        BACSTAC_ADDRESS former{};
        if (!request.Confirmed && request.Header.Service == static_cast<std::uint8_t>(UnconfirmedService::iAm)) {
            if (DecodeIAm(request.Header.Payload, announcement)) {
                m_directory.Learn(announcement, request.Source, former);
                Require(m_directory.FindDev(announcement.Device));
            }
        } else if (!request.Header.Segmented) {
            m_server.OnRequest(request, m_layer);
        }
    }

private:
    NetworkLayer& m_network;
    TransactionLayer& m_layer;
    DeviceServer& m_server;
    LiveDirectory m_directory;
};

OwnDevice Identity() {
    OwnDevice device;
    device.Instance = 77;
    device.Name = "Station";
    device.VendorName = "Nobody";
    device.ModelName = "Console";
    return device;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    QueuedClock clock;
    CountingLink link(clock);
    NetworkLayer network;
    network.AddPort(link, ownNetwork);
    network.SetClock([&clock] { return clock.Time; });
    network.SetReport([](const std::string& text) { Require(!text.empty()); });
    TransactionSettings settings;
    settings.BackgroundThread = false;
    TransactionLayer layer(network, settings, nullptr, clock);
    DeviceServer server(Identity(), settings);
    Application application(network, layer, server);
    network.SetUser(&application);
    for (unsigned frames = 0; !input.AtEnd() && frames < 100; ++frames) {
        const auto npdu = input.Run();
        const std::uint8_t how = input.Octet();
        const std::uint8_t mac[] = {10, 0, 0, static_cast<std::uint8_t>(how >> 5), 0xBA, 0xC0};
        const std::size_t before = link.Frames;
        network.OnNpdu(0, {MacAddress(mac), (how & 1U) != 0, npdu});
        Require(link.Frames - before <= 2); // an answer, and a question where the router is not known
        clock.Time += (how & 0x1EU) * 1000;
    }
    Require(network.Routers().size() <= 65534);
    layer.Shutdown();
    return 0;
}
