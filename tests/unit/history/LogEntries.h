// Short ways to write time stamps and entries of log buffers in tests.
#pragma once

#include "tests/support/FakeBacnet.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

inline BACSTAC_DATE_TIME Time(unsigned year, unsigned month, unsigned day, unsigned hour = 0, unsigned minute = 0,
                              unsigned second = 0, unsigned hundredths = 0) {
    BACSTAC_DATE_TIME time{};
    time.Date.Year = static_cast<std::uint16_t>(year);
    time.Date.Month = month;
    time.Date.Day = day;
    time.Time = {static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(minute), static_cast<std::uint8_t>(second),
                 static_cast<std::uint8_t>(hundredths)};
    return time;
}

inline bool Same(const BACSTAC_DATE_TIME& a, const BACSTAC_DATE_TIME& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The n-th minute of 10 June 2026.
inline BACSTAC_DATE_TIME Minute(unsigned n) {
    return Time(2026, 6, 10 + n / 1440, n / 60 % 24, n % 60);
}

inline BACSTAC_LOG_VALUE BooleanValue(bool value) {
    BACSTAC_LOG_VALUE stored;
    std::memset(&stored, 0xEE, sizeof stored); // only the first byte is the value's
    stored.Boolean = value ? 1 : 0;
    return stored;
}

inline BACSTAC_LOG_VALUE RealValue(float value) {
    BACSTAC_LOG_VALUE stored{};
    stored.Real = value;
    return stored;
}

inline BACSTAC_LOG_VALUE UnsignedValue(std::uint32_t value) { // enumerated as well
    BACSTAC_LOG_VALUE stored{};
    stored.Unsigned = value;
    return stored;
}

inline BACSTAC_LOG_VALUE SignedValue(std::int32_t value) {
    BACSTAC_LOG_VALUE stored{};
    stored.Signed = value;
    return stored;
}

inline BACSTAC_LOG_VALUE FailureValue(std::uint32_t errorClass, std::uint32_t code) {
    BACSTAC_LOG_VALUE stored{};
    stored.Failure = {errorClass, code};
    return stored;
}

inline BACSTAC_BIT_STRING Bits(std::initializer_list<bool> bits) {
    BACSTAC_BIT_STRING value{};
    for (const bool bit : bits) {
        if (bit)
            value.Bits[value.BitCount / 8] |= static_cast<std::uint8_t>(1U << (value.BitCount % 8));
        ++value.BitCount;
    }
    return value;
}

inline BACSTAC_LOG_VALUE BitsValue(std::initializer_list<bool> bits) {
    BACSTAC_LOG_VALUE stored{};
    stored.BitString = Bits(bits);
    return stored;
}

inline FakeLogEntry Entry(const BACSTAC_DATE_TIME& time, std::uint32_t type, const BACSTAC_LOG_VALUE& value = {}) {
    FakeLogEntry entry;
    entry.time = time;
    entry.type = type;
    entry.value = value;
    return entry;
}

inline FakeLogEntry RealEntry(const BACSTAC_DATE_TIME& time, float value) {
    return Entry(time, BACSTAC_LOG_REAL, RealValue(value));
}

inline FakeLogEntry AnyEntry(const BACSTAC_DATE_TIME& time, const FakeValue& value) {
    FakeLogEntry entry = Entry(time, BACSTAC_LOG_ANY);
    entry.any = value;
    return entry;
}

inline FakeLogEntry WithStatus(FakeLogEntry entry, std::initializer_list<bool> flags) {
    entry.hasStatus = true;
    entry.statusFlags = Bits(flags);
    return entry;
}

inline FakeLogItem Item(std::uint32_t kind, const BACSTAC_LOG_VALUE& value = {}) {
    FakeLogItem item;
    item.kind = kind;
    item.value = value;
    return item;
}

inline FakeLogEntry MultipleEntry(const BACSTAC_DATE_TIME& time, const std::vector<FakeLogItem>& items) {
    FakeLogEntry entry = Entry(time, BACSTAC_LOG_MULTIPLE_DATA);
    entry.items = items;
    return entry;
}

// One value a minute, from the minute first on; the value is the minute's number.
inline std::vector<FakeLogEntry> Minutes(unsigned first, unsigned count) {
    std::vector<FakeLogEntry> entries;
    for (unsigned i = first; i < first + count; ++i)
        entries.push_back(RealEntry(Minute(i), static_cast<float>(i)));
    return entries;
}
