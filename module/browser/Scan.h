// Turns what devices answer into directory entries. The console's browser and the command line use it alike.
//
// Each call to a device blocks; between the calls the progress is shown and may end the scan.
#pragma once

#include "api/bacnet/Types.h"

#include <cstddef>
#include <map>
#include <vector>

class CBacGeneral;
class CBACnetDir;
class IProgress;

using DeviceAddresses = std::map<unsigned, BACSTAC_ADDRESS>; // by instance

struct ScannedDevice {
    unsigned device = 0;
    BACSTAC_STATUS status = BACSTAC_OK; // of its object list; with another one the device is left out
    BACSTAC_ERROR error{};
    std::size_t objects = 0; // that got into the directory
};

// Reads vendor, object list and objects of each device, in order of instance, and merges them into the directory in
// one step at the end. What fails is passed over and logged, and the last line of the log tells how much there was.
// False when the operator cancelled: the directory is as it was then. scanned, if given, takes what became of each
// device.
bool ScanDevices(CBacGeneral& bacnet, const DeviceAddresses& devices, CBACnetDir& directory, IProgress& progress,
                 std::vector<ScannedDevice>* scanned = nullptr);
