// The device object of this station: its properties as they stand in answers. A value that never changes; DeviceServer
// makes a new one when the station's identity changes.
#pragma once

#include "platform/stack/client/ClientConfig.h"
#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <functional>

namespace bacnet {

class Writer;

class OwnDeviceObject {
public:
    struct Fault { // class and code of an Error; code 0 is none
        std::uint32_t Class = 0;
        std::uint32_t Code = 0;
    };

    // revision: Database_Revision.
    OwnDeviceObject(OwnDevice device, const TransactionSettings& settings, std::uint32_t revision);

    const OwnDevice& Identity() const { return m_device; }
    std::uint32_t Revision() const { return m_revision; }
    BACSTAC_OBJECT_ID Id() const;
    bool IsDevice() const;                               // false: the station has no instance
    bool IsMeant(const BACSTAC_OBJECT_ID& object) const; // by its identifier, or by instance 4194303 (clause 15.5.2)

    // Writes the value, encoded. With a fault nothing that counts is written.
    Fault Write(const PropertyTarget& target, Writer& writer) const;
    // The properties of a group: PROP_ALL, PROP_REQUIRED or PROP_OPTIONAL, ascending.
    void ForEach(BACSTAC_PROPERTY_ID group, const std::function<void(BACSTAC_PROPERTY_ID)>& visit) const;

private:
    void WriteElements(BACSTAC_PROPERTY_ID property, Writer& writer) const;

    const OwnDevice m_device;
    const TransactionSettings m_settings;
    const std::uint32_t m_revision;
};

} // namespace bacnet
