// An object of a simulated device: a name, an identifier and properties. Most properties are stored values; a subclass
// computes those that change by themselves. Not thread-safe: the device that owns the object locks.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "simulator/model/Grammar.h"
#include "simulator/model/SimTime.h"
#include "simulator/model/Standard.h"
#include "simulator/model/Value.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace sim {

class FileObject;
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
inline constexpr PropertyError WRITE_ACCESS_DENIED{CLASS_PROPERTY, CODE_WRITE_ACCESS_DENIED};
inline constexpr PropertyError INVALID_DATA_TYPE{CLASS_PROPERTY, CODE_INVALID_DATA_TYPE};
inline constexpr PropertyError VALUE_OUT_OF_RANGE{CLASS_PROPERTY, CODE_VALUE_OUT_OF_RANGE};
inline constexpr PropertyError NO_SPACE_TO_WRITE{CLASS_RESOURCES, CODE_NO_SPACE_TO_WRITE_PROPERTY};
inline constexpr PropertyError NOT_NUMBERED{CLASS_PROPERTY, CODE_LIST_ITEM_NOT_NUMBERED};
inline constexpr PropertyError NOT_TIMESTAMPED{CLASS_PROPERTY, CODE_LIST_ITEM_NOT_TIMESTAMPED};

// Array index of a request that has none.
inline constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

// Priorities of commands (clause 19.2.2); 6 is kept for the minimum on and off times.
inline constexpr int PRIORITIES = 16;
inline constexpr int RESERVED_PRIORITY = 6;

// What a client, or a schedule, wants to have written.
struct WriteCommand {
    BACSTAC_PROPERTY_ID Property = 0;
    std::uint32_t Index = WHOLE;
    std::span<const std::uint8_t> Value; // as encoded
    int Priority = PRIORITIES;           // 1 to 16
};

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

    // Does what a client asks for, as far as the object allows it (clause 15.9). now: of the device.
    PropertyError Write(const WriteCommand& command, LocalTime now);

    // Adds the elements to a list or takes them out of it (clauses 15.1 and 15.2), all of them or none. failed: number
    // of the element that is the reason, from 1; 0 when it is none of them.
    PropertyError AddElements(const WriteCommand& command, std::uint32_t& failed);
    PropertyError RemoveElements(const WriteCommand& command, std::uint32_t& failed);

    // Takes the right to write a property, or gives it where the standard leaves that to the device.
    void SetWritable(BACSTAC_PROPERTY_ID property, bool writable);
    bool IsWritable(BACSTAC_PROPERTY_ID property) const;
    bool IsOutOfService() const;

    // Has the present value follow the priority array and its default. Nothing without a priority array.
    void Arbitrate();
    // Has Status_Flags follow the event state, the reliability and being out of service.
    void UpdateStatusFlags();

    // Clients may not delete it.
    void MakePermanent() { m_isPermanent = true; }
    bool IsPermanent() const { return m_isPermanent; }

    virtual LogObject* AsLog() { return nullptr; }
    virtual FileObject* AsFile() { return nullptr; }

protected:
    // Writes a computed property. The default has none that can be written.
    virtual PropertyError Accept(const WriteCommand& command, LocalTime now);

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
    PropertyError Command(const WriteCommand& command);
    PropertyError Replace(const WriteCommand& command);
    PropertyError ReplaceElement(const WriteCommand& command, const Value& present, BACSTAC_DATA_TYPE type);
    // The elements that the list has and those that the command gives; failed is the number of a faulty one, or 0.
    PropertyError ReadListCommand(const WriteCommand& command, WireElements& present, WireElements& given,
                                  std::uint32_t& failed) const;
    BACSTAC_DATA_TYPE TypeOf(BACSTAC_PROPERTY_ID property) const;
    bool IsInRange(BACSTAC_PROPERTY_ID property, std::span<const std::uint8_t> element) const;

    BACSTAC_OBJECT_ID m_id;
    bool m_showsPropertyList = false;
    bool m_isPermanent = false;
    std::vector<std::pair<BACSTAC_PROPERTY_ID, bool>> m_writable; // those that differ from what is usual
    std::vector<Property> m_properties;
};

} // namespace sim
