// discover, scan and list: which devices and objects there are.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "base/NumberText.h"
#include "host/BacnetNames.h"
#include "host/DataFolder.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/IAmCollector.h"
#include "module/browser/Scan.h"
#include "module/console/Progress.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>

using Json = nlohmann::ordered_json;

namespace {

constexpr std::int64_t DEFAULT_WAIT = 3; // seconds
constexpr std::int64_t LONGEST_WAIT = 600;

// ---- discover

BACSTAC_ADDRESS BroadcastOn(std::int64_t network) {
    const auto number = static_cast<std::uint16_t>(network);
    return {static_cast<std::uint8_t>(number == 0 ? 0 : 1), 0, number, {}, 0};
}

Json DeviceRow(CBacnetCall& call, unsigned device, const BACSTAC_ADDRESS& address) {
    std::string name;
    call.Stack().GetDevName(device, name);
    return {{"device", device},
            {"address", AddressName(address)},
            {"network", address.Network},
            {"vendor", call.Stack().GetDevVendorId(device)},
            {"name", name}};
}

bool TakeRange(CBacnetCall& call, unsigned& low, unsigned& high) {
    const std::vector<std::string> range = call.List("range");
    if (range.empty())
        return true;
    const auto first = ParseU32(range.front());
    const auto last = ParseU32(range.back());
    if (range.size() != 2 || !first || !last || *first > *last || *last > BACSTAC_MAX_INSTANCE)
        return call.Refuse("--range takes the first and the last instance, 0 to 4194303");
    low = *first;
    high = *last;
    return true;
}

ControlReply Discover(CBacnetCall& call) {
    std::int64_t network = BACSTAC_ALL_NETWORKS;
    std::int64_t wait = DEFAULT_WAIT;
    unsigned low = 0;
    unsigned high = BACSTAC_MAX_INSTANCE;
    if (!TakeRange(call, low, high) || !call.TakeNumber("network", 0, BACSTAC_ALL_NETWORKS, network) ||
        !call.TakeNumber("wait", 0, LONGEST_WAIT, wait))
        return call.Failure();
    const CIAmCollector announcements(call.Stack());
    const BACSTAC_STATUS status = call.Stack().WhoIs(BroadcastOn(network), low, high);
    if (!call.Succeeded(status, {}, "Who-Is") || !call.Wait(std::chrono::seconds(wait)))
        return call.Failure();
    std::map<unsigned, unsigned> claims;
    std::vector<CIAmCollector::Announcement> found;
    for (const CIAmCollector::Announcement& announcement : announcements.Devices()) {
        if (announcement.first >= low && announcement.first <= high) {
            found.push_back(announcement);
            ++claims[announcement.first];
        }
    }
    for (const auto& [device, address] : found) {
        Json row = DeviceRow(call, device, address);
        row["duplicate"] = claims[device] > 1;
        if (!call.Row(row))
            return call.Failure();
    }
    return call.Done({{"count", found.size()}});
}

std::string DiscoveredLine(const Json& row) {
    return fmt::format("{:>7}  {:<24} vendor {:<5} {}{}", MemberText(row, "device"), MemberText(row, "address"),
                       MemberText(row, "vendor"), MemberText(row, "name"),
                       MemberText(row, "duplicate") == "true" ? "  (instance is used twice)" : "");
}

std::string DeviceCountLine(const Json& result) {
    return MemberText(result, "count") + " devices";
}

// ---- scan

// A scan on the command line is silent until its rows come; who asked for it may go away.
class CCommandProgress : public IProgress {
public:
    explicit CCommandProgress(const CBacnetCall& call) : m_call(call) {}
    void SetTitle(const std::string&) override {}
    void SetProgress(const std::string&, unsigned) override {}
    bool IsCancelled() const override { return m_call.IsCancelled(); }
    void ClearCancelled() override {}

private:
    const CBacnetCall& m_call;
};

// The directory file with what was scanned; other devices in it stay.
bool SaveScanned(CBacnetCall& call, const CBACnetDir& scanned) {
    static std::mutex saving; // one at a time, between reading the file and replacing it
    const std::lock_guard lock(saving);
    if (!call.ClaimFolder())
        return false;
    const std::string path = CBacGeneral::GetDirFileName();
    CBACnetDir directory;
    std::error_code failure;
    if (std::filesystem::exists(path, failure) && !directory.Load(path))
        return call.Fail(UnacceptedFile(path));
    directory.AddDir(scanned);
    if (!directory.Save(path))
        return call.Fail(path + ": cannot be written");
    return call.Stack().LoadDir() || call.Fail(UnacceptedFile(path));
}

// False when the scan cannot go on. A device that is not found is a row, unless it is the only one.
bool FindDevices(CBacnetCall& call, const std::vector<std::string>& texts, DeviceAddresses& devices,
                 std::size_t& failed) {
    for (const std::string& text : texts) {
        unsigned instance = 0;
        if (call.FindDevice(text, instance)) {
            devices.emplace(instance, call.Stack().GetDevAddr(instance));
            continue;
        }
        if (texts.size() == 1 || call.Failure().code == EXIT_USAGE || call.IsCancelled())
            return false;
        ++failed;
        if (!call.Row({{"device", text}, {"error", call.Failure().error}}))
            return false;
    }
    return true;
}

ControlReply Scan(CBacnetCall& call) {
    DeviceAddresses devices;
    std::size_t failed = 0;
    if (!FindDevices(call, call.List("devices"), devices, failed))
        return call.Failure();
    CBACnetDir directory;
    CCommandProgress progress(call);
    std::vector<ScannedDevice> scanned;
    if (!ScanDevices(call.Stack(), devices, directory, progress, &scanned)) {
        call.Fail("nobody waits for the result any more");
        return call.Failure();
    }
    const auto isRead = [](const ScannedDevice& device) { return device.status == BACSTAC_OK; };
    if (std::ranges::any_of(scanned, isRead) && !SaveScanned(call, directory))
        return call.Failure();
    std::size_t succeeded = 0;
    for (const ScannedDevice& device : scanned) {
        Json row = DeviceRow(call, device.device, devices[device.device]);
        if (call.Succeeded(device.status, device.error, DeviceName(device.device) + ", object-list")) {
            ++succeeded;
            row["objects"] = device.objects;
        } else if (scanned.size() == 1 && failed == 0) {
            return call.Failure();
        } else {
            ++failed;
            row = {{"device", std::to_string(device.device)}, {"error", call.Failure().error}};
        }
        if (!call.Row(row))
            return call.Failure();
    }
    return call.DonePartly(succeeded, failed, {{"directory", CBacGeneral::GetDirFileName()}});
}

std::string ScannedLine(const Json& row) {
    if (row.contains("error"))
        return MemberText(row, "error");
    return fmt::format("{:>7}  {:<24} {:>6} objects  {}", MemberText(row, "device"), MemberText(row, "address"),
                       MemberText(row, "objects"), MemberText(row, "name"));
}

// ---- list

ControlReply ListDevices(CBacnetCall& call) {
    std::vector<unsigned> devices;
    call.Stack().GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    for (const unsigned device : devices) {
        std::vector<BACSTAC_OBJECT_ID> objects;
        call.Stack().GetObjLst(device, objects, BACSTAC_ALL_TYPES);
        Json row = DeviceRow(call, device, call.Stack().GetDevAddr(device));
        row["objects"] = objects.size();
        if (!call.Row(row))
            return call.Failure();
    }
    return call.Done({{"count", devices.size()}});
}

ControlReply List(CBacnetCall& call) {
    if (!call.Has("device"))
        return ListDevices(call);
    BACSTAC_OBJECT_TYPE type = BACSTAC_ALL_TYPES;
    if (call.Has("type")) {
        const auto named = ObjectTypeByText(call.Text("type"));
        if (!named)
            return call.Refuse("not an object type: " + call.Text("type")), call.Failure();
        type = *named;
    }
    std::int64_t device = 0;
    if (!call.TakeNumber("device", 0, BACSTAC_MAX_INSTANCE - 1, device))
        return call.Failure();
    const auto instance = static_cast<unsigned>(device);
    if (!call.Stack().FindDev(instance))
        return call.Fail(DeviceName(instance) + " is not in the directory"), call.Failure();
    std::vector<BACSTAC_OBJECT_ID> objects;
    call.Stack().GetObjLst(instance, objects, type);
    for (const BACSTAC_OBJECT_ID& object : objects) {
        std::string name;
        call.Stack().GetObjName(instance, object, name);
        if (!call.Row({{"device", instance}, {"object", ObjectName(object)}, {"name", name}}))
            return call.Failure();
    }
    return call.Done({{"count", objects.size()}});
}

std::string ListedLine(const Json& row) {
    return row.contains("object") ? fmt::format("{:<32} {}", MemberText(row, "object"), MemberText(row, "name"))
                                  : ScannedLine(row);
}

constexpr CommandOption DISCOVER_OPTIONS[] = {
    {"--network", "network", "One network alone, 0 for the local one; 65535 (all networks) if not given"},
    {"--range", "range", "LOW HIGH: only devices with these instances", Arity::Two},
    {"--wait", "wait", "Seconds to wait for answers (3)"},
};

constexpr CommandOption SCAN_OPTIONS[] = {
    {"DEVICE", "devices", "Instance, IP[:port], or NET:MAC of a station behind a router", Arity::Some},
};

constexpr CommandOption LIST_OPTIONS[] = {
    {"DEVICE", "device", "Instance of a device: its objects; all devices if not given"},
    {"TYPE", "type", "Only objects of this type: name, abbreviation or number"},
};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "discover", "Finds devices with Who-Is", DISCOVER_OPTIONS, "devices", Discover, DiscoveredLine,
     DeviceCountLine},
    {nullptr, "scan", "Reads the objects of devices with their names into the directory", SCAN_OPTIONS, "devices", Scan,
     ScannedLine},
    {.group = nullptr,
     .name = "list",
     .help = "Devices, or the objects of a device, as the directory has them: no traffic",
     .options = LIST_OPTIONS,
     .list = "entries",
     .run = List,
     .row = ListedLine,
     .needsNetwork = false},
};

} // namespace

std::span<const BacnetCommand> DirectoryCommands() {
    return COMMANDS;
}
