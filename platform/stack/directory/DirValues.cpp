#include "platform/stack/directory/DirValues.h"

#include "api/bacnet/PropertyValue.h"

namespace bacnet::directory {

// Typed values cannot be made yet, so that there are none to store either.
bool StoreValue(const CPropertyValue&, StoredValue&) {
    return false;
}

std::unique_ptr<CPropertyValue> RestoreValue(std::uint32_t, const StoredValue&) {
    return nullptr;
}

} // namespace bacnet::directory
