#include "module/console/FilterRecord.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

// A text ends at its NUL, or where the next field begins.
struct TextField {
    std::size_t offset;
    std::size_t size;
    std::string AlarmDefinition::*member;
};

constexpr TextField TEXT_FIELDS[] = {
    {0x004, 66, &AlarmDefinition::family},
    {0x050, 9, &AlarmDefinition::helpFile},
    {0x059, 255, &AlarmDefinition::text},
    {0x15C, 9, &AlarmDefinition::macroStarted},
    {0x165, 9, &AlarmDefinition::macroAcknowledged},
    {0x16E, 9, &AlarmDefinition::macroEnded},
    {0x190, 64, &AlarmDefinition::image},
    {0x1D0, 64, &AlarmDefinition::zoneName},
    {0x214, 260, &AlarmDefinition::printFile},
    {0x318, 260, &AlarmDefinition::voiceFile},
    {0x4D4, 64, &AlarmDefinition::window},
    {0x514, 64, &AlarmDefinition::context},
};

constexpr std::size_t SEVERITY = 0x046;
constexpr std::size_t TARGET_FLAGS = 0x048;
constexpr std::size_t ZONE_NUMBER = 0x04C;
constexpr std::size_t ATTRIBUTE_FLAGS = 0x04E; // 16 bits, of which the definition has the low 8
constexpr std::size_t ACTION_FLAGS = 0x158;
constexpr std::size_t ACCESS_LIST = 0x180;
constexpr std::size_t ALERT_LIST = 0x210;
constexpr std::size_t SYNTHESIZED_TEXT = 0x41C;
constexpr std::size_t USER_FIELDS = 0x420;
constexpr std::size_t USER_FIELD_SIZE = 33;
static_assert(USER_FIELDS + ALARM_USER_FIELDS * USER_FIELD_SIZE <= FILTER_RECORD_SHORT_SIZE);
static_assert(TEXT_FIELDS[std::size(TEXT_FIELDS) - 1].offset + 64 == FILTER_RECORD_SIZE);

std::uint32_t Number(std::span<const std::byte> record, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value |= std::to_integer<std::uint32_t>(record[offset + i]) << (8 * i);
    return value;
}

std::string Text(std::span<const std::byte> record, std::size_t offset, std::size_t size) {
    const auto field = record.subspan(offset, size);
    const auto end = std::ranges::find(field, std::byte{0});
    std::string text;
    for (auto it = field.begin(); it != end; ++it)
        text.push_back(static_cast<char>(*it));
    return text;
}

} // namespace

AlarmDefinition ParseFilterRecord(std::span<const std::byte> record) {
    AlarmDefinition alarm;
    for (const TextField& field : TEXT_FIELDS)
        if (field.offset + field.size <= record.size())
            alarm.*field.member = Text(record, field.offset, field.size);
    for (std::size_t i = 0; i < ALARM_USER_FIELDS; ++i)
        alarm.userFields[i] = Text(record, USER_FIELDS + i * USER_FIELD_SIZE, USER_FIELD_SIZE);
    alarm.severity = static_cast<std::uint16_t>(Number(record, SEVERITY, 2));
    alarm.targetFlags = Number(record, TARGET_FLAGS, 4);
    alarm.zoneNumber = static_cast<std::uint16_t>(Number(record, ZONE_NUMBER, 2));
    alarm.attributeFlags = static_cast<std::uint8_t>(Number(record, ATTRIBUTE_FLAGS, 2));
    alarm.actionFlags = Number(record, ACTION_FLAGS, 4);
    alarm.accessList = Number(record, ACCESS_LIST, 4);
    alarm.alertList = Number(record, ALERT_LIST, 4);
    alarm.synthesizedText = Number(record, SYNTHESIZED_TEXT, 1) != 0;
    return alarm;
}
