#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"

#include <cstring>

using namespace bacnet;

bool CPVNull::Load(const BufferView& /*buffer*/, const unsigned char* /*element*/) {
    return true;
}

bool CPVNull::Store(Sink& sink) const {
    return sink.Append(1) != nullptr;
}

bool CPVPlain::Load(const BufferView& /*buffer*/, const unsigned char* element) {
    std::memcpy(GetDataPtr(), element, m_size);
    return true;
}

bool CPVPlain::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(m_size);
    if (at != nullptr)
        std::memcpy(at, Record(), m_size);
    return at != nullptr;
}

void CPVDate::Init(BACSTAC_DATE& date) {
    date = {BACSTAC_ANY_YEAR, 0, BACSTAC_ANY_MONTH, BACSTAC_ANY_DAY, BACSTAC_ANY_WEEKDAY};
}

bool CPVString::ReadFrom(void const* data) {
    if (data == nullptr)
        return false;
    Value = static_cast<const char*>(data);
    return true;
}

bool CPVString::Load(const BufferView& /*buffer*/, const unsigned char* element) {
    Value = reinterpret_cast<const char*>(element); // its end was found when the element was
    return true;
}

bool CPVString::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(ElementSize());
    if (at != nullptr)
        std::memcpy(at, Value.c_str(), Value.size() + 1);
    return at != nullptr;
}

void CPVOctetString::Assign(unsigned size, const void* data) {
    const auto* octets = static_cast<const unsigned char*>(data);
    if (octets == nullptr)
        Value.clear();
    else
        Value = std::vector<unsigned char>(octets, octets + size);
}

bool CPVOctetString::Load(const BufferView& /*buffer*/, const unsigned char* element) {
    Assign(LoadAs<std::uint32_t>(element), element + sizeof(std::uint32_t));
    return true;
}

bool CPVOctetString::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(ElementSize());
    if (at == nullptr)
        return false;
    const auto size = static_cast<std::uint32_t>(Value.size());
    std::memcpy(at, &size, sizeof(size));
    if (size != 0)
        std::memcpy(at + sizeof(size), Value.data(), size);
    return true;
}

unsigned CPVOctetString::ElementSize() const {
    return static_cast<unsigned>(sizeof(std::uint32_t) + (Value.size() + 3) / 4 * 4);
}

namespace {

constexpr BACSTAC_OBJECT_ID ANY_DEVICE{OBJ_DEVICE, 0};
constexpr std::uint32_t NO_INDEX = 0xFFFFFFFFU;

template <typename Record>
Record& As(void* record) {
    return *static_cast<Record*>(record);
}

void InitReference(BACSTAC_DEV_OBJ_PROP_REF& reference) {
    reference.Property = PROP_PRESENT_VALUE;
    reference.ArrayIndex = NO_INDEX;
    reference.DeviceId = ANY_DEVICE;
}

// What may be left out is, and of alternatives it is the first; members are as new ones of their types are.
void InitMembers(const TypeInfo& type, unsigned char* record) {
    for (const Member& member : type.Members) {
        unsigned char* const field = record + member.Offset;
        if (member.Optional != Presence::required)
            std::memcpy(field, &member.Absent, sizeof(member.Absent));
        else if (member.Form == MemberForm::value)
            InitRecord(member.Type, field);
        if (type.Kind == TypeKind::choice) {
            std::memcpy(record, &member.Choice, sizeof(member.Choice));
            break;
        }
    }
}

} // namespace

// The record is zero already, and so are new values of primitives that are not listed.
void InitRecord(BACSTAC_DATA_TYPE type, void* record) {
    switch (type) {
    case TYPE_DATE:
        CPVDate::Init(As<BACSTAC_DATE>(record));
        break;
    case TYPE_DATE_TIME:
        CPVDate::Init(As<BACSTAC_DATE_TIME>(record).Date);
        As<BACSTAC_DATE_TIME>(record).Time = {BACSTAC_ANY_TIME, BACSTAC_ANY_TIME, BACSTAC_ANY_TIME, BACSTAC_ANY_TIME};
        break;
    case TYPE_WEEK_N_DAY:
        As<BACSTAC_WEEK_N_DAY>(record).Week = BACSTAC_ANY_WEEK;
        break;
    case TYPE_SPECIAL_EVENT:
        InitRecord(TYPE_CALENDAR_ENTRY, &As<BACSTAC_SPECIAL_EVENT>(record).Entry);
        As<BACSTAC_SPECIAL_EVENT>(record).Priority = 16;
        break;
    case TYPE_PROPERTY_REF:
        As<BACSTAC_PROPERTY_REF>(record) = {PROP_PRESENT_VALUE, NO_INDEX};
        break;
    case TYPE_OBJ_PROP_REF:
        As<BACSTAC_OBJ_PROP_REF>(record) = {{}, PROP_PRESENT_VALUE, NO_INDEX};
        break;
    case TYPE_SETPOINT_REF:
        As<BACSTAC_SETPOINT_REF>(record).Reference = {{}, PROP_PRESENT_VALUE, NO_INDEX};
        break;
    case TYPE_DEV_OBJ_PROP_REF:
        InitReference(As<BACSTAC_DEV_OBJ_PROP_REF>(record));
        break;
    case TYPE_DEV_OBJ_REF:
        As<BACSTAC_DEV_OBJ_REF>(record).DeviceId = ANY_DEVICE;
        break;
    case TYPE_RECIPIENT:
        As<BACSTAC_RECIPIENT>(record).Device = ANY_DEVICE;
        break;
    case TYPE_DESTINATION: {
        auto& destination = As<BACSTAC_DESTINATION>(record);
        destination.ValidDays = {7, {0x7F}};
        destination.To = {23, 59, 59, 99};
        destination.Recipient.Device = ANY_DEVICE;
        destination.Transitions = {3, {0x07}};
        break;
    }
    case TYPE_COV_SUBSCRIPTION:
        As<BACSTAC_COV_SUBSCRIPTION>(record).Recipient.Recipient.Device = ANY_DEVICE;
        As<BACSTAC_COV_SUBSCRIPTION>(record).Monitored = {{}, PROP_PRESENT_VALUE, NO_INDEX};
        break;
    case TYPE_ADDRESS_BINDING:
        As<BACSTAC_ADDRESS_BINDING>(record).Device = ANY_DEVICE;
        break;
    case TYPE_SHED_LEVEL:
        As<BACSTAC_SHED_LEVEL>(record).Percent = 100;
        break;
    case TYPE_READ_RESULT_ITEM:
        As<BACSTAC_READ_ACCESS_ITEM>(record).Property = PROP_PRESENT_VALUE;
        As<BACSTAC_READ_ACCESS_ITEM>(record).ArrayIndex = NO_INDEX;
        break;
    case TYPE_ACTION_COMMAND:
        InitReference(As<BACSTAC_ACTION_COMMAND>(record).Reference);
        As<BACSTAC_ACTION_COMMAND>(record).Priority = BACSTAC_NO_PRIORITY;
        break;
    default:
        InitMembers(*FindType(type), static_cast<unsigned char*>(record));
        break;
    }
}
