#include "simulator/Simulator.h"

#include "platform/stack/transport/Bvll.h"
#include "simulator/server/Worker.h"

#include <algorithm>
#include <set>
#include <utility>

namespace sim {

namespace {

// What would make a device or a frame that no device can be. Empty when all is well.
std::string CheckDevice(const DeviceConfig& device) {
    const auto fault = [&](const char* what) { return "device " + std::to_string(device.Instance) + ": " + what; };
    if (device.Instance >= BACSTAC_MAX_INSTANCE)
        return fault("the instance has to be below 4194303");
    if (device.MaxApdu < 50 || device.MaxApdu > bacnet::MAX_APDU_IP)
        return fault("the APDU size has to be 50 to 1476");
    if (device.WindowSize == 0 || device.WindowSize > 127)
        return fault("the window size has to be 1 to 127");
    return {};
}

std::string Check(const SimulatorConfig& config) {
    for (const DeviceConfig& device : config.Devices)
        if (std::string error = CheckDevice(device); !error.empty())
            return error;
    std::set<std::uint16_t> numbers;
    for (const RouterConfig& router : config.Routers) {
        for (const NetworkConfig& network : router.Networks) {
            if (network.Number == 0 || network.Number == bacnet::GLOBAL_BROADCAST)
                return "a network number has to be 1 to 65534";
            if (!numbers.insert(network.Number).second)
                return "network " + std::to_string(network.Number) + " is there twice";
            for (const DeviceConfig& device : network.Devices)
                if (std::string error = CheckDevice(device); !error.empty())
                    return error;
        }
    }
    return {};
}

BACSTAC_ADDRESS IpAddress(std::uint32_t ip, std::uint16_t port) {
    BACSTAC_ADDRESS address{};
    const bacnet::MacAddress mac = bacnet::ToMac({ip, port});
    std::copy(mac.Octets().begin(), mac.Octets().end(), address.Mac);
    address.MacLength = static_cast<std::uint8_t>(mac.Length());
    return address;
}

} // namespace

struct Simulator::Impl {
    SimulatorConfig Config; // without the objects, which the devices have
    std::vector<std::unique_ptr<Device>> Devices;
    std::vector<BACSTAC_ADDRESS> Addresses;
    std::unique_ptr<Site> Running;
    std::vector<std::unique_ptr<Worker>> Workers; // go before Running

    void Take(DeviceConfig& device, const BACSTAC_ADDRESS& address) {
        Devices.push_back(std::make_unique<Device>(device, Config.Clock));
        Addresses.push_back(address);
        device.Objects = {};
        device.Faults = {};
    }
    std::string Open();
};

Simulator::Simulator(SimulatorConfig config) : m_impl(std::make_unique<Impl>()) {
    m_impl->Config = std::move(config);
    SimulatorConfig& site = m_impl->Config;
    if (!site.Clock)
        site.Clock = WallClock;
    site.Threads = std::clamp(site.Threads, 1U, 64U);
    for (DeviceConfig& device : site.Devices)
        m_impl->Take(device, IpAddress(device.Ip, device.Port != 0 ? device.Port : site.Port));
    for (RouterConfig& router : site.Routers) {
        for (NetworkConfig& network : router.Networks) {
            for (DeviceConfig& device : network.Devices) {
                BACSTAC_ADDRESS address{};
                address.Remote = 1;
                address.Network = network.Number;
                address.Mac[0] = device.Mac;
                address.MacLength = 1;
                m_impl->Take(device, address);
            }
        }
    }
}

Simulator::~Simulator() {
    Stop();
}

std::string Simulator::Impl::Open() {
    std::string error = Check(Config);
    if (!error.empty())
        return error;
    Running = std::make_unique<Site>();
    error = Running->Open(Config, Devices);
    for (unsigned i = 0; i < Config.Threads && error.empty(); ++i) {
        Workers.push_back(std::make_unique<Worker>(*Running));
        error = Workers.back()->Open();
    }
    if (!error.empty())
        return error;
    // Neighbouring devices are served by one thread, so that a client that walks through them wakes one thread.
    const std::size_t share = (Running->Endpoints.size() + Workers.size() - 1) / Workers.size();
    for (std::size_t i = 0; i < Running->Endpoints.size() && error.empty(); ++i)
        error = Workers[i / share]->Add(*Running->Endpoints[i]);
    if (error.empty())
        error = Workers.front()->Add(Running->Broadcasts);
    return error;
}

bool Simulator::Start(std::string& error) {
    if (m_impl->Running != nullptr) {
        error = "the simulation is running already";
        return false;
    }
    error = m_impl->Open();
    if (!error.empty()) {
        m_impl->Workers.clear();
        m_impl->Running.reset();
        return false;
    }
    FrameSender announcements(m_impl->Running->BroadcastAddress);
    for (const auto& router : m_impl->Running->Routers)
        router->Announce(announcements);
    announcements.Flush();
    m_impl->Workers.front()->AppendRecords(m_impl->Config.AppendEveryMs);
    for (const auto& worker : m_impl->Workers)
        worker->Start();
    return true;
}

void Simulator::Stop() {
    for (const auto& worker : m_impl->Workers)
        worker->Stop();
    m_impl->Workers.clear();
    m_impl->Running.reset();
}

std::size_t Simulator::DeviceCount() const {
    return m_impl->Devices.size();
}

Device& Simulator::GetDevice(std::size_t index) const {
    return *m_impl->Devices[index];
}

Device* Simulator::FindDevice(std::uint32_t instance) const {
    for (const auto& device : m_impl->Devices)
        if (device->Instance() == instance)
            return device.get();
    return nullptr;
}

BACSTAC_ADDRESS Simulator::AddressOf(std::size_t index) const {
    return m_impl->Addresses[index];
}

Stats Simulator::GetStats() const {
    Stats sum;
    for (const auto& device : m_impl->Devices)
        sum += device->GetStats();
    return sum;
}

} // namespace sim
