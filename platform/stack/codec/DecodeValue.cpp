#include "platform/stack/codec/ValueCodec.h"

#include "api/bacnet/Records.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Sink.h"

#include <bit>
#include <cstring>

namespace bacnet {
namespace {

// HasStatus and its like are a byte that is treated as the u32 of the same value.
static_assert(std::endian::native == std::endian::little);

template <typename Value>
void Store(std::uint8_t* to, const Value& value) {
    std::memcpy(to, &value, sizeof(Value));
}

std::uint32_t Load32(const std::uint8_t* from) {
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof(value));
    return value;
}

// One primitive that lies in the record itself. to has room for the type's size.
bool DecodePrimitive(Reader& in, BACSTAC_DATA_TYPE type, int tag, std::uint8_t* to) {
    const auto store = [to](bool read, const auto& value) {
        if (read)
            Store(to, value);
        return read;
    };
    switch (type) {
    case TYPE_NULL:
        return in.Null(tag);
    case TYPE_BOOLEAN: {
        bool value = false;
        return store(in.Boolean(value, tag), value);
    }
    case TYPE_UNSIGNED: {
        std::uint32_t value = 0;
        return store(in.Unsigned(value, tag), value);
    }
    case TYPE_SIGNED: {
        std::int32_t value = 0;
        return store(in.Signed(value, tag), value);
    }
    case TYPE_REAL: {
        float value = 0;
        return store(in.Real(value, tag), value);
    }
    case TYPE_DOUBLE: {
        double value = 0;
        return store(in.Double(value, tag), value);
    }
    case TYPE_BIT_STRING: {
        BACSTAC_BIT_STRING value{};
        return store(in.BitString(value, tag), value);
    }
    case TYPE_ENUMERATED: {
        std::uint32_t value = 0;
        return store(in.Enumerated(value, tag), value);
    }
    case TYPE_DATE: {
        BACSTAC_DATE value{};
        return store(in.Date(value, tag), value);
    }
    case TYPE_TIME: {
        BACSTAC_TIME value{};
        return store(in.Time(value, tag), value);
    }
    case TYPE_OBJECT_ID: {
        BACSTAC_OBJECT_ID value{};
        return store(in.ObjectId(value, tag), value);
    }
    case TYPE_WEEK_N_DAY: {
        std::span<const std::uint8_t> octets;
        if (!in.OctetString(octets, tag))
            return false;
        if (octets.size() != 3)
            return in.Fail(DecodeError::badLength);
        const auto field = [](std::uint8_t octet, std::uint32_t unspecified) {
            return octet == 255 ? unspecified : std::uint32_t{octet};
        };
        Store(to, BACSTAC_WEEK_N_DAY{field(octets[0], 0), field(octets[1], BACSTAC_ANY_WEEK), field(octets[2], 0)});
        return true;
    }
    default:
        return in.Fail(DecodeError::unexpected);
    }
}

// The decoded type of an application-tagged primitive.
BACSTAC_DATA_TYPE TypeOfTag(const Tag& tag) {
    if (tag.Kind != TagKind::application || tag.Number > TAG_OBJECT_ID)
        return TYPE_NONE;
    return tag.Number == TAG_CHARACTER_STRING ? TYPE_STRING : tag.Number;
}

// Appends one string of either kind behind the elements before it.
bool AppendString(Reader& in, BACSTAC_DATA_TYPE type, Sink& sink, int tag = APPLICATION) {
    std::span<const std::uint8_t> octets;
    const std::span<std::uint8_t> gap = sink.Gap();
    if (type == TYPE_STRING) {
        if (!in.CharacterString(octets, tag))
            return false;
        const std::size_t length = DecodeText(octets, reinterpret_cast<char*>(gap.data()), gap.size());
        if (length >= gap.size())
            return sink.Refuse() != nullptr;
        sink.Take(static_cast<std::uint32_t>(length + 1));
        return true;
    }
    if (!in.OctetString(octets, tag))
        return false;
    const std::size_t size = sizeof(std::uint32_t) + (octets.size() + 3) / 4 * 4;
    std::uint8_t* to = size > gap.size() ? sink.Refuse() : sink.Append(static_cast<std::uint32_t>(size));
    if (to == nullptr)
        return false;
    Store(to, static_cast<std::uint32_t>(octets.size()));
    if (!octets.empty())
        std::memcpy(to + sizeof(std::uint32_t), octets.data(), octets.size());
    return true;
}

bool DecodeRaw(std::span<const std::uint8_t> octets, BACSTAC_ANY_VALUE& value, Sink& sink) {
    const auto size = static_cast<std::uint32_t>(octets.size());
    value = {TYPE_RAW, 0, size, size};
    if (size == 0)
        return true;
    std::uint8_t* to = sink.Behind(size, 1, value.Offset);
    if (to == nullptr)
        return false;
    std::memcpy(to, octets.data(), size);
    return true;
}

// A date with a time is the one value of two primitives that stands where primitives do.
bool DecodeDateTime(std::span<const std::uint8_t> octets, BACSTAC_ANY_VALUE& value, Sink& sink, bool& isOne) {
    Reader in(octets);
    BACSTAC_DATE_TIME dateTime{};
    isOne = in.Date(dateTime.Date) && in.Time(dateTime.Time) && in.AtEnd();
    if (!isOne)
        return true;
    value = {TYPE_DATE_TIME, 0, sizeof(dateTime), 1};
    std::uint8_t* to = sink.Behind(sizeof(dateTime), 8, value.Offset);
    if (to != nullptr)
        Store(to, dateTime);
    return to != nullptr;
}

// What stands for a value of any type: primitives of one type are decoded, all else stays as it is.
bool DecodeAny(std::span<const std::uint8_t> octets, BACSTAC_ANY_VALUE& value, Sink& sink) {
    Reader in(octets);
    Tag first;
    const BACSTAC_DATA_TYPE type = in.PeekTag(first) ? TypeOfTag(first) : TYPE_NONE;
    if (type == TYPE_NONE)
        return DecodeRaw(octets, value, sink);
    const Sink::Mark mark = sink.Position();
    const bool string = FindType(type)->Size == 0;
    std::uint32_t count = 0;
    while (!in.AtEnd() && in.Ok() && !sink.Full()) {
        if (string) {
            if (!AppendString(in, type, sink))
                break;
        } else {
            std::uint8_t* to = sink.Append(FindType(type)->Size);
            if (to == nullptr || !DecodePrimitive(in, type, APPLICATION, to))
                break;
        }
        ++count;
    }
    if (sink.Full())
        return false;
    if (!in.Ok()) {
        sink.GoBack(mark);
        bool isDateTime = false;
        const bool stored = type == TYPE_DATE && DecodeDateTime(octets, value, sink, isDateTime);
        return isDateTime ? stored : DecodeRaw(octets, value, sink);
    }
    value = {type, 0, sink.Low() - mark.Low, count};
    return sink.MoveBehind(mark, value.Offset);
}

class RecordDecoder {
public:
    RecordDecoder(Reader& in, Sink& sink) : m_in(in), m_sink(sink) {}

