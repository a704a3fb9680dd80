// router list and bbmd show: what lies between the networks.
#include "host/NetworkJson.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <chrono>

using Json = nlohmann::ordered_json;

namespace {

constexpr std::int64_t DEFAULT_WAIT = 2; // seconds
constexpr std::int64_t LONGEST_WAIT = 60;
constexpr auto TABLE_WAIT = std::chrono::seconds(2); // for each of the tries

// ---- router list

ControlReply ListRouters(CBacnetCall& call) {
    std::int64_t wait = DEFAULT_WAIT;
    if (!call.TakeNumber("wait", 0, LONGEST_WAIT, wait))
        return call.Failure();
    const bacnet::NetworkAdmin& networks = call.Stack().Networks();
    call.Stack().Networks().AskForRouters();
    if (!call.Wait(std::chrono::seconds(wait)))
        return call.Failure();
    const std::vector<bacnet::PortStatus> ports = networks.Ports();
    const std::vector<bacnet::RouterStatus> routers = networks.Routers();
    for (const bacnet::RouterStatus& router : routers) {
        const Json port = router.Port < ports.size() ? Json(ports[router.Port].Address) : Json(nullptr);
        if (!call.Row({{"network", router.Network},
                       {"router", router.Router},
                       {"port", port},
                       {"announced", router.Announced},
                       {"busy", router.Busy},
                       {"max_apdu", router.MaxApdu == 0 ? Json(nullptr) : Json(router.MaxApdu)}}))
            return call.Failure();
    }
    return call.Done({{"count", routers.size()}});
}

std::string RouterLine(const Json& row) {
    std::string line = fmt::format("{:>5}  {:<24} on {}", MemberText(row, "network"), MemberText(row, "router"),
                                   MemberText(row, "port"));
    if (MemberText(row, "announced") == "false")
        line += ", has not announced itself";
    if (MemberText(row, "busy") == "true")
        line += ", busy";
    if (MemberText(row, "max_apdu") != "-")
        line += ", at most " + MemberText(row, "max_apdu") + " octets";
    return line;
}

// ---- bbmd show

// The port that requests to a station go out of: that of --network, else the first one on BACnet/IP.
bool TakePort(CBacnetCall& call, const std::vector<bacnet::PortStatus>& ports, std::size_t& port) {
    std::int64_t network = 0;
    if (!call.TakeNumber("network", 0, BACSTAC_ALL_NETWORKS - 1, network))
        return false;
    for (port = 0; port < ports.size(); ++port) {
        if (!ports[port].Address.empty() && (!call.Has("network") || ports[port].Network == network))
            return true;
    }
    return call.Fail(call.Has("network") ? "no BACnet/IP port on network " + call.Text("network")
                                         : "no BACnet/IP port");
}

// One row an entry.
bool PrintTable(CBacnetCall& call, const std::string& station, const char* table, const Json& entries) {
    for (const Json& entry : entries) {
        Json row{{"station", station}, {"table", table}};
        row.update(entry);
        if (!call.Row(row))
            return false;
    }
    return true;
}

// A table that could not be read is a row with the reason.
bool PrintFailure(CBacnetCall& call, const std::string& station, const char* table, bacnet::TableRead read) {
    return call.Row({{"station", station}, {"table", table}, {"error", bacnet::ToString(read)}});
}

// Of another station.
ControlReply ShowTables(CBacnetCall& call, const std::string& text) {
    bacnet::BipAddress address;
    if (!bacnet::ParseBipAddress(text, address))
        return call.Refuse("\"" + text + "\" is no address: give it as 10.0.0.5 or 10.0.0.5:47808"), call.Failure();
    const bacnet::NetworkAdmin& networks = call.Stack().Networks();
    std::size_t port = 0;
    if (!TakePort(call, networks.Ports(), port))
        return call.Failure();
    const bacnet::BroadcastTables tables = networks.ReadBroadcastTables(port, address, TABLE_WAIT);
    const bool hasDistribution = tables.DistributionRead == bacnet::TableRead::done;
    const bool hasForeign = tables.ForeignRead == bacnet::TableRead::done;
    const std::string station = bacnet::ToString(address);
    if (!hasDistribution && !hasForeign)
        return call.Fail(station + ": " + bacnet::ToString(tables.DistributionRead)), call.Failure();
    if (!(hasDistribution ? PrintTable(call, station, "distribution", TableJson(tables.Distribution))
                          : PrintFailure(call, station, "distribution", tables.DistributionRead)) ||
        !(hasForeign ? PrintTable(call, station, "foreign", TableJson(tables.Foreign))
                     : PrintFailure(call, station, "foreign", tables.ForeignRead)))
        return call.Failure();
    return call.DonePartly(hasDistribution + hasForeign, 2 - hasDistribution - hasForeign, Json::object());
}

// Of the ports of this station.
ControlReply ShowOwn(CBacnetCall& call) {
    for (const bacnet::PortStatus& port : call.Stack().Networks().Ports()) {
        const bacnet::BroadcastStatus& status = port.Broadcasting;
        Json row{{"station", port.Address}, {"role", status.IsBbmd ? "bbmd" : "none"}};
        if (status.Foreign) {
            row["role"] = "foreign-device";
            row["bbmd"] = bacnet::ToString(status.Foreign->Bbmd);
            row["registration"] = bacnet::ToString(status.Registration);
        }
        if (!call.Row(row) || !PrintTable(call, port.Address, "distribution", TableJson(status.Table)) ||
            !PrintTable(call, port.Address, "foreign", TableJson(status.ForeignDevices)))
            return call.Failure();
    }
    return call.Done(Json::object());
}

ControlReply ShowBbmd(CBacnetCall& call) {
    return call.Has("address") ? ShowTables(call, call.Text("address")) : ShowOwn(call);
}

std::string BbmdLine(const Json& row) {
    std::string line = MemberText(row, "station");
    if (row.contains("role"))
        line += MemberText(row, "role") == "none" ? "  takes no part in broadcast management"
                                                  : "  " + MemberText(row, "role");
    if (row.contains("registration"))
        line += " of " + MemberText(row, "bbmd") + ", " + MemberText(row, "registration");
    if (row.contains("table"))
        line += fmt::format("  {:<12}", MemberText(row, "table"));
    if (row.contains("error"))
        return line + " " + MemberText(row, "error");
    if (row.contains("address"))
        line += fmt::format(" {:<22}", MemberText(row, "address"));
    if (row.contains("mask"))
        line += " mask " + MemberText(row, "mask");
    if (row.contains("remaining"))
        line += " " + MemberText(row, "remaining") + " s of " + MemberText(row, "ttl") + " s left";
    return line;
}

constexpr CommandOption ROUTER_OPTIONS[] = {
    {"--wait", "wait", "Seconds to wait for answers (2)"},
};

constexpr CommandOption BBMD_OPTIONS[] = {
    {"ADDRESS", "address", "IP[:port] of a broadcast management device; the own ports if not given"},
    {"--network", "network", "The port of this network asks; the first one if not given"},
};

constexpr BacnetCommand COMMANDS[] = {
    {"router", "list", "Routers, and the networks that they lead to", ROUTER_OPTIONS, "routers", ListRouters,
     RouterLine},
    {"bbmd", "show", "The broadcast distribution table and the foreign devices of a station", BBMD_OPTIONS, "entries",
     ShowBbmd, BbmdLine},
};

} // namespace

std::span<const BacnetCommand> NetworkCommands() {
    return COMMANDS;
}
