// The station as a BACnet device: its device object answers Who-Is, ReadProperty and ReadPropertyMultiple with the
// identity from the configuration. Everything else that is confirmed is rejected as unrecognized. Called on the
// background threads of the transaction layer; constant after construction.
#pragma once

#include "platform/stack/client/ClientConfig.h"
#include "platform/stack/services/ReadProperty.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/transaction/TransactionLayer.h"

namespace bacnet {

class Writer;

class DeviceServer {
public:
    DeviceServer(const OwnDevice& device, const TransactionSettings& settings);

    bool IsDevice() const { return m_device.Instance < BACSTAC_MAX_INSTANCE; }
    IAm Announcement() const;
    void OnRequest(const RequestIndication& request, TransactionLayer& layer) const;

private:
    struct Fault { // class and code of an Error; class 0 with code 0 is none
        std::uint32_t Class = 0;
        std::uint32_t Code = 0;
    };

    void OnWhoIs(const RequestIndication& request, TransactionLayer& layer) const;
    void OnReadProperty(const RequestIndication& request, TransactionLayer& layer) const;
    void OnReadPropertyMultiple(const RequestIndication& request, TransactionLayer& layer) const;
    Fault WriteValue(const PropertyTarget& target, Writer& writer) const;
    void WriteElements(BACSTAC_PROPERTY_ID property, Writer& writer) const;

    OwnDevice m_device;
    TransactionSettings m_settings;
};

} // namespace bacnet
