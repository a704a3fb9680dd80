#include "tests/support/GeneratedValue.h"

#include "platform/stack/codec/CharacterSet.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace testing_support {

using namespace bacnet;

namespace {

// Octets that the header of a primitive takes (clause 20.2.1).
std::size_t HeaderSize(int tag, std::size_t length) {
    std::size_t size = tag > 14 ? 2 : 1;
    if (length > 4)
        size += length < 254 ? 1 : length < 65536 ? 3 : 5;
    return size;
}

std::uint32_t LengthOf(int tag, std::size_t written) {
    std::size_t length = written - 1;
    while (HeaderSize(tag, length) + length > written)
        --length;
    return static_cast<std::uint32_t>(length);
}

} // namespace

void ValueGenerator::Element(const TypeInfo& type, int tag) {
    if (type.Kind == TypeKind::primitive) {
        Primitive(type.Type == TYPE_ANY ? PrimitiveType() : type.Type, tag);
        return;
    }
    if (tag >= 0)
        Opening(static_cast<unsigned>(tag));
    Body(type);
    if (tag >= 0)
        Closing(static_cast<unsigned>(tag));
}

BACSTAC_DATA_TYPE ValueGenerator::PrimitiveType() {
    const BACSTAC_DATA_TYPE types[] = {TYPE_NULL,   TYPE_BOOLEAN,      TYPE_UNSIGNED, TYPE_SIGNED,     TYPE_REAL,
                                       TYPE_DOUBLE, TYPE_OCTET_STRING, TYPE_STRING,   TYPE_BIT_STRING, TYPE_ENUMERATED,
                                       TYPE_DATE,   TYPE_TIME,         TYPE_OBJECT_ID};
    return types[Pick(std::size(types))];
}

void ValueGenerator::Primitive(BACSTAC_DATA_TYPE type, int tag) {
    const std::size_t offset = m_out.Size();
    Note(type, tag, offset, Put(type, tag));
}

void ValueGenerator::Note(BACSTAC_DATA_TYPE type, int tag, std::size_t offset, WrittenTag::PrimitiveValue value) {
    if (m_tags == nullptr)
        return;
    WrittenTag written;
    written.Context = tag >= 0;
    written.Number = tag >= 0 ? static_cast<unsigned>(tag) : FindType(type)->Tag;
    const bool isApplicationBoolean = tag < 0 && type == TYPE_BOOLEAN;
    written.Length =
        isApplicationBoolean ? static_cast<std::uint32_t>(std::get<bool>(value)) : LengthOf(tag, m_out.Size() - offset);
    written.Offset = offset;
    written.Type = type;
    written.Value = std::move(value);
    m_tags->push_back(std::move(written));
}

WrittenTag::PrimitiveValue ValueGenerator::Put(BACSTAC_DATA_TYPE type, int tag) {
    std::uint8_t octets[20];
    for (std::uint8_t& octet : octets)
        octet = static_cast<std::uint8_t>(m_random());
    switch (type) {
    case TYPE_NULL:
        m_out.Null(tag);
        return {};
    case TYPE_BOOLEAN: {
        const bool value = Pick(2) != 0;
        m_out.Boolean(value, tag);
        return value;
    }
    case TYPE_UNSIGNED: {
        const std::uint32_t value = Number();
        m_out.Unsigned(value, tag);
        return value;
    }
    case TYPE_SIGNED: {
        const std::int32_t value = static_cast<std::int32_t>(Number()) * (Pick(2) != 0 ? 1 : -1);
        m_out.Signed(value, tag);
        return value;
    }
    case TYPE_REAL: {
        const float value = static_cast<float>(Number()) / 7.0F;
        m_out.Real(value, tag);
        return value;
    }
    case TYPE_DOUBLE: {
        const double value = Number() / 7.0;
        m_out.Double(value, tag);
        return value;
    }
    case TYPE_OCTET_STRING: {
        const std::vector<std::uint8_t> value(octets, octets + Pick(20));
        m_out.OctetString(value, tag);
        return value;
    }
    case TYPE_STRING:
    case TYPE_RAW_STRING: {
        octets[0] = CHARSET_LATIN1;
        const std::string value(DecodeText({octets, 1 + Pick(19)}));
        m_out.CharacterString(value, tag);
        return value;
    }
    case TYPE_BIT_STRING: {
        BACSTAC_BIT_STRING value{};
        value.BitCount = Pick(97);
        std::copy_n(octets, sizeof(value.Bits), value.Bits);
        m_out.BitString(value, tag);
        return value;
    }
    case TYPE_ENUMERATED: {
        const std::uint32_t value = Number();
        m_out.Enumerated(value, tag);
        return value;
    }
    case TYPE_DATE: {
        const BACSTAC_DATE value{static_cast<std::uint16_t>(1900 + Pick(255)), 0, Pick(15), Pick(36), Pick(8)};
        m_out.Date(value, tag);
        return value;
    }
    case TYPE_TIME: {
        const BACSTAC_TIME value{octets[0], octets[1], octets[2], octets[3]};
        m_out.Time(value, tag);
        return value;
    }
    case TYPE_OBJECT_ID: {
        const BACSTAC_OBJECT_ID value{Pick(1024), Pick(4194304)};
        m_out.ObjectId(value, tag);
        return value;
    }
    case TYPE_WEEK_N_DAY: {
        const std::vector<std::uint8_t> value{static_cast<std::uint8_t>(1 + Pick(14)),
                                              static_cast<std::uint8_t>(1 + Pick(6)),
                                              static_cast<std::uint8_t>(Pick(2) != 0 ? 255 : 1)};
        m_out.OctetString(value, tag);
        return value;
    }
    default:
        throw std::logic_error("no primitive " + std::to_string(type));
    }
}

