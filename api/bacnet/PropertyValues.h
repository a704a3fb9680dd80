// The typed values by type. Each keeps its record as a public member, or what takes its place; forms read and write it
// there. CPropertyValue::CreateValue makes them.
#pragma once

#include "api/bacnet/MoreRecords.h"
#include "api/bacnet/PropertyValue.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bacnet {
struct TypeInfo;
}

// The record of a type with the values that a new one has: dates unspecified, references to present-value of
// analog-input 0 without device and index, and so on. record has room for the type's size.
BCN_API void InitRecord(BACSTAC_DATA_TYPE type, void* record);

class BCN_API CPVNull : public CPVElement {
public:
    void Assign(const CPVNull&) {}
    CPropertyValue* Clone() const override { return new CPVNull(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_NULL; }
    void* GetDataPtr() override { return nullptr; }
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override { return 1; }
    unsigned ReferredSize() const override { return 0; }
};

// A value whose record refers to nothing.
class BCN_API CPVPlain : public CPVElement {
public:
    BACSTAC_DATA_TYPE GetDataType() const override { return m_type; }
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override { return m_size; }
    unsigned ReferredSize() const override { return 0; }

protected:
    CPVPlain(BACSTAC_DATA_TYPE type, unsigned size) : m_type(type), m_size(size) {}
    virtual const void* Record() const = 0;

private:
    BACSTAC_DATA_TYPE m_type;
    unsigned m_size;
};

template <typename Type, BACSTAC_DATA_TYPE Number>
class CPVRecord : public CPVPlain {
public:
    Type Value{};