    // One value: with its own tag or as its members stand there (APPLICATION), or within context tag number tag.
    bool Element(const TypeInfo& type, int tag, std::uint8_t* to) {
        if (type.Kind == TypeKind::primitive)
            return type.Type == TYPE_ANY ? AnyElement(to) : DecodePrimitive(m_in, type.Type, tag, to);
        if (tag < 0)
            return Body(type, to);
        const auto number = static_cast<unsigned>(tag);
        return m_in.Open(number) && Body(type, to) && m_in.Close(number);
    }

    // Elements one behind the other, up to the end or to closing tag number closing, or UNTIL_CLOSING.
    bool Run(const TypeInfo& type, int closing, std::uint32_t& count) {
        count = 0;
        while (!AtEndOf(closing)) {
            const Sink::Mark mark = m_sink.Position();
            const std::size_t start = m_in.Offset();
            bool decoded = false;
            if (type.Size == 0) {
                decoded = AppendString(m_in, type.Type, m_sink);
            } else {
                std::uint8_t* to = m_sink.Append(type.Size);
                decoded = to != nullptr && Element(type, APPLICATION, to);
            }
            if (decoded && m_in.Offset() == start)
                decoded = m_in.Fail(DecodeError::unexpected); // an element of nothing would stand here for ever
            if (!decoded) {
                const bool full = m_sink.Full();
                m_sink.GoBack(mark);
                if (full)
                    m_sink.Refuse();
                return false;
            }
            ++count;
        }
        return m_in.Ok();
    }

private:
    static constexpr int UNTIL_CLOSING = -2; // whatever its number

