// Sends one request in segments (ANSI/ASHRAE 135 clause 5.4.4.2): which segment is next, and what an acknowledgement
// changes. Pure: sends nothing, and time is an argument.
//
// Segments are counted from 0 over the whole request; on the wire their numbers are modulo 256. The first goes alone:
// its acknowledgement tells how many the device takes at once. What is lost is repeated from the first segment that
// the device lacks, never from the beginning.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "platform/stack/transaction/Clock.h"

#include <cstdint>
#include <span>

namespace bacnet {

class SegmentSender {
public:
    struct Segment {
        std::uint8_t Sequence = 0;
        bool MoreFollows = false;
        std::span<const std::uint8_t> Octets;
    };
    enum class Step : std::uint8_t {
        ignored,  // an acknowledgement of what is acknowledged already, or of what was never sent
        send,     // the next window is to be sent: Next
        resend,   // the same window again, from its first segment
        complete, // the device has the whole request
    };

    // How many segments an octet count makes.
    static std::uint32_t CountOf(std::size_t octets, std::size_t segmentSize) {
        return static_cast<std::uint32_t>((octets + segmentSize - 1) / segmentSize);
    }

    // octets, not empty, are borrowed. segmentSize: of each but the last, above 0. A negative acknowledgement of a
    // place that one has named before is heeded again only after quietMs, or a device that sends one for each segment
    // it did not expect would make us send its window as often.
    void Begin(std::span<const std::uint8_t> octets, std::size_t segmentSize, Millis quietMs);
    // The next segment of the present window; false when all of it is sent.
    bool Next(Segment& segment);
    Step OnAck(const Apdu& ack, Millis now);
    // No acknowledgement came in time: the window goes out again.
    void Repeat() { m_next = m_base; }

    bool AllSent() const { return m_sent == m_count; } // each at least once
    bool Heard() const { return m_heard; }             // the device has acknowledged something

private:
    std::span<const std::uint8_t> m_octets;
    std::size_t m_segmentSize = 1;
    Millis m_quietMs = 0;
    Millis m_heedFrom = 0;     // when a negative acknowledgement of the same place counts again
    std::uint32_t m_count = 0; // segments in all
    std::uint32_t m_base = 0;  // first one that is not acknowledged
    std::uint32_t m_next = 0;  // next one to send
    std::uint32_t m_sent = 0;  // behind the last one that was ever sent
    std::uint32_t m_window = 1;
    bool m_heard = false;
    bool m_reported = false; // a negative acknowledgement has named m_base
};

} // namespace bacnet
