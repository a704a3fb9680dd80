#include "host/Config.h"

#include "base/DurableFile.h"
#include "host/BacnetNames.h"
#include "platform/stack/codec/CodePage.h"

#include <arpa/inet.h>
#include <toml++/toml.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <set>
#include <string_view>

namespace {

constexpr std::int64_t MAX_INSTANCE = 4194303;
constexpr std::int64_t MAX_DEVICE = MAX_INSTANCE - 1;
constexpr std::int64_t MAX_NETWORK = 65534;
constexpr std::uint32_t PROPERTY_STATUS_FLAGS = 111;
constexpr std::size_t MAX_FAULTS = 20;
constexpr std::size_t MAX_FILE_SIZE = 64 << 20;

using Faults = std::vector<ConfigFault>;

void AddFault(Faults& faults, const toml::source_position& where, std::string text) {
    faults.push_back({where.line, where.column, std::move(text)});
}

bool IsIpv4(const std::string& text) {
    in_addr address{};
    return inet_pton(AF_INET, text.c_str(), &address) == 1;
}

bool IsFileName(const std::string& text) {
    return !text.empty() && text != "." && text != ".." && text.find('/') == std::string::npos;
}

// Of a kind that no other file in the data folder has: a recording overwrites what bears its name.
bool IsCaptureName(const std::string& text) {
    constexpr std::string_view suffix = ".pcap";
    return IsFileName(text) && text.size() > suffix.size() && text.ends_with(suffix);
}

// Takes the known keys out of one table, one call each; what is left at the end is a fault, so that a misspelt key does
// not go unseen.
class CTableReader {
public:
    CTableReader(const toml::table& table, std::string name, Faults& faults)
        : m_table(table), m_name(std::move(name)), m_faults(faults) {}

    template <typename T>
    void Integer(std::string_view key, std::int64_t low, std::int64_t high, T& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const auto value = node->is_integer() ? node->value<std::int64_t>() : std::nullopt;
        if (value && *value >= low && *value <= high)
            target = static_cast<T>(*value);
        else
            Fault(*node, key, "must be a whole number from " + std::to_string(low) + " to " + std::to_string(high));
    }

