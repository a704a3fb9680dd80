#include "host/DemoDirectory.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <set>

namespace {

constexpr auto ASK_AGAIN = std::chrono::milliseconds(1000);
constexpr unsigned NAME_SIZE = 1024;

class CCollector : public CIAMCallback {
public:
    explicit CCollector(const std::vector<std::uint32_t>& expected) : m_missing(expected.begin(), expected.end()) {}

    void OnIAm(BACSTAC_ADDRESS const&, unsigned const& deviceInstance) override {
        {
            const std::lock_guard guard(m_lock);
            if (m_missing.erase(deviceInstance) != 0)
                m_found.push_back(deviceInstance);
        }
        m_changed.notify_all();
    }

    bool WaitForAll(std::chrono::milliseconds time) {
        std::unique_lock guard(m_lock);
        return m_changed.wait_for(guard, time, [&] { return m_missing.empty(); });
    }

    std::vector<std::uint32_t> Found() {
        const std::lock_guard guard(m_lock);
        std::sort(m_found.begin(), m_found.end());
        return m_found;
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::set<std::uint32_t> m_missing; // these are guarded by m_lock
    std::vector<std::uint32_t> m_found;
};

BACSTAC_ADDRESS GlobalBroadcast() {
    BACSTAC_ADDRESS address{};
    address.Remote = 1;
    address.Network = BACSTAC_ALL_NETWORKS;
    return address;
}

bool ReadObjects(std::uint32_t device, std::vector<BACSTAC_OBJECT_ID>& objects, std::string& error) {
    const BACSTAC_ADDRESS address = BACnet->GetDevAddr(device);
    BACSTAC_ERROR detail{};
    unsigned count = 0;
    BACSTAC_STATUS status = BACnet->ReadObjectList(address, nullptr, &count, &detail);
    if (status == BACSTAC_OK) {
        objects.resize(count);
        status = BACnet->ReadObjectList(address, objects.data(), &count, &detail);
        objects.resize(std::min<std::size_t>(count, objects.size()));
    }
    if (status != BACSTAC_OK)
        error = "device " + std::to_string(device) + ": object list: " + CBacGeneral::GetErrorText(status, &detail);
    return status == BACSTAC_OK;
}

bool ReadDevice(std::uint32_t instance, CBACnetDev& device, std::string& error) {
    std::vector<BACSTAC_OBJECT_ID> objects;
    if (!ReadObjects(instance, objects, error))
        return false;
    device.SetId({OBJ_DEVICE, instance});
    device.SetAddr(BACnet->GetDevAddr(instance));
    device.SetVendorId(BACnet->GetDevVendorId(instance));
    for (const BACSTAC_OBJECT_ID& id : objects) {
        char name[NAME_SIZE] = "";
        BACSTAC_ERROR detail{};
        const BACSTAC_STATUS status =
            BACnet->ReadProperty(instance, id, PROP_OBJECT_NAME, BACSTAC_NO_INDEX, name, sizeof name, &detail);
        if (status != BACSTAC_OK) {
            error =
                "device " + std::to_string(instance) + ": object name: " + CBacGeneral::GetErrorText(status, &detail);
            return false;
        }
        CBACnetObj object;
        object.SetId(id);
        object.SetName(name);
        device.AddObj(object);
    }
    return true;
}

} // namespace

std::vector<std::uint32_t> FindDevices(const std::vector<std::uint32_t>& expected, std::chrono::milliseconds time) {
    CCollector collector(expected);
    const int handle = BACnet->RegisterIAMCallback(&collector);
    const auto deadline = std::chrono::steady_clock::now() + time;
    do {
        BACnet->WhoIs(GlobalBroadcast(), 0, BACSTAC_MAX_INSTANCE);
    } while (!collector.WaitForAll(ASK_AGAIN) && std::chrono::steady_clock::now() < deadline);
    BACnet->UnregisterIAMCallback(handle);
    return collector.Found();
}

bool BuildDirectory(const std::vector<std::uint32_t>& devices, std::string& error) {
    CBACnetDir directory;
    for (const std::uint32_t instance : devices) {
        CBACnetDev device;
        if (!ReadDevice(instance, device, error))
            return false;
        directory.AddDev(device);
    }
    if (directory.Save(CBacGeneral::GetDirFileName()) && BACnet->LoadDir())
        return true;
    error = CBacGeneral::GetDirFileName() + ": cannot be written and loaded";
    return false;
}
