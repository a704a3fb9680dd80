#include "simulator/model/Destination.h"

#include "platform/stack/codec/Reader.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

using bacnet::Reader;

std::array<std::uint8_t, 4> Fields(const BACSTAC_TIME& time) {
    return {time.Hour, time.Minute, time.Second, time.Hundredths};
}

// Of unspecified fields, 255, the lower end of a window is open by counting them as 0.
std::array<std::uint8_t, 4> FieldsFrom(const BACSTAC_TIME& time) {
    auto fields = Fields(time);
    std::replace(fields.begin(), fields.end(), BACSTAC_ANY_TIME, std::uint8_t{0});
    return fields;
}

bool ReadBits(Reader& in, std::uint8_t& octet) {
    BACSTAC_BIT_STRING bits{};
    if (!in.BitString(bits))
        return false;
    octet = bits.Bits[0];
    return true;
}

bool ReadAddress(Reader& in, BACSTAC_ADDRESS& address) {
    std::uint32_t network = 0;
    std::span<const std::uint8_t> mac;
    if (!in.Unsigned(network) || !in.OctetString(mac) || network > BACSTAC_ALL_NETWORKS ||
        mac.size() > std::size(address.Mac))
        return false;
    address = {};
    address.Remote = network != 0 ? 1 : 0;
    address.Network = static_cast<std::uint16_t>(network);
    std::copy(mac.begin(), mac.end(), address.Mac);
    address.MacLength = static_cast<std::uint8_t>(mac.size());
    return true;
}

bool ReadRecipient(Reader& in, BACSTAC_RECIPIENT& recipient) {
    enum Choice { device, address };
    recipient.Choice = in.IsContext(device) ? device : address;
    if (recipient.Choice == device)
        return in.ObjectId(recipient.Device, device);
    return in.Open(address) && ReadAddress(in, recipient.Address) && in.Close(address);
}

} // namespace

bool Destination::IsValidAt(const BACSTAC_DATE_TIME& now) const {
    const bool isDay = now.Date.Weekday >= 1 && (Days >> (now.Date.Weekday - 1) & 1U) != 0;
    return isDay && FieldsFrom(From) <= Fields(now.Time) && Fields(now.Time) <= Fields(To);
}

std::optional<Destination> ReadDestination(std::span<const std::uint8_t> element) {
    Reader in(element);
    Destination read;
    const bool complete = ReadBits(in, read.Days) && in.Time(read.From) && in.Time(read.To) &&
                          ReadRecipient(in, read.Recipient) && in.Unsigned(read.Process) &&
                          in.Boolean(read.Confirmed) && ReadBits(in, read.Transitions);
    return complete ? std::optional(read) : std::nullopt;
}

bool IsSame(const BACSTAC_RECIPIENT& a, const BACSTAC_RECIPIENT& b) {
    if (a.Choice != b.Choice)
        return false;
    return a.Choice == 0 ? a.Device == b.Device
                         : a.Address.Network == b.Address.Network && a.Address.MacLength == b.Address.MacLength &&
                               std::equal(a.Address.Mac, a.Address.Mac + a.Address.MacLength, b.Address.Mac);
}

} // namespace sim