    CPVRecord() : CPVPlain(Number, sizeof(Type)) { InitRecord(Number, &Value); }
    void Assign(const CPVRecord& other) { Value = other.Value; }
    CPropertyValue* Clone() const override { return new CPVRecord(*this); }
    void* GetDataPtr() override { return &Value; }

protected:
    const void* Record() const override { return &Value; }
};

using CPVBoolean = CPVRecord<std::uint8_t, TYPE_BOOLEAN>;
using CPVUnsigned = CPVRecord<std::uint32_t, TYPE_UNSIGNED>;
using CPVSigned = CPVRecord<std::int32_t, TYPE_SIGNED>;
using CPVReal = CPVRecord<float, TYPE_REAL>;
using CPVDouble = CPVRecord<double, TYPE_DOUBLE>;
using CPVBitString = CPVRecord<BACSTAC_BIT_STRING, TYPE_BIT_STRING>;
using CPVEnumerated = CPVRecord<std::uint32_t, TYPE_ENUMERATED>;
using CPVTime = CPVRecord<BACSTAC_TIME, TYPE_TIME>;
using CPVObjectId = CPVRecord<BACSTAC_OBJECT_ID, TYPE_OBJECT_ID>;
using CPVDateTime = CPVRecord<BACSTAC_DATE_TIME, TYPE_DATE_TIME>;
using CPVObjPropRef = CPVRecord<BACSTAC_OBJ_PROP_REF, TYPE_OBJ_PROP_REF>;
using CPVPropertyState = CPVRecord<BACSTAC_PROPERTY_STATE, TYPE_PROPERTY_STATE>;
using CPVDateRange = CPVRecord<BACSTAC_DATE_RANGE, TYPE_DATE_RANGE>;
using CPVWeekNDay = CPVRecord<BACSTAC_WEEK_N_DAY, TYPE_WEEK_N_DAY>;
using CPVCalendarEntry = CPVRecord<BACSTAC_CALENDAR_ENTRY, TYPE_CALENDAR_ENTRY>;
using CPVRecipient = CPVRecord<BACSTAC_RECIPIENT, TYPE_RECIPIENT>;
using CPVSetpointRef = CPVRecord<BACSTAC_SETPOINT_REF, TYPE_SETPOINT_REF>;
using CPVDestination = CPVRecord<BACSTAC_DESTINATION, TYPE_DESTINATION>;
using CPVRecipientProcess = CPVRecord<BACSTAC_RECIPIENT_PROCESS, TYPE_RECIPIENT_PROCESS>;
using CPVTimeStamp = CPVRecord<BACSTAC_TIME_STAMP, TYPE_TIME_STAMP>;
using CPVPropertyRef = CPVRecord<BACSTAC_PROPERTY_REF, TYPE_PROPERTY_REF>;
using CPVAddress = CPVRecord<BACSTAC_ADDRESS, TYPE_ADDRESS>;
using CPVAddressBinding = CPVRecord<BACSTAC_ADDRESS_BINDING, TYPE_ADDRESS_BINDING>;
using CPVDevObjPropRef = CPVRecord<BACSTAC_DEV_OBJ_PROP_REF, TYPE_DEV_OBJ_PROP_REF>;
using CPVClientCOV = CPVRecord<BACSTAC_CLIENT_COV, TYPE_CLIENT_COV>;
using CPVCOVSubscription = CPVRecord<BACSTAC_COV_SUBSCRIPTION, TYPE_COV_SUBSCRIPTION>;
using CPVDevObjRef = CPVRecord<BACSTAC_DEV_OBJ_REF, TYPE_DEV_OBJ_REF>;
using CPVPrescale = CPVRecord<BACSTAC_PRESCALE, TYPE_PRESCALE>;
using CPVScale = CPVRecord<BACSTAC_SCALE, TYPE_SCALE>;
using CPVShedLevel = CPVRecord<BACSTAC_SHED_LEVEL, TYPE_SHED_LEVEL>;
using CPVError = CPVRecord<BACSTAC_ERROR_VALUE, TYPE_ERROR>;
using CPVAccumulatorRecord = CPVRecord<BACSTAC_ACCUMULATOR_RECORD, TYPE_ACCUMULATOR_RECORD>;
using CPVEPChangeOfValue = CPVRecord<BACSTAC_EP_CHANGE_OF_VALUE, TYPE_EVENT_PARAMETER_FIRST + 2>;
using CPVEPCommandFailure = CPVRecord<BACSTAC_EP_COMMAND_FAILURE, TYPE_EVENT_PARAMETER_FIRST + 3>;
using CPVEPFloatingLimit = CPVRecord<BACSTAC_EP_FLOATING_LIMIT, TYPE_EVENT_PARAMETER_FIRST + 4>;
using CPVEPOutOfRange = CPVRecord<BACSTAC_EP_OUT_OF_RANGE, TYPE_EVENT_PARAMETER_FIRST + 5>;
using CPVEPBufferReady = CPVRecord<BACSTAC_EP_BUFFER_READY, TYPE_EVENT_PARAMETER_FIRST + 10>;
using CPVEPUnsignedRange = CPVRecord<BACSTAC_EP_UNSIGNED_RANGE, TYPE_EVENT_PARAMETER_FIRST + 11>;
using CPVEPDoubleOutOfRange = CPVRecord<BACSTAC_EP_DOUBLE_OUT_OF_RANGE, TYPE_EVENT_PARAMETER_FIRST + 14>;
using CPVEPSignedOutOfRange = CPVRecord<BACSTAC_EP_SIGNED_OUT_OF_RANGE, TYPE_EVENT_PARAMETER_FIRST + 15>;
using CPVEPUnsignedOutOfRange = CPVRecord<BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, TYPE_EVENT_PARAMETER_FIRST + 16>;
using CPVEPChangeOfStatusFlags = CPVRecord<BACSTAC_EP_CHANGE_OF_STATUS_FLAGS, TYPE_EVENT_PARAMETER_FIRST + 18>;

class BCN_API CPVDate : public CPVRecord<BACSTAC_DATE, TYPE_DATE> {
public:
    static void Init(BACSTAC_DATE& date); // every field unspecified
    CPropertyValue* Clone() const override { return new CPVDate(*this); }
};

class BCN_API CPVString : public CPVElement {
public:
    std::string Value; // UTF-8, without NUL