    bool AtEndOf(int closing) const {
        Tag tag;
        if (closing == UNTIL_CLOSING)
            return m_in.AtEnd() || (m_in.PeekTag(tag) && tag.Kind == TagKind::closing);
        return closing < 0 ? m_in.AtEnd() : m_in.IsClosing(static_cast<unsigned>(closing));
    }

    bool Body(const TypeInfo& type, std::uint8_t* to) {
        switch (type.Kind) {
        case TypeKind::sequence:
            for (const Member& member : type.Members) {
                if (!MemberOf(member, to))
                    return false;
            }
            return true;
        case TypeKind::choice:
            return Choice(type, to);
        case TypeKind::variant:
            return Variant(type, to);
        case TypeKind::address:
            return Address(to);
        case TypeKind::primitive:
            break;
        }
        return m_in.Fail(DecodeError::unexpected);
    }

    static bool IsBracketed(const Member& member) {
        return member.Form == MemberForm::list || member.Form == MemberForm::any ||
               (member.Form == MemberForm::value && !IsPrimitiveType(member.Type));
    }

    bool IsNext(const Tag& tag, const Member& member) const {
        if (member.Context < 0)
            return tag.Kind == TagKind::application &&
                   (member.Type == TYPE_ANY || tag.Number == FindType(member.Type)->Tag);
        return tag.Number == member.Context && tag.Kind == (IsBracketed(member) ? TagKind::opening : TagKind::context);
    }

    bool MemberOf(const Member& member, std::uint8_t* record) {
        if (member.Optional != Presence::required) {
            Tag tag;
            if (!m_in.PeekTag(tag) || !IsNext(tag, member)) {
                Store(record + member.Offset, member.Absent);
                return m_in.Ok();
            }
            if (member.Optional == Presence::flagged) {
                std::uint8_t* flags = record + member.PresenceOffset;
                Store(flags, Load32(flags) | member.PresenceBits);
            }
        }
        std::uint8_t* to = record + member.Offset;
        switch (member.Form) {
        case MemberForm::value:
            return IsPrimitiveType(member.Type) ? DecodePrimitive(m_in, member.Type, member.Context, to)
                                                : Element(*FindType(member.Type), member.Context, to);
        case MemberForm::list:
            return ListOf(member, to);
        case MemberForm::any:
            return AnyOf(member, to);
        case MemberForm::values:
            return ValuesOf(to);
        case MemberForm::string:
            return StringOf(member, to);
        }
        return false;
    }

    bool ListOf(const Member& member, std::uint8_t* to) {
        const Sink::Mark mark = m_sink.Position();
        BACSTAC_LIST list{};
        const TypeInfo& type = *FindType(member.Type);
        const auto number = static_cast<unsigned>(member.Context);
        const bool whole = member.Context < 0
                               ? Run(type, UNTIL_CLOSING, list.Count)
                               : m_in.Open(number) && Run(type, member.Context, list.Count) && m_in.Close(number);
        if (!whole || !m_sink.MoveBehind(mark, list.Offset))
            return false;
        Store(to, list);
        return true;
    }

