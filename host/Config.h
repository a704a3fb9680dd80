// The driver's one configuration file, TOML. Read once at start, never written. docs/configuration.md shows a whole
// file.
#pragma once

#include "api/kernel/TagDefinition.h"
#include "platform/stack/transport/BroadcastSettings.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// [identity]: this station as a BACnet device. Name, instance and process identifier are starting values: what an
// operator changes in the console is kept in the data folder and counts from then on.
struct IdentityConfig {
    std::uint32_t instance = 4194302; // 0..4194302
    std::string name = "bdc";
    std::string description;
    std::string location;
    std::uint16_t vendorId = 0;          // vendor_id, as the standard's committee assigns them
    std::string vendorName;              // vendor_name
    std::uint16_t localNetwork = 0;      // number shown for the network that has none, 0..65534; 0: told by routers
    std::uint32_t processIdentifier = 1; // of event notifications
    std::vector<std::string> groups;     // object window groups to choose from
};

// [[network]]: one BACnet/IP port.
struct NetworkConfig {
    std::uint16_t number = 0;     // 0..65534; 0 when the network has no number
    std::string bind = "0.0.0.0"; // IPv4 address to receive on
    std::uint16_t port = 47808;   // 1..65535
    std::string broadcast;        // IPv4 address for broadcasts; empty: that of the network bind lies in
    // At most one of these two.
    std::optional<bacnet::ForeignSettings> foreign; // foreign = {bbmd = "ADDRESS", ttl = SECONDS}
    std::optional<bacnet::BbmdSettings> bbmd;       // bbmd = {table, foreign_devices, accept_write}; needs a bind
};

// [stack]
struct StackConfig {
    std::uint32_t apduTimeout = 3000; // apdu_timeout_ms, 10..600000: wait for an answer before a request is repeated
    std::uint32_t retries = 3;        // 0..10 repetitions
    // Where the datagrams of all networks are recorded for network analysers: a file NAME.pcap in the data folder,
    // which is overwritten at every start. Empty: nowhere.
    std::string capture;
    std::uint32_t captureLimit = 64; // capture_limit_mb, 1..4096 MiB: the file grows no further
};

// `bacnet = {...}` of a tag: what the tag holds.
struct BacnetReference {
    std::uint32_t device = 0;         // instance, 0..4194302
    std::uint32_t objectType = 0;     // `type`: number 0..1023 or the standard's name ("analog-input")
    std::uint32_t objectInstance = 0; // `instance`, 0..4194303
    std::uint32_t property = 85;      // number 0..4194303 or the standard's name ("present-value")
    std::uint32_t index = 0xFFFFFFFF; // of an array; -1 (the default): none
    std::int32_t statusBit = -1;      // status_bit 0..3: the tag is that bit of status-flags; -1: the property's value
    bool cov = false;                 // the value comes by change-of-value subscription
};

// [[tag]]
struct TagConfig {
    std::string name; // up to 47 bytes, unique
    std::uint16_t type = TAG_TYPE_ANALOG;
    double initial = 0.0;    // numeric types; digital: 0 or 1
    std::string initialText; // type "text"
    std::string description; // up to 127 bytes
    std::string unit;        // up to 31 bytes
    bool history = false;    // the kernel itself records this tag
    bool historyCopy = false;
    std::optional<BacnetReference> bacnet;
};

// [[device]]: what one device is to be handled by.
struct DeviceConfig {
    std::uint32_t instance = 0; // 0..4194302, each once
    // What its text really is, whatever it says of itself: an encoding that the system knows, "cp932", "iso-8859-2".
    // Empty: what it says.
    std::string text;
};

struct Config {
    IdentityConfig identity;
    std::string station = "LOCAL";   // [station] name, up to 15 bytes; empty: tags are named without a station
    std::uint16_t stationNumber = 1; // [station] number 0..65535: the high half of tag ids in the history
    bool stationActive = true;       // [station] active; a passive station transfers no history
    std::vector<NetworkConfig> networks;
    StackConfig stack;
    std::string dataFolder;                      // [data] folder; empty: the default one. A relative path is taken
                                                 // against the folder of the configuration file.
    std::string settingsFile = "settings.dat";   // [settings] file, in the data folder
    std::string directoryFile = "directory.dat"; // [directory] file, in the data folder
    // [directory] vendor_names, in the data folder: names that vendors give to numbers of their own
    // (docs/vendor-names.md). The file need not be there.
    std::string vendorNamesFile = "vendor-names.txt";
    std::uint32_t transferChunk = 100; // [history] transfer_chunk, records in one ReadRange, 1..32767
    std::vector<DeviceConfig> devices;
    std::vector<TagConfig> tags;
};

struct ConfigFault {
    std::size_t line = 0; // from 1; 0 when the fault has no place
    std::size_t column = 0;
    std::string text;
};

// False: every fault that was found, in the order of the file, and config is not to be used.
bool ReadConfig(const std::string& text, Config& config, std::vector<ConfigFault>& faults);

// The same from a file, UTF-8 path. errors are lines for people: "FILE:LINE:COLUMN: what is wrong".
bool LoadConfig(const std::string& path, Config& config, std::vector<std::string>& errors);
