// Values in the form that platform/stack/value/JsonForm.h gives every type, as JSON text on the command line. Pure
// functions, any thread.
#pragma once

#include "api/bacnet/Types.h"
#include "host/bacnet/ValueText.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

// The element, which lies within the contents. Null for one whose references lead out of them.
nlohmann::ordered_json StructureJson(const BACSTAC_PROPERTY_CONTENTS& contents, const void* element);

// The same for every text that is a JSON object or array: an element, or a list of them where the type asks for one;
// an object identifier may stand as "analog-input:1". Nothing when the text is neither, as "{}" is where no object is
// asked for; false: error says that it is
// none of the type.
std::optional<bool> ParseStructure(std::string_view text, const ValueType& type, CTypedValue& value,
                                   std::string& error);

// The text inside of a JSON string, where the text is one; else the text.
std::string Unquoted(std::string_view text);
