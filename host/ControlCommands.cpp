#include "host/ControlCommands.h"

#include "api/bacnet/BacGeneral.h"
#include "base/NumberText.h"
#include "host/BacnetNames.h"
#include "host/NetworkJson.h"
#include "host/NumberJson.h"
#include "host/Runtime.h"
#include "host/TimeText.h"
#include "host/Version.h"
#include "host/bacnet/Call.h"
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "platform/stack/client/BacnetClient.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <map>
#include <optional>

using namespace std::chrono_literals;

namespace {

// The members of a reply stand in the order in which they are given.
using Json = nlohmann::ordered_json;

std::string Text(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

ControlReply Done(const Json& result) {
    return {EXIT_DONE, {}, Text(result)};
}

ControlReply Failed(std::string error) {
    return {EXIT_FAILED, std::move(error), {}};
}

ControlReply Misused(std::string error) {
    return {EXIT_USAGE, std::move(error), {}};
}

class CArguments {
public:
    explicit CArguments(const ControlRequest& request) : m_request(request) {}

    std::optional<std::string> Get(const std::string& name) const {
        const auto found = m_request.arguments.find(name);
        return found == m_request.arguments.end() ? std::nullopt : std::optional(found->second);
    }
    bool Has(const std::string& name) const { return m_request.arguments.count(name) != 0; }

private:
    const ControlRequest& m_request;
};

// ---- tags

const char* TypeName(std::uint16_t type) {
    switch (type) {
    case TAG_TYPE_ANALOG:
        return "analog";
    case TAG_TYPE_COUNTER:
        return "counter";
    case TAG_TYPE_TEXT:
        return "text";
    case TAG_TYPE_DIGITAL:
        return "digital";
    default:
        return "unknown";
    }
}

Json ValueJson(const TagValue& value) {
    if (const auto* number = std::get_if<double>(&value))
        return NumberJson(*number);
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    return nullptr;
}

Json TagJson(const TagInfo& tag) {
    return {{"name", tag.settings.name},
            {"type", TypeName(tag.settings.type)},
            {"value", ValueJson(tag.settings.value)},
            {"unit", tag.settings.unit},
            {"description", tag.settings.description}};
}

ControlReply ListTags(CRuntime& runtime, const CArguments&, IControlClient& client) {
    std::size_t count = 0;
    bool isLost = false;
    runtime.GetKernel().ListTags([&](const TagInfo& tag) {
        ++count;
        isLost = !client.Row(Text(TagJson(tag)));
        return !isLost;
    });
    return isLost ? Failed("the client has gone") : Done({{"count", count}});
}

ControlReply GetTag(CRuntime& runtime, const CArguments& arguments, IControlClient&) {
    const std::string name = arguments.Get("name").value_or("");
    const auto tag = runtime.GetKernel().FindTag(name);
    return tag ? Done(TagJson(*tag)) : Failed("no such tag: " + name);
}

ControlReply SetTag(CRuntime& runtime, const CArguments& arguments, IControlClient& client) {
    const std::string name = arguments.Get("name").value_or("");
    const std::string value = arguments.Get("value").value_or("");
    Kernel& kernel = runtime.GetKernel();
    const auto tag = kernel.FindTag(name);
    if (!tag)
        return Failed("no such tag: " + name);
    QLResult result = QL_OK;
    if (tag->settings.type == TAG_TYPE_TEXT) {
        result = kernel.SetTagText(tag->id, value);
    } else {
        const auto number = ParseNumber(value);
        if (!number)
            return Misused("not a number: " + value);
        if (tag->settings.type == TAG_TYPE_DIGITAL && *number != 0.0 && *number != 1.0)
            return Misused("a digital tag is 0 or 1");
        result = kernel.SetTagValue(tag->id, *number);
    }
    if (result != QL_OK)
        return Failed("the kernel refuses the value (" + std::to_string(result) + ")");
    return GetTag(runtime, arguments, client);
}

// ---- history

ControlReply CountHistory(CRuntime& runtime, const CArguments& arguments, IControlClient& client) {
    std::vector<HistoryCount> counts;
    HistoryError failure;
    if (!runtime.History().Count(counts, failure))
        return Failed(failure.text);
    if (const auto name = arguments.Get("tag")) {
        const auto tag = runtime.GetKernel().FindTag(*name);
        if (!tag)
            return Failed("no such tag: " + *name);
        return Done({{"tag", *name}, {"records", runtime.RecordsOf(counts, tag->id)}});
    }
    std::map<std::uint32_t, std::string> names;
    runtime.GetKernel().ListTags([&](const TagInfo& tag) {
        for (const std::uint32_t id : runtime.HistoryIds(tag.id))
            names[id] = tag.settings.name;
        return true;
    });
    std::uint64_t total = 0;
    for (const HistoryCount& count : counts) {
        total += count.records;
        const auto name = names.find(count.tagId);
        Json row{{"tag", name == names.end() ? Json(nullptr) : Json(name->second)}, {"id", count.tagId}};
        row["records"] = count.records;
        if (!client.Row(Text(row)))
            return Failed("the client has gone");
    }
    return Done({{"records", total}});
}

Json RecordJson(const VfiRecord& record) {
    Json row{{"time", FormatTime(record.time, record.milliseconds)},
             {"seconds", record.time},
             {"milliseconds", record.milliseconds}};
    if (record.valueType == VFI_TEXT)
        row["value"] = std::string(record.text, strnlen(record.text, sizeof record.text));
    else
        row["value"] = NumberJson(VfiValue(record));
    return row;
}

ControlReply QueryHistory(CRuntime& runtime, const CArguments& arguments, IControlClient& client) {
    const std::string name = arguments.Get("tag").value_or("");
    const auto tag = runtime.GetKernel().FindTag(name);
    if (!tag)
        return Failed("no such tag: " + name);
    HistoryQuery query;
    for (const auto& [key, target] : {std::pair("from", &query.from), std::pair("to", &query.to)}) {
        const auto text = arguments.Get(key);
        if (text && !(*target = ParseTime(*text)))
            return Misused("not a time: " + *text);
    }
    query.all = arguments.Has("all");
    std::uint64_t records = 0;
    bool isLost = false;
    const auto giveRecord = [&](const VfiRecord& record) {
        ++records;
        isLost = !client.Row(Text(RecordJson(record)));
        return !isLost;
    };
    const auto ids = runtime.HistoryIds(tag->id);
    for (std::size_t i = 0; i < ids.size() && !isLost && (i == 0 || ids[i] != ids[0]); ++i) {
        query.tagId = ids[i];
        HistoryError failure;
        if (!runtime.History().Query(query, giveRecord, failure))
            return {records == 0 ? EXIT_FAILED : EXIT_PARTLY, failure.text, {}};
    }
    return isLost ? Failed("the client has gone") : Done({{"tag", name}, {"records", records}});
}

Json HistoryJson(const HistoryStatus& status) {
    Json json{{"running", status.running},
              {"lastTransferTime", status.lastTransferTime},
              {"total", status.total},
              {"current", status.current},
              {"percent", status.total == 0 ? 0 : std::uint64_t{status.current} * 100 / status.total}};
    json["device"] = status.device;
    json["object"] = status.object;
    json["errors"] = status.errorCount;
    json["lastError"] = status.lastError;
    return json;
}

constexpr int MAX_WAITS_FOR_BEGIN = 60; // of half a second: the console may be at other work

// Follows the transfer until it ends, with its status as rows.
ControlReply FollowTransfer(CRuntime& runtime, std::uint64_t ended, IControlClient& client) {
    CHistoryMonitor& monitor = runtime.Monitor();
    bool hasBegun = false;
    for (int wait = 0; !monitor.WaitForEnd(ended, 500ms); ++wait) {
        if (client.IsCancelled())
            return Failed("the instance ends, or the client has gone");
        hasBegun = hasBegun || monitor.Latest().running;
        if (!hasBegun && wait >= MAX_WAITS_FOR_BEGIN)
            return Failed("the transfer does not begin");
        client.Row(Text(HistoryJson(monitor.Latest())));
    }
    const HistoryStatus status = monitor.Latest();
    ControlReply reply = Done(HistoryJson(status));
    if (status.errorCount != 0) {
        reply.code = EXIT_PARTLY;
        reply.error = std::to_string(status.errorCount) + " errors, the last one: " + status.lastError;
    }
    return reply;
}

ControlReply TransferHistory(CRuntime& runtime, const CArguments& arguments, IControlClient& client) {
    if (runtime.Monitor().Latest().running)
        return Failed("a transfer is running already");
    if (!BDCManager.IsRunning())
        return Failed("the console is not running");
    BACSTAC_DEV_OBJ_REF* request = nullptr;
    if (const auto device = arguments.Get("device")) {
        const auto deviceNumber = ParseU32(*device);
        const std::string typeText = arguments.Get("type").value_or("trend-log");
        const auto type = ObjectTypeByText(typeText);
        const auto instance =
            arguments.Has("instance") ? ParseU32(*arguments.Get("instance")) : std::optional(BACSTAC_ALL_INSTANCES);
        if (!deviceNumber || !type || !instance)
            return Misused("not an object: " + *device + " " + typeText + " " + arguments.Get("instance").value_or(""));
        request = NewTransferRequest(*deviceNumber, *type, *instance);
    }
    const std::uint64_t ended = runtime.Monitor().Ended();
    BDCManager.StartHistoryTransfer(request);
    if (arguments.Has("wait"))
        return FollowTransfer(runtime, ended, client);
    return Done({{"started", true}});
}

// ---- the instance

ControlReply GetStatus(CRuntime& runtime, const CArguments&, IControlClient&) {
    std::vector<unsigned> devices;
    BACnet->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    std::size_t tags = 0;
    runtime.GetKernel().ListTags([&](const TagInfo&) {
        ++tags;
        return true;
    });
    const auto age = std::chrono::steady_clock::now() - runtime.StartTime();
    Json json{{"version", BDC_VERSION}, {"process", getpid()}, {"folder", runtime.Folder()}};
    json["seconds"] = std::chrono::duration_cast<std::chrono::seconds>(age).count();
    json["console"] = BDCManager.IsRunning();
    json["tags"] = tags;
    json["devices"] = devices.size();
    json["networks"] = PortsJson(runtime.Client().Networks().Ports());
    json["history"] = HistoryJson(runtime.Monitor().Latest());
    return Done(json);
}

ControlReply PostToConsole(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
    if (!BDCManager.IsRunning())
        return Failed("the console is not running");
    BDCManager.PostMessageW(message, wParam, lParam);
    return Done(Json::object());
}

ControlReply OpenConsole(CRuntime&, const CArguments&, IControlClient&) {
    return PostToConsole(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
}

ControlReply ShowConsole(CRuntime&, const CArguments&, IControlClient&) {
    return PostToConsole(WM_CONSOLE_SHOW, 0, 0);
}

ControlReply Stop(CRuntime&, const CArguments&, IControlClient&) {
    ControlReply reply = Done(Json::object());
    reply.then = [] { kill(getpid(), SIGTERM); }; // the main thread takes it from there
    return reply;
}

struct Command {
    const char* name;
    ControlReply (*answer)(CRuntime&, const CArguments&, IControlClient&);
};

constexpr Command COMMANDS[] = {
    {"history count", CountHistory},
    {"history query", QueryHistory},
    {"history transfer", TransferHistory},
    {"open", OpenConsole},
    {"show", ShowConsole},
    {"status", GetStatus},
    {"stop", Stop},
    {"tag get", GetTag},
    {"tag list", ListTags},
    {"tag set", SetTag},
};

} // namespace

ControlReply AnswerControlRequest(CRuntime& runtime, const ControlRequest& request, IControlClient& client) {
    try {
        for (const Command& command : COMMANDS) {
            if (request.command == command.name)
                return command.answer(runtime, CArguments(request), client);
        }
        // The lock of the folder is this process's already.
        return RunBacnetCommand({runtime.Client(), [](std::string&) { return true; }}, request, client);
    } catch (const std::exception& failure) {
        return Failed(failure.what());
    }
}
