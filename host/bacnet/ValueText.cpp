#include "host/bacnet/ValueText.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/PropertyValue.h"
#include "base/NumberText.h"
#include "host/BacnetNames.h"
#include "host/bacnet/HexText.h"
#include "host/bacnet/PointText.h"
#include "host/bacnet/StructureJson.h"
#include "host/bacnet/Words.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/TypeTable.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace {

constexpr unsigned MAX_BITS = 96;
constexpr std::uint32_t NAMES_TO_SHOW = 12;
constexpr std::array<std::string_view, 7> WEEKDAYS{"mon", "tue", "wed", "thu", "fri", "sat", "sun"};

constexpr std::uint32_t MONTH_ODD = 13;
constexpr std::uint32_t MONTH_EVEN = 14;
constexpr std::uint32_t DAY_LAST = 32;
constexpr std::uint32_t DAY_ODD = 33;
constexpr std::uint32_t DAY_EVEN = 34;

bool IsBetween(std::string_view text, char first, char last) {
    return text.size() >= 2 && text.front() == first && text.back() == last;
}

// The name of a type as errors give it.
std::string NameOf(BACSTAC_DATA_TYPE type) {
    const bacnet::TypeInfo* const info = bacnet::FindType(type);
    return info != nullptr ? info->Name : "type " + std::to_string(type);
}

// A field of digits, or one of the words that stand for a pattern.
struct Pattern {
    std::string_view word;
    std::uint32_t value;
};
bool ParseField(std::string_view text, std::uint32_t low, std::uint32_t high, std::initializer_list<Pattern> patterns,
                std::uint32_t& value) {
    for (const Pattern& pattern : patterns) {
        if (text == pattern.word) {
            value = pattern.value;
            return true;
        }
    }
    const auto number = ParseU32(text);
    if (!number || *number < low || *number > high)
        return false;
    value = *number;
    return true;
}

// Takes the text up to the separator, or all of it, off the front.
std::string_view TakeField(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view field = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    return field;
}

bool IsSpecific(const BACSTAC_DATE& date) {
    return date.Year != BACSTAC_ANY_YEAR && date.Month >= 1 && date.Month <= 12 && date.Day >= 1 && date.Day <= 31;
}

// The day of a calendar date, 1 Monday to 7 Sunday; 0 when there is no such date.
std::uint32_t WeekdayOf(const BACSTAC_DATE& date) {
    std::tm day{};
    day.tm_year = date.Year - 1900;
    day.tm_mon = static_cast<int>(date.Month) - 1;
    day.tm_mday = static_cast<int>(date.Day);
    day.tm_hour = 12;
    const std::tm given = day;
    if (timegm(&day) == -1 || day.tm_mday != given.tm_mday)
        return 0;
    return day.tm_wday == 0 ? 7 : static_cast<std::uint32_t>(day.tm_wday);
}

} // namespace

bool ParseDate(std::string_view text, BACSTAC_DATE& date) {
    date = {};
    const std::string_view weekday =
        text.find(' ') == std::string_view::npos ? std::string_view() : text.substr(text.find(' ') + 1);
    std::string_view day = TakeField(text, ' ');
    std::uint32_t year = 0;
    if (std::count(day.begin(), day.end(), '-') != 2 ||
        !ParseField(TakeField(day, '-'), 1900, 2154, {{"*", BACSTAC_ANY_YEAR}}, year) ||
        !ParseField(TakeField(day, '-'), 1, 12, {{"*", BACSTAC_ANY_MONTH}, {"odd", MONTH_ODD}, {"even", MONTH_EVEN}},
                    date.Month) ||
        !ParseField(day, 1, 31, {{"*", BACSTAC_ANY_DAY}, {"last", DAY_LAST}, {"odd", DAY_ODD}, {"even", DAY_EVEN}},
                    date.Day))
        return false;
    date.Year = static_cast<std::uint16_t>(year);
    if (IsSpecific(date)) {
        date.Weekday = WeekdayOf(date);
        if (date.Weekday == 0)
            return false;
    }
    if (weekday.empty())
        return true;
    const auto* const name = std::find(WEEKDAYS.begin(), WEEKDAYS.end(), weekday);
    const auto number = static_cast<std::uint32_t>(name - WEEKDAYS.begin()) + 1;
    if (name == WEEKDAYS.end() || (date.Weekday != BACSTAC_ANY_WEEKDAY && date.Weekday != number))
        return false;
    date.Weekday = number;
    return true;
}

