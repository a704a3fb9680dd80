// Request builders: ReadPropertyMultiple, WritePropertyMultiple and GetEventInformation. An object is used by one
// thread at a time. Buffers and contents belong to the caller and outlive Execute.
#pragma once

#include "api/bacnet/Export.h"
#include "api/bacnet/Services.h"
#include "api/bacnet/Types.h"

#include <vector>

class BCN_API CRPMRequest {
public:
    // Where the caller reads why the last Execute failed.
    BACSTAC_STATUS Status = BACSTAC_OK;
    BACSTAC_ERROR Error = {};

    // Many properties of one object.
    explicit CRPMRequest(unsigned capacity);
    // One property of many objects.
    CRPMRequest(unsigned capacity, BACSTAC_PROPERTY_ID property, int arrayIndex);

    // False when the request is full or was made for the other form.
    bool Append(BACSTAC_PROPERTY_ID property, int arrayIndex, void* buffer, unsigned size);
    bool Append(BACSTAC_OBJECT_ID const& object, void* buffer, unsigned size);

    // False when the request failed as a whole. A property that failed shows in its item's Success only.
    bool Execute(unsigned device, BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object);
    bool Execute(unsigned device, BACSTAC_ADDRESS const& address);

    unsigned GetItemCnt() const;
    bool IsFull() const;
    BACSTAC_READ_RESULT_ITEM* GetResult(unsigned index); // null past the end
    bool GetObjId(unsigned index, BACSTAC_OBJECT_ID& object) const;
    void Clear();

    // Whether single ReadProperty calls may do what a failed multiple read could not. Never after a time-out.
    static bool CanFallbackToRP(BACSTAC_STATUS status, BACSTAC_ERROR const& error);

private:
    void AppendItem(BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property, int arrayIndex, void* buffer,
                    unsigned size);

    unsigned m_capacity;
    bool m_manyObjects;
    BACSTAC_PROPERTY_ID m_property;
    int m_arrayIndex;
    std::vector<BACSTAC_OBJECT_ID> m_objects;
    std::vector<BACSTAC_READ_RESULT_ITEM> m_items;
};

class BCN_API CWPMRequest {
public:
    BACSTAC_STATUS Status = BACSTAC_OK;
    BACSTAC_ERROR Error = {};

    explicit CWPMRequest(unsigned capacity);
    // False when the request is full. priority -1: none.
    bool Append(BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents, int priority);
    bool Execute(unsigned device, BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object);
    unsigned GetItemCnt() const;
    bool IsFull() const;
    void Clear();

private:
    unsigned m_capacity;
    std::vector<BACSTAC_PROPERTY_VALUE> m_values;
};

// GetEventInformation with all its pages; a subclass receives each event.
class BCN_API CEventInfoService {
public:
    BACSTAC_STATUS Status = BACSTAC_OK;
    BACSTAC_ERROR Error = {};

    explicit CEventInfoService(unsigned capacity);
    virtual ~CEventInfoService();
    // capacity bounds the events that are asked for in one page. The status is also left in Status.
    BACSTAC_STATUS Call(unsigned device);

protected:
    virtual void OnEvent(BACSTAC_EVENT_SUMMARY const& event) = 0;

private:
    unsigned m_capacity;
};
