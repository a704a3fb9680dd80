#include "simulator/server/Handlers.h"

#include "platform/stack/codec/Reader.h"

namespace sim {

namespace {

using bacnet::Reader;

// Context tags of both requests.
enum Tag { process, object, confirmed, lifetime, property, increment };

BACSTAC_RECIPIENT RecipientOf(const Requester& from) {
    const bacnet::MacAddress mac = from.Network != 0 ? from.Station : bacnet::ToMac(from.Link);
    BACSTAC_RECIPIENT recipient{};
    recipient.Choice = 1;
    recipient.Address.Remote = from.Network != 0 ? 1 : 0;
    recipient.Address.Network = from.Network;
    std::copy(mac.Octets().begin(), mac.Octets().end(), recipient.Address.Mac);
    recipient.Address.MacLength = static_cast<std::uint8_t>(mac.Length());
    return recipient;
}

bool ReadProperty(Reader& in, CovRequest& request) {
    BACSTAC_PROPERTY_REF reference{0, WHOLE};
    if (!in.Open(property) || !in.Enumerated(reference.Property, 0) ||
        (in.IsContext(1) && !in.Unsigned(reference.ArrayIndex, 1)) || !in.Close(property))
        return false;
    request.Property = reference;
    float least = 0;
    if (!in.IsContext(increment))
        return true;
    const bool read = in.Real(least, increment);
    request.Increment = least;
    return read;
}

// Without confirmed and lifetime a request cancels.
Outcome Answer(const ServiceCall& call, bool ofProperty) {
    Reader in(call.Parameters);
    CovRequest request;
    request.Subscriber = RecipientOf(call.From);
    in.Unsigned(request.Process, process);
    in.ObjectId(request.Object, object);
    const bool hasConfirmed = in.IsContext(confirmed) && in.Boolean(request.Confirmed, confirmed);
    const bool hasLifetime = in.IsContext(lifetime) && in.Unsigned(request.Lifetime, lifetime);
    if (ofProperty)
        ReadProperty(in, request);
    if (!in.Ok() || !in.AtEnd())
        return Malformed(call.Parameters);
    if (hasLifetime && !hasConfirmed)
        return Outcome::Reject(REJECT_MISSING_REQUIRED_PARAMETER);
    if (hasConfirmed)
        return Outcome::Of(call.Dut.Subscribe(request));
    call.Dut.Unsubscribe(request);
    return Outcome::Done();
}

} // namespace

Outcome SubscribeCov(const ServiceCall& call) {
    return Answer(call, false);
}

Outcome SubscribeCovProperty(const ServiceCall& call) {
    return Answer(call, true);
}

} // namespace sim
