// An object of a simulated device: a name, an identifier and properties. Most properties are stored values; a subclass
// computes those that change by themselves. Not thread-safe: the device that owns the object locks.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "simulator/model/Standard.h"
#include "simulator/model/Value.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace sim {

class LogObject;

// Why a property was not read: the Error of clause 18. Code 0 of class 0 does not occur, so it stands for success.
struct PropertyError {
    std::uint32_t Class = 0;
    std::uint32_t Code = 0;

    bool Ok() const { return Class == 0 && Code == 0; }
    friend bool operator==(const PropertyError&, const PropertyError&) = default;
};

inline constexpr PropertyError UNKNOWN_OBJECT{CLASS_OBJECT, CODE_UNKNOWN_OBJECT};
inline constexpr PropertyError UNKNOWN_PROPERTY{CLASS_PROPERTY, CODE_UNKNOWN_PROPERTY};
inline constexpr PropertyError INVALID_ARRAY_INDEX{CLASS_PROPERTY, CODE_INVALID_ARRAY_INDEX};
inline constexpr PropertyError NOT_AN_ARRAY{CLASS_PROPERTY, CODE_PROPERTY_IS_NOT_AN_ARRAY};
inline constexpr PropertyError NOT_A_LIST{CLASS_SERVICES, CODE_PROPERTY_IS_NOT_A_LIST};
inline constexpr PropertyError READ_ACCESS_DENIED{CLASS_PROPERTY, CODE_READ_ACCESS_DENIED};
inline constexpr PropertyError NOT_NUMBERED{CLASS_PROPERTY, CODE_LIST_ITEM_NOT_NUMBERED};
inline constexpr PropertyError NOT_TIMESTAMPED{CLASS_PROPERTY, CODE_LIST_ITEM_NOT_TIMESTAMPED};

// Array index of a request that has none.
inline constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

class Object {
public:
    explicit Object(BACSTAC_OBJECT_ID id) : m_id(id) {}
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    BACSTAC_OBJECT_ID Id() const { return m_id; }

    // Adds a property, or replaces its value. Properties are listed in the order in which they were added.
    void Set(BACSTAC_PROPERTY_ID property, Value value);
    void Remove(BACSTAC_PROPERTY_ID property);
    const Value* Find(BACSTAC_PROPERTY_ID property) const;
    bool Has(BACSTAC_PROPERTY_ID property) const;
    std::vector<BACSTAC_PROPERTY_ID> Properties() const; // stored and computed, without Property_List

    // From protocol revision 14 on every object has Property_List; the device says so when it takes the object.
    void ShowPropertyList() { m_showsPropertyList = true; }

    // Writes the value, or the element of an array (index 0: the number of elements), with its application tags. An
    // overflow of the writer is the caller's to see.
    PropertyError Read(BACSTAC_PROPERTY_ID property, std::uint32_t index, bacnet::Writer& to) const;

    virtual LogObject* AsLog() { return nullptr; }

protected:
    // Nothing when the property is not a computed one. The default has none.
    virtual std::optional<PropertyError> Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                                 bacnet::Writer& to) const;
    virtual std::span<const BACSTAC_PROPERTY_ID> Computed() const { return {}; }

    // Writes a computed array of count elements, of which element(writer, i) writes number i, from 0.
    template <typename Element>
    static PropertyError ReadArray(std::uint32_t count, std::uint32_t index, bacnet::Writer& to, Element element) {
        if (index == 0) {
            to.Unsigned(count);
        } else if (index == WHOLE) {
            for (std::uint32_t i = 0; i < count && !to.Overflow(); ++i)
                element(to, i);
        } else if (index > count) {
            return INVALID_ARRAY_INDEX;
        } else {
            element(to, index - 1);
        }
        return {};
    }

private:
    struct Property {
        BACSTAC_PROPERTY_ID Id;
        Value Content;
    };

    PropertyError ReadPropertyList(std::uint32_t index, bacnet::Writer& to) const;

    BACSTAC_OBJECT_ID m_id;
    bool m_showsPropertyList = false;
    std::vector<Property> m_properties;
};

} // namespace sim
