#include "simulator/ConfigFile.h"

#include "api/bacnet/Enums.h"
#include "simulator/ConfigNames.h"
#include "simulator/ConfigObjects.h"
#include "simulator/Profiles.h"

#include <fstream>
#include <sstream>

namespace sim {

namespace {

void ReadBackup(ConfigTable& table, DeviceConfig& device) {
    BackupConfig& backup = device.Backup.emplace();
    table.Words("files", "objects \"file,1\"", ObjectIdOf, backup.Files);
    for (const BACSTAC_OBJECT_ID& file : backup.Files)
        if (file.Type != OBJ_FILE)
            table.Fault(*table.Source().get("files"), "files", "has to name files");
    table.Integer("preparation", 0, 65535, backup.BackupPreparation);
    backup.RestorePreparation = backup.BackupPreparation;
    table.Integer("restore_preparation", 0, 65535, backup.RestorePreparation);
    table.Integer("completion", 0, 65535, backup.CompletionTime);
    table.Integer("failure_timeout", 0, 65535, backup.FailureTimeout);
    table.Boolean("old_numbers", backup.OldNumbers);
    table.Boolean("without_preparation_times", backup.WithoutPreparationTimes);
}

void ReadFault(ConfigTable& table, DeviceConfig& device) {
    sim::Fault fault;
    table.Require("kind");
    table.Word("kind", "a kind of fault", FaultKindOf, fault.Kind);
    table.Integer("delay_ms", 0, 3'600'000, fault.DelayMs);
    table.Integer("every", 1, 1'000'000, fault.Every);
    table.Integer("class", 0, 65535, fault.Class);
    table.Integer("code", 0, 65535, fault.Code);
    table.Integer("reason", 0, 255, fault.Code);
    table.Integer("segments", 0, 65535, fault.Segments);
    table.Integer("octets", 0, 1476, fault.Octets);
    table.Integer("skip", 0, INT64_MAX, fault.Skip);
    table.Integer("times", 0, INT64_MAX, fault.Times);
    table.Word("service", "a service", ServiceOf, fault.Service);
    table.Word("object", "\"type,instance\"", ObjectIdOf, fault.Object);
    device.Faults.push_back(fault);
}

void ReadProfiles(ConfigTable& table, DeviceConfig& device) {
    std::vector<const Profile*> profiles;
    const auto named = [](const std::string& name) {
        const Profile* profile = FindProfile(name);
        return profile == nullptr ? std::nullopt : std::optional(profile);
    };
    table.Words("profiles", "names of profiles", named, profiles);
    for (const Profile* profile : profiles)
        profile->Apply(device);
}

// What devices on the IP network and behind routers have in common.
void ReadDevice(ConfigTable& table, DeviceConfig& device) {
    table.Require("instance");
    table.Integer("instance", 0, BACSTAC_MAX_INSTANCE - 1, device.Instance);
    table.Text("name", device.Name);
    table.Text("description", device.Description);
    table.Integer("vendor", 0, 65535, device.VendorId);
    table.Integer("protocol_revision", 0, 255, device.ProtocolRevision);
    table.Integer("max_apdu", 50, 1476, device.MaxApdu);
    table.Word("segmentation", "\"both\", \"transmit\", \"receive\" or \"none\"", SegmentationOf, device.Segmentation);
    table.Integer("window", 1, 127, device.WindowSize);
    table.Integer("max_segments", 2, 100'000, device.MaxSegments);
    table.Integer("segment_timeout_ms", 1, 60'000, device.SegmentTimeoutMs);
    table.Integer("segment_retries", 0, 255, device.SegmentRetries);
    table.Words("lacks", "services", ServiceOf, device.LacksServices);
    bool bothForms = false;
    table.Boolean("both_by_time_forms", bothForms);
    device.ByTime = bothForms ? ByTimeForms::both : ByTimeForms::byRevision;
    if (table.Source().contains("creates"))
        table.Words("creates", "object types", ObjectTypeOf, device.Creates.emplace());
    table.Integer("events_per_answer", 0, 1'000'000, device.EventsPerAnswer);
    table.Integer("max_objects", 1, 4'194'304, device.MaxObjects);
    table.Tables("object", [&device](ConfigTable& object) { ReadObject(object, device); });
    ReadProfiles(table, device);
    table.Text("password", device.Password);
    table.Integer("restart_ms", 0, 600'000, device.RestartMs);
    table.Single("backup", [&device](ConfigTable& backup) { ReadBackup(backup, device); });
    table.Tables("fault", [&device](ConfigTable& fault) { ReadFault(fault, device); });
}

void ReadAddress(ConfigTable& table, std::uint32_t& ip, std::uint16_t& port) {
    table.Require("address");
    const toml::node* node = table.Take("address");
    if (node != nullptr && !ParseAddress(node->value_or(std::string()), ip, port))
        table.Fault(*node, "address", "has to be an IPv4 address, with a port or without");
}

void ReadNetwork(ConfigTable& table, RouterConfig& router) {
    NetworkConfig network;
    table.Require("number");
    table.Integer("number", 1, 65534, network.Number);
    table.Tables("device", [&network](ConfigTable& fields) {
        DeviceConfig device;
        device.MaxApdu = 480; // what such a network carries
        fields.Require("mac");
        fields.Integer("mac", 0, 255, device.Mac);
        ReadDevice(fields, device);
        network.Devices.push_back(std::move(device));
    });
    router.Networks.push_back(std::move(network));
}

void ReadSite(ConfigTable& table, SimulatorConfig& config) {
    table.Integer("port", 1, 65535, config.Port);
    table.Integer("threads", 1, 64, config.Threads);
    table.Integer("i_am_per_ms", 0, 1'000'000, config.IAmPerMs);
    table.Integer("append_every_ms", 0, 3'600'000, config.AppendEveryMs);
    const auto mode = [](std::string_view text) {
        return text == "broadcast" ? std::optional(IAmMode::broadcast)
               : text == "unicast" ? std::optional(IAmMode::unicast)
                                   : std::nullopt;
    };
    table.Word("i_am", "\"broadcast\" or \"unicast\"", mode, config.IAm);
    table.Tables("device", [&config](ConfigTable& fields) {
        DeviceConfig device;
        ReadAddress(fields, device.Ip, device.Port);
        ReadDevice(fields, device);
        config.Devices.push_back(std::move(device));
    });
    table.Tables("router", [&config](ConfigTable& fields) {
        RouterConfig router;
        ReadAddress(fields, router.Ip, router.Port);
        fields.Tables("network", [&router](ConfigTable& network) { ReadNetwork(network, router); });
        config.Routers.push_back(std::move(router));
    });
}

bool Read(const toml::table& root, const std::string& name, SimulatorConfig& config, std::string& errors) {
    ConfigFaults faults(name);
    SimulatorConfig read;
    ConfigTable table(root, faults);
    ReadSite(table, read);
    table.Finish();
    errors = faults.Text();
    if (!errors.empty())
        return false;
    config = std::move(read);
    return true;
}

} // namespace

bool ParseConfig(std::string_view text, const std::string& name, SimulatorConfig& config, std::string& errors) {
    try {
        return Read(toml::parse(text, name), name, config, errors);
    } catch (const toml::parse_error& error) {
        errors =
            name + ":" + std::to_string(error.source().begin.line) + ": " + std::string(error.description()) + "\n";
        return false;
    }
}

bool LoadConfig(const std::string& path, SimulatorConfig& config, std::string& errors) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        errors = path + ": cannot be read\n";
        return false;
    }
    return ParseConfig(text.str(), path, config, errors);
}

} // namespace sim