    bool AnyOf(const Member& member, std::uint8_t* to) {
        std::span<const std::uint8_t> octets;
        if (member.Context < 0)
            return AnyElement(to);
        BACSTAC_ANY_VALUE value{};
        if (!m_in.Enclosed(static_cast<unsigned>(member.Context), octets) || !DecodeAny(octets, value, m_sink))
            return false;
        Store(to, value);
        return true;
    }

    bool AnyElement(std::uint8_t* to) {
        std::span<const std::uint8_t> octets;
        BACSTAC_ANY_VALUE value{};
        if (!m_in.Skip(&octets) || !DecodeAny(octets, value, m_sink))
            return false;
        Store(to, value);
        return true;
    }

    bool ValuesOf(std::uint8_t* to) {
        const std::size_t start = m_in.Offset();
        Tag tag;
        while (m_in.PeekTag(tag) && tag.Kind == TagKind::application) {
            if (!m_in.Skip())
                return false;
        }
        BACSTAC_ANY_VALUE value{TYPE_NONE, 0, 0, 0};
        const std::span<const std::uint8_t> octets = m_in.Since(start);
        if (!octets.empty() && !DecodeAny(octets, value, m_sink))
            return false;
        Store(to, value);
        return true;
    }

    bool StringOf(const Member& member, std::uint8_t* to) {
        const Sink::Mark mark = m_sink.Position();
        std::uint32_t offset = 0;
        if (!AppendString(m_in, member.Type, m_sink, member.Context) || !m_sink.MoveBehind(mark, offset))
            return false;
        Store(to, offset);
        return true;
    }

    bool Choice(const TypeInfo& type, std::uint8_t* to) {
        Tag tag;
        if (!m_in.PeekTag(tag))
            return m_in.Skip() && false; // says what is wrong there
        // Alternatives mostly stand at the place of their tag.
        const std::size_t guess = tag.Number < type.Members.size() ? tag.Number : 0;
        const Member* chosen = IsNext(tag, type.Members[guess]) ? &type.Members[guess] : nullptr;
        for (std::size_t i = 0; chosen == nullptr && i < type.Members.size(); ++i) {
            if (IsNext(tag, type.Members[i]))
                chosen = &type.Members[i];
        }
        if (chosen != nullptr) {
            Store(to, chosen->Choice);
            return MemberOf(*chosen, to);
        }
        if (type.OpenType == TYPE_NONE || tag.Kind != TagKind::context)
            return m_in.Fail(DecodeError::unexpected);
        Store(to, std::uint32_t{tag.Number});
        return DecodePrimitive(m_in, type.OpenType, tag.Number, to + sizeof(std::uint32_t));
    }

    bool Variant(const TypeInfo& type, std::uint8_t* to) {
        Tag tag;
        if (!m_in.PeekTag(tag))
            return m_in.Skip() && false;
        Store(to, std::uint32_t{tag.Number});
        BACSTAC_ANY_VALUE value{};
        const TypeInfo* inner = FindAlternative(type, tag.Number);
        if (tag.Kind == TagKind::context && tag.Length == 0) {
            if (!m_in.Null(tag.Number))
                return false;
            value = {TYPE_NULL, 0, 0, 1};
        } else if (inner != nullptr) {
            // The record is appended, so that its own references go behind it, and then goes behind too.
            const Sink::Mark mark = m_sink.Position();
            std::uint8_t* record = m_sink.Append(inner->Size);
            if (record == nullptr || !Element(*inner, tag.Number, record))
                return false;
            value = {inner->Type, 0, inner->Size, 1};
            if (!m_sink.MoveBehind(mark, value.Offset))
                return false;
        } else {
            std::span<const std::uint8_t> octets;
            if (!m_in.Enclosed(tag.Number, octets) || !DecodeRaw(octets, value, m_sink))
                return false;
        }
        Store(to + sizeof(std::uint32_t), value);
        return true;
    }

