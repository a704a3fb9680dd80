// A simulation made by counts: what `bdcsim --devices 10 --trends 20` and the demonstration ask for. Equal counts give
// equal devices, objects and records, always; more records only add to the earlier ones.
#pragma once

#include "simulator/Config.h"

#include <cstdint>
#include <vector>

namespace sim {

struct Counts {
    std::uint32_t Devices = 1;          // on IP
    std::uint32_t Points = 0;           // data objects of a device; as many as logs need at least
    std::uint32_t Trends = 1;           // trend logs of a device, instances from 1
    std::uint32_t Multiples = 0;        // trend-log-multiple objects of a device, instances from 1
    std::uint32_t Members = 3;          // properties that each of those logs
    std::uint64_t Records = 100;        // in each log
    std::uint32_t Capacity = 0;         // of each log; 0: as Records, at least 1000
    std::uint32_t BaseInstance = 1000;  // of the first device; routed devices follow
    std::uint32_t FirstIp = 0x7F010001; // 127.1.0.1; the next devices count up, last octets 0 and 255 left out
    std::uint16_t Port = 47808;
    std::vector<std::uint16_t> Networks; // networks behind one router, whose address follows the last device's
    std::uint32_t RoutedDevices = 2;     // on each of them, MAC from 1
    std::uint32_t Museums = 0;           // devices that have an object of every type, behind the others
    std::uint32_t ProtocolRevision = 14;
    std::uint32_t MaxApdu = 1476;
    std::uint64_t Seed = 1;
    LocalTime Base = 0; // of the first record; 0: 2026-01-01 00:00
    std::uint32_t IntervalSeconds = 60;
    bool OnlyReal = false;         // all points are analog inputs; otherwise types and datum kinds change in turn
    bool StatusFlags = true;       // of trend-log records
    std::uint64_t StatusEvery = 0; // every n-th record is a log-status record; 0: none
};

// More devices than addresses, MACs or instances are left out; Start of the simulator has nothing to complain about.
SimulatorConfig GenerateConfig(const Counts& counts);

// The data object that point number index of a generated device is, from 0, and the kind of datum its log holds.
BACSTAC_OBJECT_ID PointId(std::uint32_t index, bool onlyReal);
std::uint32_t PointKind(std::uint32_t index, bool onlyReal);

// The IP address that follows, without the last octets 0 and 255.
std::uint32_t NextIp(std::uint32_t ip);

} // namespace sim
