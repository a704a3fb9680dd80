#include "platform/stack/text/ValuePrinter.h"

#include "platform/stack/text/Phrases.h"

#include <algorithm>

namespace bacnet {
namespace {

// Values nest less deeply; references that lead in a circle end here.
constexpr int DEEPEST = 12;

constexpr std::size_t ANY_OF_VARIANT = 4;
constexpr std::size_t OPEN_ALTERNATIVE = 4;

constexpr const char* UNPRINTABLE = "?";

} // namespace

void ValuePrinter::Elements(const TypeInfo& type, std::uint64_t offset, std::uint32_t count, ENUM_TYPE_ID names) {
    if (count != 1) {
        List(type, offset, count, names);
        return;
    }
    const bool held = ForEachElement(m_buffer, type, offset, 1, [&](const std::uint8_t* element) {
        Element(type, element, names);
        return true;
    });
    if (!held)
        m_out.Put(UNPRINTABLE);
}

void ValuePrinter::List(const TypeInfo& type, std::uint64_t offset, std::uint32_t count, ENUM_TYPE_ID names) {
    const char* before = "";
    m_out.Put("{");
    const bool held = ForEachElement(m_buffer, type, offset, count, [&](const std::uint8_t* element) {
        m_out.Put(before);
        before = ", ";
        Element(type, element, names);
        return !m_out.Full();
    });
    if (!held) { // an element that does not lie within the buffer, or no more room
        m_out.Put(before);
        m_out.Put(UNPRINTABLE);
    }
    m_out.Put("}");
}

void ValuePrinter::Element(const TypeInfo& type, const std::uint8_t* element, ENUM_TYPE_ID names) {
    if (m_depth >= DEEPEST) {
        m_out.Put(UNPRINTABLE);
        return;
    }
    ++m_depth;
    if (type.Type == TYPE_ANY)
        Any(element, names);
    else if (type.Type == TYPE_TIME_VALUE)
        TimeValue(element);
    else if (Phrase(type, element)) {
    } else if (type.Kind == TypeKind::primitive)
        Primitive(type, element, names);
    else if (type.Kind == TypeKind::sequence)
        Sequence(type, element);
    else if (type.Kind == TypeKind::choice)
        Choice(type, element);
    else if (type.Kind == TypeKind::variant)
        Variant(type, element);
    --m_depth;
}

void ValuePrinter::Primitive(const TypeInfo& type, const std::uint8_t* element, ENUM_TYPE_ID names) {
    switch (type.Type) {
    case TYPE_NULL:
        m_out.Put("null");
        break;
    case TYPE_BOOLEAN:
        m_out.Put(*element != 0 ? "true" : "false");
        break;
    case TYPE_UNSIGNED:
        m_out.PutUnsigned(LoadAs<std::uint32_t>(element));
        break;
    case TYPE_SIGNED:
        m_out.PutSigned(LoadAs<std::int32_t>(element));
        break;
    case TYPE_REAL:
        m_out.PutReal(LoadAs<float>(element), REAL_DIGITS);
        break;
    case TYPE_DOUBLE:
        m_out.PutReal(LoadAs<double>(element), DOUBLE_DIGITS);
        break;
    case TYPE_OCTET_STRING:
    case TYPE_RAW_STRING: // who hands it over has checked that the octets lie within the buffer
        m_out.PutHex(element + sizeof(std::uint32_t), LoadAs<std::uint32_t>(element));
        break;
    case TYPE_BIT_STRING:
        PutBitString(m_out, LoadAs<BACSTAC_BIT_STRING>(element), names);
        break;
    case TYPE_ENUMERATED:
        PutEnum(m_out, LoadAs<std::uint32_t>(element), names);
        break;
    case TYPE_STRING:
        m_out.PutForeign(reinterpret_cast<const char*>(element));
        break;
    default:
        m_out.Put(UNPRINTABLE);
        break;
    }
}

// Types that have a form of their own.
bool ValuePrinter::Phrase(const TypeInfo& type, const std::uint8_t* element) {
    switch (type.Type) {
    case TYPE_DATE:
        PutDate(m_out, LoadAs<BACSTAC_DATE>(element));
        return true;
    case TYPE_TIME:
        PutTime(m_out, LoadAs<BACSTAC_TIME>(element));
        return true;
    case TYPE_DATE_TIME:
        PutDateTime(m_out, LoadAs<BACSTAC_DATE_TIME>(element));
        return true;
    case TYPE_DATE_RANGE:
        PutDateRange(m_out, LoadAs<BACSTAC_DATE_RANGE>(element));
        return true;
    case TYPE_WEEK_N_DAY:
        PutWeekNDay(m_out, LoadAs<BACSTAC_WEEK_N_DAY>(element));
        return true;
    case TYPE_OBJECT_ID:
        PutObjectId(m_out, LoadAs<BACSTAC_OBJECT_ID>(element));
        return true;
    case TYPE_PROPERTY_REF:
        PutPropertyRef(m_out, LoadAs<BACSTAC_PROPERTY_REF>(element));
        return true;
    case TYPE_OBJ_PROP_REF:
        PutObjPropRef(m_out, LoadAs<BACSTAC_OBJ_PROP_REF>(element));
        return true;
    case TYPE_DEV_OBJ_REF:
        PutDevObjRef(m_out, LoadAs<BACSTAC_DEV_OBJ_REF>(element));
        return true;
    case TYPE_DEV_OBJ_PROP_REF:
        PutDevObjPropRef(m_out, LoadAs<BACSTAC_DEV_OBJ_PROP_REF>(element));
        return true;
    case TYPE_ADDRESS:
        PutAddress(m_out, LoadAs<BACSTAC_ADDRESS>(element));
        return true;
    case TYPE_ADDRESS_BINDING:
        PutAddressBinding(m_out, LoadAs<BACSTAC_ADDRESS_BINDING>(element));
        return true;
    case TYPE_RECIPIENT:
        PutRecipient(m_out, LoadAs<BACSTAC_RECIPIENT>(element));
        return true;
    case TYPE_ERROR:
        PutErrorValue(m_out, LoadAs<BACSTAC_ERROR_VALUE>(element));
        return true;
    default:
        return false;
    }
}

void ValuePrinter::TimeValue(const std::uint8_t* record) {
    m_out.Put("(");
    PutTime(m_out, LoadAs<BACSTAC_TIME>(record + offsetof(BACSTAC_TIME_VALUE, Time)));
    m_out.Put(", ");
    Any(record + offsetof(BACSTAC_TIME_VALUE, Value), ENUM_NONE);
    m_out.Put(")");
}

void ValuePrinter::Sequence(const TypeInfo& type, const std::uint8_t* record) {
    if (type.Members.size() == 1) {
        if (IsPresent(type.Members[0], record))
            MemberValue(type.Members[0], record);
        else
            m_out.Put("none");
        return;
    }
    const char* before = "";
    m_out.Put("{");
    for (const Member& member : type.Members) {
        if (!IsPresent(member, record))
            continue;
        m_out.Put(before);
        before = ", ";
        m_out.Put(member.Name);
        m_out.Put("=");
        MemberValue(member, record);
    }
    m_out.Put("}");
}

void ValuePrinter::Choice(const TypeInfo& type, const std::uint8_t* record) {
    if (const Member* const chosen = ChosenMember(type, record)) {
        const bool empty = chosen->Type == TYPE_NULL;
        const bool unclear = type.Type == TYPE_SHED_LEVEL; // a number that needs its unit
        if (empty || unclear)
            m_out.Put(chosen->Name);
        if (unclear)
            m_out.Put("=");
        if (!empty)
            MemberValue(*chosen, record);
        return;
    }
    const TypeInfo* const open = FindType(type.OpenType);
    if (open == nullptr) {
        m_out.Put(UNPRINTABLE);
        return;
    }
    m_out.PutUnsigned(LoadAs<std::uint32_t>(record));
    m_out.Put("=");
    Element(*open, record + OPEN_ALTERNATIVE, ENUM_NONE);
}

void ValuePrinter::Variant(const TypeInfo& type, const std::uint8_t* record) {
    PutEnum(m_out, LoadAs<std::uint32_t>(record), type.Members.front().Enum);
    m_out.Put("=");
    Any(record + ANY_OF_VARIANT, ENUM_NONE);
}

void ValuePrinter::MemberValue(const Member& member, const std::uint8_t* record) {
    const std::uint8_t* const field = record + member.Offset;
    switch (member.Form) {
    case MemberForm::value:
        Element(*FindType(member.Type), field, member.Enum);
        break;
    case MemberForm::list: {
        const auto list = LoadAs<BACSTAC_LIST>(field);
        List(*FindType(member.Type), list.Offset, list.Count, member.Enum);
        break;
    }
    case MemberForm::any:
        Any(field, member.Enum);
        break;
    case MemberForm::values:
        if (LoadAs<BACSTAC_ANY_VALUE>(field).DataType == TYPE_NONE)
            m_out.Put("none");
        else
            Any(field, member.Enum);
        break;
    case MemberForm::string:
        Primitive(*FindType(member.Type), StringAt(m_buffer, member.Type, LoadAs<std::uint32_t>(field)), ENUM_NONE);
        break;
    }
}

void ValuePrinter::Any(const std::uint8_t* anyValue, ENUM_TYPE_ID names) {
    const auto any = LoadAs<BACSTAC_ANY_VALUE>(anyValue);
    if (any.DataType == TYPE_RAW && m_buffer.Holds(any.Offset, any.ElementCount)) {
        m_out.PutHex(m_buffer.Base + any.Offset, any.ElementCount);
        return;
    }
    const TypeInfo* const type = FindType(any.DataType);
    if (type == nullptr || m_depth >= DEEPEST) {
        m_out.Put(UNPRINTABLE);
        return;
    }
    ++m_depth;
    Elements(*type, any.Offset, any.ElementCount, names);
    --m_depth;
}

} // namespace bacnet
