// How the commands name devices, objects and properties: as ParseDevice, ParseObject and ParseProperty take them.
// UTF-8. Pure functions, any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <string>

std::string AddressName(const BACSTAC_ADDRESS& address);
std::string ObjectName(const BACSTAC_OBJECT_ID& object);                 // "analog-input:1"
std::string PropertyName(BACSTAC_PROPERTY_ID property, int index);       // "priority-array[8]"
std::string DeviceName(unsigned device);                                 // "device 1000"
std::string PointName(unsigned device, const BACSTAC_OBJECT_ID& object); // "device 1000, analog-input:1"
std::string PointName(unsigned device, const BACSTAC_OBJECT_ID& object, BACSTAC_PROPERTY_ID property, int index);
