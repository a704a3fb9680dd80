// The serving side of segmented requests, in as few lines as will do: takes segments in order, acknowledges windows,
// reports gaps. For tests of the asking side.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "tests/unit/stack/net/FakeLink.h"

#include <functional>
#include <map>
#include <optional>

namespace fakes {

class SegmentReceiver {
public:
    using Transmit = std::function<void(Octets apdu)>;
    // The parameters of a request that is whole; called again when the whole is repeated.
    using OnRequest = std::function<void(const bacnet::Apdu& last, const Octets& parameters)>;

    SegmentReceiver(Transmit transmit, OnRequest onRequest, std::uint8_t window)
        : m_transmit(std::move(transmit)), m_onRequest(std::move(onRequest)), m_window(window) {}

    void OnSegment(const bacnet::Apdu& segment) {
        Pending& pending = m_requests[segment.InvokeId];
        if (segment.SequenceNumber == 0 && pending.Taken % 256 != 0)
            pending = {};
        if (segment.SequenceNumber != static_cast<std::uint8_t>(pending.Taken)) {
            const auto behind = static_cast<std::uint8_t>(pending.Taken - 1 - segment.SequenceNumber);
            if (behind < 128) { // a repetition: the last one is acknowledged again
                if (behind == 0)
                    Acknowledge(segment.InvokeId, pending, false);
            } else if (!pending.Gap) {
                pending.Gap = true;
                Acknowledge(segment.InvokeId, pending, true);
            }
            return;
        }
        pending.Gap = false;
        ++pending.Taken;
        pending.Parameters.insert(pending.Parameters.end(), segment.Payload.begin(), segment.Payload.end());
        if (pending.Taken == 1 || !segment.MoreFollows || pending.Taken - pending.Acknowledged >= m_window)
            Acknowledge(segment.InvokeId, pending, false);
        if (!segment.MoreFollows)
            m_onRequest(segment, pending.Parameters);
    }

private:
    struct Pending {
        std::uint32_t Taken = 0; // segments
        std::uint32_t Acknowledged = 0;
        bool Gap = false;
        Octets Parameters;
    };

    void Acknowledge(std::uint8_t id, Pending& pending, bool negative) {
        pending.Acknowledged = pending.Taken;
        bacnet::Apdu header;
        header.Type = bacnet::PduType::segment_ack;
        header.FromServer = true;
        header.Negative = negative;
        header.InvokeId = id;
        header.SequenceNumber = static_cast<std::uint8_t>(pending.Taken - 1);
        header.WindowSize = m_window;
        bacnet::Frame frame;
        bacnet::PrependApdu(frame, header);
        m_transmit({frame.Octets().begin(), frame.Octets().end()});
    }

    Transmit m_transmit;
    OnRequest m_onRequest;
    const std::uint8_t m_window;
    std::map<std::uint8_t, Pending> m_requests;
};

} // namespace fakes
