#include "simulator/server/Quirks.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/services/ReadProperty.h"
#include "simulator/server/Handlers.h"

#include <vector>

namespace sim {

namespace {

using Octets = std::vector<std::uint8_t>;

constexpr std::uint8_t NO_CHARACTER_SET = 9;
constexpr std::uint8_t UCS2 = 4;
constexpr std::size_t DEEP = 200;             // opening tags, more than any value has
constexpr std::uint8_t OPENING_TAG = 0x0E;    // number 0
constexpr std::size_t MANY_OBJECTS = 100'000; // where a growing list stops

// Texts claim a character set that does not exist, or one in which they have half a character too many.
void SpoilTexts(Octets& octets) {
    bacnet::Reader in(octets);
    bacnet::Tag tag;
    while (in.ReadTag(tag)) {
        const std::size_t at = in.Offset();
        std::span<const std::uint8_t> content;
        if (!in.Octets(tag.Length, content))
            return;
        const bool text = tag.Kind == bacnet::TagKind::application && tag.Number == bacnet::TAG_CHARACTER_STRING;
        if (text && !content.empty())
            octets[at] = content.size() % 2 == 0 ? UCS2 : NO_CHARACTER_SET;
    }
}

// A number where a text belongs, and a text where anything else belongs.
Octets OtherType(const Octets& octets) {
    bacnet::Reader in(octets);
    const Value value =
        in.IsApplication(bacnet::TAG_CHARACTER_STRING) ? Value::Unsigned(42) : Value::String("wrong type");
    return {value.Wire().begin(), value.Wire().end()};
}

void LieAboutSize(const Device& device, Octets& octets) {
    bacnet::Reader in(octets);
    std::uint32_t count = 0;
    if (!in.Unsigned(count))
        return;
    const Value lie = Value::Unsigned(Told(device, count));
    octets.assign(lie.Wire().begin(), lie.Wire().end());
}

// Changes what was written from there on.
void Spoil(const Device& device, const bacnet::PropertyTarget& target, std::size_t from, bacnet::Writer& to) {
    const Quirks& quirks = device.GetQuirks();
    if (to.Overflow())
        return;
    Octets octets(to.Written().begin() + static_cast<std::ptrdiff_t>(from), to.Written().end());
    if (quirks.WrongTypes)
        octets = OtherType(octets);
    if (quirks.WrongCharacterSet)
        SpoilTexts(octets);
    if (quirks.LyingCounts && target.ArrayIndex == 0)
        LieAboutSize(device, octets);
    if (quirks.NestedForever)
        octets.assign(DEEP, OPENING_TAG);
    if (quirks.TruncatedTags && !octets.empty())
        octets.pop_back();
    to.Rewind(from);
    to.Octets(octets);
}

// One more each time that somebody looks.
void Grow(Device& device) {
    ObjectConfig added;
    added.Id.Type = OBJ_ANALOG_VALUE;
    if (device.Objects().size() < MANY_OBJECTS && device.ChooseIdentifier({0, OBJ_ANALOG_VALUE, 0}, added.Id).Ok())
        device.Create(added);
}

PropertyError ReadHugeList(const Device& device, std::uint32_t index, bacnet::Writer& to) {
    const std::uint32_t size = device.GetQuirks().ObjectListSize;
    const auto& objects = device.Objects();
    const auto put = [&](std::uint32_t i) {
        to.ObjectId(i < objects.size() ? objects[i] : BACSTAC_OBJECT_ID{OBJ_ANALOG_VALUE, i % BACSTAC_MAX_INSTANCE});
    };
    if (index == 0)
        to.Unsigned(size);
    else if (index == WHOLE)
        for (std::uint32_t i = 0; i < size && !to.Overflow(); ++i)
            put(i);
    else if (index > size)
        return INVALID_ARRAY_INDEX;
    else
        put(index - 1);
    return {};
}

} // namespace

PropertyError ReadOf(Device& device, const Object& object, const bacnet::PropertyTarget& target, bacnet::Writer& to) {
    const Quirks& quirks = device.GetQuirks();
    const std::uint32_t index = IndexOf(target);
    if (!quirks.Any())
        return object.Read(target.Property, index, to);
    if (quirks.Unreadable == target.Property && object.Has(target.Property))
        return READ_ACCESS_DENIED;
    const bool isObjectList = target.Property == PROP_OBJECT_LIST && object.Id() == device.Id();
    if (isObjectList && quirks.ObjectListSize != 0)
        return ReadHugeList(device, index, to);
    if (isObjectList && quirks.GrowingObjectList)
        Grow(device);
    const std::size_t from = to.Size();
    const PropertyError error = object.Read(target.Property, index, to);
    if (error.Ok())
        Spoil(device, target, from, to);
    return error;
}

} // namespace sim
