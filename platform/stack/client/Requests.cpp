// The request builders over the services of the process's client.
#include "api/bacnet/Requests.h"
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "platform/stack/client/Status.h"

#include <set>
#include <utility>

// ---- CRPMRequest ----------------------------------------------------------------------------------------------------

CRPMRequest::CRPMRequest(unsigned capacity)
    : m_capacity(capacity), m_manyObjects(false), m_property(0), m_arrayIndex(BACSTAC_NO_INDEX) {}

CRPMRequest::CRPMRequest(unsigned capacity, BACSTAC_PROPERTY_ID property, int arrayIndex)
    : m_capacity(capacity), m_manyObjects(true), m_property(property), m_arrayIndex(arrayIndex) {}

void CRPMRequest::AppendItem(BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property, int arrayIndex,
                             void* buffer, unsigned size) {
    m_objects.push_back(object);
    m_items.push_back({property, arrayIndex, 0, {-1, buffer, size, 0}, {}});
}

bool CRPMRequest::Append(BACSTAC_PROPERTY_ID property, int arrayIndex, void* buffer, unsigned size) {
    if (m_manyObjects || IsFull())
        return false;
    AppendItem({}, property, arrayIndex, buffer, size);
    return true;
}

bool CRPMRequest::Append(BACSTAC_OBJECT_ID const& object, void* buffer, unsigned size) {
    if (!m_manyObjects || IsFull())
        return false;
    AppendItem(object, m_property, m_arrayIndex, buffer, size);
    return true;
}

bool CRPMRequest::Execute(unsigned device, BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object) {
    if (!m_manyObjects)
        m_objects.assign(m_items.size(), object);
    return Execute(device, address);
}

bool CRPMRequest::Execute(unsigned device, BACSTAC_ADDRESS const& address) {
    Error = {};
    for (BACSTAC_READ_RESULT_ITEM& item : m_items)
        item.Success = 0;
    Status = BACnet == nullptr ? BACSTAC_STATUS_SHUTDOWN
                               : BACnet->ReadPropertyMultiple(device, address, m_objects.data(), m_items.data(),
                                                              GetItemCnt(), &Error);
    return Status == BACSTAC_OK;
}

unsigned CRPMRequest::GetItemCnt() const {
    return static_cast<unsigned>(m_items.size());
}

bool CRPMRequest::IsFull() const {
    return m_items.size() >= m_capacity;
}

BACSTAC_READ_RESULT_ITEM* CRPMRequest::GetResult(unsigned index) {
    return index < m_items.size() ? &m_items[index] : nullptr;
}

bool CRPMRequest::GetObjId(unsigned index, BACSTAC_OBJECT_ID& object) const {
    if (index >= m_objects.size())
        return false;
    object = m_objects[index];
    return true;
}

void CRPMRequest::Clear() {
    m_objects.clear();
    m_items.clear();
}

bool CRPMRequest::CanFallbackToRP(BACSTAC_STATUS status, BACSTAC_ERROR const& error) {
    return bacnet::CanReadSingly(status, error);
}

// ---- CWPMRequest ----------------------------------------------------------------------------------------------------

CWPMRequest::CWPMRequest(unsigned capacity) : m_capacity(capacity) {}

bool CWPMRequest::Append(BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents,
                         int priority) {
    if (IsFull())
        return false;
    m_values.push_back({property, arrayIndex, contents, priority});
    return true;
}

bool CWPMRequest::Execute(unsigned device, BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object) {
    Error = {};
    Status = BACnet == nullptr
                 ? BACSTAC_STATUS_SHUTDOWN
                 : BACnet->WritePropertyMultiple(device, address, object, m_values.data(), GetItemCnt(), &Error);
    return Status == BACSTAC_OK;
}

unsigned CWPMRequest::GetItemCnt() const {
    return static_cast<unsigned>(m_values.size());
}

bool CWPMRequest::IsFull() const {
    return m_values.size() >= m_capacity;
}

void CWPMRequest::Clear() {
    m_values.clear();
}

// ---- CEventInfoService ----------------------------------------------------------------------------------------------

CEventInfoService::CEventInfoService(unsigned capacity) : m_capacity(capacity) {}

CEventInfoService::~CEventInfoService() = default;

// Each page goes on behind the last event of the one before. A device that never ends, or goes round in a circle, is
// left after what it has told so far.
BACSTAC_STATUS CEventInfoService::Call(unsigned device) {
    constexpr unsigned maxPages = 10000;
    Error = {};
    std::vector<BACSTAC_EVENT_SUMMARY> page(m_capacity);
    std::set<std::pair<std::uint32_t, std::uint32_t>> lastOnes;
    BACSTAC_OBJECT_ID last{};
    bool more = true;
    for (unsigned pages = 0; more && pages < maxPages; ++pages) {
        unsigned count = 0;
        more = false;
        Status = BACnet == nullptr ? BACSTAC_STATUS_SHUTDOWN
                                   : BACnet->GetEventInformation(device, pages == 0 ? nullptr : &last, page.data(),
                                                                 m_capacity, &count, &more, &Error);
        if (Status != BACSTAC_OK)
            return Status;
        if (count == 0 || count > m_capacity)
            break;
        last = page[count - 1].ObjectId;
        if (!lastOnes.emplace(last.Type, last.Instance).second)
            break;
        for (unsigned i = 0; i < count; ++i)
            OnEvent(page[i]);
    }
    if (more)
        ::LogInf("GetEventInformation: device %u says that it has more events, but gives none", device);
    return Status;
}