    void Text(std::string_view key, std::size_t limit, std::string& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const auto value = node->is_string() ? node->value<std::string>() : std::nullopt;
        if (!value)
            return Fault(*node, key, "must be text");
        if (value->size() > limit)
            return Fault(*node, key, "is longer than " + std::to_string(limit) + " bytes");
        const bool isPrintable =
            std::none_of(value->begin(), value->end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
        if (!isPrintable)
            return Fault(*node, key, "holds a control character");
        target = *value;
    }

    void Boolean(std::string_view key, bool& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (node->is_boolean())
            target = node->value<bool>().value_or(target);
        else
            Fault(*node, key, "must be true or false");
    }

    // A number or one of the standard's names.
    void Named(std::string_view key, std::int64_t high,
               const std::function<std::optional<std::uint32_t>(std::string_view)>& byName, std::uint32_t& target) {
        const toml::node* node = m_table.get(key);
        if (node == nullptr || !node->is_string())
            return Integer(key, 0, high, target);
        Take(key);
        const std::string name = node->value<std::string>().value_or(std::string());
        if (const auto number = byName(name))
            target = *number;
        else
            Fault(*node, key, "\"" + name + "\" is not a name that is known here; give its number");
    }

    // The check is made only when the key is there.
    void Check(std::string_view key, bool good, const std::string& text) {
        const toml::node* node = m_table.get(key);
        if (node != nullptr && !good)
            Fault(*node, key, text);
    }

    void Require(std::string_view key) {
        if (m_table.get(key) == nullptr)
            AddFault(m_faults, m_table.source().begin, m_name + ": \"" + std::string(key) + "\" is missing");
    }

    const toml::node* Take(std::string_view key) {
        m_known.insert(std::string(key));
        return m_table.get(key);
    }

    void Fault(const toml::node& node, std::string_view key, const std::string& text) {
        AddFault(m_faults, node.source().begin, m_name + ": \"" + std::string(key) + "\" " + text);
    }

    void RefuseTheRest() {
        for (const auto& [key, node] : m_table) {
            if (m_known.count(std::string(key.str())) == 0)
                AddFault(m_faults, key.source().begin, m_name + ": unknown key \"" + std::string(key.str()) + "\"");
        }
    }

private:
    const toml::table& m_table;
    std::string m_name;
    Faults& m_faults;
    std::set<std::string> m_known;
};

// Calls read for the table below key, if there is one.
void ReadSection(CTableReader& root, std::string_view key, Faults& faults,
                 const std::function<void(CTableReader&)>& read) {
    const toml::node* node = root.Take(key);
    if (node == nullptr)
        return;
    const toml::table* table = node->as_table();
    if (table == nullptr)
        return root.Fault(*node, key, "must be a table: [" + std::string(key) + "]");
    CTableReader reader(*table, "[" + std::string(key) + "]", faults);
    read(reader);
    reader.RefuseTheRest();
}

// Calls read for every table of the array below key.
void ReadSections(CTableReader& root, std::string_view key, Faults& faults,
                  const std::function<void(CTableReader&)>& read) {
    const toml::node* node = root.Take(key);
    if (node == nullptr)
        return;
    const toml::array* array = node->as_array();
    if (array == nullptr || !array->is_homogeneous(toml::node_type::table))
        return root.Fault(*node, key, "must be a list of tables: [[" + std::string(key) + "]]");
    for (const toml::node& element : *array) {
        CTableReader reader(*element.as_table(), "[[" + std::string(key) + "]]", faults);
        read(reader);
        reader.RefuseTheRest();
    }
}

void ReadGroups(CTableReader& reader, std::vector<std::string>& groups) {
    const toml::node* node = reader.Take("groups");
    if (node == nullptr)
        return;
    const toml::array* array = node->as_array();
    if (array == nullptr || (!array->empty() && !array->is_homogeneous(toml::node_type::string)))
        return reader.Fault(*node, "groups", "must be a list of names");
    for (const toml::node& element : *array)
        groups.push_back(element.value<std::string>().value_or(std::string()));
}

void ReadIdentity(CTableReader& reader, IdentityConfig& identity) {
    reader.Integer("instance", 0, MAX_DEVICE, identity.instance);
    reader.Text("name", 255, identity.name);
    reader.Check("name", !identity.name.empty(), "must not be empty");
    reader.Text("description", 255, identity.description);
    reader.Text("location", 255, identity.location);
    reader.Integer("vendor_id", 0, 65535, identity.vendorId);
    reader.Text("vendor_name", 255, identity.vendorName);
    reader.Integer("local_network", 0, MAX_NETWORK, identity.localNetwork);
    reader.Integer("process_identifier", 0, 0xFFFFFFFF, identity.processIdentifier);
    ReadGroups(reader, identity.groups);
}

bacnet::ForeignSettings ReadForeign(CTableReader& reader) {
    bacnet::ForeignSettings foreign;
    std::string address;
    reader.Require("bbmd");
    reader.Text("bbmd", 21, address);
    reader.Check("bbmd", bacnet::ParseBipAddress(address, foreign.Bbmd),
                 "must be an IPv4 address, with or without a port");
    reader.Integer("ttl", bacnet::ForeignSettings::SHORTEST_TIME_TO_LIVE, 65535, foreign.TimeToLive);
    return foreign;
}

// "a.b.c.d", "a.b.c.d:port", either with "/mask" behind it.
bool ParseTableEntry(const std::string& text, bacnet::BdtEntry& entry) {
    const std::size_t slash = text.find('/');
    if (slash != std::string::npos) {
        if (!bacnet::ParseIpV4(text.substr(slash + 1), entry.Mask))
            return false;
        const std::uint32_t hostPart = ~entry.Mask;
        if ((hostPart & (hostPart + 1)) != 0) // ones, then zeros
            return false;
    }
    return bacnet::ParseBipAddress(text.substr(0, slash), entry.Address);
}

bacnet::BbmdSettings ReadBbmd(CTableReader& reader) {
    bacnet::BbmdSettings bbmd;
    reader.Integer("foreign_devices", 0, bacnet::MAX_TABLE_ENTRIES, bbmd.ForeignDevices);
    reader.Boolean("accept_write", bbmd.AcceptWrite);
    const toml::node* node = reader.Take("table");
    if (node == nullptr)
        return bbmd;
    const toml::array* array = node->as_array();
    if (array == nullptr || (!array->empty() && !array->is_homogeneous(toml::node_type::string))) {
        reader.Fault(*node, "table", "must be a list of addresses");
        return bbmd;
    }
    if (array->size() > bacnet::MAX_TABLE_ENTRIES) {
        reader.Fault(*node, "table", "has more than " + std::to_string(bacnet::MAX_TABLE_ENTRIES) + " entries");
        return bbmd;
    }
    for (const toml::node& element : *array) {
        bacnet::BdtEntry entry;
        const std::string text = element.value<std::string>().value_or(std::string());
        if (ParseTableEntry(text, entry))
            bbmd.Table.push_back(entry);
        else
            reader.Fault(element, "table", "holds \"" + text + "\", which is not ADDRESS[:PORT][/MASK]");
    }
    return bbmd;
}

void ReadNetwork(CTableReader& reader, std::vector<NetworkConfig>& networks, Faults& faults) {
    NetworkConfig network;
    reader.Integer("number", 0, MAX_NETWORK, network.number);
    reader.Text("bind", 15, network.bind);
    reader.Check("bind", IsIpv4(network.bind), "must be an IPv4 address");
    reader.Integer("port", 1, 65535, network.port);
    reader.Text("broadcast", 15, network.broadcast);
    reader.Check("broadcast", network.broadcast.empty() || IsIpv4(network.broadcast), "must be an IPv4 address");
    ReadSection(reader, "foreign", faults, [&](CTableReader& r) { network.foreign = ReadForeign(r); });
    ReadSection(reader, "bbmd", faults, [&](CTableReader& r) { network.bbmd = ReadBbmd(r); });
    reader.Check("bbmd", !network.foreign, "and \"foreign\" exclude each other");
    reader.Check("bbmd", network.bind != "0.0.0.0", "needs \"bind\" to be one address of this machine");
    const bool isNew = std::none_of(networks.begin(), networks.end(),
                                    [&](const NetworkConfig& other) { return other.number == network.number; });
    if (isNew)
        networks.push_back(network);
    else if (reader.Take("number") != nullptr)
        reader.Check("number", false, std::to_string(network.number) + " is given twice");
    else
        reader.Require("number");
}

BacnetReference ReadReference(CTableReader& reader) {
    BacnetReference reference;
    reader.Require("device");
    reader.Integer("device", 0, MAX_DEVICE, reference.device);
    reader.Require("type");
    reader.Named("type", 1023, ObjectTypeByName, reference.objectType);
    reader.Require("instance");
    reader.Integer("instance", 0, MAX_INSTANCE, reference.objectInstance);
    reader.Integer("status_bit", -1, 3, reference.statusBit);
    if (reference.statusBit >= 0)
        reference.property = PROPERTY_STATUS_FLAGS;
    reader.Named("property", MAX_INSTANCE, PropertyByName, reference.property);
    reader.Check("status_bit", reference.statusBit < 0 || reference.property == PROPERTY_STATUS_FLAGS,
                 "goes with the property status-flags only");
    reader.Integer("index", -1, 0x7FFFFFFF, reference.index);
    reader.Boolean("cov", reference.cov);
    return reference;
}

std::optional<std::uint16_t> TagTypeByName(const std::string& name) {
    if (name == "analog")
        return TAG_TYPE_ANALOG;
    if (name == "counter")
        return TAG_TYPE_COUNTER;
    if (name == "text")
        return TAG_TYPE_TEXT;
    if (name == "digital")
        return TAG_TYPE_DIGITAL;
    return std::nullopt;
}

void ReadInitial(CTableReader& reader, TagConfig& tag) {
    if (tag.type == TAG_TYPE_TEXT)
        return reader.Text("initial", 255, tag.initialText);
    const toml::node* node = reader.Take("initial");
    if (node == nullptr)
        return;
    const auto number = node->is_number() ? node->value<double>() : std::nullopt;
    if (!number || !std::isfinite(*number))
        return reader.Fault(*node, "initial", "must be a number");
    tag.initial = *number;
    reader.Check("initial", tag.type != TAG_TYPE_DIGITAL || tag.initial == 0.0 || tag.initial == 1.0,
                 "of a digital tag is 0 or 1");
}

void ReadTag(CTableReader& reader, std::set<std::string>& names, Config& config, Faults& faults) {
    TagConfig tag;
    reader.Require("name");
    reader.Text("name", sizeof(TagDefinition::name) - 1, tag.name);
    reader.Check("name", !tag.name.empty() && tag.name.find(':') == std::string::npos,
                 "must not be empty nor hold a colon");
    reader.Check("name", names.insert(tag.name).second, "\"" + tag.name + "\" is given twice");
    std::string type = "analog";
    reader.Text("type", 16, type);
    const auto number = TagTypeByName(type);
    reader.Check("type", number.has_value(), "must be \"analog\", \"counter\", \"digital\" or \"text\"");
    tag.type = number.value_or(TAG_TYPE_ANALOG);
    ReadInitial(reader, tag);
    reader.Text("description", sizeof(TagDefinition::description) - 1, tag.description);
    reader.Text("unit", sizeof(TagDefinition::unit) - 1, tag.unit);
    reader.Boolean("history", tag.history);
    reader.Boolean("history_copy", tag.historyCopy);
    ReadSection(reader, "bacnet", faults, [&](CTableReader& inner) { tag.bacnet = ReadReference(inner); });
    config.tags.push_back(std::move(tag));
}

void ReadDevice(CTableReader& reader, std::vector<DeviceConfig>& devices) {
    DeviceConfig& device = devices.emplace_back();
    reader.Require("instance");
    reader.Integer("instance", 0, 4194302, device.instance);
    reader.Text("text", 63, device.text);
    reader.Check("text", device.text.empty() || !bacnet::FindEncoding(device.text).empty(),
                 "names no encoding that is known here");
    const bool isTwice = std::any_of(devices.begin(), devices.end() - 1,
                                     [&](const DeviceConfig& other) { return other.instance == device.instance; });
    reader.Check("instance", !isTwice, "is that of an earlier device");
}

void ReadFileName(CTableReader& reader, std::string& target, const char* key = "file") {
    reader.Text(key, 255, target);
    reader.Check(key, IsFileName(target), "must be the name of a file in the data folder, without a path");
}

void ReadRoot(const toml::table& table, Config& config, Faults& faults) {
    CTableReader root(table, "file", faults);
    ReadSection(root, "identity", faults, [&](CTableReader& r) { ReadIdentity(r, config.identity); });
    ReadSection(root, "station", faults, [&](CTableReader& r) {
        r.Text("name", 15, config.station);
        r.Check("name", config.station.find(':') == std::string::npos, "must not hold a colon");
        r.Integer("number", 0, 65535, config.stationNumber);
        r.Boolean("active", config.stationActive);
    });
    ReadSections(root, "network", faults, [&](CTableReader& r) { ReadNetwork(r, config.networks, faults); });
    ReadSection(root, "stack", faults, [&](CTableReader& r) {
        r.Integer("apdu_timeout_ms", 10, 600000, config.stack.apduTimeout);
        r.Integer("retries", 0, 10, config.stack.retries);
        r.Text("capture", 255, config.stack.capture);
        r.Check("capture", config.stack.capture.empty() || IsCaptureName(config.stack.capture),
                "must be the name of a file in the data folder, without a path and ending in .pcap");
        r.Integer("capture_limit_mb", 1, 4096, config.stack.captureLimit);
    });
    ReadSection(root, "data", faults, [&](CTableReader& r) { r.Text("folder", 4000, config.dataFolder); });
    ReadSection(root, "settings", faults, [&](CTableReader& r) { ReadFileName(r, config.settingsFile); });
    ReadSection(root, "directory", faults, [&](CTableReader& r) {
        ReadFileName(r, config.directoryFile);
        ReadFileName(r, config.vendorNamesFile, "vendor_names");
    });
    ReadSection(root, "history", faults,
                [&](CTableReader& r) { r.Integer("transfer_chunk", 1, 32767, config.transferChunk); });
    ReadSections(root, "device", faults, [&](CTableReader& r) { ReadDevice(r, config.devices); });
    std::set<std::string> names;
    ReadSections(root, "tag", faults, [&](CTableReader& r) { ReadTag(r, names, config, faults); });
    root.RefuseTheRest();
    if (config.networks.empty())
        config.networks.emplace_back();
}

} // namespace

bool ReadConfig(const std::string& text, Config& config, std::vector<ConfigFault>& faults) {
    config = Config();
    faults.clear();
    try {
        ReadRoot(toml::parse(text), config, faults);
    } catch (const toml::parse_error& error) {
        AddFault(faults, error.source().begin, std::string(error.description()));
    }
    std::stable_sort(faults.begin(), faults.end(), [](const ConfigFault& left, const ConfigFault& right) {
        return std::pair(left.line, left.column) < std::pair(right.line, right.column);
    });
    if (faults.size() > MAX_FAULTS)
        faults.resize(MAX_FAULTS);
    return faults.empty();
}

bool LoadConfig(const std::string& path, Config& config, std::vector<std::string>& errors) {
    errors.clear();
    std::string text;
    std::string error;
    if (ReadWholeFile(path, MAX_FILE_SIZE, text, &error) != FileRead::Ok) {
        errors.push_back(error);
        return false;
    }
    std::vector<ConfigFault> faults;
    if (ReadConfig(text, config, faults)) {
        const std::filesystem::path folder(config.dataFolder);
        if (!config.dataFolder.empty() && folder.is_relative())
            config.dataFolder = (std::filesystem::absolute(path).parent_path() / folder).lexically_normal().string();
        return true;
    }
    for (const ConfigFault& fault : faults)
        errors.push_back(path + ":" + std::to_string(fault.line) + ":" + std::to_string(fault.column) + ": " +
                         fault.text);
    return false;
}