    void Assign(const CPVString& other) { Value = other.Value; }
    CPropertyValue* Clone() const override { return new CPVString(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_STRING; }
    void* GetDataPtr() override { return Value.data(); }
    bool ReadFrom(void const* data) override;
    using CPVElement::ReadFrom;
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override { return static_cast<unsigned>(Value.size() + 1); }
    unsigned ReferredSize() const override { return 0; }
};

class BCN_API CPVOctetString : public CPVElement {
public:
    std::vector<unsigned char> Value;

    void Assign(unsigned size, const void* data);
    void Assign(const CPVOctetString& other) { Value = other.Value; }
    CPropertyValue* Clone() const override { return new CPVOctetString(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_OCTET_STRING; }
    void* GetDataPtr() override { return Value.data(); }
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override;
    unsigned ReferredSize() const override { return 0; }
};

// A value whose type it tells itself. Its data type is -2; contents that it writes have the type of what it holds.
class BCN_API CPVAnyPrimitive : public CPropertyValue {
public:
    CPVAnyPrimitive() = default;
    CPVAnyPrimitive(const CPVAnyPrimitive& other);
    CPVAnyPrimitive& operator=(const CPVAnyPrimitive& other) = delete; // Assign

    void Clear();
    void Assign(const CPVAnyPrimitive& other);
    void Assign(CPropertyValue* value);                        // takes ownership; null clears
    CPropertyValue* GetValue() const { return m_value.get(); } // null when empty, or when it holds octets only
    BACSTAC_DATA_TYPE GetValueType() const;                    // -1 when empty

    bool IsCollection() const override { return false; }
    CPropertyValue* Clone() const override { return new CPVAnyPrimitive(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_ANY_PRIMITIVE; }
    unsigned GetDataSize() const override;
    void* GetDataPtr() override { return m_value ? m_value->GetDataPtr() : nullptr; }
    bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) override;
    bool ReadFrom(void const* data) override;
    bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const override;
    bool WriteTo(void* data, CHeap& heap) const override;
    // As an element: a BACSTAC_ANY_VALUE.
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override { return sizeof(BACSTAC_ANY_VALUE); }
    unsigned ReferredSize() const override;

protected:
    void OnPropId() override;

private:
    std::unique_ptr<CPropertyValue> m_value; // a CPropertyValueList for several primitives
    // Octets that are no primitives, as they were encoded; there may be none of them, which is not the same as no
    // value.
    std::optional<std::vector<unsigned char>> m_raw;
};

// A value whose record refers to lists, strings or values of any type. Those are values of their own, the parts, in the
// order of the type's table; what the record says about them (counts, offsets) holds only while it is written.
class BCN_API CPVStructure : public CPVElement {
public:
    CPVStructure(const CPVStructure& other);
    CPVStructure& operator=(const CPVStructure& other) = delete; // Assign

    BACSTAC_DATA_TYPE GetDataType() const override { return m_type; }
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override;
    unsigned ReferredSize() const override;

protected:
    explicit CPVStructure(BACSTAC_DATA_TYPE type);
    virtual const void* Record() const = 0;
    CPropertyValue& Part(unsigned index) const { return *m_parts[index]; }
    void AssignParts(const CPVStructure& other);
    void OnPropId() override;

private:
    BACSTAC_DATA_TYPE m_type;
    std::vector<std::unique_ptr<CPropertyValue>> m_parts; // lists, strings and any-values
};

template <typename Type, BACSTAC_DATA_TYPE Number>
class CPVStructureOf : public CPVStructure {
public:
    Type Value{};

