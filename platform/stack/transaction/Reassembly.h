// Puts a segmented answer together (ANSI/ASHRAE 135 clause 5.4.4.3), or a segmented request on the serving side (clause
// 5.4.5.2). One for each transaction, so for each (peer, invoke id). Pure: says what to send, sends nothing, knows no
// time.
//
// Sequence numbers are taken modulo 256 and windows are at most 127, so a number is the next one, ahead of it
// (something was lost) or behind it (a repetition). After a loss one negative acknowledgement asks for the missing
// segment; the rest of the window, under way already, is passed over in silence, until a segment comes that shows a new
// pass.
//
// A peer that has got the request twice, or was restarted, may begin again with the first segment and wait for its
// acknowledgement. Once that is plain, what was put together is dropped and the new beginning taken.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "platform/stack/transaction/AnswerBuffer.h"

#include <cstdint>

namespace bacnet {

class Reassembly {
public:
    enum class Action : std::uint8_t {
        none,         // nothing to send
        ack,          // SegmentACK with Sequence and Window
        negative_ack, // the same, negative
        complete,     // SegmentACK, and the answer (or request) is whole
        too_long,     // Abort with Reason: the answer buffer's limit is passed
        invalid,      // Abort with Reason: this is no segmented message
    };
    struct Step {
        Action What = Action::none;
        std::uint8_t Sequence = 0;
        std::uint8_t Window = 0;
        std::uint8_t Reason = 0;
    };

    // ownWindow: segments taken between two acknowledgements, 1..127.
    void Begin(std::uint8_t ownWindow);
    bool Started() const { return m_started; }
    // segment: a segmented complex ack or confirmed request. In-order octets are appended to answer, which a new
    // beginning clears.
    Step OnSegment(const Apdu& segment, AnswerBuffer& answer);

private:
    Step Start(const Apdu& segment, AnswerBuffer& answer);
    Step InOrder(const Apdu& segment, AnswerBuffer& answer);
    Step Ahead(std::uint8_t distance);
    Step Behind(const Apdu& segment, AnswerBuffer& answer);
    Step Acknowledge(Action action);

    std::uint8_t m_ownWindow = 1;
    bool m_started = false;
    bool m_gap = false;          // a loss was reported and not yet filled
    std::uint8_t m_gapReach = 0; // distance of the last segment seen behind the gap
    std::uint8_t m_window = 1;
    std::uint8_t m_last = 0;       // last segment taken
    std::uint8_t m_acked = 0;      // last segment acknowledged
    std::uint8_t m_duplicates = 0; // since the last one in order
    std::uint8_t m_beginnings = 0; // first segments among them
    bool m_turned = false;         // so many were taken that a first segment can't be told from a later one
};

} // namespace bacnet
