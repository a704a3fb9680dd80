#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/ValueCodec.h"

namespace bacnet {
namespace {

class RecordEncoder {
public:
    RecordEncoder(Writer& out, const BufferView& buffer) : m_out(out), m_buffer(buffer) {}

    bool Element(const TypeInfo& type, int tag, const std::uint8_t* from) {
        if (type.Kind == TypeKind::primitive)
            return type.Type == TYPE_ANY ? Any(LoadAs<BACSTAC_ANY_VALUE>(from)) : Primitive(type.Type, tag, from);
        if (tag < 0)
            return Body(type, from);
        m_out.Opening(static_cast<unsigned>(tag));
        const bool encoded = Body(type, from);
        m_out.Closing(static_cast<unsigned>(tag));
        return encoded;
    }

    bool Run(const TypeInfo& type, std::uint64_t offset, std::uint32_t count) {
        return ForEachElement(m_buffer, type, offset, count, [&](const std::uint8_t* element) {
            // Beyond an overflow nothing would come of it: a count may be four billions.
            return m_out.Overflow() || Element(type, APPLICATION, element);
        });
    }

    bool Raw(std::uint64_t offset, std::uint32_t size) {
        if (!m_buffer.Holds(offset, size))
            return false;
        m_out.Octets({m_buffer.Base + offset, size});
        return true;
    }

private:
    bool Primitive(BACSTAC_DATA_TYPE type, int tag, const std::uint8_t* from) {
        switch (type) {
        case TYPE_NULL:
            m_out.Null(tag);
            return true;
        case TYPE_BOOLEAN:
            m_out.Boolean(*from != 0, tag);
            return true;
        case TYPE_UNSIGNED:
            m_out.Unsigned(LoadAs<std::uint32_t>(from), tag);
            return true;
        case TYPE_SIGNED:
            m_out.Signed(LoadAs<std::int32_t>(from), tag);
            return true;
        case TYPE_REAL:
            m_out.Real(LoadAs<float>(from), tag);
            return true;
        case TYPE_DOUBLE:
            m_out.Double(LoadAs<double>(from), tag);
            return true;
        case TYPE_BIT_STRING:
            m_out.BitString(LoadAs<BACSTAC_BIT_STRING>(from), tag);
            return true;
        case TYPE_ENUMERATED:
            m_out.Enumerated(LoadAs<std::uint32_t>(from), tag);
            return true;
        case TYPE_DATE:
            m_out.Date(LoadAs<BACSTAC_DATE>(from), tag);
            return true;
        case TYPE_TIME:
            m_out.Time(LoadAs<BACSTAC_TIME>(from), tag);
            return true;
        case TYPE_OBJECT_ID:
            m_out.ObjectId(LoadAs<BACSTAC_OBJECT_ID>(from), tag);
            return true;
        case TYPE_STRING:
            m_out.CharacterString(reinterpret_cast<const char*>(from), tag);
            return true;
        case TYPE_OCTET_STRING:
            m_out.OctetString({from + sizeof(std::uint32_t), LoadAs<std::uint32_t>(from)}, tag);
            return true;
        case TYPE_RAW_STRING:
            return RawString({from + sizeof(std::uint32_t), LoadAs<std::uint32_t>(from)}, tag);
        case TYPE_WEEK_N_DAY: {
            const auto value = LoadAs<BACSTAC_WEEK_N_DAY>(from);
            const auto octet = [](std::uint32_t field, std::uint32_t unspecified) {
                return static_cast<std::uint8_t>(field == unspecified || field > 255 ? 255 : field);
            };
            const std::uint8_t octets[] = {octet(value.Month, 0), octet(value.Week, BACSTAC_ANY_WEEK),
                                           octet(value.Day, 0)};
            m_out.OctetString(octets, tag);
            return true;
        }
        default:
            return false;
        }
    }

    // The character set stands before the text already.
    bool RawString(std::span<const std::uint8_t> octets, int tag) {
        m_out.Tag(tag < 0 ? unsigned{TAG_CHARACTER_STRING} : static_cast<unsigned>(tag), tag >= 0,
                  static_cast<std::uint32_t>(octets.size()));
        m_out.Octets(octets);
        return !octets.empty();
    }

    bool Any(const BACSTAC_ANY_VALUE& value) {
        if (value.DataType == TYPE_RAW)
            return Raw(value.Offset, value.ElementCount);
        const TypeInfo* type = FindType(value.DataType);
        return type != nullptr && type->Type != TYPE_ANY && Run(*type, value.Offset, value.ElementCount);
    }

    bool Body(const TypeInfo& type, const std::uint8_t* from) {
        switch (type.Kind) {
        case TypeKind::sequence:
            for (const Member& member : type.Members) {
                if (IsPresent(member, from) && !MemberOf(member, from))
                    return false;
            }
            return true;
        case TypeKind::choice:
            return Choice(type, from);
        case TypeKind::variant:
            return Variant(type, from);
        case TypeKind::address:
            return Address(LoadAs<BACSTAC_ADDRESS>(from));
        case TypeKind::primitive:
            break;
        }
        return false;
    }

