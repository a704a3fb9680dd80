// The property list of an object, as the console reads and shows it.
#include "bench/BareExchange.h"
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Rate.h"
#include "bench/Site.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "module/browser/PropertyListReader.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kSeconds = 1.0;
constexpr double kFloor = 0.5;
constexpr double kFirstRowMilliseconds = 30;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};
constexpr std::size_t kProperties = 40;

// The console thread with its list: what the reader posts waits until this thread serves it.
class Window final : public IPropertyListView, public IGuiQueue {
public:
    void Post(std::function<void()> call) override {
        {
            const std::lock_guard lock(m_mutex);
            m_calls.push_back(std::move(call));
        }
        m_posted.notify_one(); // who wakes finds the lock free
    }
    // Reads the list of the object to its end; the moment of its first row.
    Clock::time_point Read(CPropertyListReader& reader, unsigned device) {
        m_rows = 0;
        reader.StartReading(device, kPoint);
        while (reader.IsReading())
            for (const auto& call : Take())
                call();
        return m_first;
    }
    std::size_t GetRows() const { return m_rows; }

    void BeginReading(const std::string&, unsigned) override {}
    void SetSource(const std::string&, unsigned) override {}
    void SetProperty(const std::string&, unsigned) override {}
    void AddRow(const PropertyRow& row) override {
        if (m_rows++ == 0)
            m_first = Clock::now();
        if (row.id == PropertyRow::ERROR_ID)
            Fail("the list is an error: " + row.value);
    }
    void ClearRows() override {}
    void EndReading() override {}

private:
    std::vector<std::function<void()>> Take() {
        std::unique_lock lock(m_mutex);
        if (!m_posted.wait_for(lock, std::chrono::seconds(10), [this] { return !m_calls.empty(); }))
            Fail("the property list does not end");
        return std::exchange(m_calls, {});
    }

    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::vector<std::function<void()>> m_calls; // m_mutex
    std::size_t m_rows = 0;
    Clock::time_point m_first;
};

sim::SimulatorConfig OneLargeInput() {
    sim::SimulatorConfig config = OneDevice(1);
    config.Devices[0].Objects[0].AllProperties = true;
    config.Devices[0].Objects[0].IntrinsicReporting = true;
    return config;
}

constexpr bacnet::PropertyTarget Whole(BACSTAC_PROPERTY_ID property) {
    return {kPoint, property, BACSTAC_NO_INDEX};
}

Datagram ReadAll() {
    std::array<std::uint8_t, 64> parameters{};
    bacnet::Writer writer(parameters);
    bacnet::RpmRequestWriter list(writer);
    list.Add(Whole(PROP_ALL));
    list.Finish();
    return BareRequest(bacnet::ConfirmedService::readPropertyMultiple, writer.Written());
}

Datagram ReadOne(BACSTAC_PROPERTY_ID property) {
    std::array<std::uint8_t, 64> parameters{};
    bacnet::Writer writer(parameters);
    bacnet::EncodeReadProperty(Whole(property), writer);
    return BareRequest(bacnet::ConfirmedService::readProperty, writer.Written());
}

// Lists a second, beside as many of the same requests made bare. The device has a processor of its own.
Sample ListRate(const sim::SimulatorConfig& config, const std::vector<Datagram>& requests) {
    const SimulatedSite site(config, kTwoCores.server);
    const PinnedScope pinned(kTwoCores.client);
    const auto client = OpenClient(config);
    const auto window = std::make_shared<Window>();
    CPropertyListReader reader(*client, *window, window);
    const double rate = CallRate(kSeconds, [&] {
        window->Read(reader, config.Devices[0].Instance);
        if (window->GetRows() < kProperties)
            Fail(fmt::format("the list has {} rows", window->GetRows()));
    });
    return {rate, BareRate(config, requests)};
}

Sample PropertyList() {
    return ListRate(OneLargeInput(), {ReadAll()});
}

Sample SingleReads() {
    sim::SimulatorConfig config = OneLargeInput();
    config.Devices[0].LacksServices.push_back(bacnet::ConfirmedService::readPropertyMultiple);
    std::vector<Datagram> requests{ReadAll()}; // refused
    const BACSTAC_PROPERTY_ID* const properties = CBacGeneral::GetObjectPropList(kPoint.Type);
    for (unsigned i = 0; i < CBacGeneral::GetObjectPropsNumber(kPoint.Type); ++i)
        requests.push_back(ReadOne(properties[i]));
    return ListRate(config, requests);
}

// From the start of a read to its first row, less the device's answer to the same request.
Sample FirstRow() {
    const sim::SimulatorConfig config = OneLargeInput();
    const SimulatedSite site(config, -1);
    const auto client = OpenClient(config);
    const unsigned device = config.Devices[0].Instance;
    std::uint32_t units = 0;
    const auto asked = Clock::now();
    if (client->ReadProperty(device, kPoint, 117, BACSTAC_NO_INDEX, &units, sizeof units, nullptr) != BACSTAC_OK)
        Fail("the device does not answer");
    const Clock::duration answer = Clock::now() - asked;
    const auto window = std::make_shared<Window>();
    CPropertyListReader reader(*client, *window, window);
    const auto start = Clock::now();
    const Clock::duration taken = window->Read(reader, device) - start - answer;
    return {std::max(0.001, std::chrono::duration<double, std::milli>(taken).count()), kFirstRowMilliseconds};
}

} // namespace

void AddPropertyListFigures(std::vector<Figure>& figures) {
    figures.push_back({"browser/first_row", "ms", Better::Lower, 1,
                       "from the start of a property list to its first row, less one answer of the device, beside "
                       "30 ms",
                       FirstRow});
    figures.push_back({"browser/property_list", "lists/s", Better::Higher, kFloor,
                       "property lists of an object with 40 properties, read, printed and shown, beside the same "
                       "requests made bare; the device on processor 1, all else on processor 0",
                       PropertyList});
    figures.push_back({"browser/single_reads", "lists/s", Better::Higher, kFloor,
                       "the same from a device without ReadPropertyMultiple, a read a property", SingleReads});
}

} // namespace bench
