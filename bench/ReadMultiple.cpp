// ReadPropertyMultiple: all properties of one object over and over, and the scan of a large device.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Rate.h"
#include "bench/Site.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"

#include <fmt/format.h>

#include <array>
#include <chrono>
#include <utility>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kSeconds = 1.0;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};

// The best public stack that was measured with this exchange on one core.
constexpr double kBestKnownRate = 34'500;
constexpr double kBestKnownFloor = 35'000 / kBestKnownRate;

// Octets of the exchanges below on the wire, with all headers.
constexpr TripSizes kAllPropertiesTrip{19, 230};
constexpr TripSizes kNamesTrip{21, 46};

constexpr std::uint32_t kScanned = 10'000;

// An analog input with alarm limits: 23 properties.
sim::SimulatorConfig OneAlarmingInput() {
    sim::SimulatorConfig config = OneDevice(1);
    config.Devices[0].Objects[0].IntrinsicReporting = true;
    config.Devices[0].Objects[0].Description = "Supply air, 3rd flr.";
    return config;
}

// Room for the values of one object.
class Items {
public:
    Items() {
        for (std::size_t i = 0; i < m_items.size(); ++i)
            m_items[i].Contents = {-1, m_buffers[i].data(), static_cast<std::uint32_t>(m_buffers[i].size()), 0};
    }
    BACSTAC_READ_RESULT_ITEM* Data() { return m_items.data(); }
    unsigned Capacity() const { return static_cast<unsigned>(m_items.size()); }

private:
    std::array<std::array<char, 256>, 64> m_buffers{};
    std::array<BACSTAC_READ_RESULT_ITEM, 64> m_items{};
};

void ReadAll(bacnet::BacnetClient& client, const BACSTAC_ADDRESS& address, Items& items) {
    unsigned count = items.Capacity();
    const BACSTAC_STATUS status = client.ReadPropertyList(address, kPoint, items.Data(), &count, nullptr);
    if (status != BACSTAC_OK || count < 20)
        Fail(fmt::format("ReadPropertyList gives status {} and {} values", status, count));
    for (unsigned i = 0; i < count; ++i)
        if (items.Data()[i].Success == 0)
            Fail(fmt::format("property {} was not read", items.Data()[i].Property));
}

double AllPropertiesRate() {
    const auto config = OneAlarmingInput();
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    const auto client = OpenClient(config);
    const BACSTAC_ADDRESS address = client->GetDevAddr(config.Devices[0].Instance);
    Items items;
    return CallRate(kSeconds, [&] { ReadAll(*client, address, items); });
}

// As the console scans a device: its object list, then the name and the description of each object with one request,
// all of it kept in a directory.
double ScanRate() {
    const auto config = OneDevice(kScanned);
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    const auto client = OpenClient(config);
    const unsigned instance = config.Devices[0].Instance;
    const BACSTAC_ADDRESS address = client->GetDevAddr(instance);
    std::array<std::array<char, 1024>, 2> buffers{};

    const auto start = Clock::now();
    unsigned count = 0;
    if (client->ReadObjectList(address, nullptr, &count, nullptr) != BACSTAC_OK)
        Fail("the object list cannot be counted");
    std::vector<BACSTAC_OBJECT_ID> objects(count);
    if (client->ReadObjectList(address, objects.data(), &count, nullptr) != BACSTAC_OK)
        Fail("the object list cannot be read");
    CBACnetDev device;
    device.SetInst(instance);
    device.SetAddr(address);
    for (const BACSTAC_OBJECT_ID& object : objects) {
        const std::array<BACSTAC_OBJECT_ID, 2> both{object, object};
        std::array<BACSTAC_READ_RESULT_ITEM, 2> items{};
        items[0].Property = PROP_OBJECT_NAME;
        items[1].Property = PROP_DESCRIPTION;
        for (std::size_t i = 0; i < items.size(); ++i) {
            items[i].ArrayIndex = BACSTAC_NO_INDEX;
            items[i].Contents = {-1, buffers[i].data(), static_cast<std::uint32_t>(buffers[i].size()), 0};
        }
        if (client->ReadPropertyMultiple(instance, address, both.data(), items.data(), 2, nullptr) != BACSTAC_OK ||
            items[0].Success == 0)
            Fail("an object cannot be read");
        CBACnetObj found;
        found.SetId(object);
        found.SetName(buffers[0].data());
        if (items[1].Success != 0)
            found.SetDesc(buffers[1].data());
        device.AddObj(std::move(found));
    }
    CBACnetDir directory;
    if (!directory.AddDev(device) || device.GetObjects().size() <= kScanned)
        Fail("objects are missing");
    return static_cast<double>(device.GetObjects().size()) /
           std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

void AddReadMultipleFigures(std::vector<Figure>& figures) {
    figures.push_back({"rpm_all/one_core", "objects/s", Better::Higher, kBestKnownFloor,
                       "all properties of an analog input, decoded; one caller and the device on processor 0, beside "
                       "the best public stack that was measured so",
                       [] {
                           return Sample{AllPropertiesRate(), kBestKnownRate};
                       }});
    figures.push_back({"rpm_all/one_core_ping_pong", "objects/s", Better::Higher, 0,
                       "the same beside the bare ping-pong of as many octets there", [] {
                           return Sample{AllPropertiesRate(), PingPongRate(kOneCore, 1, kSeconds, kAllPropertiesTrip)};
                       }});
    figures.push_back({"scan/10000", "objects/s", Better::Higher, 0.5,
                       "object list, names and descriptions of a device of 10,000 objects, a request an object, beside "
                       "the bare ping-pong of as many octets; all on processor 0",
                       [] {
                           return Sample{ScanRate(), PingPongRate(kOneCore, 1, kSeconds, kNamesTrip)};
                       }});
}

} // namespace bench
