// Puts segmented requests of other stations together (ANSI/ASHRAE 135 clause 5.4.5.2): the serving side, with the same
// Reassembly as segmented answers. One for each (station, invoke id), a bounded number of bounded ones.
//
// Any thread. Nothing is sent here, and it needs no timer: an assembly that has stopped is forgotten when its place is
// wanted, since the standard has the serving side fall silent.
#pragma once

#include "platform/stack/transaction/AnswerBuffer.h"
#include "platform/stack/transaction/Clock.h"
#include "platform/stack/transaction/PeerTable.h"
#include "platform/stack/transaction/Reassembly.h"
#include "platform/stack/transaction/Settings.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace bacnet {

class RequestAssembly {
public:
    static constexpr std::size_t MAX_REQUESTS = 32; // under way together
    static constexpr std::size_t MAX_OCTETS = 128 * 1024;

    struct Step {
        Reply Answer;
        // The parameters of the whole request, with the segment that completed it. Null: not yet.
        std::unique_ptr<AnswerBuffer> Whole;
    };

    explicit RequestAssembly(const TransactionSettings& settings)
        : m_window(settings.WindowSize),
          m_silenceMs(SEGMENT_TIMEOUTS * static_cast<Millis>(settings.SegmentTimeoutMs)) {}
    RequestAssembly(const RequestAssembly&) = delete;
    RequestAssembly& operator=(const RequestAssembly&) = delete;

    // segment: of a confirmed request.
    Step OnSegment(const PeerKey& from, const Apdu& segment, Millis now);
    // The station gives its request up; false when it has none here.
    bool OnAbort(const PeerKey& from, std::uint8_t invokeId);

private:
    static constexpr Millis SEGMENT_TIMEOUTS = 4;

    struct Request {
        PeerKey From;
        std::uint8_t InvokeId = 0;
        std::uint8_t Service = 0;
        bool Complete = false; // kept for a while: the last acknowledgement may be lost
        Reply LastAnswer;      // of a complete one
        Millis LastHeard = 0;
        Reassembly Segments;
        std::unique_ptr<AnswerBuffer> Parameters;
    };

    Request* Find(const PeerKey& from, std::uint8_t invokeId);
    Request* Begin(const PeerKey& from, const Apdu& segment, Millis now);
    void Drop(const Request& request);

    const std::uint8_t m_window;
    const Millis m_silenceMs;
    std::mutex m_mutex;
    std::vector<Request> m_requests; // m_mutex
};

} // namespace bacnet
