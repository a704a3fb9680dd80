// The application layer of one simulated device: takes its APDUs, asks the services, and sends what comes of it, with
// segmentation (clause 5.4.5) and with the device's faults. Belongs to one server thread, except where said.
#pragma once

#include "platform/stack/network/Apdu.h"

#include "simulator/model/Device.h"
#include "simulator/server/FrameSender.h"
#include "simulator/server/OutgoingRequests.h"
#include "simulator/server/RecentRequests.h"
#include "simulator/server/SegmentedAnswer.h"
#include "simulator/server/SegmentedRequest.h"
#include "simulator/server/Services.h"
#include "simulator/server/TimerQueue.h"
#include "simulator/server/Unconfirmed.h"

#include <atomic>
#include <memory>
#include <vector>

namespace sim {

// What a server thread lends to the devices while they work.
struct ServerContext {
    FrameSender& Out;
    TimerQueue& Timers;
    Scratch& Memory;
    std::int64_t NowMs; // monotonic
};

// Spreads the answers of many devices to one Who-Is. On a building's network they come one after the other; at once
// they would overrun the receive buffer of the asker, which holds some 250 of them by the usual setting.
class Pacer {
public:
    explicit Pacer(std::uint32_t perMs) : m_perMs(perMs) {} // 0: no spreading
    std::uint32_t NextDelayMs() { return m_perMs == 0 ? 0 : m_count++ / m_perMs; }

private:
    std::uint32_t m_perMs;
    std::uint32_t m_count = 0;
};

class DeviceServer {
public:
    // origin's socket is borrowed and has to be open while requests come. awaited: see OutgoingRequests.
    DeviceServer(Device& device, const Origin& origin, IAmMode iAm, std::atomic<unsigned>& awaited);

    Device& GetDevice() const { return m_device; }

    // An APDU for this device alone.
    void OnApdu(ServerContext& context, const Requester& from, std::span<const std::uint8_t> apdu);
    // A request for all. Any server thread. globally: it went to all networks.
    void OnBroadcast(ServerContext& context, const Requester& from, const UnconfirmedRequest& request, bool globally,
                     Pacer& pacer);
    // What the device does by itself, from time to time.
    void Run(ServerContext& context);
    // The thread that set the timer.
    void OnTimer(ServerContext& context, const Timer& timer);

private:
    // A segmented answer under way, or the memory of one for the next.
    struct Slot {
        Requester To;
        std::uint8_t InvokeId = 0;
        std::uint8_t Service = 0;
        SegmentedAnswer Answer;
        FaultEffects Effects;
        std::int64_t DeadlineMs = 0;
        bool Active = false;
        bool Armed = false; // a timer is in the queue
    };
    struct Held {
        Requester From;
        std::uint8_t InvokeId = 0;
        std::vector<std::uint8_t> Apdu;
        FaultEffects Effects;
    };

    void OnUnconfirmed(ServerContext& context, const Requester& from, const UnconfirmedRequest& request, bool toAll,
                       bool globally, Pacer& pacer);
    void OnWhoIs(ServerContext& context, const Requester& from, bool toAll, bool globally, std::uint32_t delayMs);
    void SendIAm(ServerContext& context, const Requester& from, bool toAll, bool globally);
    void OnWhoHas(ServerContext& context, const Requester& from, std::span<const std::uint8_t> parameters, bool toAll,
                  bool globally);
    void SendUnconfirmed(ServerContext& context, const Origin& origin, bacnet::UnconfirmedService service,
                         std::span<const std::uint8_t> parameters, const Requester& from, bool toAll, bool globally);
    void SendMessages(ServerContext& context);
    bool IsGone(const ServerContext& context) const { return context.NowMs < m_goneUntilMs; }
    void Restart(ServerContext& context, std::uint32_t milliseconds, RestartReason reason);
    void OnRequest(ServerContext& context, const Requester& from, const bacnet::Apdu& apdu,
                   std::span<const std::uint8_t> octets);
    void OnRequestSegment(ServerContext& context, const Requester& from, const bacnet::Apdu& segment);
    void AnswerHeld(ServerContext& context, const Requester& from, std::uint8_t invokeId);
    void Answer(ServerContext& context, const Requester& from, const bacnet::Apdu& request,
                const FaultEffects& effects);
    Outcome OutcomeOf(ServerContext& context, const Requester& from, const bacnet::Apdu& request,
                      const FaultEffects& effects);
    AnswerRoom RoomFor(const bacnet::Apdu& request) const;
    std::size_t ApduSize(const bacnet::Apdu& request) const;

    void StartSegmented(ServerContext& context, const Requester& to, const bacnet::Apdu& request,
                        std::span<const std::uint8_t> parameters, const FaultEffects& effects);
    void OnSegmentAck(ServerContext& context, const Requester& from, const bacnet::Apdu& ack);
    void OnAbort(const Requester& from, std::uint8_t invokeId);
    Slot* FindSlot(const Requester& from, std::uint8_t invokeId);
    std::uint32_t TakeSlot(const Requester& from, std::uint8_t invokeId);
    void SendSegments(ServerContext& context, std::uint32_t number, SegmentedAnswer::Burst burst);

    void SendPdu(ServerContext& context, const Requester& to, bacnet::Apdu header,
                 std::span<const std::uint8_t> payload, const FaultEffects& effects);
    void SendAbort(ServerContext& context, const Requester& to, std::uint8_t invokeId, std::uint8_t reason,
                   const FaultEffects& effects);
    // Null when a wrong source is wanted and cannot be had: then nothing is sent.
    const bacnet::UdpSocket* SocketFor(const FaultEffects& effects);

    Device& m_device;
    Origin m_origin;
    IAmMode m_iAm;
    std::atomic<std::int64_t> m_goneUntilMs = 0; // a restart is under way
    std::vector<std::unique_ptr<Slot>> m_slots;
    SegmentedRequests m_segmentedRequests;
    RecentRequests m_recentRequests;
    OutgoingRequests m_outgoing;
    std::vector<Held> m_held;                          // requests that wait for their repetition
    std::unique_ptr<bacnet::UdpSocket> m_otherAddress; // opened when a fault first wants it
    std::unique_ptr<bacnet::UdpSocket> m_otherPort;
    bacnet::UdpSocket m_claimant; // that announces the same instance, if the device is said to have one
    bool m_isClaimed = false;
};

} // namespace sim
