// Typed values. The creator of a CPropertyValue owns it and deletes it through the virtual destructor. One thread at a
// time uses one value.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Export.h"
#include "api/bacnet/Types.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace jason {
class value_t;
}

// Contents that own their buffer. Fresh contents have data type -1 and count 0. The buffer is not touched before it is
// used.
class BCN_API CPropertyContents : public BACSTAC_PROPERTY_CONTENTS {
public:
    explicit CPropertyContents(unsigned size = BACSTAC_CONTENTS_SIZE, void const* data = nullptr);
    CPropertyContents(const CPropertyContents& other);
    CPropertyContents& operator=(const CPropertyContents& other);
    ~CPropertyContents();

    void* GetBufferPtr() const { return Buffer; }
    unsigned GetBufferSize() const { return BufferSize; }
    unsigned GetElementCnt() const { return ElementCount; }
    BACSTAC_DATA_TYPE GetDataType() const { return DataType; }
};

// Memory that a raw structure needs behind it; freed with the heap, which has to live as long as the structure.
class BCN_API CHeap {
public:
    CHeap();
    CHeap(const CHeap&) = delete;
    CHeap& operator=(const CHeap&) = delete;
    ~CHeap();
    void* Allocate(std::size_t size); // zeroed, aligned for any record; never null

private:
    std::vector<std::unique_ptr<std::max_align_t[]>> m_blocks;
    std::size_t m_used = 0;
    std::size_t m_capacity = 0;
};

class BCN_API CPropertyValue {
public:
    // null when no value can be made (a proprietary property with dataType -1). dataType -1: the type that the standard
    // gives the property. count: -1 as the standard defines it, 1 a single element, 0 a list.
    static CPropertyValue* CreateValue(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                                       BACSTAC_DATA_TYPE dataType, int count);

    virtual ~CPropertyValue();
    virtual bool IsCollection() const = 0;
    virtual CPropertyValue* Clone() const = 0;
    virtual BACSTAC_DATA_TYPE GetDataType() const = 0;
    virtual unsigned GetDataSize() const = 0; // bytes that WriteTo needs
    virtual void* GetDataPtr() = 0;
    virtual bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) = 0;
    virtual bool ReadFrom(void const* data) = 0;
    virtual bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const = 0;
    virtual bool WriteTo(void* data, CHeap& heap) const = 0;
    virtual bool Encode(jason::value_t& value) const = 0;
    virtual bool Decode(jason::value_t const& value) = 0;

    BACSTAC_PROPERTY_ID GetPropId() const { return m_property; }
    BACSTAC_OBJECT_TYPE GetObjType() const { return m_objectType; }
    void SetPropId(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property);
    std::string GetPropName() const;
    std::string GetTypeName() const; // a list's is its element type's
    std::string ToText(int arrayIndex) const;

protected:
    CPropertyValue() = default;
    CPropertyValue(const CPropertyValue&) = default;
    CPropertyValue& operator=(const CPropertyValue&) = default;

private:
    BACSTAC_OBJECT_TYPE m_objectType = OBJ_NO_TYPE;
    BACSTAC_PROPERTY_ID m_property = PROP_NO_PROPERTY;
};
