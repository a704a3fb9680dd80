#include "platform/stack/value/JsonForm.h"

#include "api/bacnet/Records.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <span>

namespace bacnet {
namespace {

using jason::value_t;

value_t Integer(std::int64_t value) {
    return value_t(value);
}

value_t Unless(std::int64_t value, std::int64_t unspecified) {
    return value == unspecified ? value_t() : Integer(value);
}

value_t Hex(std::span<const std::uint8_t> octets) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * octets.size());
    for (const std::uint8_t octet : octets) {
        text += digits[octet >> 4];
        text += digits[octet & 15];
    }
    return value_t(std::move(text));
}

template <typename Number, typename Bits>
value_t Real(Number value) {
    if (std::isfinite(value))
        return value_t(static_cast<double>(value));
    if (std::isinf(value))
        return value_t(std::string(value < 0 ? "-Infinity" : "Infinity"));
    const Bits bits = std::bit_cast<Bits>(value);
    if (bits == std::bit_cast<Bits>(std::numeric_limits<Number>::quiet_NaN()))
        return value_t(std::string("NaN"));
    char text[32];
    std::snprintf(text, sizeof text, "NaN:%0*llx", static_cast<int>(2 * sizeof(Bits)),
                  static_cast<unsigned long long>(bits));
    return value_t(std::string(text));
}

value_t Bits(const BACSTAC_BIT_STRING& bits) {
    std::string text;
    constexpr std::uint32_t mostBits = 8 * sizeof(bits.Bits);
    for (std::uint32_t bit = 0; bit < bits.BitCount && bit < mostBits; ++bit)
        text += ((bits.Bits[bit / 8] >> (bit % 8)) & 1U) != 0 ? '1' : '0';
    return value_t(std::move(text));
}

value_t Date(const BACSTAC_DATE& date) {
    value_t json;
    json.add("year", Unless(date.Year, BACSTAC_ANY_YEAR));
    json.add("month", Unless(date.Month, BACSTAC_ANY_MONTH));
    json.add("day", Unless(date.Day, BACSTAC_ANY_DAY));
    json.add("weekday", Unless(date.Weekday, BACSTAC_ANY_WEEKDAY));
    return json;
}

value_t Time(const BACSTAC_TIME& time) {
    value_t json;
    json.add("hour", Unless(time.Hour, BACSTAC_ANY_TIME));
    json.add("minute", Unless(time.Minute, BACSTAC_ANY_TIME));
    json.add("second", Unless(time.Second, BACSTAC_ANY_TIME));
    json.add("hundredths", Unless(time.Hundredths, BACSTAC_ANY_TIME));
    return json;
}

value_t WeekNDay(const BACSTAC_WEEK_N_DAY& day) {
    value_t json;
    json.add("month", Unless(day.Month, 0));
    json.add("week", Unless(day.Week, BACSTAC_ANY_WEEK));
    json.add("day", Unless(day.Day, 0));
    return json;
}

value_t ObjectId(const BACSTAC_OBJECT_ID& id) {
    value_t json;
    json.add("type", Integer(id.Type));
    json.add("instance", Integer(id.Instance));
    return json;
}

class Encoder {
public:
    explicit Encoder(const BufferView& buffer) : m_buffer(buffer) {}

    bool Element(const TypeInfo& type, const std::uint8_t* from, value_t& to) {
        switch (type.Kind) {
        case TypeKind::primitive:
            return type.Type == TYPE_ANY ? Any(LoadAs<BACSTAC_ANY_VALUE>(from), to) : Primitive(type.Type, from, to);
        case TypeKind::sequence:
            return Sequence(type, from, to);
        case TypeKind::choice:
            return Choice(type, from, to);
        case TypeKind::variant:
            return Variant(type, from, to);
        case TypeKind::address:
            return Address(LoadAs<BACSTAC_ADDRESS>(from), to);
        }
        return false;
    }

private:
    static bool Primitive(BACSTAC_DATA_TYPE type, const std::uint8_t* from, value_t& to) {
        switch (type) {
        case TYPE_NULL:
            to = value_t();
            return true;
        case TYPE_BOOLEAN:
            to = value_t(*from != 0);
            return true;
        case TYPE_UNSIGNED:
        case TYPE_ENUMERATED:
            to = Integer(LoadAs<std::uint32_t>(from));
            return true;
        case TYPE_SIGNED:
            to = Integer(LoadAs<std::int32_t>(from));
            return true;
        case TYPE_REAL:
            to = Real<float, std::uint32_t>(LoadAs<float>(from));
            return true;
        case TYPE_DOUBLE:
            to = Real<double, std::uint64_t>(LoadAs<double>(from));
            return true;
        case TYPE_OCTET_STRING:
            to = Hex({from + sizeof(std::uint32_t), LoadAs<std::uint32_t>(from)});
            return true;
        case TYPE_BIT_STRING:
            to = Bits(LoadAs<BACSTAC_BIT_STRING>(from));
            return true;
        case TYPE_DATE:
            to = Date(LoadAs<BACSTAC_DATE>(from));
            return true;
        case TYPE_TIME:
            to = Time(LoadAs<BACSTAC_TIME>(from));
            return true;
        case TYPE_OBJECT_ID:
            to = ObjectId(LoadAs<BACSTAC_OBJECT_ID>(from));
            return true;
        case TYPE_STRING:
            to = value_t(std::string(reinterpret_cast<const char*>(from)));
            return true;
        case TYPE_WEEK_N_DAY:
            to = WeekNDay(LoadAs<BACSTAC_WEEK_N_DAY>(from));
            return true;
        default:
            return false;
        }
    }

