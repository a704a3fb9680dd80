// Simulated devices in which each value says whose it is, and the calls that read such values and check it: by the
// blocking services, by many requests outstanding at once, and by requests and answers in segments.
#pragma once

#include "platform/stack/client/AsyncReader.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Simulator.h"
#include "tests/support/Loopback.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace numbered {

// One value: an element of an array of an object of a device.
struct Place {
    std::uint32_t Device = 1;
    std::uint32_t Object = 1;
    std::uint32_t Index = 1;

    static constexpr std::uint32_t OBJECTS = 20; // of each device, from 1
    static constexpr std::uint32_t INDICES = 30; // of each array, from 1
    std::uint32_t Value() const { return Device * 100000 + Object * 100 + Index; }
    // Some place, the same for the same number.
    static Place Of(std::uint64_t number, std::uint32_t devices);

    bacnet::PropertyTarget Target() const;
};

inline constexpr std::uint16_t NETWORK = 2001; // behind the router
inline constexpr unsigned ROUTER_HOST = 240;

// Devices 1 to local at hosts from 200 on, and behind a router of host ROUTER_HOST as many as remote says.
sim::SimulatorConfig Devices(const testing_support::LoopbackBlock& block, std::uint32_t local, std::uint32_t remote);

// How the device with this instance is reached: its own address, or one that stands for it.
using HostOf = std::function<unsigned(std::uint32_t device)>;

// A client at host that knows the devices as if they had announced themselves.
std::unique_ptr<bacnet::BacnetClient> Station(const testing_support::LoopbackBlock& block, unsigned host,
                                              const bacnet::TransactionSettings& settings, std::uint32_t local,
                                              std::uint32_t remote, const HostOf& hostOf, unsigned routerHost);

// What calls came to. Add the counts of threads together after they ended.
struct Tally {
    std::uint64_t Right = 0;
    std::uint64_t Wrong = 0;      // a value that belongs to another call: never
    std::uint64_t Unanswered = 0; // timed out, or broken off
    std::int64_t LongestMs = 0;
    std::string Complaint; // of the first wrong one

    Tally& operator+=(const Tally& other);
};

// Reads the value through the service.
void Read(bacnet::BacnetClient& client, const Place& place, Tally& tally);
// The same without the check that the service has against answers to other reads: peer, invoke id and service alone
// must do.
void ReadPlainly(bacnet::BacnetClient& client, const Place& place, Tally& tally);
// So many values of one device with one request: in segments, as is the answer.
void ReadInSegments(bacnet::BacnetClient& client, std::uint64_t number, std::uint32_t device, unsigned count,
                    Tally& tally);
// All of them, as many at once as outstanding says, from this thread.
void ReadTogether(bacnet::BacnetClient& client, const std::vector<Place>& places, unsigned outstanding, Tally& tally);

} // namespace numbered
