#include "simulator/server/Worker.h"

#include <algorithm>
#include <chrono>

namespace sim {

namespace {

constexpr std::int64_t RUN_EVERY_MS = 100; // what devices do by themselves

std::int64_t MonotonicMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

Worker::Worker(const Site& site) : m_site(site), m_sender(site.BroadcastAddress) {}

Worker::~Worker() {
    Stop();
}

std::string Worker::Add(Endpoint& endpoint) {
    if (endpoint.Device != nullptr)
        m_devices.push_back(endpoint.Device);
    if (endpoint.Router != nullptr)
        endpoint.Router->AppendDevices(m_devices);
    return m_poller.Add(endpoint.Socket, &endpoint);
}

void Worker::Start() {
    m_stop = false;
    m_thread = std::thread([this] { Run(); });
}

void Worker::Stop() {
    if (!m_thread.joinable())
        return;
    m_stop = true;
    m_poller.Interrupt();
    m_thread.join();
}

int Worker::TimeToWait(std::int64_t nowMs) const {
    const std::int64_t atMs = m_appendEveryMs != 0 ? std::min(m_appendAtMs, m_runAtMs) : m_runAtMs;
    const int wait = static_cast<int>(std::max<std::int64_t>(atMs - nowMs, 0));
    const int timers = m_timers.TimeLeft(nowMs);
    return timers < 0 ? wait : std::min(timers, wait);
}

void Worker::Run() {
    ServerContext context{m_sender, m_timers, m_scratch, MonotonicMs()};
    m_appendAtMs = context.NowMs + m_appendEveryMs;
    m_runAtMs = context.NowMs;
    int wait = TimeToWait(context.NowMs);
    while (!m_stop) {
        const auto ready = m_poller.Wait(wait);
        context.NowMs = MonotonicMs();
        for (void* tag : ready)
            Receive(context, *static_cast<Endpoint*>(tag));
        RunTimers(context);
        m_sender.Flush();
        wait = TimeToWait(context.NowMs);
    }
}

void Worker::RunTimers(ServerContext& context) {
    Timer timer;
    while (m_timers.Pop(context.NowMs, timer))
        timer.Server->OnTimer(context, timer);
    RunDevices(context);
    if (m_appendEveryMs == 0 || context.NowMs < m_appendAtMs)
        return;
    m_appendAtMs = context.NowMs + m_appendEveryMs;
    for (const auto& server : m_site.Devices)
        server->GetDevice().GenerateAll(1);
}

void Worker::RunDevices(ServerContext& context) {
    if (context.NowMs < m_runAtMs)
        return;
    m_runAtMs = context.NowMs + RUN_EVERY_MS;
    for (DeviceServer* server : m_devices)
        server->Run(context);
}

void Worker::Receive(ServerContext& context, Endpoint& endpoint) {
    const std::size_t count = endpoint.Socket.Receive(m_batch, endpoint.Batch, false);
    for (std::size_t i = 0; i < count; ++i)
        if (!m_batch.Truncated(i))
            OnDatagram(context, endpoint, m_batch.Octets(i), m_batch.From(i));
    m_sender.Flush();
    // A lone request is received with the cheaper call; a queue is drained in ever larger batches.
    endpoint.Batch = count == endpoint.Batch ? std::min(2 * endpoint.Batch, bacnet::DatagramBatch::CAPACITY)
                                             : std::max<std::size_t>(count, 1);
}

void Worker::OnDatagram(ServerContext& context, Endpoint& endpoint, std::span<const std::uint8_t> datagram,
                        const bacnet::BipAddress& from) {
    bacnet::BvllMessage message;
    if (bacnet::DecodeBvll(datagram, message) != bacnet::BvllError::none)
        return;
    bacnet::BipAddress sender = from;
    switch (message.Function) {
    case bacnet::BvlcFunction::original_unicast:
    case bacnet::BvlcFunction::original_broadcast:
        break;
    case bacnet::BvlcFunction::forwarded_npdu:
        sender = message.Origin;
        break;
    default: {
        bacnet::BvlcResult result{};
        std::uint8_t octets[6];
        if (bacnet::NakFor(message.Function, result) && (endpoint.Device != nullptr || endpoint.Router != nullptr)) {
            bacnet::EncodeResult(result, octets);
            context.Out.SendDatagram(endpoint.Socket, from, octets);
        }
        return;
    }
    }
    bacnet::Npdu npdu;
    if (bacnet::DecodeNpdu(message.Payload, npdu) != bacnet::NpduError::none)
        return;
    if (endpoint.Device != nullptr) {
        const bool forUs = npdu.DestinationNetwork == 0 || npdu.DestinationNetwork == bacnet::GLOBAL_BROADCAST;
        if (forUs && !npdu.IsNetworkMessage)
            endpoint.Device->OnApdu(context, RequesterOf(sender, npdu), npdu.Payload);
    } else if (endpoint.Router != nullptr) {
        endpoint.Router->OnNpdu(context, sender, npdu);
    } else {
        OnBroadcast(context, sender, npdu);
    }
}

void Worker::OnBroadcast(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu) {
    for (const auto& router : m_site.Routers)
        router->OnBroadcast(context, from, npdu);
    const bool globally = npdu.DestinationNetwork == bacnet::GLOBAL_BROADCAST;
    if (npdu.IsNetworkMessage || (npdu.DestinationNetwork != 0 && !globally))
        return;
    // Looked at once for all devices: their own I-Am come back here, too.
    UnconfirmedRequest request;
    if (!ReadUnconfirmed(npdu.Payload, request) ||
        (request.Service == bacnet::UnconfirmedService::iAm && m_site.Awaited == 0))
        return;
    const Requester requester = RequesterOf(from, npdu);
    Pacer pacer(m_site.IAmPerMs);
    for (DeviceServer* device : m_site.LocalDevices)
        device->OnBroadcast(context, requester, request, globally, pacer);
}

} // namespace sim
