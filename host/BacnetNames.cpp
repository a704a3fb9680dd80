#include "host/BacnetNames.h"

#include <algorithm>
#include <iterator>

namespace {

struct Name {
    std::string_view name;
    std::uint32_t number;
};

constexpr Name OBJECT_TYPES[] = {
    {"accumulator", 23},
    {"analog-input", 0},
    {"analog-output", 1},
    {"analog-value", 2},
    {"averaging", 18},
    {"binary-input", 3},
    {"binary-output", 4},
    {"binary-value", 5},
    {"bitstring-value", 39},
    {"calendar", 6},
    {"characterstring-value", 40},
    {"command", 7},
    {"date-pattern-value", 41},
    {"date-value", 42},
    {"datetime-pattern-value", 43},
    {"datetime-value", 44},
    {"device", 8},
    {"event-enrollment", 9},
    {"file", 10},
    {"integer-value", 45},
    {"large-analog-value", 46},
    {"life-safety-point", 21},
    {"life-safety-zone", 22},
    {"loop", 12},
    {"multi-state-input", 13},
    {"multi-state-output", 14},
    {"multi-state-value", 19},
    {"notification-class", 15},
    {"octetstring-value", 47},
    {"positive-integer-value", 48},
    {"program", 16},
    {"pulse-converter", 24},
    {"schedule", 17},
    {"time-pattern-value", 49},
    {"time-value", 50},
    {"trend-log", 20},
    {"trend-log-multiple", 27},
};

constexpr Name PROPERTIES[] = {
    {"alarm-value", 6},     {"cov-increment", 22},  {"description", 28},         {"event-state", 36},
    {"high-limit", 45},     {"log-buffer", 131},    {"low-limit", 59},           {"object-name", 77},
    {"out-of-service", 81}, {"polarity", 84},       {"present-value", 85},       {"priority-array", 87},
    {"record-count", 141},  {"reliability", 103},   {"relinquish-default", 104}, {"setpoint", 108},
    {"status-flags", 111},  {"system-status", 112}, {"total-record-count", 145}, {"units", 117},
};

template <std::size_t COUNT>
constexpr bool IsSorted(const Name (&names)[COUNT]) {
    return std::is_sorted(std::begin(names), std::end(names),
                          [](const Name& left, const Name& right) { return left.name < right.name; });
}
static_assert(IsSorted(OBJECT_TYPES) && IsSorted(PROPERTIES));

template <std::size_t COUNT>
std::optional<std::uint32_t> Find(const Name (&names)[COUNT], std::string_view name) {
    const auto found = std::lower_bound(std::begin(names), std::end(names), name,
                                        [](const Name& left, std::string_view right) { return left.name < right; });
    if (found == std::end(names) || found->name != name)
        return std::nullopt;
    return found->number;
}

} // namespace

std::optional<std::uint32_t> ObjectTypeByName(std::string_view name) {
    return Find(OBJECT_TYPES, name);
}

std::optional<std::uint32_t> PropertyByName(std::string_view name) {
    return Find(PROPERTIES, name);
}
