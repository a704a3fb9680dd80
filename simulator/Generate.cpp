#include "simulator/Generate.h"

#include "api/bacnet/Enums.h"
#include "simulator/Museum.h"

#include <algorithm>

namespace sim {

namespace {

struct PointType {
    BACSTAC_OBJECT_TYPE Type;
    std::uint32_t Kind;
};

// The kinds of points that a generated device has in turn.
constexpr PointType POINT_TYPES[] = {
    {OBJ_ANALOG_INPUT, BACSTAC_LOG_REAL},    {OBJ_BINARY_INPUT, BACSTAC_LOG_ENUMERATED},
    {OBJ_ANALOG_VALUE, BACSTAC_LOG_REAL},    {OBJ_MULTI_STATE_VALUE, BACSTAC_LOG_UNSIGNED},
    {OBJ_BINARY_VALUE, BACSTAC_LOG_BOOLEAN},
};

BACSTAC_DEV_OBJ_PROP_REF PresentValueOf(BACSTAC_OBJECT_ID id) {
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    reference.ObjectId = id;
    reference.Property = PROP_PRESENT_VALUE;
    reference.ArrayIndex = static_cast<std::uint32_t>(BACSTAC_NO_INDEX);
    reference.DeviceId.Type = OBJ_DEVICE;
    return reference;
}

LogConfig MakeLog(const Counts& counts, std::uint32_t device, BACSTAC_OBJECT_ID id) {
    LogConfig log;
    const auto needed = static_cast<std::uint32_t>(std::clamp<std::uint64_t>(counts.Records, 1000, 0xFFFFFFFEU));
    log.Capacity = counts.Capacity != 0 ? counts.Capacity : needed;
    log.Generated = counts.Records;
    GeneratorConfig generator;
    generator.Seed = MixSeed(MixSeed(counts.Seed, device), std::uint64_t{id.Type} << 32 | id.Instance);
    const LocalTime base = counts.Base != 0 ? counts.Base : DEFAULT_RECORD_BASE;
    // Logs do not start at the same hundredth, so that positions differ from log to log.
    generator.Base = base + id.Instance % 100;
    generator.Interval = LocalTime{std::max(counts.IntervalSeconds, 1U)} * HUNDREDTHS_PER_SECOND;
    generator.WithStatusFlags = counts.StatusFlags && id.Type == OBJ_TREND_LOG;
    generator.StatusEvery = counts.StatusEvery;
    generator.Kinds.clear();
    log.Generator = generator;
    return log;
}

void AddLogs(const Counts& counts, std::uint32_t device, std::vector<ObjectConfig>& objects) {
    const std::uint32_t points = std::max(1U, static_cast<std::uint32_t>(objects.size()));
    for (std::uint32_t i = 0; i < counts.Trends; ++i) {
        ObjectConfig trend;
        trend.Id = {OBJ_TREND_LOG, i + 1};
        trend.Log = MakeLog(counts, device, trend.Id);
        trend.Log->References.push_back(PresentValueOf(PointId(i, counts.OnlyReal)));
        trend.Log->Generator->Kinds.push_back(PointKind(i, counts.OnlyReal));
        trend.Name = std::to_string(device) + " Trend " + std::to_string(i + 1);
        objects.push_back(std::move(trend));
    }
    for (std::uint32_t i = 0; i < counts.Multiples; ++i) {
        ObjectConfig multiple;
        multiple.Id = {OBJ_TREND_LOG_MULTIPLE, i + 1};
        multiple.Log = MakeLog(counts, device, multiple.Id);
        for (std::uint32_t member = 0; member < counts.Members; ++member) {
            const std::uint32_t point = (i + member) % points;
            multiple.Log->References.push_back(PresentValueOf(PointId(point, counts.OnlyReal)));
            multiple.Log->Generator->Kinds.push_back(PointKind(point, counts.OnlyReal));
        }
        multiple.Name = std::to_string(device) + " Multiple " + std::to_string(i + 1);
        objects.push_back(std::move(multiple));
    }
}

DeviceConfig MakeDevice(const Counts& counts, std::uint32_t instance) {
    DeviceConfig device;
    device.Instance = instance;
    device.ProtocolRevision = counts.ProtocolRevision;
    device.MaxApdu = counts.MaxApdu;
    const std::uint32_t points = std::max({counts.Points, counts.Trends, counts.Multiples == 0 ? 0 : counts.Members});
    for (std::uint32_t i = 0; i < points; ++i) {
        ObjectConfig point;
        point.Id = PointId(i, counts.OnlyReal);
        point.Name = std::to_string(instance) + " Point " + std::to_string(i + 1);
        device.Objects.push_back(std::move(point));
    }
    AddLogs(counts, instance, device.Objects);
    return device;
}

} // namespace

BACSTAC_OBJECT_ID PointId(std::uint32_t index, bool onlyReal) {
    if (onlyReal)
        return {OBJ_ANALOG_INPUT, index + 1};
    const auto types = static_cast<std::uint32_t>(std::size(POINT_TYPES));
    return {POINT_TYPES[index % types].Type, index / types + 1};
}

std::uint32_t PointKind(std::uint32_t index, bool onlyReal) {
    return onlyReal ? BACSTAC_LOG_REAL : POINT_TYPES[index % std::size(POINT_TYPES)].Kind;
}

std::uint32_t NextIp(std::uint32_t ip) {
    do
        ++ip;
    while ((ip & 0xFF) == 0 || (ip & 0xFF) == 255);
    return ip;
}

SimulatorConfig GenerateConfig(const Counts& counts) {
    SimulatorConfig config;
    config.Port = counts.Port;
    std::uint32_t ip = counts.FirstIp;
    std::uint32_t instance = counts.BaseInstance;
    for (std::uint32_t i = 0; i < counts.Devices && instance < BACSTAC_MAX_INSTANCE; ++i) {
        DeviceConfig device = MakeDevice(counts, instance++);
        device.Ip = ip;
        ip = NextIp(ip);
        config.Devices.push_back(std::move(device));
    }
    for (std::uint32_t i = 0; i < counts.Museums && instance < BACSTAC_MAX_INSTANCE; ++i) {
        DeviceConfig museum = MuseumDevice(instance++);
        museum.MaxApdu = counts.MaxApdu;
        museum.Ip = ip;
        ip = NextIp(ip);
        config.Devices.push_back(std::move(museum));
    }
    if (counts.Networks.empty())
        return config;
    RouterConfig router;
    router.Ip = ip;
    for (const std::uint16_t number : counts.Networks) {
        NetworkConfig network;
        network.Number = number;
        for (std::uint32_t mac = 1; mac <= std::min(counts.RoutedDevices, 254U) && instance < BACSTAC_MAX_INSTANCE;
             ++mac) {
            DeviceConfig device = MakeDevice(counts, instance++);
            device.Mac = static_cast<std::uint8_t>(mac);
            device.MaxApdu = std::min(device.MaxApdu, 480U);
            network.Devices.push_back(std::move(device));
        }
        router.Networks.push_back(std::move(network));
    }
    config.Routers.push_back(std::move(router));
    return config;
}

} // namespace sim