    CPVStructureOf() : CPVStructure(Number) { InitRecord(Number, &Value); }
    void Assign(const CPVStructureOf& other) {
        Value = other.Value;
        AssignParts(other);
    }
    void* GetDataPtr() override { return &Value; }

protected:
    const void* Record() const override { return &Value; }
    CPropertyValueList& ListPart(unsigned index) const { return static_cast<CPropertyValueList&>(Part(index)); }
    CPVAnyPrimitive& AnyPart(unsigned index) const { return static_cast<CPVAnyPrimitive&>(Part(index)); }
};

class BCN_API CPVTimeValue : public CPVStructureOf<BACSTAC_TIME_VALUE, TYPE_TIME_VALUE> {
public:
    CPVAnyPrimitive& GetValue() const { return AnyPart(0); }
    CPropertyValue* Clone() const override { return new CPVTimeValue(*this); }
};

class BCN_API CPVSpecialEvent : public CPVStructureOf<BACSTAC_SPECIAL_EVENT, TYPE_SPECIAL_EVENT> {
public:
    CPropertyValueList& GetTimeValues() const { return ListPart(0); } // of CPVTimeValue
    CPropertyValue* Clone() const override { return new CPVSpecialEvent(*this); }
};

class BCN_API CPVReadAccessSpec : public CPVStructureOf<BACSTAC_READ_ACCESS_SPEC, TYPE_READ_ACCESS_SPEC> {
public:
    CPropertyValueList& GetProperties() const { return ListPart(0); } // of CPVPropertyRef
    CPropertyValue* Clone() const override { return new CPVReadAccessSpec(*this); }
};

class BCN_API CPVReadResultItem : public CPVStructureOf<BACSTAC_READ_ACCESS_ITEM, TYPE_READ_RESULT_ITEM> {
public:
    CPVAnyPrimitive& GetValue() const { return AnyPart(0); } // counts while Value.Choice is BACSTAC_ITEM_VALUE
    CPropertyValue* Clone() const override { return new CPVReadResultItem(*this); }
};

class BCN_API CPVReadAccessResult : public CPVStructureOf<BACSTAC_READ_ACCESS_RESULT, TYPE_READ_ACCESS_RESULT> {
public:
    CPropertyValueList& GetItems() const { return ListPart(0); } // of CPVReadResultItem
    CPropertyValue* Clone() const override { return new CPVReadAccessResult(*this); }
};

class BCN_API CPVActionCommand : public CPVStructureOf<BACSTAC_ACTION_COMMAND, TYPE_ACTION_COMMAND> {
public:
    CPVAnyPrimitive& GetValue() const { return AnyPart(0); }
    CPropertyValue* Clone() const override { return new CPVActionCommand(*this); }
};

class BCN_API CPVEPChangeOfBitString
    : public CPVStructureOf<BACSTAC_EP_CHANGE_OF_BITSTRING, TYPE_EVENT_PARAMETER_FIRST + 0> {
public:
    CPropertyValueList& GetValues() const { return ListPart(0); } // of CPVBitString
    CPropertyValue* Clone() const override { return new CPVEPChangeOfBitString(*this); }
};

class BCN_API CPVEPChangeOfState : public CPVStructureOf<BACSTAC_EP_CHANGE_OF_STATE, TYPE_EVENT_PARAMETER_FIRST + 1> {
public:
    CPropertyValueList& GetValues() const { return ListPart(0); } // of CPVPropertyState
    CPropertyValue* Clone() const override { return new CPVEPChangeOfState(*this); }
};

class BCN_API CPVEPChangeOfLifeSafety
    : public CPVStructureOf<BACSTAC_EP_CHANGE_OF_LIFE_SAFETY, TYPE_EVENT_PARAMETER_FIRST + 8> {
public:
    CPropertyValueList& GetLifeSafetyAlarmValues() const { return ListPart(0); } // of CPVEnumerated
    CPropertyValueList& GetAlarmValues() const { return ListPart(1); }           // of CPVEnumerated
    CPropertyValue* Clone() const override { return new CPVEPChangeOfLifeSafety(*this); }
};

class BCN_API CPVEPExtended : public CPVStructureOf<BACSTAC_EP_EXTENDED, TYPE_EVENT_PARAMETER_FIRST + 9> {
public:
    CPropertyValueList& GetParameters() const { return ListPart(0); } // of CPVAnyPrimitive
    CPropertyValue* Clone() const override { return new CPVEPExtended(*this); }
};

class BCN_API CPVEPChangeOfCharacterString
    : public CPVStructureOf<BACSTAC_EP_CHANGE_OF_CHARACTERSTRING, TYPE_EVENT_PARAMETER_FIRST + 17> {
public:
    CPropertyValueList& GetAlarmValues() const { return ListPart(0); } // of CPVString
    CPropertyValue* Clone() const override { return new CPVEPChangeOfCharacterString(*this); }
};

// A constructed type that no form edits, whatever its table says: its record, and the parts. Also of parts of types.
class BCN_API CPVConstructed : public CPVStructure {
public:
    explicit CPVConstructed(BACSTAC_DATA_TYPE type);
    CPVConstructed(const CPVConstructed& other);

