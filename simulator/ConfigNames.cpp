#include "simulator/ConfigNames.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyNames.h"
#include "platform/stack/transport/Bvll.h"
#include "simulator/model/RecordGenerator.h"

#include <charconv>
#include <string>

namespace sim {

namespace {

template <typename T>
struct Word {
    std::string_view Text;
    T Meaning;
};

constexpr Word<bacnet::ConfirmedService> SERVICES[] = {
    {"acknowledge-alarm", bacnet::ConfirmedService::acknowledgeAlarm},
    {"get-alarm-summary", bacnet::ConfirmedService::getAlarmSummary},
    {"get-enrollment-summary", bacnet::ConfirmedService::getEnrollmentSummary},
    {"subscribe-cov", bacnet::ConfirmedService::subscribeCov},
    {"subscribe-cov-property", bacnet::ConfirmedService::subscribeCovProperty},
    {"atomic-read-file", bacnet::ConfirmedService::atomicReadFile},
    {"atomic-write-file", bacnet::ConfirmedService::atomicWriteFile},
    {"add-list-element", bacnet::ConfirmedService::addListElement},
    {"remove-list-element", bacnet::ConfirmedService::removeListElement},
    {"create-object", bacnet::ConfirmedService::createObject},
    {"delete-object", bacnet::ConfirmedService::deleteObject},
    {"read-property", bacnet::ConfirmedService::readProperty},
    {"read-property-conditional", bacnet::ConfirmedService::readPropertyConditional},
    {"read-property-multiple", bacnet::ConfirmedService::readPropertyMultiple},
    {"write-property", bacnet::ConfirmedService::writeProperty},
    {"write-property-multiple", bacnet::ConfirmedService::writePropertyMultiple},
    {"device-communication-control", bacnet::ConfirmedService::deviceCommunicationControl},
    {"reinitialize-device", bacnet::ConfirmedService::reinitializeDevice},
    {"read-range", bacnet::ConfirmedService::readRange},
    {"get-event-information", bacnet::ConfirmedService::getEventInformation},
    {"acknowledge-alarm", bacnet::ConfirmedService::acknowledgeAlarm},
};

constexpr Word<FaultKind> FAULT_KINDS[] = {
    {"silent", FaultKind::silent},
    {"slow", FaultKind::slow},
    {"drop", FaultKind::drop},
    {"error", FaultKind::error},
    {"reject", FaultKind::reject},
    {"abort", FaultKind::abort},
    {"duplicate", FaultKind::duplicate},
    {"late", FaultKind::late},
    {"wrong-invoke-id", FaultKind::wrongInvokeId},
    {"silent-in-answer", FaultKind::silentInAnswer},
    {"wrong-source", FaultKind::wrongSource},
    {"wrong-port", FaultKind::wrongPort},
    {"restart", FaultKind::restart},
    {"truncate", FaultKind::truncate},
};

constexpr Word<bacnet::Segmentation> SEGMENTATIONS[] = {
    {"both", bacnet::Segmentation::both},
    {"transmit", bacnet::Segmentation::transmit},
    {"receive", bacnet::Segmentation::receive},
    {"none", bacnet::Segmentation::none},
};

constexpr Word<std::uint32_t> DATUM_KINDS[] = {
    {"boolean", BACSTAC_LOG_BOOLEAN},
    {"real", BACSTAC_LOG_REAL},
    {"enumerated", BACSTAC_LOG_ENUMERATED},
    {"unsigned", BACSTAC_LOG_UNSIGNED},
    {"signed", BACSTAC_LOG_SIGNED},
    {"bits", BACSTAC_LOG_BITSTRING},
    {"null", BACSTAC_LOG_NULL},
    {"failure", BACSTAC_LOG_FAILURE},
    {"any", BACSTAC_LOG_ANY},
    {"mixed", MIXED_KINDS},
};

template <typename T, std::size_t N>
std::optional<T> Find(const Word<T> (&words)[N], std::string_view text) {
    for (const Word<T>& word : words)
        if (word.Text == text)
            return word.Meaning;
    return std::nullopt;
}

std::optional<std::uint32_t> NumberOf(std::string_view text, std::uint32_t limit) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > limit)
        return std::nullopt;
    return number;
}

