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

namespace bacnet {
struct BufferView;
class Sink;
} // namespace bacnet

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
    // null when no value can be made: a proprietary property with dataType -1, a type without values (log records).
    // dataType -1: the type that the standard gives the property. count: -1 as the standard defines it, 1 a single
    // element, 0 a list.
    static CPropertyValue* CreateValue(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                                       BACSTAC_DATA_TYPE dataType, int count);

    virtual ~CPropertyValue();
    virtual bool IsCollection() const = 0;
    virtual CPropertyValue* Clone() const = 0;
    virtual BACSTAC_DATA_TYPE GetDataType() const = 0; // of the elements, for a collection
    virtual unsigned GetDataSize() const = 0;          // bytes that WriteTo needs
    // The record that the value keeps, in the layout of its type; null when it keeps none of its own (collections, a
    // value of any type).
    virtual void* GetDataPtr() = 0;
    // False, and the value is as it was or empty, when the contents are of another type or not whole.
    virtual bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) = 0;
    // From a record of the type; what it refers to is counted from data.
    virtual bool ReadFrom(void const* data) = 0;
    // False when the buffer is smaller than GetDataSize, and when there is no value.
    virtual bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const = 0;
    // Into GetDataSize bytes at data. What the record refers to goes there too: heap is for values that would need
    // memory elsewhere, of which there are none.
    virtual bool WriteTo(void* data, CHeap& heap) const = 0;
    // The value in the manner of JSON, and back; one is the inverse of the other. platform/stack/value/JsonForm.h tells
    // the form of each type; a collection is an array of its elements. False, with the value as it was, when an
    // element is missing, and when what is to be decoded is none of this type.
    virtual bool Encode(jason::value_t& value) const;
    virtual bool Decode(jason::value_t const& value);

    BACSTAC_PROPERTY_ID GetPropId() const { return m_property; }
    BACSTAC_OBJECT_TYPE GetObjType() const { return m_objectType; }
    void SetPropId(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property);
    std::string GetPropName() const; // empty for a value of no property
    std::string GetTypeName() const; // a list's is its element type's
    // As PrintContents prints it for the value's property. Empty when there is no value.
    std::string ToText(int arrayIndex) const;

    // ---- what the family's classes ask of one another

    // Takes the element that lies there, with what it refers to in buffer.
    virtual bool Load(const bacnet::BufferView& buffer, const unsigned char* element) = 0;
    // Appends itself as an element.
    virtual bool Store(bacnet::Sink& sink) const = 0;
    // Bytes of the element, and at most of what it refers to.
    virtual unsigned ElementSize() const = 0;
    virtual unsigned ReferredSize() const = 0;

protected:
    CPropertyValue() = default;
    CPropertyValue(const CPropertyValue&) = default;
    CPropertyValue& operator=(const CPropertyValue&) = default;
    virtual void OnPropId() {} // the property changed: nested values follow

private:
    BACSTAC_OBJECT_TYPE m_objectType = OBJ_NO_TYPE;
    BACSTAC_PROPERTY_ID m_property = PROP_NO_PROPERTY;
};

// A value that is one element.
class BCN_API CPVElement : public CPropertyValue {
public:
    bool IsCollection() const override { return false; }
    unsigned GetDataSize() const override { return ElementSize() + ReferredSize(); }
    bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) override;
    bool ReadFrom(void const* data) override;
    bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const override;
    bool WriteTo(void* data, CHeap& heap) const override;
};

// A list or an array of values of one type. Elements are owned.
class BCN_API CPropertyValueList : public CPropertyValue {
public:
    // count: 0 a list of any length, else the fixed size of an array.
    explicit CPropertyValueList(BACSTAC_DATA_TYPE elementType, int count = 0);
    CPropertyValueList(const CPropertyValueList& other);
    CPropertyValueList& operator=(const CPropertyValueList& other) = delete; // Assign

    void Assign(const CPropertyValueList& other); // elements and property; the fixed size stays
    unsigned GetElementCnt() const { return static_cast<unsigned>(m_elements.size()); }
    unsigned GetFixedCnt() const { return m_fixedCount; }   // 0: any length
    CPropertyValue* GetElement(unsigned index) const;       // null past the end and where none was set
    bool SetElement(unsigned index, CPropertyValue* value); // takes ownership, also when it returns false
    CPropertyValue* CreateElement() const; // a new value of the element type, the caller's; null for unknown types
    void Reset(unsigned count);            // empty places for SetElement

    bool IsCollection() const override { return true; }
    CPropertyValue* Clone() const override;
    BACSTAC_DATA_TYPE GetDataType() const override { return m_elementType; }
    unsigned GetDataSize() const override;
    void* GetDataPtr() override { return nullptr; }
    bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) override;
    bool ReadFrom(void const* data) override; // from one element: an array in memory does not say how long it is
    bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const override;
    bool WriteTo(void* data, CHeap& heap) const override;
    bool Encode(jason::value_t& value) const override;
    bool Decode(jason::value_t const& value) override;

    // As an element: a BACSTAC_LIST.
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override;
    unsigned ReferredSize() const override;
    // The elements themselves.
    bool LoadElements(const bacnet::BufferView& buffer, std::uint32_t offset, std::uint32_t count);
    bool StoreElements(bacnet::Sink& sink) const;

protected:
    void OnPropId() override;

private:
    BACSTAC_DATA_TYPE m_elementType;
    unsigned m_fixedCount;
    std::vector<std::unique_ptr<CPropertyValue>> m_elements;
};
