// The station as a BACnet device: its device object answers Who-Is, Who-Has, ReadProperty and ReadPropertyMultiple.
// Everything else that is confirmed is rejected as unrecognized. Requests come on the background threads of the
// transaction layer; the identity may be changed by any thread.
#pragma once

#include "platform/stack/client/OwnDeviceObject.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/transaction/TransactionLayer.h"

#include <memory>
#include <mutex>
#include <string>

namespace bacnet {

class DeviceServer {
public:
    DeviceServer(const OwnDevice& device, const TransactionSettings& settings);

    bool IsDevice() const { return Current()->IsDevice(); }
    IAm Announcement() const;
    // False when nothing changes. A request that is being answered still sees the former identity.
    bool SetIdentity(std::uint32_t instance, const std::string& name);
    void OnRequest(const RequestIndication& request, TransactionLayer& layer) const;

private:
    std::shared_ptr<const OwnDeviceObject> Current() const;

    const TransactionSettings m_settings;
    mutable std::mutex m_lock;
    std::shared_ptr<const OwnDeviceObject> m_object; // m_lock
};

} // namespace bacnet
