#include "host/bacnet/Scan.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Requests.h"
#include "host/bacnet/Call.h"
#include "platform/stack/client/BacnetClient.h"

#include <algorithm>
#include <array>

namespace {

constexpr BACSTAC_PROPERTY_ID PRIORITY_ARRAY = 87;
constexpr unsigned BATCH = 20; // objects in one request
constexpr unsigned TEXT_SIZE = 1024;

using Objects = std::vector<BACSTAC_OBJECT_ID>;

bool ReadObjects(CBacnetCall& call, unsigned device, const BACSTAC_ADDRESS& address, Objects& objects) {
    constexpr unsigned MAY_GROW = 100; // objects that are added between the two calls
    BACSTAC_ERROR error{};
    unsigned count = 0;
    const std::string what = DeviceName(device) + ", object-list";
    if (!call.Succeeded(call.Stack().ReadObjectList(address, nullptr, &count, &error), error, what))
        return false;
    objects.resize(count + MAY_GROW);
    count = static_cast<unsigned>(objects.size());
    if (!call.Succeeded(call.Stack().ReadObjectList(address, objects.data(), &count, &error), error, what))
        return false;
    objects.resize(std::min<std::size_t>(count, objects.size()));
    return true;
}

// One property of many objects, by as few requests as the device manages.
class CColumn {
public:
    CColumn(CBacnetCall& call, unsigned device, const BACSTAC_ADDRESS& address, BACSTAC_PROPERTY_ID property, int index)
        : m_call(call), m_device(device), m_address(address), m_property(property), m_index(index) {}

    // take(place in objects, contents) for each object that has the property.
    template <class Take>
    bool Read(const Objects& objects, Take take) {
        for (std::size_t begin = 0; begin < objects.size(); begin += BATCH) {
            const std::size_t end = std::min<std::size_t>(begin + BATCH, objects.size());
            CRPMRequest request(BATCH, m_property, m_index);
            for (std::size_t i = begin; i < end; ++i)
                request.Append(objects[i], m_buffers[i - begin].data(), TEXT_SIZE);
            if (m_call.IsCancelled())
                return m_call.Fail("nobody waits for the result any more");
            if (!m_isSingle && request.Execute(m_device, m_address)) {
                for (unsigned i = 0; i < request.GetItemCnt(); ++i) {
                    if (const BACSTAC_READ_RESULT_ITEM& item = *request.GetResult(i); item.Success != 0)
                        take(begin + i, item.Contents);
                }
                continue;
            }
            m_isSingle = m_isSingle || CRPMRequest::CanFallbackToRP(request.Status, request.Error);
            if (!m_isSingle)
                return m_call.Succeeded(request.Status, request.Error, DeviceName(m_device));
            if (!ReadSingly(objects, begin, end, take))
                return false;
        }
        return true;
    }

private:
    // What the device refuses is missing; silence ends the scan.
    template <class Take>
    bool ReadSingly(const Objects& objects, std::size_t begin, std::size_t end, Take take) {
        for (std::size_t i = begin; i < end; ++i) {
            BACSTAC_PROPERTY_CONTENTS contents{TYPE_NONE, m_buffers[0].data(), TEXT_SIZE, 0};
            BACSTAC_ERROR error{};
            const BACSTAC_STATUS status =
                m_call.Stack().ReadProperty(m_device, objects[i], m_property, m_index, contents, &error);
            if (status == BACSTAC_OK)
                take(i, contents);
            else if (status < BACSTAC_STATUS_ERROR && status != BACSTAC_STATUS_BUFFER_TOO_SMALL)
                return m_call.Succeeded(status, error, PointName(m_device, objects[i]));
        }
        return true;
    }

    CBacnetCall& m_call;
    const unsigned m_device;
    const BACSTAC_ADDRESS m_address;
    const BACSTAC_PROPERTY_ID m_property;
    const int m_index;
    bool m_isSingle = false;
    std::array<std::array<char, TEXT_SIZE>, BATCH> m_buffers{};
};

std::string TextOf(const BACSTAC_OBJECT_ID& object, BACSTAC_PROPERTY_ID property, BACSTAC_PROPERTY_CONTENTS contents) {
    if (!ConvertRaw(contents, object.Type, property) || contents.DataType != TYPE_STRING)
        return {};
    return ansi_to_utf8(static_cast<const char*>(contents.Buffer));
}

} // namespace

bool ScanDevice(CBacnetCall& call, unsigned device, CBACnetDev& scanned) {
    const BACSTAC_ADDRESS address = call.Stack().GetDevAddr(device);
    Objects objects;
    if (!ReadObjects(call, device, address, objects))
        return false;
    std::vector<CBACnetObj> entries(objects.size());
    Objects candidates; // that may have a priority array
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        entries[i].SetId(objects[i]);
        entries[i].SetCommandable(CBACnetDir::IsObjectTypeAlwaysCommandable(objects[i].Type));
        if (!entries[i].IsCommandable() && CBACnetDir::IsObjectTypePossiblyCommandable(objects[i].Type)) {
            candidates.push_back(objects[i]);
            places.push_back(i);
        }
    }
    CColumn names(call, device, address, PROP_OBJECT_NAME, BACSTAC_NO_INDEX);
    CColumn descriptions(call, device, address, PROP_DESCRIPTION, BACSTAC_NO_INDEX);
    CColumn arraySizes(call, device, address, PRIORITY_ARRAY, 0);
    const bool isRead = names.Read(objects, [&](std::size_t i, const auto& value) {
        entries[i].SetName(TextOf(objects[i], PROP_OBJECT_NAME, value));
    }) && descriptions.Read(objects, [&](std::size_t i, const auto& value) {
        entries[i].SetDesc(TextOf(objects[i], PROP_DESCRIPTION, value));
    }) && arraySizes.Read(candidates, [&](std::size_t i, const auto&) { entries[places[i]].SetCommandable(true); });
    if (!isRead)
        return false;
    scanned.SetInst(device);
    scanned.SetAddr(address);
    scanned.SetVendorId(call.Stack().GetDevVendorId(device));
    scanned.Reserve(entries.size());
    for (CBACnetObj& entry : entries)
        scanned.AddObj(std::move(entry));
    return true;
}
