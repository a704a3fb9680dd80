// Help for the tests of texts.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Records.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// What a print function writes into a large buffer.
template <typename Print>
std::string Printed(Print print) {
    std::vector<char> buffer(4096, '#');
    const int length = print(buffer.data(), static_cast<unsigned>(buffer.size()));
    EXPECT_EQ(buffer.at(static_cast<std::size_t>(length)), '\0');
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

inline BACSTAC_BIT_STRING Bits(std::initializer_list<bool> bits) {
    BACSTAC_BIT_STRING value{};
    for (const bool bit : bits)
        CBacGeneral::SetBitStringBit(value, value.BitCount, bit);
    return value;
}

inline BACSTAC_DATE Date(std::uint16_t year, std::uint32_t month, std::uint32_t day, std::uint32_t weekday = 0) {
    return {year, 0, month, day, weekday};
}

// Contents as a service leaves them: elements from the start of the buffer, what they refer to further behind.
class Contents {
public:
    Contents(BACSTAC_DATA_TYPE type, std::uint32_t count) : m_type(type), m_count(count) {}

    // Appends bytes and returns their offset.
    std::uint32_t Add(const void* data, std::size_t size) {
        const std::size_t offset = m_bytes.size();
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
        return static_cast<std::uint32_t>(offset);
    }
    template <typename Record>
    std::uint32_t Add(const Record& record) {
        return Add(&record, sizeof record);
    }
    std::uint32_t AddText(std::string_view text) {
        const std::uint32_t offset = Add(text.data(), text.size());
        m_bytes.push_back(0);
        return offset;
    }
    template <typename Record>
    void Replace(std::uint32_t offset, const Record& record) {
        std::memcpy(m_bytes.data() + offset, &record, sizeof record);
    }
    BACSTAC_PROPERTY_CONTENTS Get() {
        return {m_type, m_bytes.data(), static_cast<std::uint32_t>(m_bytes.size()), m_count};
    }
    std::string Text(BACSTAC_OBJECT_TYPE objectType = OBJ_NO_TYPE, BACSTAC_PROPERTY_ID property = PROP_NO_PROPERTY,
                     int arrayIndex = BACSTAC_NO_INDEX) {
        return Printed([&](char* buffer, unsigned size) {
            return CBacGeneral::PrintContents(buffer, size, Get(), objectType, property, arrayIndex);
        });
    }

private:
    BACSTAC_DATA_TYPE m_type;
    std::uint32_t m_count;
    std::vector<std::uint8_t> m_bytes;
};

template <typename Record>
std::string TextOf(BACSTAC_DATA_TYPE type, const Record& record) {
    Contents contents(type, 1);
    contents.Add(record);
    return contents.Text();
}
