// The record that goes into the historical store. Its layout is fixed: 276 bytes, little-endian, no padding; a block is
// one contiguous array. The double is not aligned: use the accessors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

inline constexpr std::uint16_t VFI_NUMBER = 2;
inline constexpr std::uint16_t VFI_TEXT = 8;
inline constexpr std::uint32_t VFI_NO_TIME = 0xFFFFFFFFU; // a local time that 32 bits of seconds cannot hold

#pragma pack(push, 1)
struct VfiRecord {
    std::uint32_t tagId;        // station in the high 16 bits, tag in the low 16 bits
    std::uint32_t time;         // seconds since 1970 UTC
    std::uint16_t milliseconds; // 0..999
    std::uint16_t valueType;    // VFI_NUMBER or VFI_TEXT
    double value;               // meaningful for VFI_NUMBER
    char text[256];             // NUL-terminated UTF-8, meaningful for VFI_TEXT
};
#pragma pack(pop)

static_assert(sizeof(VfiRecord) == 276);
static_assert(offsetof(VfiRecord, tagId) == 0 && offsetof(VfiRecord, time) == 4 &&
              offsetof(VfiRecord, milliseconds) == 8);
static_assert(offsetof(VfiRecord, valueType) == 10 && offsetof(VfiRecord, value) == 12 &&
              offsetof(VfiRecord, text) == 20);

inline double VfiValue(const VfiRecord& record) {
    double value;
    std::memcpy(&value, reinterpret_cast<const char*>(&record) + offsetof(VfiRecord, value), sizeof value);
    return value;
}

inline void SetVfiValue(VfiRecord& record, double value) {
    std::memcpy(reinterpret_cast<char*>(&record) + offsetof(VfiRecord, value), &value, sizeof value);
}
