#include "platform/stack/text/Phrases.h"

#include "platform/stack/schema/Enumerations.h"

#include <algorithm>

namespace bacnet {
namespace {

constexpr std::uint32_t WHOLE_PROPERTY = 0xFFFFFFFFU;
constexpr std::uint32_t ODD_MONTHS = 13;
constexpr std::uint32_t EVEN_MONTHS = 14;
constexpr std::uint32_t LAST_DAY = 32;
constexpr std::uint32_t ODD_DAYS = 33;
constexpr std::uint32_t EVEN_DAYS = 34;
constexpr std::uint8_t IP_MAC_LENGTH = 6;

constexpr const char* MONTHS[] = {"*",      "january",   "february", "march",    "april",    "may", "june", "july",
                                  "august", "september", "october",  "november", "december", "odd", "even"};
constexpr const char* WEEKDAYS[] = {"*", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"};
constexpr const char* WEEKS[] = {"*", "1-7", "8-14", "15-21", "22-28", "29-31", "last"};

template <std::size_t Count>
void PutNamed(TextWriter& out, const char* const (&names)[Count], std::uint32_t value) {
    if (value < Count)
        out.Put(names[value]);
    else
        out.PutUnsigned(value);
}

void PutDay(TextWriter& out, std::uint32_t day) {
    if (day >= BACSTAC_ANY_DAY)
        out.Put("*");
    else if (day == LAST_DAY)
        out.Put("last");
    else if (day == ODD_DAYS)
        out.Put("odd");
    else if (day == EVEN_DAYS)
        out.Put("even");
    else
        out.PutUnsigned(day, 2);
}

void PutMonth(TextWriter& out, std::uint32_t month) {
    if (month == BACSTAC_ANY_MONTH || month == ODD_MONTHS || month == EVEN_MONTHS)
        out.Put(MONTHS[month]);
    else
        out.PutUnsigned(month, 2);
}

// A weekday tells something only of a date that is a pattern: otherwise the date implies it.
bool HasWeekdayOfItsOwn(const BACSTAC_DATE& date) {
    const bool pattern = date.Year == BACSTAC_ANY_YEAR || date.Month == BACSTAC_ANY_MONTH || date.Month >= ODD_MONTHS ||
                         date.Day >= LAST_DAY;
    return pattern && date.Weekday != BACSTAC_ANY_WEEKDAY;
}

void PutTimeField(TextWriter& out, std::uint8_t field, const char* before) {
    out.Put(before);
    if (field == BACSTAC_ANY_TIME)
        out.Put("*");
    else
        out.PutUnsigned(field, 2);
}

// "analog-input, 5" as part of a phrase in parentheses.
void PutObject(TextWriter& out, const BACSTAC_OBJECT_ID& value) {
    PutEnum(out, value.Type, ENUM_OBJECT_TYPE);
    out.Put(", ");
    out.PutUnsigned(value.Instance);
}

void PutMac(TextWriter& out, const BACSTAC_ADDRESS& value) {
    const std::uint8_t length = std::min<std::uint8_t>(value.MacLength, sizeof value.Mac);
    if (length == 0) {
        out.Put("broadcast");
    } else if (length == 1) {
        out.PutUnsigned(value.Mac[0]);
    } else if (length == IP_MAC_LENGTH) {
        for (int i = 0; i < 4; ++i) {
            out.Put(i == 0 ? "" : ".");
            out.PutUnsigned(value.Mac[i]);
        }
        out.Put(":");
        out.PutUnsigned(value.Mac[4] * 256U + value.Mac[5]);
    } else {
        out.PutHex(value.Mac, length);
    }
}

} // namespace

void PutEnum(TextWriter& out, std::uint32_t value, ENUM_TYPE_ID type) {
    if (const char* const name = FindEnumName(type, value))
        out.Put(name);
    else
        out.PutUnsigned(value);
}

void PutBitString(TextWriter& out, const BACSTAC_BIT_STRING& value, ENUM_TYPE_ID type) {
    const std::uint32_t count = std::min<std::uint32_t>(value.BitCount, 8 * sizeof value.Bits);
    const char* before = "";
    out.Put("{");
    for (std::uint32_t bit = 0; bit < count; ++bit) {
        if (((value.Bits[bit / 8] >> (bit % 8)) & 1) == 0)
            continue;
        out.Put(before);
        before = ", ";
        if (const char* const name = FindEnumName(type, bit)) {
            out.Put(name);
        } else {
            out.Put("bit-");
            out.PutUnsigned(bit);
        }
    }
    out.Put("}");
}

void PutDateFields(TextWriter& out, const BACSTAC_DATE& value) {
    PutDay(out, value.Day);
    out.Put("/");
    PutMonth(out, value.Month);
    out.Put("/");
    if (value.Year == BACSTAC_ANY_YEAR)
        out.Put("*");
    else
        out.PutUnsigned(value.Year, 4);
}

void PutDate(TextWriter& out, const BACSTAC_DATE& value) {
    if (!HasWeekdayOfItsOwn(value)) {
        PutDateFields(out, value);
        return;
    }
    out.Put("(");
    PutNamed(out, WEEKDAYS, value.Weekday);
    out.Put(", ");
    PutDateFields(out, value);
    out.Put(")");
}

void PutTime(TextWriter& out, const BACSTAC_TIME& value) {
    PutTimeField(out, value.Hour, "");
    PutTimeField(out, value.Minute, ":");
    PutTimeField(out, value.Second, ":");
    PutTimeField(out, value.Hundredths, ".");
}

void PutDateTime(TextWriter& out, const BACSTAC_DATE_TIME& value) {
    out.Put("(");
    if (HasWeekdayOfItsOwn(value.Date)) {
        PutNamed(out, WEEKDAYS, value.Date.Weekday);
        out.Put(", ");
    }
    PutDateFields(out, value.Date);
    out.Put(", ");
    PutTime(out, value.Time);
    out.Put(")");
}

void PutDateRange(TextWriter& out, const BACSTAC_DATE_RANGE& value) {
    PutDate(out, value.Start);
    out.Put(" - ");
    PutDate(out, value.End);
}

void PutWeekNDay(TextWriter& out, const BACSTAC_WEEK_N_DAY& value) {
    out.Put("(");
    PutNamed(out, MONTHS, value.Month);
    out.Put(", ");
    PutNamed(out, WEEKS, value.Week == BACSTAC_ANY_WEEK ? 0 : value.Week);
    out.Put(", ");
    PutNamed(out, WEEKDAYS, value.Day);
    out.Put(")");
}

void PutObjectId(TextWriter& out, const BACSTAC_OBJECT_ID& value) {
    out.Put("(");
    PutObject(out, value);
    out.Put(")");
}

void PutPropertyRef(TextWriter& out, const BACSTAC_PROPERTY_REF& value) {
    PutEnum(out, value.Property, ENUM_PROPERTY_ID);
    if (value.ArrayIndex == WHOLE_PROPERTY)
        return;
    out.Put("[");
    out.PutUnsigned(value.ArrayIndex);
    out.Put("]");
}

void PutObjPropRef(TextWriter& out, const BACSTAC_OBJ_PROP_REF& value) {
    PutDevObjPropRef(out, {value.ObjectId, value.Property, value.ArrayIndex, 0, {OBJ_DEVICE, 0}});
}

void PutDevObjRef(TextWriter& out, const BACSTAC_DEV_OBJ_REF& value) {
    out.Put("(");
    if (value.DevicePresent != 0) {
        PutObject(out, value.DeviceId);
        out.Put(", ");
    }
    PutObject(out, value.ObjectId);
    out.Put(")");
}

void PutDevObjPropRef(TextWriter& out, const BACSTAC_DEV_OBJ_PROP_REF& value) {
    out.Put("(");
    if (value.DevicePresent != 0) {
        PutObject(out, value.DeviceId);
        out.Put(", ");
    }
    PutObject(out, value.ObjectId);
    out.Put(", ");
    PutPropertyRef(out, {value.Property, value.ArrayIndex});
    out.Put(")");
}

void PutAddress(TextWriter& out, const BACSTAC_ADDRESS& value) {
    if (value.Network == BACSTAC_ALL_NETWORKS && value.MacLength == 0) {
        out.Put("global-broadcast");
        return;
    }
    if (value.Network != 0) {
        out.PutUnsigned(value.Network);
        out.Put("/");
    }
    PutMac(out, value);
}

void PutAddressBinding(TextWriter& out, const BACSTAC_ADDRESS_BINDING& value) {
    out.Put("(");
    PutObject(out, value.Device);
    out.Put(", ");
    PutAddress(out, value.Address);
    out.Put(")");
}

void PutRecipient(TextWriter& out, const BACSTAC_RECIPIENT& value) {
    if (value.Choice == 0)
        PutObjectId(out, value.Device);
    else if (value.Choice == 1)
        PutAddress(out, value.Address);
    else
        out.Put("?");
}

void PutErrorValue(TextWriter& out, const BACSTAC_ERROR_VALUE& value) {
    out.Put("(");
    PutEnum(out, value.Class, ENUM_ERROR_CLASS);
    out.Put(", ");
    PutEnum(out, value.Code, ENUM_ERROR_CODE);
    out.Put(")");
}

} // namespace bacnet
