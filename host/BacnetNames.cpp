#include "host/BacnetNames.h"

#include "base/NumberText.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyNames.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace {

struct Abbreviation {
    std::string_view text;
    std::string_view name;
};

constexpr Abbreviation OBJECT_TYPES[] = {
    {"acc", "accumulator"},
    {"ai", "analog-input"},
    {"ao", "analog-output"},
    {"av", "analog-value"},
    {"avg", "averaging"},
    {"bi", "binary-input"},
    {"bo", "binary-output"},
    {"bv", "binary-value"},
    {"cal", "calendar"},
    {"cmd", "command"},
    {"csv", "characterstring-value"},
    {"dev", "device"},
    {"ee", "event-enrollment"},
    {"el", "event-log"},
    {"iv", "integer-value"},
    {"lav", "large-analog-value"},
    {"lp", "loop"},
    {"mi", "multi-state-input"},
    {"mo", "multi-state-output"},
    {"msi", "multi-state-input"},
    {"mso", "multi-state-output"},
    {"msv", "multi-state-value"},
    {"mv", "multi-state-value"},
    {"nc", "notification-class"},
    {"np", "network-port"},
    {"pc", "pulse-converter"},
    {"piv", "positive-integer-value"},
    {"prg", "program"},
    {"sch", "schedule"},
    {"tl", "trend-log"},
    {"tlm", "trend-log-multiple"},
};

constexpr Abbreviation PROPERTIES[] = {
    {"desc", "description"},  {"es", "event-state"},   {"hl", "high-limit"},         {"id", "object-identifier"},
    {"ll", "low-limit"},      {"lb", "log-buffer"},    {"name", "object-name"},      {"oos", "out-of-service"},
    {"pa", "priority-array"}, {"pv", "present-value"}, {"rd", "relinquish-default"}, {"rel", "reliability"},
    {"sf", "status-flags"},   {"type", "object-type"}, {"units", "units"},
};

template <std::size_t COUNT>
std::string_view NameOf(const Abbreviation (&abbreviations)[COUNT], std::string_view text) {
    const auto* const found = std::find_if(std::begin(abbreviations), std::end(abbreviations),
                                           [&](const Abbreviation& row) { return row.text == text; });
    return found == std::end(abbreviations) ? text : found->name;
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

} // namespace

std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeByName(std::string_view name) {
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes())
        if (name == type.Name)
            return type.Type;
    return std::nullopt;
}

std::optional<BACSTAC_PROPERTY_ID> PropertyByName(std::string_view name) {
    return bacnet::FindPropertyId(name);
}

std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeByText(std::string_view text) {
    if (const auto number = ParseU32(text))
        return *number <= MAX_OBJECT_TYPE ? number : std::nullopt;
    return ObjectTypeByName(NameOf(OBJECT_TYPES, LowerCase(text)));
}

std::optional<BACSTAC_PROPERTY_ID> PropertyByText(std::string_view text) {
    if (const auto number = ParseU32(text))
        return *number <= MAX_PROPERTY ? number : std::nullopt;
    return PropertyByName(NameOf(PROPERTIES, LowerCase(text)));
}