    bool Run(const TypeInfo& type, std::uint32_t offset, std::uint32_t count, value_t& to) {
        value_t::array_t values;
        const bool whole = ForEachElement(m_buffer, type, offset, count, [&](const std::uint8_t* element) {
            return Element(type, element, values.emplace_back());
        });
        to = value_t(std::move(values));
        return whole;
    }

    bool Raw(const BACSTAC_ANY_VALUE& any, value_t& to) {
        if (!m_buffer.Holds(any.Offset, any.ElementCount))
            return false;
        to = value_t();
        to.add("raw", Hex({m_buffer.Base + any.Offset, any.ElementCount}));
        return true;
    }

    bool Any(const BACSTAC_ANY_VALUE& any, value_t& to) {
        to = value_t();
        if (any.DataType == TYPE_NONE)
            return true;
        if (any.DataType == TYPE_RAW)
            return Raw(any, to);
        const TypeInfo* const type = FindType(any.DataType);
        value_t values;
        if (type == nullptr || !IsAnyValueType(type->Type) || !Run(*type, any.Offset, any.ElementCount, values))
            return false;
        const auto& array = *values.get<value_t::array_t>();
        to.add(type->Name, array.size() == 1 ? array.front() : values);
        return true;
    }

    bool MemberOf(const Member& member, const std::uint8_t* record, value_t& to) {
        const std::uint8_t* const from = record + member.Offset;
        switch (member.Form) {
        case MemberForm::value:
            return Element(*FindType(member.Type), from, to);
        case MemberForm::list: {
            const auto list = LoadAs<BACSTAC_LIST>(from);
            return Run(*FindType(member.Type), list.Offset, list.Count, to);
        }
        case MemberForm::any:
        case MemberForm::values:
            return Any(LoadAs<BACSTAC_ANY_VALUE>(from), to);
        case MemberForm::string:
            return Primitive(member.Type, StringAt(m_buffer, member.Type, LoadAs<std::uint32_t>(from)), to);
        }
        return false;
    }

    bool Sequence(const TypeInfo& type, const std::uint8_t* from, value_t& to) {
        to = value_t(value_t::object_t());
        for (const Member& member : type.Members) {
            if (!IsPresent(member, from))
                continue;
            value_t inner;
            if (!MemberOf(member, from, inner))
                return false;
            to.add(member.Name, std::move(inner));
        }
        return true;
    }

    bool Choice(const TypeInfo& type, const std::uint8_t* from, value_t& to) {
        value_t inner;
        const Member* const chosen = ChosenMember(type, from);
        if (chosen == nullptr && type.OpenType == TYPE_NONE)
            return false;
        const bool encoded = chosen != nullptr ? MemberOf(*chosen, from, inner)
                                               : Primitive(type.OpenType, from + sizeof(std::uint32_t), inner);
        to = value_t();
        to.add(chosen != nullptr ? chosen->Name : std::to_string(LoadAs<std::uint32_t>(from)), std::move(inner));
        return encoded;
    }

    bool Variant(const TypeInfo& type, const std::uint8_t* from, value_t& to) {
        const auto number = LoadAs<std::uint32_t>(from);
        const auto any = LoadAs<BACSTAC_ANY_VALUE>(from + sizeof(std::uint32_t));
        value_t inner;
        if (any.DataType == TYPE_RAW) {
            if (!Raw(any, inner))
                return false;
        } else if (any.DataType != TYPE_NULL) {
            const TypeInfo* const parameters = FindAlternative(type, number);
            if (parameters == nullptr || any.DataType != parameters->Type ||
                !m_buffer.Holds(any.Offset, parameters->Size) ||
                !Element(*parameters, m_buffer.Base + any.Offset, inner))
                return false;
        }
        to = value_t();
        to.add(type.Members.front().Name, Integer(number));
        to.add("parameters", std::move(inner));
        return true;
    }

    static bool Address(const BACSTAC_ADDRESS& address, value_t& to) {
        if (address.MacLength > sizeof(address.Mac))
            return false;
        to = value_t();
        to.add("remote", Integer(address.Remote));
        to.add("network", Integer(address.Network));
        to.add("mac", Hex({address.Mac, address.MacLength}));
        return true;
    }

    const BufferView& m_buffer;
};

} // namespace

bool ElementToJson(const BufferView& buffer, const TypeInfo& type, const std::uint8_t* element, value_t& json) {
    return Encoder(buffer).Element(type, element, json);
}

} // namespace bacnet