bool ParseTimeOfDay(std::string_view text, BACSTAC_TIME& time) {
    const auto colons = std::count(text.begin(), text.end(), ':');
    if (colons != 1 && colons != 2)
        return false;
    std::uint32_t fields[4] = {};
    const Pattern any{"*", BACSTAC_ANY_TIME};
    if (!ParseField(TakeField(text, ':'), 0, 23, {any}, fields[0]) ||
        !ParseField(TakeField(text, ':'), 0, 59, {any}, fields[1]))
        return false;
    const bool hasHundredths = text.find('.') != std::string_view::npos;
    if (colons == 2 && !ParseField(TakeField(text, '.'), 0, 59, {any}, fields[2]))
        return false;
    // "14:30:00.5" is half a second.
    const std::string digits = std::string(text) + (text.size() == 1 && text != "*" ? "0" : "");
    if (hasHundredths && (digits.size() > 2 || !ParseField(digits, 0, 99, {any}, fields[3])))
        return false;
    time = {static_cast<std::uint8_t>(fields[0]), static_cast<std::uint8_t>(fields[1]),
            static_cast<std::uint8_t>(fields[2]), static_cast<std::uint8_t>(fields[3])};
    return colons == 2 || !hasHundredths;
}

bool ParseDateTime(std::string_view text, BACSTAC_DATE_TIME& dateTime) {
    const std::size_t split = text.find_last_of(" T");
    return split != std::string_view::npos && ParseDate(text.substr(0, split), dateTime.Date) &&
           ParseTimeOfDay(text.substr(split + 1), dateTime.Time);
}

ValueType StandardType(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, int index) {
    const bacnet::PropertyInfo* const info = bacnet::FindProperty(objectType, property);
    if (info == nullptr)
        return {};
    if (index == 0 && info->Shape == bacnet::PropertyShape::array)
        return {TYPE_UNSIGNED, false, ENUM_NONE};
    const bool isWhole = index == BACSTAC_NO_INDEX && info->Shape != bacnet::PropertyShape::single;
    return {info->Type, isWhole, bacnet::FindEnumType(objectType, property)};
}

std::optional<BACSTAC_DATA_TYPE> DataTypeByName(std::string_view name) {
    for (const BACSTAC_DATA_TYPE type :
         {TYPE_NULL, TYPE_BOOLEAN, TYPE_UNSIGNED, TYPE_SIGNED, TYPE_REAL, TYPE_DOUBLE, TYPE_OCTET_STRING, TYPE_STRING,
          TYPE_BIT_STRING, TYPE_ENUMERATED, TYPE_DATE, TYPE_TIME, TYPE_OBJECT_ID, TYPE_DATE_TIME, TYPE_OBJ_PROP_REF,
          TYPE_DEV_OBJ_PROP_REF}) {
        if (name == NameOf(type))
            return type;
    }
    return std::nullopt;
}

BACSTAC_PROPERTY_CONTENTS CTypedValue::Contents() {
    return {m_type, m_bytes.data(), static_cast<std::uint32_t>(m_bytes.size()), m_count};
}

bool CTypedValue::Take(const CPropertyValue& value) {
    CPropertyContents contents(value.GetDataSize());
    if (!value.WriteTo(contents))
        return false;
    m_type = contents.DataType;
    m_count = contents.ElementCount;
    const auto* const bytes = static_cast<const std::uint8_t*>(contents.Buffer);
    m_bytes.assign(bytes, bytes + contents.BufferSize);
    return true;
}

// One element after the other into the value.
class CValueParser {
public:
    CValueParser(const ValueType& type, CTypedValue& value, std::string& error)
        : m_wanted(type), m_value(value), m_error(error) {
        m_value = {};
        m_value.m_type = type.type == TYPE_ANY ? TYPE_NONE : type.type;
    }

    bool Parse(std::string_view text) {
        if (text == "null")
            return Null();
        if (!m_wanted.isList)
            return Element(text);
        if (!IsBetween(text, '{', '}'))
            return Expected(text, "a list in braces, as in {1, 2}");
        for (std::string_view rest = Trimmed(text.substr(1, text.size() - 2)); !rest.empty();) {
            const std::size_t end = EndOfElement(rest);
            if (!Element(Trimmed(rest.substr(0, end))))
                return false;
            rest = end < rest.size() ? Trimmed(rest.substr(end + 1)) : std::string_view();
        }
        return true;
    }

private:
    bool Null() {
        m_value.m_type = TYPE_NULL;
        m_value.m_count = 1;
        m_value.m_bytes.assign(sizeof(std::uint32_t), 0); // a null takes room too
        return true;
    }

