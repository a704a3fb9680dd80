#include "platform/stack/value/JsonForm.h"

#include "api/bacnet/Records.h"

#include <bit>
#include <charconv>
#include <limits>
#include <optional>
#include <vector>

namespace bacnet {
namespace {

using jason::value_t;

template <typename Value>
bool Put(std::uint8_t* to, const Value& value) {
    std::memcpy(to, &value, sizeof(Value));
    return true;
}

// An integer within the range of the field.
template <typename Number>
bool Integer(const value_t* json, Number& number) {
    const auto* const integer = json == nullptr ? nullptr : json->get<std::int64_t>();
    if (integer == nullptr || *integer < std::numeric_limits<Number>::min() ||
        *integer > std::numeric_limits<Number>::max())
        return false;
    number = static_cast<Number>(*integer);
    return true;
}

template <typename Number>
bool IntegerOr(Number unspecified, const value_t* json, Number& number) {
    if (json == nullptr || !json->is_null())
        return Integer(json, number);
    number = unspecified;
    return true;
}

std::optional<std::uint8_t> Digit(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<std::uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<std::uint8_t>(c - 'a' + 10);
    return std::nullopt;
}

bool Hex(const value_t* json, std::vector<std::uint8_t>& octets) {
    const auto* const text = json == nullptr ? nullptr : json->get<std::string>();
    if (text == nullptr || text->size() % 2 != 0)
        return false;
    octets.clear();
    octets.reserve(text->size() / 2);
    for (std::size_t i = 0; i < text->size(); i += 2) {
        const auto high = Digit((*text)[i]);
        const auto low = Digit((*text)[i + 1]);
        if (!high || !low)
            return false;
        octets.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
    }
    return true;
}

template <typename Number, typename Bits>
bool Real(const value_t& json, Number& number) {
    if (const auto* const real = json.get<double>()) {
        number = static_cast<Number>(*real);
        return true;
    }
    if (const auto* const integer = json.get<std::int64_t>()) {
        number = static_cast<Number>(*integer);
        return true;
    }
    const auto* const text = json.get<std::string>();
    if (text == nullptr)
        return false;
    using Limits = std::numeric_limits<Number>;
    if (*text == "NaN") {
        number = Limits::quiet_NaN();
    } else if (*text == "Infinity") {
        number = Limits::infinity();
    } else if (*text == "-Infinity") {
        number = -Limits::infinity();
    } else {
        Bits bits = 0;
        if (!text->starts_with("NaN:"))
            return false;
        const char* const end = text->data() + text->size();
        const auto read = std::from_chars(text->data() + 4, end, bits, 16);
        if (read.ec != std::errc{} || read.ptr != end)
            return false;
        number = std::bit_cast<Number>(bits);
    }
    return true;
}

bool BitString(const value_t& json, BACSTAC_BIT_STRING& bits) {
    const auto* const text = json.get<std::string>();
    if (text == nullptr || text->size() > 8 * sizeof(bits.Bits))
        return false;
    for (const char c : *text) {
        if (c != '0' && c != '1')
            return false;
        if (c == '1')
            bits.Bits[bits.BitCount / 8] |= static_cast<std::uint8_t>(1U << (bits.BitCount % 8));
        ++bits.BitCount;
    }
    return true;
}

bool Date(const value_t& json, BACSTAC_DATE& date) {
    return IntegerOr(BACSTAC_ANY_YEAR, json.find("year"), date.Year) &&
           IntegerOr(BACSTAC_ANY_MONTH, json.find("month"), date.Month) &&
           IntegerOr(BACSTAC_ANY_DAY, json.find("day"), date.Day) &&
           IntegerOr(BACSTAC_ANY_WEEKDAY, json.find("weekday"), date.Weekday);
}

bool Time(const value_t& json, BACSTAC_TIME& time) {
    return IntegerOr(BACSTAC_ANY_TIME, json.find("hour"), time.Hour) &&
           IntegerOr(BACSTAC_ANY_TIME, json.find("minute"), time.Minute) &&
           IntegerOr(BACSTAC_ANY_TIME, json.find("second"), time.Second) &&
           IntegerOr(BACSTAC_ANY_TIME, json.find("hundredths"), time.Hundredths);
}

bool WeekNDay(const value_t& json, BACSTAC_WEEK_N_DAY& day) {
    return IntegerOr(0U, json.find("month"), day.Month) && IntegerOr(BACSTAC_ANY_WEEK, json.find("week"), day.Week) &&
           IntegerOr(0U, json.find("day"), day.Day);
}

// A primitive that lies in the record itself; to has room for it.
bool Primitive(const value_t& json, BACSTAC_DATA_TYPE type, std::uint8_t* to) {
    switch (type) {
    case TYPE_NULL:
        return json.is_null();
    case TYPE_BOOLEAN: {
        const auto* const value = json.get<bool>();
        return value != nullptr && Put(to, static_cast<std::uint8_t>(*value));
    }
    case TYPE_UNSIGNED:
    case TYPE_ENUMERATED: {
        std::uint32_t value = 0;
        return Integer(&json, value) && Put(to, value);
    }
    case TYPE_SIGNED: {
        std::int32_t value = 0;
        return Integer(&json, value) && Put(to, value);
    }
    case TYPE_REAL: {
        float value = 0;
        return Real<float, std::uint32_t>(json, value) && Put(to, value);
    }
    case TYPE_DOUBLE: {
        double value = 0;
        return Real<double, std::uint64_t>(json, value) && Put(to, value);
    }
    case TYPE_BIT_STRING: {
        BACSTAC_BIT_STRING value{};
        return BitString(json, value) && Put(to, value);
    }
    case TYPE_DATE: {
        BACSTAC_DATE value{};
        return Date(json, value) && Put(to, value);
    }
    case TYPE_TIME: {
        BACSTAC_TIME value{};
        return Time(json, value) && Put(to, value);
    }
    case TYPE_OBJECT_ID: {
        BACSTAC_OBJECT_ID value{};
        return Integer(json.find("type"), value.Type) && Integer(json.find("instance"), value.Instance) &&
               Put(to, value);
    }
    case TYPE_WEEK_N_DAY: {
        BACSTAC_WEEK_N_DAY value{};
        return WeekNDay(json, value) && Put(to, value);
    }
    default:
        return false;
    }
}

const TypeInfo* FindAnyValueType(std::string_view name) {
    for (const TypeInfo& type : AllTypes()) {
        if (name == type.Name && IsAnyValueType(type.Type))
            return &type;
    }
    return nullptr;
}

const jason::member_t* OnlyMember(const value_t& json) {
    const auto* const members = json.get<value_t::object_t>();
    return members != nullptr && members->size() == 1 ? &members->front() : nullptr;
}

class Decoder {
public:
    explicit Decoder(Sink& sink) : m_sink(sink) {}

