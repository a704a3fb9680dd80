// What a device takes when a request is too long for one APDU, or may be.
#include "platform/stack/client/BacnetClient.h"

#include <algorithm>

namespace bacnet {

namespace {

constexpr BACSTAC_PROPERTY_ID propMaxSegmentsAccepted = 167;
constexpr std::uint16_t smallestMaxApdu = 50;

bool Receives(std::uint32_t segmentation) {
    return segmentation == static_cast<std::uint32_t>(Segmentation::both) ||
           segmentation == static_cast<std::uint32_t>(Segmentation::receive);
}

} // namespace

// The value stays as it is when the device has no such property, or gives nonsense for it.
BACSTAC_STATUS BacnetClient::ReadLimit(const Peer& peer, BACSTAC_PROPERTY_ID property, std::uint32_t& value) {
    std::uint32_t read = 0;
    BACSTAC_PROPERTY_CONTENTS contents{-1, &read, sizeof read, 0};
    const BACSTAC_STATUS status =
        ReadContents(peer, {{OBJ_DEVICE, peer.Instance}, property, BACSTAC_NO_INDEX}, contents, nullptr);
    const bool number = contents.DataType == TYPE_UNSIGNED || contents.DataType == TYPE_ENUMERATED;
    if (status == BACSTAC_OK && number && contents.ElementCount == 1)
        value = read;
    // An answer of any kind is one; only silence, or what keeps us from asking, is none.
    const bool answered = status >= BACSTAC_STATUS_ERROR || status == BACSTAC_STATUS_INVALID_ANSWER ||
                          status == BACSTAC_STATUS_BUFFER_TOO_SMALL;
    return answered ? BACSTAC_OK : status;
}

BACSTAC_STATUS BacnetClient::ReadLimits(const Peer& peer, RequestLimits& limits) {
    std::uint32_t maxApdu = peer.MaxApdu;
    std::uint32_t segmentation = peer.Segmentation;
    std::uint32_t maxSegments = 0;
    BACSTAC_STATUS status = BACSTAC_OK;
    if (maxApdu == 0)
        status = ReadLimit(peer, PROP_MAX_APDU_LENGTH_ACCEPTED, maxApdu);
    if (status == BACSTAC_OK && segmentation == LiveDirectory::NOT_TOLD)
        status = ReadLimit(peer, PROP_SEGMENTATION_SUPPORTED, segmentation);
    if (status == BACSTAC_OK && Receives(segmentation))
        status = ReadLimit(peer, propMaxSegmentsAccepted, maxSegments);
    limits.MaxApdu = static_cast<std::uint16_t>(std::min<std::uint32_t>(maxApdu, UINT16_MAX));
    limits.TakesSegments = Receives(segmentation);
    limits.MaxSegments = maxSegments;
    return status;
}

BACSTAC_STATUS BacnetClient::FindRequestLimits(const Peer& peer, CallOptions& options) {
    RequestLimits limits;
    if (const auto known = m_traits.Limits(peer.Address)) {
        limits = *known;
    } else {
        const BACSTAC_STATUS status = ReadLimits(peer, limits);
        if (status != BACSTAC_OK)
            return status;
        m_traits.SetLimits(peer.Address, limits);
    }
    if (options.MaxApdu == 0 && limits.MaxApdu != 0)
        options.MaxApdu = std::max(limits.MaxApdu, smallestMaxApdu);
    options.TakesSegments = limits.TakesSegments;
    options.MaxSegments = limits.MaxSegments;
    return BACSTAC_OK;
}

} // namespace bacnet