    CPropertyValue* Clone() const override { return new CPVConstructed(*this); }
    void* GetDataPtr() override { return m_record.data(); }

protected:
    const void* Record() const override { return m_record.data(); }

private:
    std::vector<unsigned char> m_record;
};

// A number, and the value of the parameters that go with it.
class BCN_API CPVVariant : public CPVElement {
public:
    CPVVariant& operator=(const CPVVariant& other) = delete; // Assign

    void Assign(const CPVVariant& other);
    // Null for numbers without a data type of parameters. Parameters that came with them are kept as octets then, and
    // go out again.
    CPropertyValue* GetParameters() const { return m_parameters.get(); }

    void* GetDataPtr() override { return nullptr; }
    bool Load(const bacnet::BufferView& buffer, const unsigned char* element) override;
    bool Store(bacnet::Sink& sink) const override;
    unsigned ElementSize() const override { return sizeof(BACSTAC_EVENT_PARAMETER); }
    unsigned ReferredSize() const override;

protected:
    explicit CPVVariant(BACSTAC_DATA_TYPE type);
    CPVVariant(const CPVVariant& other);
    unsigned GetNumber() const { return m_number; }
    void SetNumber(unsigned number); // the parameters become new ones of that type
    void OnPropId() override;

private:
    std::unique_ptr<CPropertyValue> NewParameters(unsigned number) const;

    const bacnet::TypeInfo* m_type;
    unsigned m_number = 0;
    std::unique_ptr<CPropertyValue> m_parameters;
    BACSTAC_DATA_TYPE m_rawType = TYPE_NONE; // TYPE_RAW or TYPE_NULL while there is no value
    std::vector<unsigned char> m_raw;
};

// Event parameters of any event type; they have data type 1000 + GetEventType.
class BCN_API CPVEventParameter : public CPVVariant {
public:
    CPVEventParameter() : CPVVariant(TYPE_EVENT_PARAMETER) {}
    unsigned GetEventType() const { return GetNumber(); }
    void SetEventType(unsigned type) { SetNumber(type); }
    CPropertyValue* Clone() const override { return new CPVEventParameter(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_EVENT_PARAMETER; }
};

// Fault parameters of any fault type; they have data type 1200 + GetFaultType.
class BCN_API CPVFaultParameter : public CPVVariant {
public:
    CPVFaultParameter() : CPVVariant(TYPE_FAULT_PARAMETER) {}
    unsigned GetFaultType() const { return GetNumber(); }
    void SetFaultType(unsigned type) { SetNumber(type); }
    CPropertyValue* Clone() const override { return new CPVFaultParameter(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return TYPE_FAULT_PARAMETER; }
};

// One day of a weekly schedule: a list of CPVTimeValue that is an element of data type 29. One action list likewise.
class BCN_API CPVNestedList : public CPropertyValueList {
public:
    CPVNestedList(BACSTAC_DATA_TYPE type, BACSTAC_DATA_TYPE elementType)
        : CPropertyValueList(elementType), m_type(type) {}
    CPropertyValue* Clone() const override { return new CPVNestedList(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return m_type; }
    // As one element of its own type; the elements' types are CPropertyValueList's matter.
    unsigned GetDataSize() const override { return ElementSize() + ReferredSize(); }
    bool ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) override;
    bool ReadFrom(void const* data) override;
    bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const override;
    bool WriteTo(void* data, CHeap& heap) const override;
    bool Encode(jason::value_t& value) const override { return CPropertyValue::Encode(value); }
    bool Decode(jason::value_t const& value) override { return CPropertyValue::Decode(value); }

private:
    BACSTAC_DATA_TYPE m_type;
};
