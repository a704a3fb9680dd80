#include "api/bacnet/Jason.h"

namespace jason {

value_t::value_t(bool value) : m_value(value) {}
value_t::value_t(std::int64_t value) : m_value(value) {}
value_t::value_t(double value) : m_value(value) {}
value_t::value_t(std::string value) : m_value(std::move(value)) {}
value_t::value_t(array_t value) : m_value(std::move(value)) {}
value_t::value_t(object_t value) : m_value(std::move(value)) {}

const value_t* value_t::find(std::string_view name) const {
    if (const auto* const members = get<object_t>()) {
        for (const member_t& member : *members) {
            if (member.name == name)
                return &member.value;
        }
    }
    return nullptr;
}

void value_t::add(std::string name, value_t value) {
    if (!std::holds_alternative<object_t>(m_value))
        m_value = object_t();
    std::get<object_t>(m_value).push_back({std::move(name), std::move(value)});
}

bool value_t::operator==(const value_t& other) const {
    return m_value == other.m_value;
}

} // namespace jason
