#include "host/DemoSite.h"

#include "api/bacnet/Enums.h"
#include "base/DurableFile.h"
#include "module/console/Settings.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>

namespace {

constexpr unsigned MULTIPLE_MEMBERS = 3;
constexpr std::uint32_t FIRST_MULTIPLE_POINT = 500; // behind those of the greatest number of trend logs
constexpr std::uint32_t CLIENT_IP = 0x7F2F0001;     // 127.47.0.1
constexpr std::uint32_t FIRST_IP = 0x7F2F0101;      // 127.47.1.1
constexpr std::uint16_t LOCAL_NETWORK = 1;          // of the devices on IP
constexpr std::uint16_t ROUTED_NETWORK = 2;
// Ten seconds: half a million records lie between New Year and the first change of the clocks.
constexpr std::uint32_t LOG_INTERVAL = 10;
constexpr std::uint64_t STATUS_EVERY = 40;
constexpr std::size_t MAX_FILE_SIZE = 1 << 16;

std::string IpText(std::uint32_t ip) {
    return fmt::format("{}.{}.{}.{}", ip >> 24, ip >> 16 & 0xFF, ip >> 8 & 0xFF, ip & 0xFF);
}

bool IsBinary(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_BINARY_INPUT || type == OBJ_BINARY_OUTPUT || type == OBJ_BINARY_VALUE;
}

std::string TagName(std::uint32_t device, const BACSTAC_OBJECT_ID& point) {
    const char* kind = "Value";
    if (point.Type == OBJ_ANALOG_INPUT)
        kind = "Temperature";
    else if (point.Type == OBJ_BINARY_INPUT)
        kind = "Contact";
    else if (point.Type == OBJ_MULTI_STATE_VALUE)
        kind = "Mode";
    else if (point.Type == OBJ_BINARY_VALUE)
        kind = "Release";
    return fmt::format("{} {} {}", device, kind, point.Instance);
}

std::string StatusTagName(std::uint32_t device, const BACSTAC_OBJECT_ID& point) {
    return TagName(device, point) + " in alarm";
}

sim::Counts CountsOf(const DemoCounts& counts, std::uint16_t port) {
    sim::Counts site;
    const bool hasRouter = counts.devices >= 3;
    const bool hasMultiple = counts.trends >= 2;
    site.Devices = hasRouter ? counts.devices - 1 : counts.devices;
    if (hasRouter)
        site.Networks = {ROUTED_NETWORK};
    site.RoutedDevices = 1;
    site.Trends = hasMultiple ? counts.trends - 1 : counts.trends;
    site.Multiples = hasMultiple ? 1 : 0;
    site.Members = MULTIPLE_MEMBERS;
    site.Points = site.Trends;
    site.Records = counts.records;
    site.FirstIp = FIRST_IP;
    site.Port = port;
    site.IntervalSeconds = LOG_INTERVAL;
    site.StatusEvery = STATUS_EVERY;
    return site;
}

// The generator lets a trend-log-multiple log the points that the trend logs have too. Here each point is logged once,
// and always by the same log however the site grows, so that each tag has one source.
void GiveMultipleItsOwnPoints(sim::DeviceConfig& device) {
    std::vector<sim::ObjectConfig> points;
    for (sim::ObjectConfig& object : device.Objects) {
        if (object.Id.Type != OBJ_TREND_LOG_MULTIPLE)
            continue;
        for (std::size_t member = 0; member < object.Log->References.size(); ++member) {
            const auto index = FIRST_MULTIPLE_POINT + static_cast<std::uint32_t>(member);
            sim::ObjectConfig& point = points.emplace_back();
            point.Id = sim::PointId(index, false);
            point.Name = fmt::format("{} Point {}", device.Instance, index + 1);
            object.Log->References[member].ObjectId = point.Id;
            object.Log->Generator->Kinds[member] = sim::PointKind(index, false);
        }
    }
    device.Objects.insert(device.Objects.end(), points.begin(), points.end());
}

bool IsStored(std::uint32_t kind) {
    return kind != BACSTAC_LOG_STATUS && kind != BACSTAC_LOG_TIME_CHANGE;
}

} // namespace

void DemoCounts::GrowTo(const DemoCounts& other) {
    devices = std::max(devices, other.devices);
    trends = std::max(trends, other.trends);
    records = std::max(records, other.records);
}

bool LoadDemoCounts(const std::string& path, DemoCounts& counts, std::string& error) {
    if (access(path.c_str(), F_OK) != 0)
        return true;
    std::string text;
    if (ReadWholeFile(path, MAX_FILE_SIZE, text, &error) != FileRead::Ok)
        return false;
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    for (const auto& [name, target] : {std::pair("devices", &counts.devices), std::pair("trends", &counts.trends),
                                       std::pair("records", &counts.records)}) {
        const auto found = json.is_object() ? json.find(name) : json.end();
        if (found == json.end() || !found->is_number_unsigned() || *found > 1000000) {
            error = path + ": is damaged; remove the demonstration's folder to begin anew";
            return false;
        }
        *target = found->get<unsigned>();
    }
    return true;
}

bool SaveDemoCounts(const std::string& path, const DemoCounts& counts, std::string& error) {
    const nlohmann::ordered_json json{
        {"devices", counts.devices}, {"trends", counts.trends}, {"records", counts.records}};
    return ReplaceWholeFile(path, json.dump(1) + "\n", FileAccess::OwnerOnly, &error);
}

