#include "host/bacnet/PointText.h"

#include "api/bacnet/Enums.h"
#include "base/NumberText.h"
#include "host/BacnetNames.h"
#include "host/bacnet/HexText.h"
#include "host/bacnet/Words.h"
#include "platform/stack/transport/Bvll.h"

#include <algorithm>

namespace {

// "a.b.c.d" with or without ":port".
bool ParseIpMac(std::string_view text, BACSTAC_ADDRESS& address) {
    bacnet::BipAddress station;
    if (!bacnet::ParseBipAddress(std::string(text), station))
        return false;
    bacnet::WriteBipAddress(address.Mac, station);
    address.MacLength = bacnet::BIP_ADDRESS_LENGTH;
    return true;
}

bool ParseHexMac(std::string_view text, BACSTAC_ADDRESS& address) {
    std::string octets;
    if (text.empty() || !ParseHex(text, octets) || octets.size() > sizeof address.Mac)
        return false;
    std::copy(octets.begin(), octets.end(), address.Mac);
    address.MacLength = static_cast<std::uint8_t>(octets.size());
    return true;
}

// A number of up to three digits is one octet; anything else that looks like pairs is hexadecimal.
bool ParseMac(std::string_view text, BACSTAC_ADDRESS& address) {
    if (const auto octet = ParseAs<std::uint8_t>(text)) {
        address.Mac[0] = *octet;
        address.MacLength = 1;
        return true;
    }
    return text.find('.') != std::string_view::npos ? ParseIpMac(text, address) : ParseHexMac(text, address);
}

} // namespace

bool ParseDevice(std::string_view text, DeviceText& device, std::string& error) {
    device = {};
    if (const auto number = ParseU32(text)) {
        device.instance = *number;
        if (*number < BACSTAC_MAX_INSTANCE)
            return true;
        error = "a device instance is a number from 0 to 4194302, not " + std::string(text);
        return false;
    }
    const std::size_t split = text.find_first_of(":/");
    const auto network = ParseAs<std::uint16_t>(text.substr(0, split));
    if (split == std::string_view::npos || !network) {
        if (ParseIpMac(text, device.address))
            return true;
    } else if (*network != 0 && *network != BACSTAC_ALL_NETWORKS && ParseMac(text.substr(split + 1), device.address)) {
        device.address.Remote = 1;
        device.address.Network = *network;
        return true;
    }
    error = Quoted(text) + " is no device: give its instance (1000), its address (10.0.0.5 or 10.0.0.5:47808), or "
                           "network and station (7:21)";
    return false;
}

bool ParseObject(std::string_view text, BACSTAC_OBJECT_ID& object, std::string& error) {
    std::string_view bare = Trimmed(text);
    if (bare.size() > 2 && bare.front() == '(' && bare.back() == ')')
        bare = bare.substr(1, bare.size() - 2);
    const std::size_t split = bare.find_first_of(":,");
    if (split == std::string_view::npos) {
        error = Quoted(text) + " is no object: give type and instance, as in analog-input:1, ai:1 or 0:1";
        return false;
    }
    const std::string_view typeText = Trimmed(bare.substr(0, split));
    const std::string_view instanceText = Trimmed(bare.substr(split + 1));
    const auto type = ObjectTypeByText(typeText);
    if (!type) {
        error = Quoted(typeText) + " is no object type: give its name (analog-input), its abbreviation (ai) or its "
                                   "number, 0 to 1023";
        return false;
    }
    const auto instance = ParseU32(instanceText);
    if (!instance || *instance > BACSTAC_MAX_INSTANCE) {
        error = "an object's instance is a number from 0 to 4194303, not " + Quoted(instanceText);
        return false;
    }
    object = {*type, *instance};
    return true;
}

bool ParseProperty(std::string_view text, PropertyText& property, std::string& error) {
    const std::size_t bracket = text.find('[');
    const std::string_view name = text.substr(0, bracket);
    const auto number = PropertyByText(name);
    if (!number) {
        error = Quoted(name) + " is no property: give its name (present-value), its abbreviation (pv) or its number, 0 "
                               "to 4194303";
        return false;
    }
    property = {*number, BACSTAC_NO_INDEX};
    if (bracket == std::string_view::npos)
        return true;
    const std::string_view rest = text.substr(bracket + 1);
    const auto index = rest.empty() || rest.back() != ']' ? std::nullopt : ParseI32(rest.substr(0, rest.size() - 1));
    if (!index || *index < 0) {
        error = Quoted(text.substr(bracket)) + " is no array index: give a number from 0 on, as in priority-array[8]";
        return false;
    }
    property.index = *index;
    return true;
}

bool ParseReference(std::string_view text, BACSTAC_DEV_OBJ_PROP_REF& reference, std::string& error) {
    reference = {};
    reference.DeviceId = {OBJ_DEVICE, 0};
    const std::size_t last = text.rfind('/');
    if (last == std::string_view::npos) {
        error = Quoted(text) + " is no reference: give [DEVICE/]OBJECT/PROPERTY, as in ai:1/pv or 1000/ai:1/pv";
        return false;
    }
    std::string_view object = text.substr(0, last);
    const std::size_t first = object.find('/');
    if (first != std::string_view::npos) {
        const auto device = ParseU32(object.substr(0, first));
        if (!device || *device >= BACSTAC_MAX_INSTANCE) {
            error = "a device instance is a number from 0 to 4194302, not " + Quoted(object.substr(0, first));
            return false;
        }
        reference.DevicePresent = 1;
        reference.DeviceId.Instance = *device;
        object.remove_prefix(first + 1);
    }
    PropertyText property;
    if (!ParseObject(object, reference.ObjectId, error) || !ParseProperty(text.substr(last + 1), property, error))
        return false;
    reference.Property = property.property;
    reference.ArrayIndex = static_cast<std::uint32_t>(property.index);
    return true;
}
