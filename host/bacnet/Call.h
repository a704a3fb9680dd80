// One run of a command that talks to BACnet devices: its arguments, the stack, and who gets the rows. It runs in the
// process that has the BACnet port: on a worker of the running instance, or in the command's own process where no
// instance runs. One thread.
//
// What takes an argument gives false when the argument is wrong, and what asks a device gives false when it refused or
// kept silent; Failure() is then the reply.
#pragma once

#include "api/bacnet/Types.h"
#include "host/ControlProtocol.h"
#include "host/ControlServer.h"
#include "host/bacnet/Names.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bacnet {
class BacnetClient;
}
struct PropertyText;

// Where a call runs.
struct BacnetSite {
    bacnet::BacnetClient& stack;
    // Before the directory file is written: whether this process may. In the command's own process it takes the lock of
    // the data folder.
    std::function<bool(std::string& error)> claimFolder;
};

class CBacnetCall {
public:
    CBacnetCall(const BacnetSite& site, const ControlRequest& request, IControlClient& client)
        : m_site(site), m_request(request), m_client(client) {}

    bacnet::BacnetClient& Stack() const { return m_site.stack; }
    bool ClaimFolder();

    // ---- arguments

    bool Has(const char* key) const { return m_request.arguments.count(key) != 0; }
    std::string Text(const char* key) const;              // empty when it is not there
    std::vector<std::string> List(const char* key) const; // of an argument that may be there several times
    // Leaves the value alone when the argument is not there.
    bool TakeNumber(const char* key, std::int64_t low, std::int64_t high, std::int64_t& value);
    bool TakePriority(int& priority); // BACSTAC_NO_PRIORITY when there is none
    bool TakeObject(BACSTAC_OBJECT_ID& object);
    bool TakeProperty(const std::string& text, PropertyText& property);
    // Finds the device: in the directory, by Who-Is, or by asking the station at the address who it is.
    bool TakeDevice(unsigned& device) { return FindDevice(Text("device"), device); }
    bool FindDevice(const std::string& text, unsigned& device);

    // ---- results

    // Whether a service succeeded. what stands before the text of the failure: "device 1000, analog-input:1".
    bool Succeeded(BACSTAC_STATUS status, const BACSTAC_ERROR& error, const std::string& what);
    // False when nobody wants more rows.
    bool Row(const nlohmann::ordered_json& row);
    bool IsCancelled() const { return m_client.IsCancelled(); }
    // Sleeps, or ends early with false when nobody waits for the result any more.
    bool Wait(std::chrono::milliseconds time);

    bool Refuse(std::string text); // wrong usage
    bool Fail(std::string text);
    const ControlReply& Failure() const { return m_failure; }
    ControlReply Done(const nlohmann::ordered_json& result) const;
    // The result with EXIT_PARTLY, or with EXIT_FAILED when nothing at all succeeded.
    ControlReply DonePartly(std::size_t succeeded, std::size_t failed, const nlohmann::ordered_json& result) const;

private:
    std::string NameOf(std::string_view key) const;
    bool FindInstance(unsigned instance);
    bool FindAtAddress(const BACSTAC_ADDRESS& address, unsigned& device);
    bool AskWhoIsThere(const BACSTAC_ADDRESS& address, unsigned& device);

    const BacnetSite& m_site;
    const ControlRequest& m_request;
    IControlClient& m_client;
    ControlReply m_failure;
};

// Does what the request asks; EXIT_USAGE for a command that there is not.
ControlReply RunBacnetCommand(const BacnetSite& site, const ControlRequest& request, IControlClient& client);