// Takes the text up to the next comma off the front.
std::string_view TakeField(std::string_view& text) {
    const std::size_t comma = text.find(',');
    const std::string_view field = text.substr(0, comma);
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    return field;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeOf(std::string_view text) {
    constexpr std::uint32_t MAX_TYPE = 1023;
    for (const bacnet::ObjectTypeInfo& known : bacnet::AllObjectTypes())
        if (text == known.Name)
            return known.Type;
    return NumberOf(text, MAX_TYPE);
}

std::optional<BACSTAC_PROPERTY_ID> PropertyOf(std::string_view text) {
    constexpr std::uint32_t MAX_PROPERTY = 4194303;
    if (const auto known = bacnet::FindPropertyId(text))
        return known;
    return NumberOf(text, MAX_PROPERTY);
}

std::optional<BACSTAC_OBJECT_ID> ObjectIdOf(std::string_view text) {
    const auto type = ObjectTypeOf(TakeField(text));
    const auto instance = NumberOf(text, BACSTAC_MAX_INSTANCE);
    if (!type || !instance)
        return std::nullopt;
    return BACSTAC_OBJECT_ID{*type, *instance};
}

std::optional<BACSTAC_DEV_OBJ_PROP_REF> ReferenceOf(std::string_view text) {
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    const auto type = ObjectTypeOf(TakeField(text));
    const auto instance = NumberOf(TakeField(text), BACSTAC_MAX_INSTANCE);
    const auto property = PropertyOf(TakeField(text));
    if (!type || !instance || !property)
        return std::nullopt;
    reference.ObjectId = {*type, *instance};
    reference.Property = *property;
    reference.ArrayIndex = static_cast<std::uint32_t>(BACSTAC_NO_INDEX);
    reference.DeviceId.Type = OBJ_DEVICE;
    // The device, when another one is meant, stands last.
    if (!text.empty()) {
        const auto device = NumberOf(text, BACSTAC_MAX_INSTANCE);
        if (!device)
            return std::nullopt;
        reference.DevicePresent = 1;
        reference.DeviceId.Instance = *device;
    }
    return reference;
}

std::optional<bacnet::ConfirmedService> ServiceOf(std::string_view text) {
    return Find(SERVICES, text);
}

std::optional<FaultKind> FaultKindOf(std::string_view text) {
    return Find(FAULT_KINDS, text);
}

std::optional<bacnet::Segmentation> SegmentationOf(std::string_view text) {
    return Find(SEGMENTATIONS, text);
}

std::optional<std::uint32_t> DatumKindOf(std::string_view text) {
    return Find(DATUM_KINDS, text);
}

std::optional<BACSTAC_BIT_STRING> BitsOf(std::string_view text) {
    BACSTAC_BIT_STRING bits{};
    if (text.size() > 8 * sizeof(bits.Bits))
        return std::nullopt;
    for (const char c : text) {
        if (c != '0' && c != '1')
            return std::nullopt;
        std::uint8_t& octet = bits.Bits[bits.BitCount / 8];
        octet = static_cast<std::uint8_t>(octet | (c == '1' ? 1U << bits.BitCount % 8 : 0U));
        ++bits.BitCount;
    }
    return bits;
}

std::optional<std::vector<std::uint8_t>> OctetsOf(std::string_view text) {
    std::vector<std::uint8_t> octets;
    int high = -1;
    for (const char c : text) {
        if (c == ' ')
            continue;
        const int digit = HexDigit(c);
        if (digit < 0)
            return std::nullopt;
        if (high < 0) {
            high = digit;
        } else {
            octets.push_back(static_cast<std::uint8_t>(high << 4 | digit));
            high = -1;
        }
    }
    if (high >= 0)
        return std::nullopt;
    return octets;
}

bool ParseAddress(std::string_view text, std::uint32_t& ip, std::uint16_t& port) {
    const std::size_t colon = text.find(':');
    port = 0;
    if (colon != std::string_view::npos) {
        const auto number = NumberOf(text.substr(colon + 1), 0xFFFF);
        if (!number || *number == 0)
            return false;
        port = static_cast<std::uint16_t>(*number);
    }
    return bacnet::ParseIpV4(std::string(text.substr(0, colon)), ip);
}

} // namespace sim
