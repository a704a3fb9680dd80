#include "platform/stack/schema/PropertyNames.h"

#include "platform/stack/schema/PropertyTable.h"

namespace bacnet {
namespace {

consteval bool Ascending() {
    for (std::size_t row = 1; row < std::size(PROPERTY_NAMES); ++row) {
        if (PROPERTY_NAMES[row].Property <= PROPERTY_NAMES[row - 1].Property)
            return false;
    }
    return true;
}

consteval bool NamesAreUnique() {
    for (std::size_t i = 1; i < PROPERTIES_BY_NAME.size(); ++i) {
        if (std::string_view(PROPERTY_NAMES[PROPERTIES_BY_NAME[i]].Name) ==
            PROPERTY_NAMES[PROPERTIES_BY_NAME[i - 1]].Name)
            return false;
    }
    return true;
}

static_assert(Ascending(), "properties are sorted by number, each once");
static_assert(NamesAreUnique(), "no two properties have one name");

} // namespace

const char* FindPropertyName(BACSTAC_PROPERTY_ID property) {
    const auto* const found =
        std::lower_bound(std::begin(PROPERTY_NAMES), std::end(PROPERTY_NAMES), property,
                         [](const PropertyName& row, BACSTAC_PROPERTY_ID wanted) { return row.Property < wanted; });
    if (found == std::end(PROPERTY_NAMES) || found->Property != property)
        return nullptr;
    return found->Name;
}

std::optional<BACSTAC_PROPERTY_ID> FindPropertyId(std::string_view name) {
    const PropertyName* const found = FindByName(name);
    if (found == nullptr)
        return std::nullopt;
    return found->Property;
}

} // namespace bacnet
