#include "module/editors/AddressFields.h"

#include "module/editors/NumberChecks.h"

#include <algorithm>
#include <iterator>

static_assert(MAC_FIELDS == std::size(BACSTAC_ADDRESS{}.Mac));

namespace {

template <class Number>
Number LowBits(const std::string& text) {
    const auto checked = CheckUnsigned(text, 0, UINT32_MAX);
    return static_cast<Number>(checked.message ? 0 : checked.value);
}

} // namespace

AddressTexts ShowAddress(const BACSTAC_ADDRESS& value) {
    AddressTexts texts{value.Remote != 0, std::to_string(value.Network), {}};
    const auto length = std::min<std::size_t>(value.MacLength, MAC_FIELDS);
    std::transform(value.Mac, value.Mac + length, texts.mac.begin(),
                   [](std::uint8_t octet) { return std::to_string(octet); });
    return texts;
}

void StoreAddress(const AddressTexts& texts, BACSTAC_ADDRESS& value) {
    const AddressTexts shown = ShowAddress(value);
    if (texts.isRemote != shown.isRemote)
        value.Remote = texts.isRemote ? 1 : 0;
    if (texts.network != shown.network)
        value.Network = LowBits<std::uint16_t>(texts.network);
    if (texts.mac == shown.mac)
        return;
    std::fill(std::begin(value.Mac), std::end(value.Mac), std::uint8_t{0});
    const auto end = std::ranges::find(texts.mac, std::string());
    std::transform(texts.mac.begin(), end, value.Mac, LowBits<std::uint8_t>);
    value.MacLength = static_cast<std::uint8_t>(end - texts.mac.begin());
}
