// What the members of constructed types are written with. For TypeTable.cpp and the lists of members it includes.
#pragma once

#include "platform/stack/schema/TypeTable.h"

#include <cstddef>
#include <cstdint>

namespace bacnet::members {

#define AT(record, field) static_cast<std::uint16_t>(offsetof(record, field))

constexpr Member One(const char* name, BACSTAC_DATA_TYPE type, int context, std::uint16_t offset,
                     ENUM_TYPE_ID names = ENUM_NONE) {
    Member member{name, type};
    member.Context = static_cast<std::int16_t>(context);
    member.Offset = offset;
    member.Enum = names;
    return member;
}

constexpr Member List(const char* name, BACSTAC_DATA_TYPE type, int context, std::uint16_t offset,
                      ENUM_TYPE_ID names = ENUM_NONE) {
    Member member = One(name, type, context, offset, names);
    member.Form = MemberForm::list;
    return member;
}

constexpr Member Any(const char* name, int context, std::uint16_t offset) {
    Member member = One(name, TYPE_ANY, context, offset);
    member.Form = MemberForm::any;
    return member;
}

constexpr Member Text(const char* name, int context, std::uint16_t offset) {
    Member member = One(name, TYPE_STRING, context, offset);
    member.Form = MemberForm::string;
    return member;
}

constexpr Member Octets(const char* name, int context, std::uint16_t offset) {
    Member member = Text(name, context, offset);
    member.Type = TYPE_OCTET_STRING;
    return member;
}

constexpr Member UnlessAbsent(Member member, std::uint32_t absent) {
    member.Optional = Presence::sentinel;
    member.Absent = absent;
    return member;
}

constexpr Member IfFlag(Member member, std::uint16_t flagOffset, std::uint32_t bits, std::uint32_t absent = 0) {
    member.Optional = Presence::flagged;
    member.PresenceOffset = flagOffset;
    member.PresenceBits = bits;
    member.Absent = absent;
    return member;
}

constexpr Member Alternative(std::uint32_t choice, Member member) {
    member.Choice = choice;
    return member;
}

inline constexpr std::uint32_t NO_INDEX = 0xFFFFFFFFU;
inline constexpr std::uint32_t DEVICE = OBJ_DEVICE;

} // namespace bacnet::members
