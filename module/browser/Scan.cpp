#include "module/browser/Scan.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Log.h"
#include "module/browser/ObjectReader.h"
#include "module/console/Progress.h"

#include <algorithm>
#include <utility>

namespace {

class CScan {
public:
    CScan(CBacGeneral& bacnet, IProgress& progress, std::size_t deviceCount)
        : m_bacnet(bacnet), m_progress(progress), m_deviceCount(deviceCount) {}

    ScannedDevice ScanDevice(unsigned instance, const BACSTAC_ADDRESS& address);
    bool IsCancelled() const { return m_progress.IsCancelled(); }
    void LogSummary() const {
        LogInf("Scan: %zu devices, %zu objects, %zu failures", m_counter - m_failedDevices, m_objects,
               m_failedDevices + m_failedObjects);
    }
    const CBACnetDir& GetResult() const { return m_result; }

private:
    void ReadVendor(CBACnetDev& device);
    bool ReadObjectList(const CBACnetDev& device, std::vector<BACSTAC_OBJECT_ID>& objects, ScannedDevice& outcome);
    void ReadObjects(CBACnetDev& device, const std::vector<BACSTAC_OBJECT_ID>& objects);

    CBacGeneral& m_bacnet;
    IProgress& m_progress;
    const std::size_t m_deviceCount;
    std::size_t m_counter = 0; // of devices, the one in work included
    std::size_t m_failedDevices = 0;
    std::size_t m_objects = 0;
    std::size_t m_failedObjects = 0;
    std::string m_heading;
    CBACnetDir m_result; // nobody else sees a half scan, whatever is served meanwhile
};

// By the address, since the library need not know the device yet. Without an answer the vendor stays 0.
void CScan::ReadVendor(CBACnetDev& device) {
    std::uint32_t vendor = 0;
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_UNSIGNED, &vendor, sizeof vendor, 1};
    if (m_bacnet.ReadProperty(device.GetAddr(), {OBJ_DEVICE, device.GetInst()}, PROP_VENDOR_IDENTIFIER,
                              BACSTAC_NO_INDEX, contents, nullptr) == BACSTAC_OK)
        device.SetVendorId(vendor);
}

bool CScan::ReadObjectList(const CBACnetDev& device, std::vector<BACSTAC_OBJECT_ID>& objects, ScannedDevice& outcome) {
    unsigned count = 0;
    outcome.status = m_bacnet.ReadObjectList(device.GetAddr(), nullptr, &count, &outcome.error);
    if (outcome.status != BACSTAC_OK) {
        LogErr("Failure reading object count on device %u", device.GetInst());
        return false;
    }
    objects.resize(count);
    outcome.status = m_bacnet.ReadObjectList(device.GetAddr(), objects.data(), &count, &outcome.error);
    if (outcome.status != BACSTAC_OK) {
        LogErr("Failure reading object list on device %u", device.GetInst());
        return false;
    }
    objects.resize(std::min<std::size_t>(count, objects.size()));
    return true;
}

void CScan::ReadObjects(CBACnetDev& device, const std::vector<BACSTAC_OBJECT_ID>& objects) {
    device.Reserve(objects.size());
    std::string typeName;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        CBACnetDir::GetObjTypeName(objects[i].Type, typeName, device.GetVendorId());
        m_progress.SetProgress(m_heading + "Reading (" + typeName + ", " + std::to_string(objects[i].Instance) +
                                   ") name & description",
                               static_cast<unsigned>(i * 100 / objects.size()));
        if (IsCancelled())
            return;
        CBACnetObj object;
        object.SetId(objects[i]);
        if (ReadObjectInfo(device, object))
            device.AddObj(std::move(object));
        else
            ++m_failedObjects;
    }
}

ScannedDevice CScan::ScanDevice(unsigned instance, const BACSTAC_ADDRESS& address) {
    CBACnetDev device;
    device.SetInst(instance);
    device.SetAddr(address);
    ReadVendor(device);
    ++m_counter;
    m_heading = "Device " + std::to_string(instance) + " (" + std::to_string(m_counter) + "/" +
                std::to_string(m_deviceCount) + ")\r\n";
    m_progress.SetProgress(m_heading + "Reading object list", 0);
    ScannedDevice outcome{.device = instance};
    if (std::vector<BACSTAC_OBJECT_ID> objects; ReadObjectList(device, objects, outcome)) {
        ReadObjects(device, objects);
        outcome.objects = device.GetObjects().size();
        m_objects += outcome.objects;
        m_result.AddDev(device);
    } else {
        ++m_failedDevices;
    }
    return outcome;
}

} // namespace

bool ScanDevices(CBacGeneral& bacnet, const DeviceAddresses& devices, CBACnetDir& directory, IProgress& progress,
                 std::vector<ScannedDevice>* scanned) {
    CScan scan(bacnet, progress, devices.size());
    for (const auto& [instance, address] : devices) {
        const ScannedDevice outcome = scan.ScanDevice(instance, address);
        if (scanned != nullptr)
            scanned->push_back(outcome);
        if (scan.IsCancelled())
            return false;
    }
    directory.AddDir(scan.GetResult());
    scan.LogSummary();
    return true;
}