    bool Address(std::uint8_t* to) {
        std::uint32_t network = 0;
        std::span<const std::uint8_t> mac;
        if (!m_in.Unsigned(network) || !m_in.OctetString(mac))
            return false;
        BACSTAC_ADDRESS address{};
        if (network > 65535 || mac.size() > sizeof(address.Mac))
            return m_in.Fail(DecodeError::badLength);
        address.Remote = network != 0 ? 1 : 0;
        address.Network = static_cast<std::uint16_t>(network);
        address.MacLength = static_cast<std::uint8_t>(mac.size());
        if (!mac.empty())
            std::memcpy(address.Mac, mac.data(), mac.size());
        Store(to, address);
        return true;
    }

    Reader& m_in;
    Sink& m_sink;
};

void SetResult(BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_DATA_TYPE type, std::uint32_t count) {
    contents.DataType = type;
    contents.ElementCount = count;
}

} // namespace

DecodeResult DecodeElements(std::span<const std::uint8_t> encoded, const TypeInfo& type, bool single,
                            BACSTAC_PROPERTY_CONTENTS& contents, DecodeFault* fault) {
    Reader in(encoded);
    Sink sink(contents.Buffer, contents.BufferSize);
    RecordDecoder decoder(in, sink);
    std::uint32_t count = 0;
    bool decoded = false;
    if (encoded.empty() && single && type.Size != 0) {
        std::uint8_t* to = sink.Append(type.Size);
        decoded = to != nullptr && decoder.Element(type, APPLICATION, to);
        count = decoded ? 1 : 0;
    } else {
        decoded = decoder.Run(type, APPLICATION, count);
    }
    SetResult(contents, type.Type, count);
    if (decoded)
        return DecodeResult::ok;
    if (sink.Full())
        return DecodeResult::noRoom;
    if (fault != nullptr)
        *fault = {in.Error(), in.ErrorOffset()};
    return DecodeResult::malformed;
}

DecodeResult DecodeRecords(std::span<const std::uint8_t> encoded, BACSTAC_DATA_TYPE type,
                           BACSTAC_PROPERTY_CONTENTS& contents, DecodeFault* fault) {
    const TypeInfo* info = FindType(type);
    if (info == nullptr) {
        SetResult(contents, TYPE_NONE, 0);
        return DecodeResult::malformed;
    }
    return DecodeElements(encoded, *info, false, contents, fault);
}

DecodeResult DecodeUntyped(std::span<const std::uint8_t> encoded, BACSTAC_PROPERTY_CONTENTS& contents) {
    Reader in(encoded);
    Tag tag;
    const BACSTAC_DATA_TYPE type = in.PeekTag(tag) ? TypeOfTag(tag) : TYPE_NONE;
    if (encoded.empty()) {
        SetResult(contents, TYPE_ANY, 0);
        return DecodeResult::ok;
    }
    if (type != TYPE_NONE) {
        DecodeResult result = DecodeElements(encoded, *FindType(type), false, contents, nullptr);
        if (result != DecodeResult::malformed)
            return result;
    }
    bool wellFormed = true;
    bool primitives = true;
    std::size_t elements = 0;
    for (; wellFormed && !in.AtEnd(); ++elements) {
        primitives = primitives && in.PeekTag(tag) && TypeOfTag(tag) != TYPE_NONE;
        wellFormed = in.Skip();
    }
    SetResult(contents, TYPE_NONE, 0);
    if (!wellFormed)
        return DecodeResult::malformed;
    // Among others one that its tag's type does not allow is odd by itself; alone it is no value at all.
    if (primitives && elements > 1)
        return DecodeElements(encoded, *FindType(TYPE_ANY), false, contents, nullptr);
    if (encoded.size() > contents.BufferSize)
        return DecodeResult::noRoom;
    std::memcpy(contents.Buffer, encoded.data(), encoded.size());
    SetResult(contents, TYPE_RAW, static_cast<std::uint32_t>(encoded.size()));
    return DecodeResult::raw;
}

} // namespace bacnet
