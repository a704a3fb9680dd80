#include "tests/integration/NumberedSite.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <utility>

namespace numbered {

namespace {

using Clock = std::chrono::steady_clock;
using bacnet::BacnetClient;
using bacnet::Outcome;

constexpr BACSTAC_PROPERTY_ID PROPERTY = 600; // of no standard
constexpr std::uint32_t MAX_APDU = 206;       // so that lists of values are long
constexpr unsigned FIRST_HOST = 200;

sim::DeviceConfig Device(std::uint32_t instance) {
    sim::DeviceConfig device;
    device.Instance = instance;
    device.MaxApdu = MAX_APDU;
    device.Segmentation = bacnet::Segmentation::both;
    device.WindowSize = 4;
    device.SegmentTimeoutMs = 60;
    device.SegmentRetries = 6;
    for (std::uint32_t number = 1; number <= Place::OBJECTS; ++number) {
        sim::ObjectConfig object;
        object.Id = {OBJ_ANALOG_VALUE, number};
        std::vector<sim::Value> values;
        for (std::uint32_t index = 1; index <= Place::INDICES; ++index)
            values.push_back(sim::Value::Unsigned(Place{instance, number, index}.Value()));
        object.Properties.emplace_back(PROPERTY, sim::Value::Array(values));
        device.Objects.push_back(object);
    }
    return device;
}

void Judge(const Place& place, bool answered, std::uint32_t value, Clock::time_point begun, Tally& tally) {
    const auto lasted = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun).count();
    tally.LongestMs = std::max<std::int64_t>(tally.LongestMs, lasted);
    if (!answered) {
        ++tally.Unanswered;
    } else if (value == place.Value()) {
        ++tally.Right;
    } else {
        if (tally.Wrong++ == 0)
            tally.Complaint = "asked for " + std::to_string(place.Value()) + ", got " + std::to_string(value);
    }
}

bool ValueOf(std::span<const std::uint8_t> encoded, std::uint32_t& value) {
    bacnet::Reader reader(encoded);
    return reader.Unsigned(value) && reader.Ok();
}

class Reading final : public bacnet::AsyncRead {
public:
    std::function<void(Reading&)> Done;
    Place Where;
    std::uint32_t Value = 0;
    Clock::time_point Begun;

    void OnRead() override { Done(*this); }
};

} // namespace

Place Place::Of(std::uint64_t number, std::uint32_t devices) {
    std::uint64_t mixed = (number + 1) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 29;
    const auto next = [&mixed](std::uint32_t below) {
        const auto part = static_cast<std::uint32_t>(mixed % below);
        mixed /= below;
        return part + 1;
    };
    Place place;
    place.Device = next(devices);
    place.Object = next(OBJECTS);
    place.Index = next(INDICES);
    return place;
}

bacnet::PropertyTarget Place::Target() const {
    return {{OBJ_ANALOG_VALUE, Object}, PROPERTY, static_cast<int>(Index)};
}

sim::SimulatorConfig Devices(const testing_support::LoopbackBlock& block, std::uint32_t local, std::uint32_t remote) {
    sim::SimulatorConfig config;
    config.Port = block.Port();
    for (std::uint32_t i = 0; i < local; ++i) {
        config.Devices.push_back(Device(1 + i));
        config.Devices.back().Ip = block.Ip(FIRST_HOST + i);
    }
    if (remote != 0) {
        sim::RouterConfig router;
        router.Ip = block.Ip(ROUTER_HOST);
        router.Networks.push_back({NETWORK, {}});
        for (std::uint32_t i = 0; i < remote; ++i) {
            router.Networks[0].Devices.push_back(Device(1 + local + i));
            router.Networks[0].Devices.back().Mac = static_cast<std::uint8_t>(1 + i);
        }
        config.Routers.push_back(router);
    }
    return config;
}

std::unique_ptr<BacnetClient> Station(const testing_support::LoopbackBlock& block, unsigned host,
                                      const bacnet::TransactionSettings& settings, std::uint32_t local,
                                      std::uint32_t remote, const HostOf& hostOf, unsigned routerHost) {
    bacnet::ClientConfig config;
    bacnet::ClientPort port;
    port.BindAddress = block.Text(host);
    port.UdpPort = block.Port();
    config.Ports.push_back(port);
    config.Transactions = settings;
    std::string failure;
    auto client = BacnetClient::Open(config, failure);
    if (client == nullptr)
        throw std::runtime_error(failure);
    const auto macOf = [&block](unsigned at) { return ToMac(bacnet::BipAddress{block.Ip(at), block.Port()}); };
    const auto know = [&client](std::uint32_t device, const BACSTAC_ADDRESS& address) {
        BACSTAC_ADDRESS former{};
        client->Directory().Learn({device, MAX_APDU, static_cast<std::uint32_t>(bacnet::Segmentation::both), 999},
                                  address, former);
    };
    for (std::uint32_t device = 1; device <= local; ++device) {
        BACSTAC_ADDRESS address{};
        client->Transactions().Network().ToAddress({0, 0, macOf(hostOf(device)), {}}, address);
        know(device, address);
    }
    for (std::uint32_t i = 0; i < remote; ++i)
        know(1 + local + i, {1, 0, NETWORK, {static_cast<std::uint8_t>(1 + i)}, 1});
    if (remote != 0) {
        // I-Am-Router-To-Network.
        const std::uint8_t announcement[] = {0x01, 0x80, 0x01, NETWORK >> 8, NETWORK & 0xFF};
        client->Transactions().Network().OnNpdu(0, {macOf(routerHost), true, announcement});
    }
    return client;
}

