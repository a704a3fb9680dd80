#include "platform/stack/transport/BroadcastManagement.h"

#include <algorithm>
#include <array>
#include <utility>

namespace bacnet {

BroadcastManagement::BroadcastManagement(Environment environment, const std::optional<ForeignSettings>& foreign,
                                         const std::optional<BbmdSettings>& bbmd)
    : m_environment(std::move(environment)) {
    if (foreign)
        m_foreign.emplace(*foreign);
    if (bbmd)
        m_bbmd.emplace(m_environment.Local, *bbmd);
}

int BroadcastManagement::Attend() {
    if (!m_foreign)
        return -1;
    std::int64_t wait = 0;
    bool changed = false;
    if (m_foreign->IsDue(m_environment.Now(), wait, changed))
        m_environment.Send(m_foreign->Device(), EncodeRegisterForeignDevice(m_foreign->TimeToLive()));
    if (changed)
        ReportState();
    return static_cast<int>(std::clamp<std::int64_t>(wait, 1, 60000));
}

void BroadcastManagement::Leave() {
    if (m_foreign && m_foreign->Current() == ForeignRegistration::State::registered && m_environment.Local.Ip != 0)
        m_environment.Send(m_foreign->Device(), EncodeDeleteFdtEntry(m_environment.Local));
}

bool BroadcastManagement::Broadcast(Frame& npdu) {
    const std::size_t size = npdu.Size();
    if (m_foreign) {
        // Who is not registered reaches nobody: better the caller knows.
        const auto state = m_foreign->Current();
        const bool heard =
            state == ForeignRegistration::State::registered || state == ForeignRegistration::State::asking;
        return heard && PrependBvll(npdu, BvlcFunction::distribute_broadcast) &&
               m_environment.Send(m_foreign->Device(), npdu.Octets());
    }
    if (!PrependBvll(npdu, BvlcFunction::original_broadcast))
        return false;
    const bool sent = m_environment.Send(m_environment.Broadcast, npdu.Octets());
    if (!m_bbmd)
        return sent;
    npdu.DropHeaders(size);
    return Distribute(Bbmd::Way::own_network, m_environment.Local, m_environment.Local, false, npdu.Octets()) && sent;
}

bool BroadcastManagement::Distribute(Bbmd::Way way, const BipAddress& from, const BipAddress& origin, bool onOwnNetwork,
                                     std::span<const std::uint8_t> npdu) {
    std::vector<BipAddress> targets;
    if (!m_bbmd->Targets(way, from, origin, m_environment.Now(), targets))
        return false;
    if (onOwnNetwork)
        targets.push_back(m_environment.Broadcast);
    Frame frame;
    if (!frame.Append(npdu) || !PrependForwarded(frame, origin))
        return false;
    for (const BipAddress& target : targets)
        m_environment.Send(target, frame.Octets());
    return true;
}

bool BroadcastManagement::OnBroadcast(const BvllMessage& message, const BipAddress& from, Channel channel) {
    switch (message.Function) {
    case BvlcFunction::original_broadcast:
        // One that somebody has sent to this station alone is not distributed: its network has not seen it.
        if (m_bbmd && channel != Channel::directed)
            Distribute(Bbmd::Way::own_network, from, from, false, message.Payload);
        return true;
    case BvlcFunction::forwarded_npdu:
        if (m_bbmd) {
            const bool alone = channel == Channel::directed || (channel == Channel::unknown && m_bbmd->GetsUnicasts());
            Distribute(Bbmd::Way::table, from, message.Origin, alone, message.Payload);
        }
        return true;
    case BvlcFunction::distribute_broadcast:
        if (m_bbmd && Distribute(Bbmd::Way::foreign, from, from, true, message.Payload))
            return true;
        SendNak(BvlcResult::distribute_broadcast_nak, from);
        return false;
    default:
        return true;
    }
}

BroadcastManagement::Served BroadcastManagement::OnControl(const BvllMessage& message, const BipAddress& from) {
    if (m_queries.OnMessage(message, from))
        return Served::yes;
    if (message.Function == BvlcFunction::result) {
        if (m_foreign && from == m_foreign->Device() && m_foreign->OnResult(message.ResultCode, m_environment.Now()))
            ReportState();
        return Served::yes;
    }
    if (m_bbmd) {
        std::vector<std::uint8_t> answer;
        if (m_bbmd->Serve(message, from, m_environment.Now(), answer)) {
            m_environment.Send(from, answer);
            return Served::yes;
        }
        return Served::ignored;
    }
    BvlcResult nak{};
    if (!NakFor(message.Function, nak))
        return Served::ignored; // acknowledgements that nobody waits for
    SendNak(nak, from);
    return Served::unserved;
}

void BroadcastManagement::SendNak(BvlcResult nak, const BipAddress& to) {
    std::array<std::uint8_t, 6> octets{};
    EncodeResult(nak, octets);
    m_environment.Send(to, octets);
}

void BroadcastManagement::ReportState() {
    if (!m_environment.Report)
        return;
    const std::string device = ToString(m_foreign->Device());
    switch (m_foreign->Current()) {
    case ForeignRegistration::State::registered:
        m_environment.Report(false, "Registered as a foreign device with " + device);
        return;
    case ForeignRegistration::State::refused:
        m_environment.Report(true, device + " refuses this station as a foreign device: no broadcasts are sent");
        return;
    case ForeignRegistration::State::silent:
        m_environment.Report(true, device + " does not answer the registration as a foreign device: no broadcasts are "
                                            "sent");
        return;
    case ForeignRegistration::State::asking:
        return;
    }
}

TableRead BroadcastManagement::Ask(const BipAddress& station, BvlcFunction function, std::chrono::milliseconds wait,
                                   std::vector<std::uint8_t>& payload) {
    const auto request = EncodeBvllRequest(function);
    return m_queries.Ask(
        station, function, wait, [&] { return m_environment.Send(station, request); }, payload);
}

TableRead BroadcastManagement::ReadTable(const BipAddress& station, std::vector<BdtEntry>& entries,
                                         std::chrono::milliseconds wait) {
    std::vector<std::uint8_t> payload;
    const TableRead read = Ask(station, BvlcFunction::read_bdt, wait, payload);
    return read == TableRead::done && !DecodeBdt(payload, entries) ? TableRead::failed : read;
}

TableRead BroadcastManagement::ReadTable(const BipAddress& station, std::vector<FdtEntry>& entries,
                                         std::chrono::milliseconds wait) {
    std::vector<std::uint8_t> payload;
    const TableRead read = Ask(station, BvlcFunction::read_fdt, wait, payload);
    return read == TableRead::done && !DecodeFdt(payload, entries) ? TableRead::failed : read;
}

BroadcastStatus BroadcastManagement::Status() {
    BroadcastStatus status;
    if (m_foreign) {
        status.Foreign = {m_foreign->Device(), m_foreign->TimeToLive()};
        status.Registration = m_foreign->Current();
    }
    if (m_bbmd) {
        status.IsBbmd = true;
        status.Table = m_bbmd->Table();
        status.ForeignDevices = m_bbmd->ForeignDevices(m_environment.Now());
    }
    return status;
}

} // namespace bacnet
