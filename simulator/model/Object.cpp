#include "simulator/model/Object.h"

#include <algorithm>
#include <utility>

namespace sim {

void Object::Set(BACSTAC_PROPERTY_ID property, Value value) {
    for (Property& present : m_properties) {
        if (present.Id == property) {
            present.Content = std::move(value);
            return;
        }
    }
    m_properties.push_back({property, std::move(value)});
}

void Object::Remove(BACSTAC_PROPERTY_ID property) {
    std::erase_if(m_properties, [=](const Property& present) { return present.Id == property; });
}

const Value* Object::Find(BACSTAC_PROPERTY_ID property) const {
    for (const Property& present : m_properties)
        if (present.Id == property)
            return &present.Content;
    return nullptr;
}

bool Object::Has(BACSTAC_PROPERTY_ID property) const {
    const auto computed = Computed();
    return Find(property) != nullptr || (m_showsPropertyList && property == PROP_PROPERTY_LIST) ||
           std::find(computed.begin(), computed.end(), property) != computed.end();
}

std::vector<BACSTAC_PROPERTY_ID> Object::Properties() const {
    std::vector<BACSTAC_PROPERTY_ID> all;
    const auto computed = Computed();
    all.reserve(m_properties.size() + computed.size());
    for (const Property& present : m_properties)
        all.push_back(present.Id);
    all.insert(all.end(), computed.begin(), computed.end());
    return all;
}

PropertyError Object::Read(BACSTAC_PROPERTY_ID property, std::uint32_t index, bacnet::Writer& to) const {
    const Value* value = Find(property);
    if (value == nullptr && property == PROP_PROPERTY_LIST && m_showsPropertyList)
        return ReadPropertyList(index, to);
    if (value == nullptr)
        return Compute(property, index, to).value_or(UNKNOWN_PROPERTY);
    if (index == WHOLE) {
        to.Octets(value->Wire());
        return {};
    }
    if (value->GetShape() != Shape::array)
        return NOT_AN_ARRAY;
    return ReadArray(value->Count(), index, to,
                     [value](bacnet::Writer& out, std::uint32_t i) { out.Octets(value->Element(i)); });
}

// Without the name, the identifier and the type, which every object has, and without itself.
PropertyError Object::ReadPropertyList(std::uint32_t index, bacnet::Writer& to) const {
    std::vector<BACSTAC_PROPERTY_ID> all = Properties();
    std::erase_if(all, [](BACSTAC_PROPERTY_ID property) {
        return property == PROP_OBJECT_NAME || property == PROP_OBJECT_IDENTIFIER || property == PROP_OBJECT_TYPE;
    });
    return ReadArray(static_cast<std::uint32_t>(all.size()), index, to,
                     [&all](bacnet::Writer& out, std::uint32_t i) { out.Enumerated(all[i]); });
}

std::optional<PropertyError> Object::Compute(BACSTAC_PROPERTY_ID, std::uint32_t, bacnet::Writer&) const {
    return std::nullopt;
}

} // namespace sim