    bool MemberOf(const Member& member, const std::uint8_t* record) {
        const std::uint8_t* from = record + member.Offset;
        const auto number = static_cast<unsigned>(member.Context);
        const TypeInfo& type = *FindType(member.Type);
        bool encoded = false;
        switch (member.Form) {
        case MemberForm::value:
            return Element(type, member.Context, from);
        case MemberForm::list: {
            const auto list = LoadAs<BACSTAC_LIST>(from);
            if (member.Context < 0)
                return Run(type, list.Offset, list.Count);
            m_out.Opening(number);
            encoded = Run(type, list.Offset, list.Count);
            m_out.Closing(number);
            return encoded;
        }
        case MemberForm::any:
            if (member.Context < 0)
                return Any(LoadAs<BACSTAC_ANY_VALUE>(from));
            m_out.Opening(number);
            encoded = Any(LoadAs<BACSTAC_ANY_VALUE>(from));
            m_out.Closing(number);
            return encoded;
        case MemberForm::values:
            return LoadAs<BACSTAC_ANY_VALUE>(from).DataType == TYPE_NONE || Any(LoadAs<BACSTAC_ANY_VALUE>(from));
        case MemberForm::string:
            return Primitive(member.Type, member.Context, StringAt(m_buffer, member.Type, LoadAs<std::uint32_t>(from)));
        }
        return false;
    }

    bool Choice(const TypeInfo& type, const std::uint8_t* from) {
        if (const Member* chosen = ChosenMember(type, from))
            return MemberOf(*chosen, from);
        const auto number = LoadAs<std::uint32_t>(from);
        return type.OpenType != TYPE_NONE && number < 255 &&
               Primitive(type.OpenType, static_cast<int>(number), from + sizeof(std::uint32_t));
    }

    bool Variant(const TypeInfo& type, const std::uint8_t* from) {
        const auto number = LoadAs<std::uint32_t>(from);
        const auto value = LoadAs<BACSTAC_ANY_VALUE>(from + sizeof(std::uint32_t));
        if (number >= 255)
            return false;
        if (value.DataType == TYPE_NULL) {
            m_out.Null(static_cast<int>(number));
            return true;
        }
        const TypeInfo* inner = FindAlternative(type, number);
        if (inner != nullptr && value.DataType == inner->Type) {
            return m_buffer.Holds(value.Offset, inner->Size) &&
                   Element(*inner, static_cast<int>(number), m_buffer.Base + value.Offset);
        }
        if (value.DataType != TYPE_RAW)
            return false;
        m_out.Opening(number);
        const bool encoded = Raw(value.Offset, value.ElementCount);
        m_out.Closing(number);
        return encoded;
    }

    bool Address(const BACSTAC_ADDRESS& address) {
        if (address.MacLength > sizeof(address.Mac))
            return false;
        m_out.Unsigned(address.Network);
        m_out.OctetString({address.Mac, address.MacLength});
        return true;
    }

    Writer& m_out;
    const BufferView& m_buffer;
};

} // namespace

bool EncodeElement(Writer& writer, BACSTAC_DATA_TYPE type, int tag, const void* base, std::size_t size,
                   const void* element) {
    const TypeInfo* info = FindType(type);
    const BufferView buffer{static_cast<const std::uint8_t*>(base), size};
    return info != nullptr &&
           RecordEncoder(writer, buffer).Element(*info, tag, static_cast<const std::uint8_t*>(element));
}

bool EncodeContents(Writer& writer, const BACSTAC_PROPERTY_CONTENTS& contents) {
    const BufferView buffer = BufferView::Of(contents);
    RecordEncoder encoder(writer, buffer);
    if (contents.DataType == TYPE_RAW)
        return encoder.Raw(0, contents.ElementCount);
    if (contents.DataType == TYPE_NULL) { // needs no buffer
        for (std::uint32_t i = 0; i < contents.ElementCount && !writer.Overflow(); ++i)
            writer.Null();
        return true;
    }
    const TypeInfo* type = FindType(contents.DataType);
    return type != nullptr && encoder.Run(*type, 0, contents.ElementCount);
}

const void* FindElement(const BACSTAC_PROPERTY_CONTENTS& contents, std::uint32_t index) {
    const TypeInfo* type = FindType(contents.DataType);
    const BufferView buffer = BufferView::Of(contents);
    if (type == nullptr || index >= contents.ElementCount)
        return nullptr;
    if (type->Size != 0) {
        const std::uint64_t offset = std::uint64_t{index} * type->Size;
        return buffer.Holds(offset, type->Size) ? buffer.Base + offset : nullptr;
    }
    const void* found = nullptr;
    ForEachElement(buffer, *type, 0, index + 1, [&](const std::uint8_t* element) {
        found = element;
        return true;
    });
    return found;
}

std::size_t ElementsSize(const BACSTAC_PROPERTY_CONTENTS& contents) {
    const TypeInfo* type = FindType(contents.DataType);
    if (contents.DataType == TYPE_RAW)
        return contents.ElementCount;
    if (type == nullptr)
        return 0;
    if (type->Size != 0)
        return std::size_t{type->Size} * contents.ElementCount;
    const BufferView buffer = BufferView::Of(contents);
    std::size_t end = 0;
    ForEachElement(buffer, *type, 0, contents.ElementCount, [&](const std::uint8_t* element) {
        const std::size_t offset = static_cast<std::size_t>(element - buffer.Base);
        end = offset + ElementSize(buffer, *type, offset);
        return true;
    });
    return end;
}

} // namespace bacnet
