// Values that devices gave, as text and as JSON. Any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

// Room for one property's value.
class CValueBuffer {
public:
    CValueBuffer() : m_bytes(BACSTAC_CONTENTS_SIZE) {}
    BACSTAC_PROPERTY_CONTENTS Contents() { return {-1, m_bytes.data(), BACSTAC_CONTENTS_SIZE, 0}; }
    void* Data() { return m_bytes.data(); }
    unsigned Size() const { return BACSTAC_CONTENTS_SIZE; }

private:
    std::vector<unsigned char> m_bytes;
};

// A property as it was read.
struct ReadValue {
    BACSTAC_OBJECT_ID object;
    BACSTAC_PROPERTY_ID property;
    int index;
    BACSTAC_PROPERTY_CONTENTS contents; // decoded, as far as it can be
};

std::string ValueText(const ReadValue& value);

// {"property":..,"index":..,"type":..,"value":..,"text":..}: value is an object as "analog-input:1", all else in the
// form of platform/stack/value/JsonForm.h, an array of these for arrays and lists; ParseValue takes it. A value of a
// type that is not known here is of type "encoded": its octets with all their tags, in hexadecimal pairs.
nlohmann::ordered_json ValueJson(const ReadValue& value);

// One element alone.
nlohmann::ordered_json ElementJson(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                                   BACSTAC_PROPERTY_ID property);

// "2026-11-21 14:30:00.00", "*" for what is unspecified.
std::string DateTimeText(const BACSTAC_DATE_TIME& time);
// Bits by their names, "{in-alarm, fault}".
std::string BitsText(const BACSTAC_BIT_STRING& bits, int names);
