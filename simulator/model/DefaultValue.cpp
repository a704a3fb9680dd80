#include "simulator/model/DefaultValue.h"

#include "platform/stack/codec/Writer.h"
#include "platform/stack/schema/TypeTable.h"
#include "simulator/model/Object.h"
#include "simulator/model/Standard.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::APPLICATION;
using bacnet::Member;
using bacnet::MemberForm;
using bacnet::Presence;
using bacnet::TypeInfo;
using bacnet::TypeKind;
using bacnet::Writer;

constexpr BACSTAC_DATE FIRST_OF_MAY{2026, 0, 5, 1, 5};
constexpr BACSTAC_TIME EIGHT{8, 0, 0, 0};
constexpr std::uint8_t ANY_DATES[] = {0xA4, 0xFF, 0xFF, 0xFF, 0xFF, 0xA4, 0xFF, 0xFF, 0xFF, 0xFF};
constexpr float REAL_DEFAULT = 20.0F;
constexpr std::uint8_t AN_ADDRESS[] = {10, 0, 0, 1, 0xBA, 0xC0};

void PutElement(Writer& to, const TypeInfo& type, int tag, unsigned which);

// Numbers up to the last that has a form, gaps among them.
unsigned FormsOf(const TypeInfo& variant) {
    constexpr unsigned MOST_FORMS = 30;
    unsigned forms = MOST_FORMS;
    while (bacnet::FindAlternative(variant, forms - 1) == nullptr)
        --forms;
    return forms;
}

void PutPrimitive(Writer& to, BACSTAC_DATA_TYPE type, int tag) {
    constexpr std::uint8_t ANY_WEEK_N_DAY[] = {255, 255, 1}; // every Monday
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = 3;
    bits.Bits[0] = 7;
    switch (type) {
    case TYPE_NULL:
        return to.Null(tag);
    case TYPE_BOOLEAN:
        return to.Boolean(false, tag);
    case TYPE_UNSIGNED:
        return to.Unsigned(1, tag);
    case TYPE_SIGNED:
        return to.Signed(0, tag);
    case TYPE_DOUBLE:
        return to.Double(REAL_DEFAULT, tag);
    case TYPE_OCTET_STRING:
        return to.OctetString(AN_ADDRESS, tag);
    case TYPE_RAW_STRING:
    case TYPE_STRING:
        return to.CharacterString("text", tag);
    case TYPE_BIT_STRING:
        return to.BitString(bits, tag);
    case TYPE_ENUMERATED:
        return to.Enumerated(0, tag);
    case TYPE_DATE:
        return to.Date(FIRST_OF_MAY, tag);
    case TYPE_TIME:
        return to.Time(EIGHT, tag);
    case TYPE_OBJECT_ID:
        return to.ObjectId({OBJ_ANALOG_INPUT, 1}, tag);
    case TYPE_WEEK_N_DAY:
        return to.OctetString(ANY_WEEK_N_DAY, tag);
    default: // real, and any
        return to.Real(REAL_DEFAULT, tag);
    }
}

void PutMember(Writer& to, const Member& member, unsigned which) {
    if (member.Optional != Presence::required && which % 2 == 0)
        return;
    const auto tag = static_cast<unsigned>(member.Context);
    const TypeInfo& type = *bacnet::FindType(member.Type);
    switch (member.Form) {
    case MemberForm::value:
        return PutElement(to, type, member.Context, which);
    case MemberForm::string:
        return PutPrimitive(to, member.Type, member.Context);
    case MemberForm::any:
    case MemberForm::values:
        if (member.Context < 0)
            return to.Real(REAL_DEFAULT);
        to.Opening(tag);
        to.Real(REAL_DEFAULT);
        return to.Closing(tag);
    case MemberForm::list:
        if (member.Context < 0)
            return PutElement(to, type, APPLICATION, which);
        to.Opening(tag);
        PutElement(to, type, APPLICATION, which);
        return to.Closing(tag);
    }
}

void PutBody(Writer& to, const TypeInfo& type, unsigned which) {
    switch (type.Kind) {
    case TypeKind::sequence:
        for (const Member& member : type.Members)
            PutMember(to, member, which);
        return;
    case TypeKind::choice:
        // Within an alternative its first own alternative will do.
        return PutMember(to, type.Members[which % type.Members.size()], 1);
    case TypeKind::variant: {
        const unsigned number = which % FormsOf(type);
        const TypeInfo* inner = bacnet::FindAlternative(type, number);
        // A number without a form is "none", a null.
        return inner == nullptr ? to.Null(static_cast<int>(number))
                                : PutElement(to, *inner, static_cast<int>(number), 1);
    }
    case TypeKind::address:
        to.Unsigned(0);
        return to.OctetString({});
    case TypeKind::primitive:
        return;
    }
}

