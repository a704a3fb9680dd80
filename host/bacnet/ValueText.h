// Values as people write them on a command line, into the form in which the BACnet services take them. Pure functions,
// any thread.
//
//   null                            of every type: relinquishes a commanded value
//   true, false, 1, 0               boolean
//   21, -3, 21.5, 1e3               unsigned, signed, real, double
//   active, 1                       enumerated, by name or number
//   text, "text"                    character string; in double quotes \" and \\ stand for those characters
//   0a1b2c                          octet string
//   {in-alarm, bit-3}, 0100         bit string, by the names of its bits or bit by bit
//   2026-11-21, *-12-25, *-*-last   date; fields may be *, odd, even, last, and " mon" may stand behind it
//   14:30, 14:30:00.00, *:00        time
//   2026-11-21 14:30:00             date-time
//   ai:1                            object identifier
//   ai:1/pv, 1000/ai:1/pv           references to properties
//   {a, b}                          lists and arrays of these
//   {"member": ...}, [a, b]         JSON in the form that read --json shows: every type, and lists and arrays of it
//   0a1b2c                          a value of a type that is not known here: its octets, as read shows them
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CPropertyValue;

// What a value has to be.
struct ValueType {
    BACSTAC_DATA_TYPE type = TYPE_NONE; // TYPE_NONE: what the text looks like
    bool isList = false;                // an array or a list of it
    ENUM_TYPE_ID names = ENUM_NONE;     // of an enumerated or of a bit string
};

// The type of a property, or of one element of it, as the standard has it; TYPE_NONE when it says nothing.
ValueType StandardType(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, int index);

// A data type by the name that ParseValue's errors and the listings use ("real"), for the types that can be written as
// text.
std::optional<BACSTAC_DATA_TYPE> DataTypeByName(std::string_view name);

class CTypedValue {
public:
    // Valid as long as this object, and until the value is parsed again.
    BACSTAC_PROPERTY_CONTENTS Contents();
    BACSTAC_DATA_TYPE Type() const { return m_type; }
    // Becomes what the value writes. False when it writes nothing.
    bool Take(const CPropertyValue& value);

private:
    friend class CValueParser;
    BACSTAC_DATA_TYPE m_type = TYPE_NULL;
    std::uint32_t m_count = 0;
    std::vector<std::uint8_t> m_bytes; // elements in the decoded layout of the type
};

// False: error says what was expected.
bool ParseValue(std::string_view text, const ValueType& type, CTypedValue& value, std::string& error);

// Parts of it, for options. Year first; "*" and the other patterns too.
bool ParseDate(std::string_view text, BACSTAC_DATE& date);
bool ParseTimeOfDay(std::string_view text, BACSTAC_TIME& time);
bool ParseDateTime(std::string_view text, BACSTAC_DATE_TIME& dateTime);