    bool Append(const value_t& json, const TypeInfo& type) {
        if (type.Size == 0)
            return AppendString(json, type.Type);
        std::uint8_t* const to = m_sink.Append(type.Size);
        return to != nullptr && Element(json, type, to);
    }

private:
    bool Element(const value_t& json, const TypeInfo& type, std::uint8_t* to) {
        switch (type.Kind) {
        case TypeKind::primitive:
            return type.Type == TYPE_ANY ? Any(json, to) : Primitive(json, type.Type, to);
        case TypeKind::sequence:
            return Sequence(json, type, to);
        case TypeKind::choice:
            return Choice(json, type, to);
        case TypeKind::variant:
            return Variant(json, type, to);
        case TypeKind::address:
            return Address(json, to);
        }
        return false;
    }

    bool AppendString(const value_t& json, BACSTAC_DATA_TYPE type) {
        if (type == TYPE_STRING) {
            const auto* const text = json.get<std::string>();
            return text != nullptr && AppendText(*text);
        }
        std::vector<std::uint8_t> octets;
        if (type != TYPE_OCTET_STRING || !Hex(&json, octets))
            return false;
        const auto size = static_cast<std::uint32_t>(octets.size());
        std::uint8_t* const to = m_sink.Append(static_cast<std::uint32_t>(sizeof(size)) + (size + 3) / 4 * 4);
        if (to == nullptr)
            return false;
        Put(to, size);
        if (size != 0)
            std::memcpy(to + sizeof(size), octets.data(), size);
        return true;
    }

    bool AppendText(const std::string& text) {
        if (text.find('\0') != std::string::npos)
            return false;
        std::uint8_t* const to = m_sink.Append(static_cast<std::uint32_t>(text.size() + 1));
        if (to != nullptr)
            std::memcpy(to, text.c_str(), text.size() + 1);
        return to != nullptr;
    }

    // The elements of an array behind the records.
    bool Run(const value_t::array_t& values, const TypeInfo& type, std::uint32_t& offset) {
        const Sink::Mark mark = m_sink.Position();
        for (const value_t& value : values) {
            if (!Append(value, type))
                return false;
        }
        return m_sink.MoveBehind(mark, offset);
    }

    bool Raw(const value_t* json, BACSTAC_ANY_VALUE& any) {
        std::vector<std::uint8_t> octets;
        if (!Hex(json, octets))
            return false;
        any.DataType = TYPE_RAW;
        any.Size = any.ElementCount = static_cast<std::uint32_t>(octets.size());
        if (octets.empty())
            return true;
        std::uint8_t* const to = m_sink.Behind(octets.size(), 1, any.Offset);
        if (to == nullptr)
            return false;
        std::memcpy(to, octets.data(), octets.size());
        return true;
    }

