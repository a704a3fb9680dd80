// Values of a type with whatever in them, and what they consist of.
#pragma once

#include "api/bacnet/PropertyValues.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

using ValuePtr = std::unique_ptr<CPropertyValue>;

// As it is made for a property that nobody knows.
ValuePtr NewValue(BACSTAC_DATA_TYPE type);
// Even seeds give what a device might send, odd ones random octets in the record.
ValuePtr RandomValue(BACSTAC_DATA_TYPE type, unsigned seed);

struct ValueBytes {
    std::vector<unsigned char> record;
    std::string text; // also of its parts
    friend bool operator==(const ValueBytes&, const ValueBytes&) = default;
};
void PrintTo(const ValueBytes& bytes, std::ostream* to);
ValueBytes BytesOf(CPropertyValue& value);
// What an OK gives when nobody has touched the editor: floating point numbers are what their texts say, all else is as
// it was.
ValueBytes Untouched(const CPropertyValue& value);