    // The comma that ends the first element, outside quotes and braces.
    static std::size_t EndOfElement(std::string_view text) {
        int depth = 0;
        bool isQuoted = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isQuoted && text[i] == '\\')
                ++i;
            else if (text[i] == '"')
                isQuoted = !isQuoted;
            else if (!isQuoted && text[i] == '{')
                ++depth;
            else if (!isQuoted && text[i] == '}')
                --depth;
            else if (!isQuoted && depth == 0 && text[i] == ',')
                return i;
        }
        return text.size();
    }

    bool Expected(std::string_view text, const std::string& what) {
        m_error = Quoted(text) + " is not " + what;
        return false;
    }

    template <class T>
    bool Put(const T& value) {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&value);
        m_value.m_bytes.insert(m_value.m_bytes.end(), bytes, bytes + sizeof value);
        ++m_value.m_count;
        return true;
    }

    template <class T>
    bool Number(std::string_view text, const char* what) {
        const auto number = ParseAs<T>(text);
        return number ? Put(*number) : Expected(text, what);
    }

    bool Element(std::string_view text) {
        if (m_value.m_type == TYPE_NONE)
            m_value.m_type = Guess(text);
        switch (m_value.m_type) {
        case TYPE_NULL:
            return text == "null" ? Null() : Expected(text, "null");
        case TYPE_BOOLEAN:
            return Boolean(text);
        case TYPE_UNSIGNED:
            return Number<std::uint32_t>(text, "a whole number from 0 to 4294967295");
        case TYPE_SIGNED:
            return Number<std::int32_t>(text, "a whole number from -2147483648 to 2147483647");
        case TYPE_REAL:
            return Number<float>(text, "a number that a real can hold, as 21.5");
        case TYPE_DOUBLE:
            return Number<double>(text, "a number, as 21.5");
        case TYPE_OCTET_STRING:
            return OctetString(text);
        case TYPE_STRING:
            return String(text);
        case TYPE_BIT_STRING:
            return BitString(text);
        case TYPE_ENUMERATED:
            return Enumerated(text);
        case TYPE_DATE: {
            BACSTAC_DATE date;
            return ParseDate(text, date) ? Put(date) : Expected(text, "a date, as 2026-11-21 or *-12-25");
        }
        case TYPE_TIME: {
            BACSTAC_TIME time{};
            return ParseTimeOfDay(text, time) ? Put(time) : Expected(text, "a time, as 14:30:00.00 or *:00");
        }
        case TYPE_DATE_TIME: {
            BACSTAC_DATE_TIME time{};
            return ParseDateTime(text, time) ? Put(time) : Expected(text, "a date and time, as 2026-11-21 14:30:00");
        }
        case TYPE_OBJECT_ID: {
            BACSTAC_OBJECT_ID object{};
            return ParseObject(text, object, m_error) && Put(object);
        }
        case TYPE_OBJ_PROP_REF: {
            BACSTAC_DEV_OBJ_PROP_REF reference;
            if (!ParseReference(text, reference, m_error))
                return false;
            if (reference.DevicePresent != 0)
                return Expected(text, "a reference within the device, as ai:1/pv");
            return Put(BACSTAC_OBJ_PROP_REF{reference.ObjectId, reference.Property, reference.ArrayIndex});
        }
        case TYPE_DEV_OBJ_PROP_REF: {
            BACSTAC_DEV_OBJ_PROP_REF reference;
            return ParseReference(text, reference, m_error) && Put(reference);
        }
        case TYPE_RAW:
            return Octets(text);
        case TYPE_NONE:
            m_error = "what " + Quoted(text) + " is to be is not clear: put text into double quotes, or give --type";
            return false;
        default:
            m_error = "a value of type " + NameOf(m_value.m_type) +
                      " cannot be written as text: give it as JSON, in the form that read --json shows";
            return false;
        }
    }

    static BACSTAC_DATA_TYPE Guess(std::string_view text) {
        BACSTAC_DATE_TIME time{};
        BACSTAC_OBJECT_ID object{};
        std::string ignored;
        if (text == "true" || text == "false")
            return TYPE_BOOLEAN;
        if (ParseU32(text))
            return TYPE_UNSIGNED;
        if (ParseI32(text))
            return TYPE_SIGNED;
        if (ParseNumber(text))
            return TYPE_REAL;
        if (IsBetween(text, '"', '"'))
            return TYPE_STRING;
        if (IsBetween(text, '{', '}'))
            return TYPE_BIT_STRING;
        if (ParseDateTime(text, time))
            return TYPE_DATE_TIME;
        if (ParseDate(text, time.Date))
            return TYPE_DATE;
        if (ParseTimeOfDay(text, time.Time))
            return TYPE_TIME;
        return ParseObject(text, object, ignored) ? TYPE_OBJECT_ID : TYPE_NONE;
    }

    bool Boolean(std::string_view text) {
        const bool isTrue = text == "true" || text == "1";
        if (!isTrue && text != "false" && text != "0")
            return Expected(text, "true or false");
        return Put(static_cast<std::uint8_t>(isTrue ? 1 : 0));
    }

    bool String(std::string_view text) {
        std::string plain(text);
        if (IsBetween(text, '"', '"')) {
            plain.clear();
            for (std::size_t i = 1; i + 1 < text.size(); ++i) {
                if (text[i] == '\\' && i + 2 < text.size())
                    ++i;
                plain += text[i];
            }
        }
        if (plain.find('\0') != std::string::npos)
            return Expected(text, "text without a zero byte");
        m_value.m_bytes.insert(m_value.m_bytes.end(), plain.begin(), plain.end());
        m_value.m_bytes.push_back(0);
        ++m_value.m_count;
        return true;
    }

    bool Octets(std::string_view text) {
        std::string octets;
        if (!ParseHex(text, octets))
            return Expected(text, "octets with their tags in hexadecimal pairs, as read shows them");
        m_value.m_bytes.assign(octets.begin(), octets.end());
        m_value.m_count = static_cast<std::uint32_t>(octets.size());
        return true;
    }

    bool OctetString(std::string_view text) {
        std::string octets;
        if (!ParseHex(text.starts_with("0x") ? text.substr(2) : text, octets))
            return Expected(text, "octets in hexadecimal pairs, as 0a1b2c");
        Put(static_cast<std::uint32_t>(octets.size()));
        octets.resize((octets.size() + 3) / 4 * 4);
        m_value.m_bytes.insert(m_value.m_bytes.end(), octets.begin(), octets.end());
        return true;
    }

    // Number of a value or a bit by its name.
    std::optional<std::uint32_t> ByName(std::string_view name) const {
        if (m_wanted.names == ENUM_PROPERTY_ID)
            return PropertyByText(name);
        if (m_wanted.names == ENUM_OBJECT_TYPE)
            return ObjectTypeByText(name);
        for (std::uint32_t value = 0; value < bacnet::EnumCount(m_wanted.names); ++value) {
            if (name == bacnet::FindEnumName(m_wanted.names, value))
                return value;
        }
        return std::nullopt;
    }

    std::string Names() const {
        const std::uint32_t count = bacnet::EnumCount(m_wanted.names);
        if (count == 0 || count > NAMES_TO_SHOW)
            return count == 0 ? "a number" : "one of the names of this property, or a number";
        std::string names = "one of ";
        for (std::uint32_t value = 0; value < count; ++value)
            names += std::string(bacnet::FindEnumName(m_wanted.names, value)) + ", ";
        return names + "or a number";
    }

    bool Enumerated(std::string_view text) {
        auto number = ParseU32(text);
        if (!number)
            number = ByName(text);
        return number ? Put(*number) : Expected(text, Names());
    }

    bool BitString(std::string_view text) {
        BACSTAC_BIT_STRING bits{};
        bits.BitCount = std::min<std::uint32_t>(bacnet::EnumCount(m_wanted.names), MAX_BITS);
        if (!IsBetween(text, '{', '}')) {
            if (text.empty() || text.size() > MAX_BITS || text.find_first_not_of("01") != std::string_view::npos)
                return Expected(text, "a bit string: give the names of its bits in braces, as {in-alarm, fault}, or "
                                      "every bit, as 0100");
            bits.BitCount = static_cast<std::uint32_t>(text.size());
            for (std::uint32_t bit = 0; bit < bits.BitCount; ++bit)
                CBacGeneral::SetBitStringBit(bits, bit, text[bit] == '1');
            return Put(bits);
        }
        for (std::string_view rest = Trimmed(text.substr(1, text.size() - 2)); !rest.empty();) {
            const std::string_view name = Trimmed(TakeField(rest, ','));
            rest = Trimmed(rest);
            auto bit = ByName(name);
            if (!bit)
                bit = ParseU32(name.starts_with("bit-") ? name.substr(4) : name);
            if (!bit || *bit >= MAX_BITS)
                return Expected(name, "a bit: " + Names() + " from 0 to 95");
            CBacGeneral::SetBitStringBit(bits, *bit, true);
        }
        return Put(bits);
    }

    const ValueType m_wanted;
    CTypedValue& m_value;
    std::string& m_error;
};

bool ParseValue(std::string_view text, const ValueType& type, CTypedValue& value, std::string& error) {
    if (const auto structure = ParseStructure(text, type, value, error))
        return *structure;
    if (type.type == TYPE_STRING && !type.isList)
        return CValueParser(type, value, error).Parse(text);
    // A JSON string in double quotes is the text in it, but where quotes are what makes it text.
    const bool mayBeText = type.type == TYPE_NONE || type.type == TYPE_ANY;
    const std::string plain = mayBeText ? std::string(text) : Unquoted(text);
    return CValueParser(type, value, error).Parse(Trimmed(plain));
}