CDemoSite::CDemoSite(const DemoCounts& counts, std::uint16_t port) : m_port(port) {
    const sim::Counts site = CountsOf(counts, port);
    m_simulation = sim::GenerateConfig(site);
    // One device is of the time before protocol revision 4, which knows the older form of reading by time.
    if (m_simulation.Devices.size() >= 2)
        m_simulation.Devices[1].ProtocolRevision = 2;
    for (sim::DeviceConfig& device : m_simulation.Devices)
        GiveMultipleItsOwnPoints(device);
    for (sim::RouterConfig& router : m_simulation.Routers)
        for (sim::NetworkConfig& network : router.Networks)
            for (sim::DeviceConfig& device : network.Devices)
                GiveMultipleItsOwnPoints(device);
}

template <class Visitor>
void CDemoSite::VisitDevices(Visitor visitor) const {
    for (const sim::DeviceConfig& device : m_simulation.Devices)
        visitor(device);
    for (const sim::RouterConfig& router : m_simulation.Routers)
        for (const sim::NetworkConfig& network : router.Networks)
            for (const sim::DeviceConfig& device : network.Devices)
                visitor(device);
}

std::vector<std::uint32_t> CDemoSite::Devices() const {
    std::vector<std::uint32_t> instances;
    VisitDevices([&](const sim::DeviceConfig& device) { instances.push_back(device.Instance); });
    return instances;
}

std::string CDemoSite::ConfigText() const {
    std::string text =
        fmt::format("# Written by bdc demo; changes are lost with its next run.\n"
                    "[identity]\ninstance = 4000000\nname = \"bdc demonstration\"\n"
                    "local_network = {}\n\n"
                    "[[network]]\nbind = \"{}\"\nport = {}\nbroadcast = \"{}\"\n\n"
                    "[[tag]]\nname = \"{}\"\ntype = \"digital\"\n",
                    LOCAL_NETWORK, IpText(CLIENT_IP), m_port, IpText(m_simulation.BroadcastIp), FLUSH_TAG);
    const auto addTag = [&](const std::string& name, bool isDigital, const std::string& reference) {
        text += fmt::format("\n[[tag]]\nname = \"{}\"\ntype = \"{}\"\nbacnet = {{ {} }}\n", name,
                            isDigital ? "digital" : "analog", reference);
    };
    VisitDevices([&](const sim::DeviceConfig& device) {
        bool isFirst = true;
        for (const sim::ObjectConfig& object : device.Objects) {
            if (!object.Log)
                continue;
            for (const BACSTAC_DEV_OBJ_PROP_REF& logged : object.Log->References) {
                const BACSTAC_OBJECT_ID& point = logged.ObjectId;
                const std::string reference =
                    fmt::format("device = {}, type = {}, instance = {}", device.Instance, point.Type, point.Instance);
                addTag(TagName(device.Instance, point), IsBinary(point.Type), reference);
                if (isFirst)
                    addTag(StatusTagName(device.Instance, point), true, reference + ", status_bit = 0");
                isFirst = false;
            }
        }
    });
    return text;
}

void CDemoSite::AddTo(AllPropPages& pages) const {
    HistorySettings& history = pages.history;
    history.flushTag = FLUSH_TAG;
    VisitDevices([&](const sim::DeviceConfig& device) {
        const std::string text = std::to_string(device.Instance);
        auto found = std::find_if(history.devices.begin(), history.devices.end(),
                                  [&](const auto& entry) { return entry && entry->device == text; });
        if (found == history.devices.end()) {
            found = history.devices.insert(found, std::make_unique<CDeviceSettings>());
            (*found)->device = text;
        }
        std::vector<std::string>& objects = (*found)->objects;
        for (const sim::ObjectConfig& object : device.Objects) {
            if (object.Log && std::find(objects.begin(), objects.end(), object.Name) == objects.end())
                objects.push_back(object.Name);
        }
    });
}

std::map<std::string, std::uint64_t> CDemoSite::CountRecords(const sim::Simulator& simulator) const {
    std::map<std::string, std::uint64_t> counts;
    VisitDevices([&](const sim::DeviceConfig& config) {
        const sim::Device* device = simulator.FindDevice(config.Instance);
        bool isFirst = true;
        for (const sim::ObjectConfig& object : config.Objects) {
            if (!object.Log || device == nullptr)
                continue;
            const auto lock = device->Lock();
            const sim::LogBuffer& buffer = device->Find(object.Id)->AsLog()->Buffer();
            const auto& references = object.Log->References;
            sim::LogRecord scratch;
            for (std::uint64_t index = buffer.Begin(); index != buffer.End(); ++index) {
                const sim::LogRecord& record = buffer.At(index, scratch);
                for (std::size_t i = 0; i < std::min(record.Data.size(), references.size()); ++i) {
                    if (IsStored(record.Data[i].Kind))
                        ++counts[TagName(config.Instance, references[i].ObjectId)];
                }
                if (isFirst && record.StatusFlags && record.IsData())
                    ++counts[StatusTagName(config.Instance, references.front().ObjectId)];
            }
            isFirst = false;
        }
    });
    return counts;
}
