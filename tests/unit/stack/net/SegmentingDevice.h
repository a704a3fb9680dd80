// The serving side of a segmented answer, in as few lines as will do: sends windows, goes on after acknowledgements,
// repeats its window after silence. For tests of the asking side against a link that loses frames.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "tests/unit/stack/net/FakeLink.h"

#include <algorithm>
#include <functional>
#include <map>

namespace fakes {

class SegmentingDevice {
public:
    using Transmit = std::function<void(Octets apdu)>;

    SegmentingDevice(FakeClock& clock, Transmit transmit) : m_clock(clock), m_transmit(std::move(transmit)) {}

    // Answers request's service with this result, in segments of this many octets (0: in one piece).
    void Answer(const bacnet::Apdu& request, Octets result, std::size_t segmentSize) {
        if (segmentSize == 0) {
            Send(request.InvokeId, request.Service, result, false, 0, false, 0);
            return;
        }
        if (m_answers.contains(request.InvokeId))
            return; // a repetition of what is being answered
        m_answers[request.InvokeId] = {request.Service, std::move(result), segmentSize, 0, 1, 0, m_clock.Now()};
        SendWindow(request.InvokeId);
    }
    void OnPdu(const bacnet::Apdu& pdu) {
        const auto found = m_answers.find(pdu.InvokeId);
        if (found == m_answers.end())
            return;
        if (pdu.Type == bacnet::PduType::abort) {
            m_answers.erase(found);
            return;
        }
        Pending& answer = found->second;
        // Sequence numbers count from the first segment of the window that is under way.
        const auto ahead = static_cast<std::uint8_t>(pdu.SequenceNumber - static_cast<std::uint8_t>(answer.First));
        if (ahead >= answer.Window)
            return; // an old acknowledgement: those before the window
        answer.First += ahead + 1U;
        answer.Window = std::max<std::uint8_t>(pdu.WindowSize, 1);
        answer.Repeats = 0;
        if (answer.First * answer.SegmentSize >= answer.Result.size())
            m_answers.erase(found);
        else
            SendWindow(pdu.InvokeId);
    }
    // Repeats windows that were not acknowledged for a second, four times.
    void OnTime() {
        std::vector<std::uint8_t> due;
        for (auto& [id, answer] : m_answers)
            if (m_clock.Now() - answer.SentAt >= 1000)
                due.push_back(id);
        for (const std::uint8_t id : due) {
            if (++m_answers[id].Repeats > 4)
                m_answers.erase(id);
            else
                SendWindow(id);
        }
    }
    bool Idle() const { return m_answers.empty(); }
    std::size_t SegmentsSent() const { return m_segmentsSent; }

    static constexpr std::uint8_t PROPOSED_WINDOW = 8;

private:
    struct Pending {
        std::uint8_t Service = 0;
        Octets Result;
        std::size_t SegmentSize = 0;
        std::size_t First = 0; // first segment of the window
        std::uint8_t Window = 1;
        unsigned Repeats = 0;
        bacnet::Millis SentAt = 0;
    };

    void SendWindow(std::uint8_t id) {
        Pending& answer = m_answers[id];
        answer.SentAt = m_clock.Now();
        for (std::size_t i = answer.First; i < answer.First + answer.Window; ++i) {
            const std::size_t at = i * answer.SegmentSize;
            if (at >= answer.Result.size())
                break;
            const std::size_t size = std::min(answer.SegmentSize, answer.Result.size() - at);
            const auto from = answer.Result.begin() + static_cast<std::ptrdiff_t>(at);
            Send(id, answer.Service, {from, from + static_cast<std::ptrdiff_t>(size)}, true,
                 static_cast<std::uint8_t>(i), at + size < answer.Result.size(), PROPOSED_WINDOW);
            ++m_segmentsSent;
        }
    }
    void Send(std::uint8_t id, std::uint8_t service, const Octets& payload, bool segmented, std::uint8_t sequence,
              bool more, std::uint8_t window) {
        bacnet::Apdu header;
        header.Type = bacnet::PduType::complex_ack;
        header.InvokeId = id;
        header.Service = service;
        header.Segmented = segmented;
        header.SequenceNumber = sequence;
        header.MoreFollows = more;
        header.WindowSize = window;
        bacnet::Frame frame;
        frame.Append(payload);
        bacnet::PrependApdu(frame, header);
        m_transmit({frame.Octets().begin(), frame.Octets().end()});
    }

    FakeClock& m_clock;
    Transmit m_transmit;
    std::map<std::uint8_t, Pending> m_answers;
    std::size_t m_segmentsSent = 0;
};

} // namespace fakes
