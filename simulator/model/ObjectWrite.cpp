// How an object takes what clients write: what may be written, of which type and range, and what follows from it.
#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/Access.h"
#include "simulator/model/Grammar.h"
#include "simulator/model/Object.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

namespace {

using Octets = std::span<const std::uint8_t>;

constexpr std::uint32_t MAX_ELEMENTS = 10'000; // of an array that a client resizes

bool IsNull(Octets octets) {
    return PrimitiveTagOf(octets) == bacnet::TAG_NULL;
}

// Types whose present value is an enumeration that nothing can be added to.
struct Limit {
    BACSTAC_OBJECT_TYPE Type;
    double Low;
    double High;
};

constexpr Limit PRESENT_VALUE_LIMITS[] = {
    {OBJ_BINARY_INPUT, 0, 1},
    {OBJ_BINARY_OUTPUT, 0, 1},
    {OBJ_BINARY_VALUE, 0, 1},
};

bool Equal(Octets a, Octets b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

// Where the element stands in the list; nothing when it is not there.
std::optional<std::size_t> Place(const WireElements& list, Octets element) {
    const auto at = std::find_if(list.begin(), list.end(), [&](Octets present) { return Equal(present, element); });
    return at == list.end() ? std::nullopt : std::optional(static_cast<std::size_t>(at - list.begin()));
}

WireElements ElementsOf(const Value& value) {
    WireElements elements;
    for (std::uint32_t i = 0; i < value.Count(); ++i)
        elements.push_back(value.Element(i));
    return elements;
}

// How many whole elements stand in front of what is wrong, plus one.
std::uint32_t NumberOfFault(Octets octets, BACSTAC_DATA_TYPE type) {
    std::uint32_t number = 1;
    bacnet::Reader in(octets);
    while (!in.AtEnd()) {
        Octets one;
        if (!in.Skip(&one) || (type != TYPE_NONE && !IsOneOf(one, type)))
            return number;
        ++number;
    }
    return number;
}

} // namespace

void Object::SetWritable(BACSTAC_PROPERTY_ID property, bool writable) {
    std::erase_if(m_writable, [=](const auto& entry) { return entry.first == property; });
    m_writable.emplace_back(property, writable);
}

bool Object::IsWritable(BACSTAC_PROPERTY_ID property) const {
    for (const auto& [known, writable] : m_writable)
        if (known == property)
            return writable;
    if (property == PROP_PRESENT_VALUE && MakesPresentValue(m_id.Type))
        return IsOutOfService();
    return !IsReadOnly(property);
}

bool Object::IsOutOfService() const {
    const Value* value = Find(PROP_OUT_OF_SERVICE);
    return value != nullptr && *value == Value::Boolean(true);
}

BACSTAC_DATA_TYPE Object::TypeOf(BACSTAC_PROPERTY_ID property) const {
    const bacnet::PropertyInfo* info = bacnet::FindProperty(m_id.Type, property);
    return info != nullptr ? info->Type : TYPE_NONE;
}

PropertyError Object::Write(const WriteCommand& command, LocalTime now) {
    if (!Has(command.Property))
        return UNKNOWN_PROPERTY;
    if (command.Property == PROP_PRESENT_VALUE && Find(PROP_PRIORITY_ARRAY) != nullptr && Find(PROP_PRESENT_VALUE))
        return Command(command);
    if (!IsWritable(command.Property))
        return WRITE_ACCESS_DENIED;
    const PropertyError error = Find(command.Property) != nullptr ? Replace(command) : Accept(command, now);
    if (!error.Ok())
        return error;
    if (command.Property == PROP_RELINQUISH_DEFAULT)
        Arbitrate();
    if (command.Property == PROP_OUT_OF_SERVICE || command.Property == PROP_RELIABILITY)
        UpdateStatusFlags();
    return {};
}

// Null relinquishes (clause 19.2.1).
PropertyError Object::Command(const WriteCommand& command) {
    if (command.Index != WHOLE)
        return NOT_AN_ARRAY;
    if (command.Priority == RESERVED_PRIORITY || !IsWritable(PROP_PRESENT_VALUE))
        return WRITE_ACCESS_DENIED;
    if (!IsNull(command.Value)) {
        if (!IsOneOf(command.Value, TypeOf(PROP_PRESENT_VALUE)))
            return INVALID_DATA_TYPE;
        if (!IsInRange(PROP_PRESENT_VALUE, command.Value))
            return VALUE_OUT_OF_RANGE;
    }
    const auto slot = static_cast<std::uint32_t>(command.Priority - 1);
    const Value priorities = *Find(PROP_PRIORITY_ARRAY);
    if (slot >= priorities.Count())
        return WRITE_ACCESS_DENIED;
    Set(PROP_PRIORITY_ARRAY, priorities.WithElement(slot, command.Value));
    Arbitrate();
    return {};
}

void Object::Arbitrate() {
    const Value* priorities = Find(PROP_PRIORITY_ARRAY);
    if (priorities == nullptr)
        return;
    std::uint32_t active = 0;
    while (active < priorities->Count() && IsNull(priorities->Element(active)))
        ++active;
    const bool commanded = active < priorities->Count();
    if (commanded)
        Set(PROP_PRESENT_VALUE, Value::Encoded(priorities->Element(active)));
    else if (const Value* fallback = Find(PROP_RELINQUISH_DEFAULT))
        Set(PROP_PRESENT_VALUE, Value(*fallback));
    if (Find(PROP_CURRENT_COMMAND_PRIORITY) != nullptr)
        Set(PROP_CURRENT_COMMAND_PRIORITY, commanded ? Value::Unsigned(active + 1) : Value::Null());
}

void Object::UpdateStatusFlags() {
    if (Find(PROP_STATUS_FLAGS) == nullptr)
        return;
    const auto isOff = [this](BACSTAC_PROPERTY_ID property) {
        const Value* value = Find(property);
        return value == nullptr || *value == Value::Enumerated(0);
    };
    // Bits in-alarm, fault, overridden, out-of-service.
    BACSTAC_BIT_STRING flags{};
    flags.BitCount = 4;
    flags.Bits[0] = static_cast<std::uint8_t>((isOff(PROP_EVENT_STATE) ? 0 : 1) | (isOff(PROP_RELIABILITY) ? 0 : 2) |
                                              (IsOutOfService() ? 8 : 0));
    Set(PROP_STATUS_FLAGS, Value::BitString(flags));
}

bool Object::IsInRange(BACSTAC_PROPERTY_ID property, Octets element) const {
    const std::optional<double> number = NumberIn(element);
    if (!number || (property != PROP_PRESENT_VALUE && property != PROP_RELINQUISH_DEFAULT))
        return true;
    for (const Limit& limit : PRESENT_VALUE_LIMITS)
        if (limit.Type == m_id.Type && (*number < limit.Low || *number > limit.High))
            return false;
    const auto limitOf = [this](BACSTAC_PROPERTY_ID name) {
        const Value* value = Find(name);
        return value == nullptr ? std::nullopt : NumberIn(value->Wire());
    };
    if (const auto states = limitOf(PROP_NUMBER_OF_STATES); states && (*number < 1 || *number > *states))
        return false;
    const auto low = limitOf(PROP_MIN_PRES_VALUE);
    const auto high = limitOf(PROP_MAX_PRES_VALUE);
    return !std::isnan(*number) && (!low || *number >= *low) && (!high || *number <= *high);
}

// A stored value. Its shape stays, and so does the type of a value that the standard gives none.
PropertyError Object::Replace(const WriteCommand& command) {
    const Value present = *Find(command.Property);
    const BACSTAC_DATA_TYPE type = TypeOf(command.Property);
    if (command.Index != WHOLE)
        return present.GetShape() == Shape::array ? ReplaceElement(command, present, type) : NOT_AN_ARRAY;
    if (present.GetShape() == Shape::single) {
        const bool known = type != TYPE_NONE && type != TYPE_ANY;
        const bool fits =
            known ? IsOneOf(command.Value, type)
                  : IsOneOf(command.Value, TYPE_NONE) &&
                        (type == TYPE_ANY || PrimitiveTagOf(command.Value) == PrimitiveTagOf(present.Wire()));
        if (!fits)
            return INVALID_DATA_TYPE;
        if (!IsInRange(command.Property, command.Value))
            return VALUE_OUT_OF_RANGE;
        Set(command.Property, Value::Encoded(command.Value));
        return {};
    }
    const auto elements = SplitElements(command.Value, type);
    if (!elements)
        return INVALID_DATA_TYPE;
    const bool fixed = present.GetShape() == Shape::array && IsFixedArray(command.Property);
    if (fixed && elements->size() != present.Count())
        return VALUE_OUT_OF_RANGE;
    Set(command.Property, Value::Of(present.GetShape(), *elements));
    return {};
}

// Element 0 is the size of the array (clause 12).
PropertyError Object::ReplaceElement(const WriteCommand& command, const Value& present, BACSTAC_DATA_TYPE type) {
    if (command.Index == 0) {
        bacnet::Reader in(command.Value);
        std::uint32_t count = 0;
        if (!in.Unsigned(count) || !in.AtEnd())
            return INVALID_DATA_TYPE;
        if (IsFixedArray(command.Property))
            return count == present.Count() ? PropertyError{} : WRITE_ACCESS_DENIED;
        if (count > MAX_ELEMENTS)
            return NO_SPACE_TO_WRITE;
        const Value fill = type == TYPE_STRING ? Value::String("") : Value::Null();
        if (present.Count() == 0 && count != 0 && type != TYPE_STRING)
            return VALUE_OUT_OF_RANGE; // there is nothing to make elements of
        Set(command.Property, present.Resized(count, fill));
        return {};
    }
    if (command.Index > present.Count())
        return INVALID_ARRAY_INDEX;
    if (!IsOneOf(command.Value, type))
        return INVALID_DATA_TYPE;
    Set(command.Property, present.WithElement(command.Index - 1, command.Value));
    return {};
}

PropertyError Object::ReadListCommand(const WriteCommand& command, WireElements& present, WireElements& given,
                                      std::uint32_t& failed) const {
    failed = 0;
    if (!Has(command.Property))
        return UNKNOWN_PROPERTY;
    const Value* const list = Find(command.Property);
    if (list == nullptr || list->GetShape() != Shape::list)
        return command.Index != WHOLE && (list == nullptr || list->GetShape() != Shape::array) ? NOT_AN_ARRAY
                                                                                               : NOT_A_LIST;
    if (command.Index != WHOLE)
        return NOT_AN_ARRAY;
    if (!IsWritable(command.Property))
        return WRITE_ACCESS_DENIED;
    const BACSTAC_DATA_TYPE type = TypeOf(command.Property);
    auto elements = SplitElements(command.Value, type);
    if (!elements) {
        failed = NumberOfFault(command.Value, type);
        return INVALID_DATA_TYPE;
    }
    given = std::move(*elements);
    present = ElementsOf(*list);
    return {};
}

// What is there already stays as it is.
PropertyError Object::AddElements(const WriteCommand& command, std::uint32_t& failed) {
    WireElements all;
    WireElements added;
    const PropertyError error = ReadListCommand(command, all, added, failed);
    if (!error.Ok())
        return error;
    for (std::uint32_t i = 0; i < added.size(); ++i) {
        if (all.size() >= MAX_ELEMENTS) {
            failed = i + 1;
            return {CLASS_RESOURCES, CODE_NO_SPACE_TO_ADD_LIST_ELEMENT};
        }
        if (!Place(all, added[i]))
            all.push_back(added[i]);
    }
    Set(command.Property, Value::Of(Shape::list, all));
    return {};
}

PropertyError Object::RemoveElements(const WriteCommand& command, std::uint32_t& failed) {
    WireElements left;
    WireElements removed;
    const PropertyError error = ReadListCommand(command, left, removed, failed);
    if (!error.Ok())
        return error;
    for (std::uint32_t i = 0; i < removed.size(); ++i) {
        const auto at = Place(left, removed[i]);
        if (!at) {
            failed = i + 1;
            return {CLASS_SERVICES, CODE_LIST_ELEMENT_NOT_FOUND};
        }
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(*at));
    }
    Set(command.Property, Value::Of(Shape::list, left));
    return {};
}

PropertyError Object::Accept(const WriteCommand&, LocalTime) {
    return WRITE_ACCESS_DENIED;
}

} // namespace sim