    bool Any(const value_t& json, std::uint8_t* to) {
        BACSTAC_ANY_VALUE any{TYPE_NONE, 0, 0, 0};
        if (json.is_null())
            return Put(to, any);
        const jason::member_t* const member = OnlyMember(json);
        if (member == nullptr)
            return false;
        if (member->name == "raw")
            return Raw(&member->value, any) && Put(to, any);
        const TypeInfo* const type = FindAnyValueType(member->name);
        if (type == nullptr)
            return false;
        const auto* const several = member->value.get<value_t::array_t>();
        const value_t::array_t one = several == nullptr ? value_t::array_t{member->value} : value_t::array_t{};
        const value_t::array_t& values = several != nullptr ? *several : one;
        any.DataType = type->Type;
        any.ElementCount = static_cast<std::uint32_t>(values.size());
        return Run(values, *type, any.Offset) && Put(to, any);
    }

    bool MemberOf(const value_t& json, const Member& member, std::uint8_t* record) {
        std::uint8_t* const to = record + member.Offset;
        const TypeInfo& type = *FindType(member.Type);
        switch (member.Form) {
        case MemberForm::value:
            return Element(json, type, to);
        case MemberForm::list: {
            const auto* const values = json.get<value_t::array_t>();
            BACSTAC_LIST list{};
            if (values == nullptr || !Run(*values, type, list.Offset))
                return false;
            list.Count = static_cast<std::uint32_t>(values->size());
            return Put(to, list);
        }
        case MemberForm::any:
        case MemberForm::values:
            return Any(json, to);
        case MemberForm::string: {
            const Sink::Mark mark = m_sink.Position();
            std::uint32_t offset = 0;
            return AppendString(json, member.Type) && m_sink.MoveBehind(mark, offset) && Put(to, offset);
        }
        }
        return false;
    }

    bool Sequence(const value_t& json, const TypeInfo& type, std::uint8_t* to) {
        const auto* const members = json.get<value_t::object_t>();
        if (members == nullptr)
            return false;
        std::size_t taken = 0;
        for (const Member& member : type.Members) {
            const value_t* const value = json.find(member.Name);
            if (value == nullptr && member.Optional == Presence::required)
                return false;
            if (value == nullptr) {
                Put(to + member.Offset, member.Absent);
                continue;
            }
            if (member.Optional == Presence::flagged) {
                std::uint8_t* const flags = to + member.PresenceOffset;
                Put(flags, LoadAs<std::uint32_t>(flags) | member.PresenceBits);
            }
            if (!MemberOf(*value, member, to))
                return false;
            ++taken;
        }
        return taken == members->size(); // what the type does not have is a mistake of who wrote it
    }

    bool Choice(const value_t& json, const TypeInfo& type, std::uint8_t* to) {
        const jason::member_t* const named = OnlyMember(json);
        if (named == nullptr)
            return false;
        for (const Member& member : type.Members) {
            if (named->name == member.Name)
                return Put(to, member.Choice) && MemberOf(named->value, member, to);
        }
        std::uint32_t number = 0;
        const char* const end = named->name.data() + named->name.size();
        const auto read = std::from_chars(named->name.data(), end, number);
        return type.OpenType != TYPE_NONE && read.ec == std::errc{} && read.ptr == end && Put(to, number) &&
               ChosenMember(type, to) == nullptr && Primitive(named->value, type.OpenType, to + sizeof(number));
    }

    bool Variant(const value_t& json, const TypeInfo& type, std::uint8_t* to) {
        const auto* const members = json.get<value_t::object_t>();
        const value_t* const parameters = json.find("parameters");
        std::uint32_t number = 0;
        if (members == nullptr || members->size() != 2 || parameters == nullptr ||
            !Integer(json.find(type.Members.front().Name), number))
            return false;
        BACSTAC_ANY_VALUE any{TYPE_NULL, 0, 0, 1};
        const TypeInfo* const inner = FindAlternative(type, number);
        const value_t* const raw = parameters->find("raw");
        if (raw != nullptr) {
            if (!Raw(raw, any))
                return false;
        } else if (!parameters->is_null()) {
            const Sink::Mark mark = m_sink.Position();
            if (inner == nullptr || !Append(*parameters, *inner) || !m_sink.MoveBehind(mark, any.Offset))
                return false;
            any.DataType = inner->Type;
            any.Size = inner->Size;
        }
        return Put(to, number) && Put(to + sizeof(number), any);
    }

    static bool Address(const value_t& json, std::uint8_t* to) {
        BACSTAC_ADDRESS address{};
        std::vector<std::uint8_t> mac;
        if (!Integer(json.find("remote"), address.Remote) || !Integer(json.find("network"), address.Network) ||
            !Hex(json.find("mac"), mac) || mac.size() > sizeof(address.Mac))
            return false;
        std::copy(mac.begin(), mac.end(), address.Mac);
        address.MacLength = static_cast<std::uint8_t>(mac.size());
        return Put(to, address);
    }

    Sink& m_sink;
};

} // namespace

bool ElementFromJson(const value_t& json, const TypeInfo& type, Sink& sink) {
    return Decoder(sink).Append(json, type);
}

} // namespace bacnet
