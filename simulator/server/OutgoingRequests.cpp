#include "simulator/server/OutgoingRequests.h"

#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/WhoIs.h"
#include "simulator/Config.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr std::size_t MAX_PENDING = 1000;
constexpr std::uint32_t RECIPIENT_DEVICE = 0; // choice
constexpr std::size_t BIP_MAC = 6;

std::span<const std::uint8_t> OctetsOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

bool IsBroadcast(const BACSTAC_RECIPIENT& recipient) {
    return recipient.Choice != RECIPIENT_DEVICE && recipient.Address.MacLength == 0;
}

} // namespace

void OutgoingRequests::Send(FrameSender& out, Message message, std::int64_t nowMs) {
    if (m_pending.size() == MAX_PENDING)
        m_pending.erase(m_pending.begin());
    Pending pending;
    pending.What = std::move(message);
    pending.InvokeId = m_nextInvokeId++;
    if (Attempt(out, pending, nowMs))
        m_pending.push_back(std::move(pending));
    CountUnknown();
}

void OutgoingRequests::OnTime(FrameSender& out, std::int64_t nowMs) {
    if (m_pending.empty())
        return;
    std::erase_if(m_pending, [&](Pending& pending) {
        const bool isFound = !pending.To && Resolve(pending.What.To).has_value();
        return (isFound || pending.DueMs <= nowMs) && !Attempt(out, pending, nowMs);
    });
    CountUnknown();
}

void OutgoingRequests::OnAnswer(const Requester& from, const bacnet::Apdu& answer) {
    std::erase_if(m_pending, [&](const Pending& pending) {
        return pending.What.Confirmed && pending.To == from && pending.InvokeId == answer.InvokeId;
    });
}

void OutgoingRequests::Forget() {
    m_pending.clear();
    CountUnknown();
}

void OutgoingRequests::OnIAm(std::uint32_t instance, const Requester& from) {
    const std::lock_guard lock(m_mutex);
    m_known[instance] = from;
}

void OutgoingRequests::CountUnknown() {
    const auto unknown = static_cast<unsigned>(
        std::count_if(m_pending.begin(), m_pending.end(), [](const Pending& pending) { return !pending.To; }));
    m_awaited += unknown - m_unknown.exchange(unknown);
}

bool OutgoingRequests::Attempt(FrameSender& out, Pending& pending, std::int64_t nowMs) {
    if (IsBroadcast(pending.What.To)) {
        SendTo(out, pending);
        return false;
    }
    if (!pending.To && (pending.To = Resolve(pending.What.To)))
        pending.Attempts = 0;
    if (pending.Attempts++ > APDU_RETRIES)
        return false;
    pending.DueMs = nowMs + APDU_TIMEOUT_MS;
    if (pending.To)
        SendTo(out, pending);
    else if (pending.What.To.Choice == RECIPIENT_DEVICE)
        AskWhoIs(out, pending.What.To.Device.Instance);
    return !pending.To || pending.What.Confirmed;
}

// A station of this network, or of one that requests came from before.
std::optional<Requester> OutgoingRequests::Resolve(const BACSTAC_RECIPIENT& recipient) {
    if (recipient.Choice == RECIPIENT_DEVICE) {
        const std::lock_guard lock(m_mutex);
        const auto known = m_known.find(recipient.Device.Instance);
        return known == m_known.end() ? std::nullopt : std::optional(known->second);
    }
    const BACSTAC_ADDRESS& address = recipient.Address;
    const bacnet::MacAddress mac(std::span(address.Mac, address.MacLength));
    if (address.Network != 0) {
        const auto route = m_routes.find(address.Network);
        return route == m_routes.end() ? std::nullopt : std::optional(Requester{route->second, address.Network, mac});
    }
    Requester station;
    return address.MacLength == BIP_MAC && bacnet::FromMac(mac, station.Link) ? std::optional(station) : std::nullopt;
}

void OutgoingRequests::AskWhoIs(FrameSender& out, std::uint32_t instance) const {
    std::uint8_t parameters[16];
    bacnet::Writer writer(parameters);
    bacnet::EncodeWhoIs({instance, instance}, writer);
    bacnet::Apdu header;
    header.Type = bacnet::PduType::unconfirmed_request;
    header.Service = static_cast<std::uint8_t>(bacnet::UnconfirmedService::whoIs);
    bacnet::Frame& frame = out.Begin();
    frame.Append(writer.Written());
    bacnet::PrependApdu(frame, header);
    out.Broadcast(m_origin, bacnet::GLOBAL_BROADCAST);
}

// To that station, or to all where there is none.
void OutgoingRequests::SendTo(FrameSender& out, const Pending& pending) const {
    const bool isBroadcast = IsBroadcast(pending.What.To);
    if (isBroadcast && pending.What.Confirmed)
        return; // nobody could answer
    bacnet::Apdu header;
    header.Type = pending.What.Confirmed ? bacnet::PduType::confirmed_request : bacnet::PduType::unconfirmed_request;
    header.InvokeId = pending.InvokeId;
    header.Service = pending.What.Service;
    header.MaxApduCode = bacnet::MaxApduToCode(bacnet::MAX_APDU_IP);
    bacnet::Frame& frame = out.Begin();
    if (!frame.Append(OctetsOf(pending.What.Parameters)) || !bacnet::PrependApdu(frame, header))
        return;
    if (isBroadcast)
        out.Broadcast(m_origin, pending.What.To.Address.Network);
    else
        out.Send(m_origin, *pending.To);
}

} // namespace sim
