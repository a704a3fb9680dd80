// What vendors call their own object types, properties and values: the numbers that the standard leaves to them. The
// tables come from a text file that users extend; docs/vendor-names.md describes it to them.
//
// One entry a line, each complete in itself, so that a wrong line costs nothing but itself:
//
//   VENDOR vendor NAME                     what the vendor is called, to the end of the line
//   VENDOR object-type NUMBER NAME         from 128 on
//   VENDOR property NUMBER NAME            from 512 on
//   VENDOR value PROPERTY NUMBER NAME      of an enumerated property, which is a number or a name
//
// Fields are separated by blanks; # starts a comment at the start of a line or after a blank. Names of object types,
// properties and values are one word. A later line replaces an earlier one of the same number.
#pragma once

#include "api/bacnet/Types.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace bacnet {

inline constexpr BACSTAC_OBJECT_TYPE FIRST_PROPRIETARY_TYPE = 128;
inline constexpr BACSTAC_PROPERTY_ID FIRST_PROPRIETARY_PROPERTY = 512;

struct VendorNamesFault {
    std::size_t Line; // from 1
    std::string Text;
};

// A set of tables; constant once it is in use.
class VendorNames {
public:
    // Adds what the text says; UTF-8. faults receives one entry for each line that is not taken, and may be null.
    void Parse(std::string_view text, std::vector<VendorNamesFault>* faults);

    // Null where nothing is known.
    const std::string* Vendor(unsigned vendor) const;
    const std::string* ObjectType(unsigned vendor, BACSTAC_OBJECT_TYPE type) const;
    const std::string* Property(unsigned vendor, BACSTAC_PROPERTY_ID property) const;
    const std::string* Value(unsigned vendor, BACSTAC_PROPERTY_ID property, std::uint32_t value) const;

private:
    std::string Take(std::string_view line);

    std::map<unsigned, std::string> m_vendors;
    std::map<std::pair<unsigned, BACSTAC_OBJECT_TYPE>, std::string> m_types;
    std::map<std::pair<unsigned, BACSTAC_PROPERTY_ID>, std::string> m_properties;
    std::map<std::tuple<unsigned, BACSTAC_PROPERTY_ID, std::uint32_t>, std::string> m_values;
};

// The process's tables, which name functions look in. Any thread; who has them keeps them.
std::shared_ptr<const VendorNames> CurrentVendorNames(); // never null
void SetVendorNames(std::shared_ptr<const VendorNames> names);

// Reads a file and makes it the process's tables. errors are lines for people, "FILE:LINE: what is wrong", for each
// line that was not taken. False, and the tables stay as they were, when the file is there but cannot be read; a file
// that is not there is one without entries.
bool LoadVendorNames(const std::string& path, std::vector<std::string>& errors);

} // namespace bacnet
