// The property list of an object, as the console reads and shows it.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Rate.h"
#include "bench/Site.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "module/browser/PropertyListReader.h"

#include <fmt/format.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

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
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        m_posted.notify_one();
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

// One BACnet/IP request, unicast, as the client sends it (Annex J, clauses 6, 20, 21): invoke id 1, no segments.
std::vector<std::uint8_t> ReadRequest(BACSTAC_PROPERTY_ID property) {
    if (property == PROP_ALL)
        return {0x81, 0x0A, 0, 19, 1, 4, 2, 5, 1, 14, 0x0C, 0, 0, 0, 1, 0x1E, 9, PROP_ALL, 0x1F};
    std::vector<std::uint8_t> request{0x81, 0x0A, 0, 17, 1, 4, 2, 5, 1, 12, 0x0C, 0, 0, 0, 1, 0x19};
    if (property > 0xFF) {
        request[15] = 0x1A;
        request.push_back(static_cast<std::uint8_t>(property >> 8));
    }
    request.push_back(static_cast<std::uint8_t>(property));
    request[3] = static_cast<std::uint8_t>(request.size());
    return request;
}

// Asks the device in turn what the console asks it, with nothing but the system calls around each datagram.
double BareRate(const sim::SimulatorConfig& config, const std::vector<std::vector<std::uint8_t>>& requests) {
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in device{};
    device.sin_family = AF_INET;
    device.sin_addr.s_addr = htonl(config.Devices[0].Ip);
    device.sin_port = htons(config.Port);
    const timeval patience{1, 0};
    if (setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
        connect(fd, reinterpret_cast<const sockaddr*>(&device), sizeof device) != 0)
        Fail("no socket");
    std::array<char, 1500> answer{};
    const double rate = CallRate(kSeconds, [&] {
        for (const auto& request : requests)
            if (send(fd, request.data(), request.size(), 0) < 0 || recv(fd, answer.data(), answer.size(), 0) < 0)
                Fail("the device does not answer");
    });
    close(fd);
    return rate;
}

// Lists a second, beside as many of the same requests made bare. The device has a processor of its own.
Sample ListRate(const sim::SimulatorConfig& config, const std::vector<std::vector<std::uint8_t>>& requests) {
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
    return ListRate(OneLargeInput(), {ReadRequest(PROP_ALL)});
}

Sample SingleReads() {
    sim::SimulatorConfig config = OneLargeInput();
    config.Devices[0].LacksServices.push_back(bacnet::ConfirmedService::readPropertyMultiple);
    std::vector<std::vector<std::uint8_t>> requests{ReadRequest(PROP_ALL)}; // refused
    const BACSTAC_PROPERTY_ID* const properties = CBacGeneral::GetObjectPropList(kPoint.Type);
    for (unsigned i = 0; i < CBacGeneral::GetObjectPropsNumber(kPoint.Type); ++i)
        requests.push_back(ReadRequest(properties[i]));
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
