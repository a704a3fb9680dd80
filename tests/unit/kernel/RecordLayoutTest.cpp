// The records' places in memory are read by other programs: each offset is found by writing a field and looking for it.
#include "api/kernel/QLProgramCore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace {

template <typename Record>
std::array<unsigned char, sizeof(Record)> Bytes(const Record& record) {
    std::array<unsigned char, sizeof(Record)> bytes;
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

// The non-zero bytes of a record, as (offset, byte).
using Marks = std::vector<std::pair<std::size_t, int>>;

template <typename Record>
Marks NonZero(const Record& record) {
    Marks marks;
    const auto bytes = Bytes(record);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != 0) {
            marks.emplace_back(i, bytes[i]);
        }
    }
    return marks;
}

} // namespace

TEST(VfiRecordLayout, IsPackedLittleEndian) {
    EXPECT_EQ(sizeof(VfiRecord), 276U);
    EXPECT_EQ(sizeof(VfiRecord[3]), 828U);
    VfiRecord record{};
    record.tagId = 0x04030201;
    record.time = 0x08070605;
    record.milliseconds = 0x0A09;
    record.valueType = 0x0C0B;
    SetVfiValue(record, 1.0); // 3F F0 00 .. 00
    record.text[0] = 0x11;
    record.text[255] = 0x12;
    EXPECT_EQ(NonZero(record), (Marks{{0, 1},
                                      {1, 2},
                                      {2, 3},
                                      {3, 4},
                                      {4, 5},
                                      {5, 6},
                                      {6, 7},
                                      {7, 8},
                                      {8, 9},
                                      {9, 10},
                                      {10, 11},
                                      {11, 12},
                                      {18, 0xF0},
                                      {19, 0x3F},
                                      {20, 0x11},
                                      {275, 0x12}}));
    EXPECT_EQ(VfiValue(record), 1.0);
}

TEST(TagDefinitionLayout, HasItsFieldsInPlace) {
    EXPECT_EQ(sizeof(TagDefinition), 1468U);
    TagDefinition definition{};
    definition.size = sizeof definition; // 0x05BC
    definition.name[0] = 'N';
    definition.name[47] = 'n';
    definition.type = TAG_TYPE_DIGITAL;
    definition.historyEnabled = 1;
    definition.flags = TAG_FLAG_HISTORY_COPY;
    EXPECT_EQ(NonZero(definition), (Marks{{0, 0xBC}, {1, 0x05}, {2, 'N'}, {49, 'n'}, {50, 6}, {312, 1}, {704, 0x04}}));
}

TEST(TagChangeMessageLayout, BeginsWithTheCode) {
    QLTagChangeMessage message{};
    message.code = QL_MSG_TAG_CHANGE;
    message.tagId = 7;
    const double value = 1.0;
    std::memcpy(reinterpret_cast<char*>(&message) + offsetof(QLTagChangeMessage, value), &value, sizeof value);
    EXPECT_EQ(sizeof message, 28U);
    EXPECT_EQ(NonZero(message), (Marks{{0, 1}, {4, 7}, {14, 0xF0}, {15, 0x3F}}));
}
