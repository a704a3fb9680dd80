// The BACnet types (ANSI/ASHRAE 135 clause 21) as data: how each lies in memory and how it is encoded. Encoding,
// decoding, printing, comparing, copying and the typed values walk this table; nothing else knows the members of a
// type. Constant data, any thread.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

enum class TypeKind : std::uint8_t {
    primitive, // one tagged value; see TypeInfo::Tag
    sequence,  // members in the order of the encoding
    choice,    // a u32 at offset 0 tells the alternative; members are the alternatives
    address,   // a network number and a station address, BACSTAC_ADDRESS
    variant,   // a u32 at offset 0 is the context tag n, an any-value at offset 4 the record of type VariantBase + n;
               // its one member is the number n
};

enum class MemberForm : std::uint8_t {
    value,  // the value itself at Offset
    list,   // BACSTAC_LIST at Offset
    any,    // BACSTAC_ANY_VALUE at Offset
    values, // BACSTAC_ANY_VALUE at Offset: the application-tagged values that follow, TYPE_NONE when none does
    string, // u32 at Offset: where the one string of that type lies
};

enum class Presence : std::uint8_t {
    required,
    sentinel, // the first u32 of the field is Absent when it is not there
    flagged,  // PresenceBits of the u32 at PresenceOffset say so; Absent is stored in the field's first u32 if not
};

struct Member {
    const char* Name;
    BACSTAC_DATA_TYPE Type; // of the value, or of the list's elements
    MemberForm Form = MemberForm::value;
    // Tag it is encoded with; -1: the type's own, a constructed type's members or a list's elements as they are.
    std::int16_t Context = -1;
    std::uint16_t Offset = 0;
    Presence Optional = Presence::required;
    std::uint16_t PresenceOffset = 0;
    std::uint32_t PresenceBits = 0;
    std::uint32_t Absent = 0;
    ENUM_TYPE_ID Enum = ENUM_NONE; // names of an enumerated or of a bit string
    std::uint32_t Choice = 0;      // of an alternative: the number that tells it
};

struct TypeInfo {
    BACSTAC_DATA_TYPE Type;
    const char* Name;
    TypeKind Kind;
    std::uint8_t Tag;   // application tag of a primitive; the encoding of week-n-day is an octet string
    std::uint16_t Size; // of one element in bytes, 0 when elements differ in size (strings)
    std::span<const Member> Members = {};
    BACSTAC_DATA_TYPE OpenType = TYPE_NONE; // choice: type of alternatives that are not listed; none: they are refused
    BACSTAC_DATA_TYPE VariantBase = TYPE_NONE; // variant: data type of alternative 0
    bool HasReferences = false;                // elements refer to data behind them
};

// Types whose value is one tagged value. TypeTable.cpp checks that the table agrees.
constexpr bool IsPrimitiveType(BACSTAC_DATA_TYPE type) {
    return (type >= TYPE_NULL && type <= TYPE_ANY) || type == TYPE_WEEK_N_DAY;
}

// Types that an any-value holds decoded.
constexpr bool IsAnyValueType(BACSTAC_DATA_TYPE type) {
    return (IsPrimitiveType(type) && type != TYPE_ANY) || type == TYPE_DATE_TIME;
}

// By number, for FindType; null for a number that is no type.
inline constexpr BACSTAC_DATA_TYPE DENSE_TYPES = 64;
extern const std::array<const TypeInfo*, DENSE_TYPES> TYPES_BY_NUMBER;
const TypeInfo* FindSparseType(BACSTAC_DATA_TYPE type);

// Null for a number that is no type.
inline const TypeInfo* FindType(BACSTAC_DATA_TYPE type) {
    return type >= 0 && type < DENSE_TYPES ? TYPES_BY_NUMBER[static_cast<std::size_t>(type)] : FindSparseType(type);
}
// The record of a variant's alternative; null for a number that has none.
const TypeInfo* FindAlternative(const TypeInfo& variant, std::uint32_t number);
// All rows, ascending by number.
std::span<const TypeInfo> AllTypes();

// Parts of other types, which contents never have as their type.
inline constexpr BACSTAC_DATA_TYPE PART_LOG_DATUM = 2000;
inline constexpr BACSTAC_DATA_TYPE PART_LOG_MULTIPLE_DATA = 2001;
inline constexpr BACSTAC_DATA_TYPE PART_EVENT_LOG_DATUM = 2002;
inline constexpr BACSTAC_DATA_TYPE PART_SPECIAL_EVENT_PERIOD = 2003;
inline constexpr BACSTAC_DATA_TYPE PART_READ_ACCESS_CHOICE = 2004;
inline constexpr BACSTAC_DATA_TYPE PART_CHANGE_OF_VALUE_CRITERIA = 2005;
inline constexpr BACSTAC_DATA_TYPE PART_CHANGE_OF_VALUE_NEW = 2006;
inline constexpr BACSTAC_DATA_TYPE PART_COV_REFERENCE = 2007;
inline constexpr BACSTAC_DATA_TYPE PART_COV_SPECIFICATION = 2008;
inline constexpr BACSTAC_DATA_TYPE PART_AUTHENTICATION_INPUT = 2009;
inline constexpr BACSTAC_DATA_TYPE PART_KEY_IDENTIFIER = 2010;
inline constexpr BACSTAC_DATA_TYPE PART_HOST_ADDRESS = 2011;
inline constexpr BACSTAC_DATA_TYPE PART_LANDING_COMMAND = 2012;
inline constexpr BACSTAC_DATA_TYPE PART_LANDING_CALL = 2013;
inline constexpr BACSTAC_DATA_TYPE PART_LANDING_DOOR = 2014;
inline constexpr BACSTAC_DATA_TYPE PART_AUDIT_LOG_DATUM = 2015;

} // namespace bacnet