Tally& Tally::operator+=(const Tally& other) {
    Right += other.Right;
    Wrong += other.Wrong;
    Unanswered += other.Unanswered;
    LongestMs = std::max(LongestMs, other.LongestMs);
    if (Complaint.empty())
        Complaint = other.Complaint;
    return *this;
}

void Read(BacnetClient& client, const Place& place, Tally& tally) {
    const auto begun = Clock::now();
    const bacnet::PropertyTarget target = place.Target();
    std::uint32_t value = 0;
    const BACSTAC_STATUS status = client.ReadProperty(place.Device, target.Object, target.Property, target.ArrayIndex,
                                                      &value, sizeof value, nullptr);
    Judge(place, status == BACSTAC_OK, value, begun, tally);
}

void ReadPlainly(BacnetClient& client, const Place& place, Tally& tally) {
    const auto begun = Clock::now();
    std::uint8_t request[32];
    bacnet::Writer writer(request);
    EncodeReadProperty(place.Target(), writer);
    bacnet::AnswerBuffer answer;
    const bacnet::CallResult result = client.Transactions().Call(
        client.GetDevAddr(place.Device), static_cast<std::uint8_t>(bacnet::ConfirmedService::readProperty),
        writer.Written(), answer);
    const bool answered = result.How == Outcome::complex_ack;
    bacnet::ReadPropertyAck ack;
    std::uint32_t value = 0;
    if (answered && DecodeReadPropertyAck(answer.Octets(), ack))
        ValueOf(ack.Value, value);
    Judge(place, answered, value, begun, tally);
}

void ReadInSegments(BacnetClient& client, std::uint64_t number, std::uint32_t device, unsigned count, Tally& tally) {
    std::vector<Place> places;
    for (unsigned i = 0; i < count; ++i) {
        places.push_back(Place::Of(number * 1000 + i, 1));
        places.back().Device = device;
    }
    std::vector<std::uint8_t> request(count * 24);
    bacnet::Writer writer(request);
    bacnet::RpmRequestWriter list(writer);
    for (const Place& place : places)
        list.Add(place.Target());
    list.Finish();
    bacnet::CallOptions options;
    options.MaxApdu = MAX_APDU;
    options.TakesSegments = true;
    bacnet::AnswerBuffer answer;
    const auto begun = Clock::now();
    const bacnet::CallResult result = client.Transactions().Call(
        client.GetDevAddr(device), static_cast<std::uint8_t>(bacnet::ConfirmedService::readPropertyMultiple),
        writer.Written(), answer, options);
    const bool answered = result.How == Outcome::complex_ack;
    // One call, however many values: all are right, or it is wrong.
    bacnet::RpmAckReader reader(answer.Octets());
    for (const Place& place : places) {
        bacnet::RpmResult each;
        std::uint32_t value = 0;
        if (answered && reader.Next(each) && each.Success && each.Target.Object == place.Target().Object)
            ValueOf(each.Value, value);
        if (&place == &places.back() || (answered && value != place.Value())) {
            Judge(place, answered, value, begun, tally);
            return;
        }
    }
}

void ReadTogether(BacnetClient& client, const std::vector<Place>& places, unsigned outstanding, Tally& tally) {
    bacnet::AsyncReader reader(client);
    std::deque<Reading> readings(std::min<std::size_t>(outstanding, places.size()));
    auto next = places.begin();
    const auto submit = [&](Reading& reading) {
        reading.Where = *next++;
        reading.Target = reading.Where.Target();
        reading.Contents = {-1, &reading.Value, sizeof reading.Value, 0};
        reading.Begun = Clock::now();
        if (reader.Submit(reading.Where.Device, reading) != BACSTAC_OK)
            Judge(reading.Where, false, 0, reading.Begun, tally);
    };
    for (Reading& reading : readings) {
        reading.Done = [&](Reading& done) {
            Judge(done.Where, done.Status == BACSTAC_OK, done.Value, done.Begun, tally);
            if (next != places.end())
                submit(done);
        };
        submit(reading);
    }
    while (reader.Outstanding() != 0)
        reader.Poll(100);
}

} // namespace numbered
