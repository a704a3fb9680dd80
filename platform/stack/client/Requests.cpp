// The request builders over the services of the process's client.
#include "api/bacnet/Requests.h"
#include "api/bacnet/BacGeneral.h"
#include "platform/stack/client/Status.h"

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

BACSTAC_STATUS CEventInfoService::Call(unsigned device) {
    Error = {};
    std::vector<BACSTAC_EVENT_SUMMARY> page(m_capacity);
    BACSTAC_OBJECT_ID last{};
    const BACSTAC_OBJECT_ID* lastReceived = nullptr;
    for (bool more = true; more;) {
        unsigned count = 0;
        more = false;
        Status = BACnet == nullptr ? BACSTAC_STATUS_SHUTDOWN
                                   : BACnet->GetEventInformation(device, lastReceived, page.data(), m_capacity, &count,
                                                                 &more, &Error);
        if (Status != BACSTAC_OK)
            break;
        for (unsigned i = 0; i < count && i < m_capacity; ++i)
            OnEvent(page[i]);
        if (count == 0 || count > m_capacity)
            break; // "more" without an event would go on for ever
        if (lastReceived != nullptr && page[count - 1].ObjectId == last)
            break; // and so would the same page again
        last = page[count - 1].ObjectId;
        lastReceived = &last;
    }
    return Status;
}