void ValueGenerator::Body(const TypeInfo& type) {
    switch (type.Kind) {
    case TypeKind::sequence:
        for (const Member& member : type.Members) {
            if (member.Optional == Presence::required || Pick(2) != 0)
                Write(member);
        }
        break;
    case TypeKind::choice:
        Write(type.Members[Pick(static_cast<std::uint32_t>(type.Members.size()))]);
        break;
    case TypeKind::variant: {
        const std::uint32_t number = Pick(30);
        const TypeInfo* inner = FindAlternative(type, number);
        if (inner != nullptr) {
            Element(*inner, static_cast<int>(number));
        } else {
            Opening(number);
            Primitive(TYPE_UNSIGNED, APPLICATION);
            Primitive(TYPE_REAL, 3);
            Closing(number);
        }
        break;
    }
    case TypeKind::address: {
        const std::uint32_t network = Pick(65536);
        std::size_t offset = m_out.Size();
        m_out.Unsigned(network);
        Note(TYPE_UNSIGNED, APPLICATION, offset, network);
        const std::vector<std::uint8_t> mac(Pick(8), static_cast<std::uint8_t>(network));
        offset = m_out.Size();
        m_out.OctetString(mac);
        Note(TYPE_OCTET_STRING, APPLICATION, offset, mac);
        break;
    }
    case TypeKind::primitive:
        break;
    }
}

void ValueGenerator::Write(const Member& member) {
    const TypeInfo& type = *FindType(member.Type);
    switch (member.Form) {
    case MemberForm::value:
        return Element(type, member.Context);
    case MemberForm::string:
        return Primitive(member.Type, member.Context);
    case MemberForm::values:
        for (std::uint32_t i = Pick(3); i > 0; --i)
            Primitive(PrimitiveType(), APPLICATION);
        return;
    case MemberForm::any:
        if (member.Context < 0)
            return Primitive(PrimitiveType(), APPLICATION);
        Opening(static_cast<unsigned>(member.Context));
        for (std::uint32_t i = Pick(4); i > 0; --i) // of differing types, mostly
            Primitive(PrimitiveType(), APPLICATION);
        Closing(static_cast<unsigned>(member.Context));
        return;
    case MemberForm::list:
        if (member.Context >= 0)
            Opening(static_cast<unsigned>(member.Context));
        for (std::uint32_t i = Pick(5); i > 0; --i)
            Element(type, APPLICATION);
        if (member.Context >= 0)
            Closing(static_cast<unsigned>(member.Context));
        return;
    }
}

void ValueGenerator::Opening(unsigned number) {
    if (m_tags != nullptr)
        m_tags->push_back({WrittenTag::Kind::opening, true, number, 0, m_out.Size(), TYPE_NONE, {}});
    m_out.Opening(number);
}

void ValueGenerator::Closing(unsigned number) {
    if (m_tags != nullptr)
        m_tags->push_back({WrittenTag::Kind::closing, true, number, 0, m_out.Size(), TYPE_NONE, {}});
    m_out.Closing(number);
}

} // namespace testing_support
