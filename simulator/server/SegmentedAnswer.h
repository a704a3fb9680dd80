// One acknowledgement on its way in segments (clause 5.4.5, the server's states SEGMENTED_RESPONSE): which segments are
// to be sent when. Sends nothing itself and knows no clock; one thread.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "simulator/model/Fault.h"
#include "simulator/server/Requester.h"

#include <cstdint>
#include <span>
#include <vector>

namespace sim {

class SegmentedAnswer {
public:
    struct Settings {
        std::size_t SegmentSize = 0; // octets of service parameters in one segment, above 0
        std::uint8_t Window = 1;     // proposed
        std::uint32_t Retries = 3;
    };
    // Segments to send now: numbers from First on, counted from 0 over the whole answer.
    struct Burst {
        std::uint32_t First = 0;
        std::uint32_t Count = 0;
    };
    enum class State : std::uint8_t { sending, done, failed };

    // The first segment goes alone: the asker tells its window when it acknowledges it.
    Burst Start(std::span<const std::uint8_t> parameters, const Settings& settings);
    Burst OnAck(const bacnet::Apdu& ack);
    Burst OnTimeout();

    State GetState() const { return m_state; }
    std::uint32_t SegmentCount() const { return m_count; }
    std::span<const std::uint8_t> Segment(std::uint32_t number) const;
    bool IsLast(std::uint32_t number) const { return number + 1 == m_count; }
    std::uint8_t ProposedWindow() const { return m_settings.Window; }

private:
    Burst Send(std::uint32_t first);

    Settings m_settings;
    std::vector<std::uint8_t> m_octets; // kept for the next answer that this object sends
    std::uint32_t m_count = 0;
    std::uint32_t m_base = 0; // first segment that is not acknowledged
    std::uint32_t m_sent = 0; // behind the last segment of the present window
    std::uint32_t m_window = 1;
    std::uint32_t m_retries = 0;
    State m_state = State::done;
};

} // namespace sim
