#include "platform/stack/value/ValueFactory.h"

#include "api/bacnet/PropertyValues.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/TypeTable.h"

#include <iterator>

namespace bacnet {
namespace {

template <typename Value>
CPropertyValue* Make() {
    return new Value;
}

CPropertyValue* MakeDailySchedule() {
    return new CPVNestedList(TYPE_DAILY_SCHEDULE, TYPE_TIME_VALUE);
}

CPropertyValue* MakeActionList() {
    return new CPVNestedList(TYPE_ACTION_LIST, TYPE_ACTION_COMMAND);
}

struct Maker {
    BACSTAC_DATA_TYPE Type;
    CPropertyValue* (*Make)();
};

constexpr BACSTAC_DATA_TYPE EP = TYPE_EVENT_PARAMETER_FIRST;

constexpr Maker MAKERS[] = {
    {TYPE_ANY_PRIMITIVE, Make<CPVAnyPrimitive>},
    {TYPE_NULL, Make<CPVNull>},
    {TYPE_BOOLEAN, Make<CPVBoolean>},
    {TYPE_UNSIGNED, Make<CPVUnsigned>},
    {TYPE_SIGNED, Make<CPVSigned>},
    {TYPE_REAL, Make<CPVReal>},
    {TYPE_DOUBLE, Make<CPVDouble>},
    {TYPE_OCTET_STRING, Make<CPVOctetString>},
    {TYPE_BIT_STRING, Make<CPVBitString>},
    {TYPE_ENUMERATED, Make<CPVEnumerated>},
    {TYPE_DATE, Make<CPVDate>},
    {TYPE_TIME, Make<CPVTime>},
    {TYPE_OBJECT_ID, Make<CPVObjectId>},
    {TYPE_STRING, Make<CPVString>},
    {TYPE_ANY, Make<CPVAnyPrimitive>},
    {TYPE_ADDRESS, Make<CPVAddress>},
    {TYPE_ERROR, Make<CPVError>},
    {TYPE_ACTION_LIST, MakeActionList},
    {TYPE_ACCUMULATOR_RECORD, Make<CPVAccumulatorRecord>},
    {TYPE_DATE_TIME, Make<CPVDateTime>},
    {TYPE_OBJ_PROP_REF, Make<CPVObjPropRef>},
    {TYPE_PROPERTY_STATE, Make<CPVPropertyState>},
    {TYPE_DATE_RANGE, Make<CPVDateRange>},
    {TYPE_WEEK_N_DAY, Make<CPVWeekNDay>},
    {TYPE_CALENDAR_ENTRY, Make<CPVCalendarEntry>},
    {TYPE_TIME_VALUE, Make<CPVTimeValue>},
    {TYPE_SPECIAL_EVENT, Make<CPVSpecialEvent>},
    {TYPE_DAILY_SCHEDULE, MakeDailySchedule},
    {TYPE_RECIPIENT, Make<CPVRecipient>},
    {TYPE_SETPOINT_REF, Make<CPVSetpointRef>},
    {TYPE_DESTINATION, Make<CPVDestination>},
    {TYPE_RECIPIENT_PROCESS, Make<CPVRecipientProcess>},
    {TYPE_TIME_STAMP, Make<CPVTimeStamp>},
    {TYPE_PROPERTY_REF, Make<CPVPropertyRef>},
    {TYPE_ADDRESS_BINDING, Make<CPVAddressBinding>},
    {TYPE_DEV_OBJ_PROP_REF, Make<CPVDevObjPropRef>},
    {TYPE_CLIENT_COV, Make<CPVClientCOV>},
    {TYPE_READ_ACCESS_SPEC, Make<CPVReadAccessSpec>},
    {TYPE_READ_ACCESS_RESULT, Make<CPVReadAccessResult>},
    {TYPE_EVENT_PARAMETER, Make<CPVEventParameter>},
    {TYPE_COV_SUBSCRIPTION, Make<CPVCOVSubscription>},
    {TYPE_DEV_OBJ_REF, Make<CPVDevObjRef>},
    {TYPE_PRESCALE, Make<CPVPrescale>},
    {TYPE_SCALE, Make<CPVScale>},
    {TYPE_ACTION_COMMAND, Make<CPVActionCommand>},
    {TYPE_SHED_LEVEL, Make<CPVShedLevel>},
    {TYPE_READ_RESULT_ITEM, Make<CPVReadResultItem>},
    {TYPE_FAULT_PARAMETER, Make<CPVFaultParameter>},
    {EP + 0, Make<CPVEPChangeOfBitString>},
    {EP + 1, Make<CPVEPChangeOfState>},
    {EP + 2, Make<CPVEPChangeOfValue>},
    {EP + 3, Make<CPVEPCommandFailure>},
    {EP + 4, Make<CPVEPFloatingLimit>},
    {EP + 5, Make<CPVEPOutOfRange>},
    {EP + 8, Make<CPVEPChangeOfLifeSafety>},
    {EP + 9, Make<CPVEPExtended>},
    {EP + 10, Make<CPVEPBufferReady>},
    {EP + 11, Make<CPVEPUnsignedRange>},
    {EP + 14, Make<CPVEPDoubleOutOfRange>},
    {EP + 15, Make<CPVEPSignedOutOfRange>},
    {EP + 16, Make<CPVEPUnsignedOutOfRange>},
    {EP + 17, Make<CPVEPChangeOfCharacterString>},
    {EP + 18, Make<CPVEPChangeOfStatusFlags>},
};

// Types that need no class of their own. Those of logs are never written, and the parts of notifications neither.
bool IsMadeOfTable(BACSTAC_DATA_TYPE type) {
    const TypeInfo* const info = FindType(type);
    if (info == nullptr || (info->Kind != TypeKind::sequence && info->Kind != TypeKind::choice))
        return false;
    switch (type) {
    case TYPE_LOG_ITEM:
    case TYPE_LOG_RECORD:
    case TYPE_EVENT_NOTIF:
    case TYPE_EVENT_LOG_RECORD:
    case TYPE_LOG_MULTIPLE_RECORD:
    case TYPE_AUDIT_LOG_RECORD:
    case PART_LOG_DATUM:
    case PART_LOG_MULTIPLE_DATA:
    case PART_EVENT_LOG_DATUM:
    case PART_AUDIT_LOG_DATUM:
        return false;
    default:
        return type < TYPE_NOTIFICATION_PARAMETER_FIRST || type >= TYPE_FAULT_PARAMETER_FIRST;
    }
}

struct ArraySize {
    BACSTAC_PROPERTY_ID Property;
    unsigned Size;
};

constexpr ArraySize ARRAY_SIZES[] = {
    {86, 3},   // priority, of a notification class
    {87, 16},  // priority-array
    {123, 7},  // weekly-schedule
    {130, 3},  // event-time-stamps
    {351, 3},  // event-message-texts
    {352, 3},  // event-message-texts-config
    {396, 7},  // state-change-values
    {430, 16}, // command-time-array
    {434, 16}, // value-source-array
};

} // namespace

std::unique_ptr<CPropertyValue> NewValue(BACSTAC_DATA_TYPE type) {
    for (const Maker& maker : MAKERS) {
        if (maker.Type == type)
            return std::unique_ptr<CPropertyValue>(maker.Make());
    }
    return IsMadeOfTable(type) ? std::make_unique<CPVConstructed>(type) : nullptr;
}

unsigned FixedArraySize(BACSTAC_PROPERTY_ID property) {
    for (const ArraySize& row : ARRAY_SIZES) {
        if (row.Property == property)
            return row.Size;
    }
    return 0;
}

} // namespace bacnet

CPropertyValue* CPropertyValue::CreateValue(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                                            BACSTAC_DATA_TYPE dataType, int count) {
    const bacnet::PropertyInfo* info = bacnet::FindProperty(objectType, property);
    const BACSTAC_DATA_TYPE type = dataType != TYPE_NONE ? dataType : info != nullptr ? info->Type : TYPE_NONE;
    const bool asStandard = count != 0 && count != 1;
    const bool list = count == 0 || (asStandard && info != nullptr && info->Shape != bacnet::PropertyShape::single);
    std::unique_ptr<CPropertyValue> value = bacnet::NewValue(type);
    if (value == nullptr)
        return nullptr;
    if (list) {
        const bool array = info != nullptr && info->Shape == bacnet::PropertyShape::array;
        const int size = array ? static_cast<int>(bacnet::FixedArraySize(property)) : 0;
        value = std::make_unique<CPropertyValueList>(type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : type, size);
    }
    value->SetPropId(objectType, property);
    return value.release();
}
