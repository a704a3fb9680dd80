// Devices, objects and properties as people write them on a command line. Pure functions, any thread. A text that is
// none of it gives false and one line that says what was expected.
#pragma once

#include "api/bacnet/Types.h"

#include <optional>
#include <string>
#include <string_view>

// "1000", "10.0.0.5", "10.0.0.5:47809", or "NET:MAC" and "NET/MAC" for a station behind a router: the MAC decimal where
// it is one octet, an IP address with its port, or hexadecimal pairs ("7:21", "7/10.0.0.5:47808", "7:0a1b0c").
struct DeviceText {
    std::optional<unsigned> instance; // 0..4194302
    BACSTAC_ADDRESS address{};        // without an instance
};
bool ParseDevice(std::string_view text, DeviceText& device, std::string& error);

// "analog-input:1", "ai:1", "analog-input,1", "0:1"; a name, an abbreviation or a number, whatever the case. Blanks
// around the comma are taken too, and the brackets that printed identifiers have: "(analog-input, 1)".
bool ParseObject(std::string_view text, BACSTAC_OBJECT_ID& object, std::string& error);

// "present-value", "pv", "85", "priority-array[8]"; index 0 is the size of an array.
struct PropertyText {
    BACSTAC_PROPERTY_ID property = 0;
    int index = BACSTAC_NO_INDEX;
};
bool ParseProperty(std::string_view text, PropertyText& property, std::string& error);

// "[DEVICE/]OBJECT/PROPERTY[INDEX]": "ai:1/pv", "1000/ai:1/pv".
bool ParseReference(std::string_view text, BACSTAC_DEV_OBJ_PROP_REF& reference, std::string& error);