void PutElement(Writer& to, const TypeInfo& type, int tag, unsigned which) {
    if (type.Kind == TypeKind::primitive)
        return PutPrimitive(to, type.Type, tag);
    if (tag >= 0)
        to.Opening(static_cast<unsigned>(tag));
    PutBody(to, type, which);
    if (tag >= 0)
        to.Closing(static_cast<unsigned>(tag));
}

// Sizes that the standard fixes; 0 for none.
std::uint32_t SizeOf(BACSTAC_PROPERTY_ID property) {
    switch (property) {
    case PROP_PRIORITY:
    case PROP_EVENT_TIME_STAMPS:
    case PROP_EVENT_MESSAGE_TEXTS:
    case PROP_EVENT_MESSAGE_TEXTS_CONFIG:
        return 3;
    case PROP_WEEKLY_SCHEDULE:
        return 7;
    case PROP_PRIORITY_ARRAY:
        return PRIORITIES;
    default:
        return 0;
    }
}

// Values that say something about the object, or that others depend on. Nothing for all the rest.
std::optional<Value> Known(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) {
    switch (property) {
    case PROP_OBJECT_IDENTIFIER:
        return Value::ObjectId(object);
    case PROP_OBJECT_TYPE:
        return Value::Enumerated(object.Type);
    case PROP_STATUS_FLAGS:
        return Value::BitString(4, {});
    case PROP_ACKED_TRANSITIONS:
    case PROP_EVENT_ENABLE:
    case PROP_ACK_REQUIRED:
        return Value::BitString(3, {0, 1, 2});
    case PROP_LIMIT_ENABLE:
        return Value::BitString(2, {0, 1});
    case PROP_EVENT_DETECTION_ENABLE:
        return Value::Boolean(true);
    case PROP_EFFECTIVE_PERIOD: // always
        return Value::Encoded(ANY_DATES);
    case PROP_PRIORITY_FOR_WRITING:
        return Value::Unsigned(PRIORITIES);
    case PROP_NUMBER_OF_STATES:
        return Value::Unsigned(4);
    case PROP_CURRENT_COMMAND_PRIORITY:
        return Value::Null();
    case PROP_NOTIFICATION_CLASS:
        return Value::Unsigned(object.Type == OBJ_NOTIFICATION_CLASS ? object.Instance : 1);
    default:
        return std::nullopt;
    }
}

} // namespace

Value DefaultElement(BACSTAC_DATA_TYPE type, unsigned which) {
    std::uint8_t octets[1024];
    Writer writer(octets);
    const TypeInfo* info = bacnet::FindType(type);
    if (info == nullptr)
        writer.Null(0); // a type without a description: a null with a context tag is a part of many
    else
        PutElement(writer, *info, APPLICATION, which);
    return Value::Encoded(writer.Written());
}

unsigned Alternatives(BACSTAC_DATA_TYPE type) {
    const TypeInfo* info = bacnet::FindType(type);
    if (info == nullptr)
        return 1;
    switch (info->Kind) {
    case TypeKind::choice:
        return static_cast<unsigned>(info->Members.size());
    case TypeKind::variant:
        return FormsOf(*info);
    default:
        return 1;
    }
}

Value DefaultValue(BACSTAC_OBJECT_ID object, const bacnet::PropertyInfo& property, bool full) {
    if (auto known = Known(object, property.Property))
        return *known;
    if (property.Shape == bacnet::PropertyShape::single)
        return DefaultElement(property.Type, object.Instance);
    std::vector<Value> elements;
    const std::uint32_t size = SizeOf(property.Property);
    const std::uint32_t count = size != 0 ? size : full ? std::max(Alternatives(property.Type), 2U) : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (property.Property == PROP_PRIORITY_ARRAY)
            elements.push_back(Value::Null());
        else if (property.Property == PROP_EVENT_TIME_STAMPS)
            elements.push_back(DefaultElement(property.Type, 2)); // date and time
        else
            elements.push_back(DefaultElement(property.Type, i));
    }
    return property.Shape == bacnet::PropertyShape::array ? Value::Array(elements) : Value::List(elements);
}

} // namespace sim
