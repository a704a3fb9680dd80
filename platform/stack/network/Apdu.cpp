#include "platform/stack/network/Apdu.h"

#include <array>

namespace bacnet {

namespace {

// Flags in the first octet, below the type.
constexpr std::uint8_t SEGMENTED = 0x08;
constexpr std::uint8_t MORE_FOLLOWS = 0x04;
constexpr std::uint8_t RESPONSE_SEGMENTED = 0x02;
constexpr std::uint8_t NEGATIVE = 0x02;
constexpr std::uint8_t SERVER = 0x01;

constexpr std::array<std::uint16_t, 6> MAX_APDU{50, 128, 206, 480, 1024, 1476};

} // namespace

ApduError DecodeApdu(std::span<const std::uint8_t> octets, Apdu& apdu) {
    if (octets.empty())
        return ApduError::too_short;
    if (octets[0] >> 4 > static_cast<std::uint8_t>(PduType::abort))
        return ApduError::unknown_type;

    Apdu result;
    result.Type = static_cast<PduType>(octets[0] >> 4);
    const std::uint8_t flags = octets[0] & 0x0F;
    std::size_t at = 1;
    const std::size_t size = octets.size();
    switch (result.Type) {
    case PduType::confirmed_request:
        result.Segmented = (flags & SEGMENTED) != 0;
        result.MoreFollows = (flags & MORE_FOLLOWS) != 0;
        result.SegmentedResponseAccepted = (flags & RESPONSE_SEGMENTED) != 0;
        if (size < (result.Segmented ? 6U : 4U))
            return ApduError::too_short;
        result.SegmentsAccepted = static_cast<MaxSegments>(octets[at] >> 4 & 0x07);
        result.MaxApduCode = octets[at++] & 0x0F;
        result.InvokeId = octets[at++];
        break;
    case PduType::unconfirmed_request:
        if (size < 2)
            return ApduError::too_short;
        result.Service = octets[1];
        result.Payload = octets.subspan(2);
        apdu = result;
        return ApduError::none;
    case PduType::complex_ack:
        result.Segmented = (flags & SEGMENTED) != 0;
        result.MoreFollows = (flags & MORE_FOLLOWS) != 0;
        if (size < (result.Segmented ? 5U : 3U))
            return ApduError::too_short;
        result.InvokeId = octets[at++];
        break;
    case PduType::segment_ack:
        if (size < 4)
            return ApduError::too_short;
        result.Negative = (flags & NEGATIVE) != 0;
        result.FromServer = (flags & SERVER) != 0;
        result.InvokeId = octets[1];
        result.SequenceNumber = octets[2];
        result.WindowSize = octets[3];
        apdu = result;
        return ApduError::none;
    case PduType::simple_ack:
    case PduType::error:
    case PduType::reject:
    case PduType::abort:
        if (size < 3)
            return ApduError::too_short;
        result.InvokeId = octets[1];
        (result.Type == PduType::simple_ack || result.Type == PduType::error ? result.Service : result.Reason) =
            octets[2];
        result.FromServer = result.Type == PduType::abort && (flags & SERVER) != 0;
        result.Payload = octets.subspan(3);
        apdu = result;
        return ApduError::none;
    }
    if (result.Segmented) {
        result.SequenceNumber = octets[at++];
        result.WindowSize = octets[at++];
    }
    result.Service = octets[at++];
    result.Payload = octets.subspan(at);
    apdu = result;
    return ApduError::none;
}

const char* ToString(ApduError error) {
    switch (error) {
    case ApduError::none:
        return "no error";
    case ApduError::too_short:
        return "too short";
    case ApduError::unknown_type:
        return "unknown PDU type";
    }
    return "?";
}

std::size_t ApduHeaderSize(const Apdu& apdu) {
    switch (apdu.Type) {
    case PduType::confirmed_request:
        return apdu.Segmented ? 6 : 4;
    case PduType::unconfirmed_request:
        return 2;
    case PduType::complex_ack:
        return apdu.Segmented ? 5 : 3;
    case PduType::segment_ack:
        return 4;
    default:
        return 3;
    }
}

bool PrependApdu(Frame& frame, const Apdu& apdu) {
    std::uint8_t* at = frame.Prepend(ApduHeaderSize(apdu));
    if (at == nullptr)
        return false;
    const auto first = [&apdu](unsigned flags) {
        return static_cast<std::uint8_t>(static_cast<unsigned>(apdu.Type) << 4 | flags);
    };
    const unsigned segments = (apdu.Segmented ? SEGMENTED : 0U) | (apdu.MoreFollows ? MORE_FOLLOWS : 0U);
    switch (apdu.Type) {
    case PduType::confirmed_request:
        *at++ = first(segments | (apdu.SegmentedResponseAccepted ? RESPONSE_SEGMENTED : 0U));
        *at++ =
            static_cast<std::uint8_t>(static_cast<unsigned>(apdu.SegmentsAccepted) << 4 | (apdu.MaxApduCode & 0x0FU));
        *at++ = apdu.InvokeId;
        break;
    case PduType::unconfirmed_request:
        *at++ = first(0);
        break;
    case PduType::complex_ack:
        *at++ = first(segments);
        *at++ = apdu.InvokeId;
        break;
    case PduType::segment_ack:
        *at++ = first((apdu.Negative ? NEGATIVE : 0U) | (apdu.FromServer ? SERVER : 0U));
        *at++ = apdu.InvokeId;
        *at++ = apdu.SequenceNumber;
        *at = apdu.WindowSize;
        return true;
    case PduType::simple_ack:
    case PduType::error:
        *at++ = first(0);
        *at++ = apdu.InvokeId;
        break;
    case PduType::reject:
    case PduType::abort:
        *at++ = first(apdu.Type == PduType::abort && apdu.FromServer ? SERVER : 0U);
        *at++ = apdu.InvokeId;
        *at = apdu.Reason;
        return true;
    }
    if (apdu.Segmented) {
        *at++ = apdu.SequenceNumber;
        *at++ = apdu.WindowSize;
    }
    *at = apdu.Service;
    return true;
}

std::uint16_t MaxApduFromCode(std::uint8_t code) {
    return code < MAX_APDU.size() ? MAX_APDU[code] : 0;
}

std::uint8_t MaxApduToCode(std::uint16_t octets) {
    std::uint8_t code = 0;
    while (code + 1U < MAX_APDU.size() && MAX_APDU[code + 1U] <= octets)
        ++code;
    return code;
}

} // namespace bacnet
