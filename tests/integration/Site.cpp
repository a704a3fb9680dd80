#include "tests/integration/Site.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <iterator>

namespace integration {
namespace {

constexpr std::uint32_t STATION_BITS = 1U << 16; // of tag ids, station number 1

BACSTAC_ADDRESS IpAddress(std::uint32_t ip, std::uint16_t port) {
    BACSTAC_ADDRESS address{};
    for (unsigned octet = 0; octet < 4; ++octet)
        address.Mac[octet] = static_cast<std::uint8_t>(ip >> (24 - 8 * octet));
    address.Mac[4] = static_cast<std::uint8_t>(port >> 8);
    address.Mac[5] = static_cast<std::uint8_t>(port);
    address.MacLength = 6;
    return address;
}

void MakeDistinct(sim::DeviceConfig& device, bool onlyReal) {
    for (sim::ObjectConfig& object : device.Objects) {
        if (!object.Log)
            continue;
        const bool multiple = object.Id.Type == OBJ_TREND_LOG_MULTIPLE;
        std::uint32_t member = 0;
        for (BACSTAC_DEV_OBJ_PROP_REF& reference : object.Log->References)
            reference.ObjectId = {OBJ_ANALOG_INPUT, (multiple ? 100000 : 0) + object.Id.Instance * 100 + member++};
        if (!onlyReal && object.Log->Generator)
            for (std::uint32_t& kind : object.Log->Generator->Kinds)
                kind = sim::MIXED_KINDS;
    }
}

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string BitText(const BACSTAC_BIT_STRING& bits) {
    std::string text;
    for (std::uint32_t bit = 0; bit < bits.BitCount; ++bit)
        if ((bits.Bits[bit / 8] >> bit % 8 & 1) != 0)
            text += (text.empty() ? "bit-" : ", bit-") + std::to_string(bit);
    return "{" + text + "}";
}

// The generator's "any" values are doubles.
std::string AnyText(const std::string& wire) {
    std::uint64_t bits = 0;
    for (std::size_t i = 2; i < wire.size(); ++i)
        bits = bits << 8 | static_cast<std::uint8_t>(wire[i]);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

VfiRecord Record(const sim::LogDatum& datum) {
    VfiRecord record{};
    record.valueType = VFI_NUMBER;
    const auto number = [&](double value) { SetVfiValue(record, value); };
    const auto text = [&](const std::string& value) {
        record.valueType = VFI_TEXT;
        value.copy(record.text, sizeof record.text - 1);
    };
    switch (datum.Kind) {
    case BACSTAC_LOG_BOOLEAN:
        number(datum.Value.Boolean);
        break;
    case BACSTAC_LOG_REAL:
        number(datum.Value.Real);
        break;
    case BACSTAC_LOG_ENUMERATED:
        number(datum.Value.Enumerated);
        break;
    case BACSTAC_LOG_UNSIGNED:
        number(datum.Value.Unsigned);
        break;
    case BACSTAC_LOG_SIGNED:
        number(datum.Value.Signed);
        break;
    case BACSTAC_LOG_BITSTRING:
        text(BitText(datum.Value.BitString));
        break;
    case BACSTAC_LOG_NULL:
        text("null");
        break;
    case BACSTAC_LOG_FAILURE:
        text("(" + std::to_string(datum.Value.Failure.Class) + ", " + std::to_string(datum.Value.Failure.Code) + ")");
        break;
    case BACSTAC_LOG_ANY:
        text(AnyText(datum.Any));
        break;
    default:
        break;
    }
    return record;
}

void SetTime(VfiRecord& record, sim::LocalTime time) {
    const BACSTAC_DATE_TIME stamp = sim::ToDateTime(time);
    std::tm local{};
    local.tm_year = stamp.Date.Year - 1900;
    local.tm_mon = static_cast<int>(stamp.Date.Month) - 1;
    local.tm_mday = static_cast<int>(stamp.Date.Day);
    local.tm_hour = stamp.Time.Hour;
    local.tm_min = stamp.Time.Minute;
    local.tm_sec = stamp.Time.Second;
    local.tm_isdst = -1;
    record.time = static_cast<std::uint32_t>(std::mktime(&local));
    record.milliseconds = static_cast<std::uint16_t>(stamp.Time.Hundredths * 10);
}

// Ids are given in the order of the plan.
void AppendExpected(const sim::LogRecord& logged, std::uint32_t device,
                    const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& references, const std::vector<PlannedTag>& tags,
                    RecordLines& lines) {
    if (!logged.IsData())
        return;
    for (std::size_t i = 0; i < references.size(); ++i) {
        for (std::size_t id = 0; id < tags.size(); ++id) {
            const CTag& tag = tags[id].binding;
            if (tag.device != device || tag.objectType != references[i].ObjectId.Type ||
                tag.objectInstance != references[i].ObjectId.Instance)
                continue;
            VfiRecord record = Record(logged.Data[i]);
            if (tag.statusBit != TAG_WHOLE_VALUE) {
                if (!logged.StatusFlags)
                    continue;
                SetVfiValue(record, *logged.StatusFlags >> tag.statusBit & 1);
            }
            SetTime(record, logged.Time);
            record.tagId = STATION_BITS | static_cast<std::uint32_t>(id);
            lines.push_back(Line(record));
        }
    }
}

} // namespace

sim::SimulatorConfig MakeSite(const sim::Counts& counts) {
    sim::SimulatorConfig site = sim::GenerateConfig(counts);
    for (sim::DeviceConfig& device : site.Devices)
        MakeDistinct(device, counts.OnlyReal);
    for (sim::RouterConfig& router : site.Routers)
        for (sim::NetworkConfig& network : router.Networks)
            for (sim::DeviceConfig& device : network.Devices)
                MakeDistinct(device, counts.OnlyReal);
    return site;
}

std::vector<SiteDevice> DevicesOf(const sim::SimulatorConfig& site) {
    std::vector<SiteDevice> devices;
    for (const sim::DeviceConfig& device : site.Devices)
        devices.push_back({device, IpAddress(device.Ip, device.Port != 0 ? device.Port : site.Port)});
    for (const sim::RouterConfig& router : site.Routers)
        for (const sim::NetworkConfig& network : router.Networks)
            for (const sim::DeviceConfig& device : network.Devices)
                devices.push_back({device, {1, 0, network.Number, {device.Mac}, 1}});
    return devices;
}

std::vector<PlannedTag> PlanTags(const sim::SimulatorConfig& site, StatusTags statusTags) {
    std::vector<PlannedTag> tags;
    for (const SiteDevice& device : DevicesOf(site)) {
        for (const sim::ObjectConfig& object : device.Config.Objects) {
            if (!object.Log)
                continue;
            for (const BACSTAC_DEV_OBJ_PROP_REF& reference : object.Log->References) {
                PlannedTag tag;
                tag.name = std::to_string(device.Config.Instance) + " " + std::to_string(reference.ObjectId.Instance);
                tag.binding.device = device.Config.Instance;
                tag.binding.objectType = reference.ObjectId.Type;
                tag.binding.objectInstance = reference.ObjectId.Instance;
                tag.binding.property = reference.Property;
                tags.push_back(tag);
                tag.binding.property = PROP_STATUS_FLAGS;
                const std::string name = tag.name;
                for (int bit = 0; bit < 4 && statusTags == StatusTags::all; ++bit) {
                    tag.name = name + " status " + std::to_string(bit);
                    tag.binding.statusBit = bit;
                    tags.push_back(tag);
                }
            }
        }
    }
    return tags;
}

std::string Line(const VfiRecord& record) {
    char head[64];
    std::snprintf(head, sizeof head, "tag %u at %u.%03u: ", record.tagId, record.time, record.milliseconds);
    std::string line = head + Number(VfiValue(record));
    if (record.valueType == VFI_TEXT)
        line += std::string(" \"") + record.text + "\"";
    return line;
}

RecordLines ExpectedRecords(const sim::Simulator& simulator, const sim::SimulatorConfig& site,
                            const std::vector<PlannedTag>& tags, std::size_t newest) {
    RecordLines lines;
    for (const SiteDevice& device : DevicesOf(site)) {
        const sim::Device* const simulated = simulator.FindDevice(device.Config.Instance);
        for (const sim::ObjectConfig& object : device.Config.Objects) {
            if (!object.Log || simulated == nullptr)
                continue;
            const std::vector<sim::LogRecord> records = simulated->Records(object.Id);
            const std::size_t first = records.size() - std::min(newest, records.size());
            for (std::size_t i = first; i < records.size(); ++i)
                AppendExpected(records[i], device.Config.Instance, object.Log->References, tags, lines);
        }
    }
    std::ranges::sort(lines);
    return lines;
}

std::string Difference(const RecordLines& expected, const RecordLines& actual) {
    RecordLines missing;
    RecordLines surplus;
    std::ranges::set_difference(expected, actual, std::back_inserter(missing));
    std::ranges::set_difference(actual, expected, std::back_inserter(surplus));
    std::string text;
    if (!missing.empty())
        text = std::to_string(missing.size()) + " missing, first " + missing.front();
    if (!surplus.empty())
        text += (text.empty() ? "" : "; ") + std::to_string(surplus.size()) + " too many, first " + surplus.front();
    return text;
}

} // namespace integration
