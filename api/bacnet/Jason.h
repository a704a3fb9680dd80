// A value in the manner of JSON: what CPropertyValue::Encode gives and Decode takes. One thread at a time uses one
// value. Copies are deep.
#pragma once

#include "api/bacnet/Export.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace jason {

struct member_t;

class BCN_API value_t {
public:
    using array_t = std::vector<value_t>;
    using object_t = std::vector<member_t>; // in the order in which they were added

    value_t() = default; // null
    // Not defined here: a member is complete only below.
    explicit value_t(bool value);
    explicit value_t(std::int64_t value);
    explicit value_t(double value);
    explicit value_t(std::string value); // UTF-8
    explicit value_t(array_t value);
    explicit value_t(object_t value);
    // A text is no bool, a small number no double: every value says its kind.
    value_t(const char*) = delete;
    value_t(int) = delete;

    bool is_null() const { return std::holds_alternative<std::monostate>(m_value); }
    // The value of one of the kinds above; null when it is of another kind.
    template <typename Kind>
    const Kind* get() const {
        return std::get_if<Kind>(&m_value);
    }
    // Member of an object; null when there is none, and when this is no object.
    const value_t* find(std::string_view name) const;
    // Appends a member; what is no object becomes an empty one first.
    void add(std::string name, value_t value);

    bool operator==(const value_t& other) const;

private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, array_t, object_t> m_value;
};

struct member_t {
    std::string name;
    value_t value;
    bool operator==(const member_t&) const = default;
};

} // namespace jason
