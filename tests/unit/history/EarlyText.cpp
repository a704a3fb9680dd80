// Stands in for the parts of the BACnet library that are not built yet.
#include "api/bacnet/BacGeneral.h"

#include <array>
#include <cstdio>

std::string ansi_to_utf8(const std::string& text) {
    return text;
}

bool CBacGeneral::TestBitStringBit(BACSTAC_BIT_STRING const& value, unsigned bit) {
    return bit < value.BitCount && ((value.Bits[bit / 8] >> (bit % 8)) & 1) != 0;
}
void CBacGeneral::SetBitStringBit(BACSTAC_BIT_STRING& value, unsigned bit, bool set) {
    if (bit >= value.BitCount)
        value.BitCount = bit + 1;
    const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
    value.Bits[bit / 8] = static_cast<std::uint8_t>(set ? value.Bits[bit / 8] | mask : value.Bits[bit / 8] & ~mask);
}

int CBacGeneral::PrintDevObjPropReference(char* buffer, unsigned size, BACSTAC_DEV_OBJ_PROP_REF const& value) {
    return std::snprintf(buffer, size, "(%u, (%u, %u), %u, %d)", value.DeviceId.Instance, value.ObjectId.Type,
                         value.ObjectId.Instance, value.Property, static_cast<int>(value.ArrayIndex));
}
int CBacGeneral::PrintBitString(char* buffer, unsigned size, BACSTAC_BIT_STRING const& value, ENUM_TYPE_ID) {
    return std::snprintf(buffer, size, "bits %u", value.BitCount);
}
int CBacGeneral::PrintContents(char* buffer, unsigned size, BACSTAC_PROPERTY_CONTENTS const& contents,
                               BACSTAC_OBJECT_TYPE, BACSTAC_PROPERTY_ID, int) {
    return std::snprintf(buffer, size, "contents %d", contents.DataType);
}

namespace {
const char* Number(const char* letter, unsigned number) {
    thread_local std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%s(%u)", letter, number);
    return text.data();
}
} // namespace

const char* CBacGeneral::GetStatusString(BACSTAC_STATUS status) {
    return Number("S", status);
}
const char* CBacGeneral::GetErrorCodeString(unsigned code) {
    return Number("code", code);
}
const char* CBacGeneral::GetRejectReasonString(unsigned reason) {
    return Number("reject", reason);
}
const char* CBacGeneral::GetAbortReasonString(unsigned reason) {
    return Number("abort", reason);
}

COMPARAISON Compare(BACSTAC_DATE_TIME const& left, BACSTAC_DATE_TIME const& right) {
    const std::array<unsigned, 7> l{left.Date.Year,   left.Date.Month,  left.Date.Day,       left.Time.Hour,
                                    left.Time.Minute, left.Time.Second, left.Time.Hundredths};
    const std::array<unsigned, 7> r{right.Date.Year,   right.Date.Month,  right.Date.Day,       right.Time.Hour,
                                    right.Time.Minute, right.Time.Second, right.Time.Hundredths};
    return l < r ? COMPARE_LESS : l > r ? COMPARE_GREATER : COMPARE_EQUAL;
}
