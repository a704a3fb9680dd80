#include "host/bacnet/Names.h"

#include "api/bacnet/Dir.h"

std::string AddressName(const BACSTAC_ADDRESS& address) {
    std::string text;
    CBACnetDir::AddrToStr(address, text);
    return text;
}

std::string ObjectName(const BACSTAC_OBJECT_ID& object) {
    return CBACnetDir::GetStdObjTypeName(object.Type) + (":" + std::to_string(object.Instance));
}

std::string PropertyName(BACSTAC_PROPERTY_ID property, int index) {
    const std::string name = CBACnetDir::GetStdPropName(property);
    return index == BACSTAC_NO_INDEX ? name : name + "[" + std::to_string(index) + "]";
}

std::string DeviceName(unsigned device) {
    return "device " + std::to_string(device);
}

std::string PointName(unsigned device, const BACSTAC_OBJECT_ID& object) {
    return DeviceName(device) + ", " + ObjectName(object);
}

std::string PointName(unsigned device, const BACSTAC_OBJECT_ID& object, BACSTAC_PROPERTY_ID property, int index) {
    return PointName(device, object) + ", " + PropertyName(property, index);
}
