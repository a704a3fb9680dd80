// Segmented requests that a device is receiving (clause 5.4.5.2, the server's state SEGMENTED_REQUEST): what to answer
// to each segment, and the request once it is whole. Written after the standard alone, without the stack's state
// machine, so that the two check each other: this one complains of each segment that it did not expect. Sends nothing
// itself; one thread.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "simulator/server/Requester.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace sim {

class SegmentedRequests {
public:
    static constexpr std::size_t MAX_REQUESTS = 256; // of one device at a time

    struct Settings {
        std::uint8_t Window = 1;        // that the device takes
        std::uint32_t MaxSegments = 64; // of one request
        std::uint32_t SilenceMs = 8000; // without a segment: forgotten. Four times the segment timeout
    };
    struct Step {
        std::optional<bacnet::Apdu> Answer; // a SegmentACK or an Abort
        std::vector<std::uint8_t> Whole;    // the request as an APDU in one piece; empty: not yet
    };

    Step OnSegment(const Requester& from, const bacnet::Apdu& segment, const Settings& settings, std::int64_t nowMs);
    void OnAbort(const Requester& from, std::uint8_t invokeId);

private:
    struct Request {
        Requester From;
        std::uint8_t InvokeId = 0;
        std::uint32_t Window = 1;     // the actual one
        std::uint32_t Taken = 0;      // segments, in order
        std::uint32_t Acked = 0;      // segments, acknowledged
        std::uint32_t Duplicates = 0; // since the last acknowledgement
        std::int64_t LastHeardMs = 0;
        bool Done = false; // the last segment may come again, when its acknowledgement was lost
        std::vector<std::uint8_t> Parameters;
    };

    Request* Find(const Requester& from, std::uint8_t invokeId);
    static Step Acknowledge(Request& request, bool negative);
    static Step InOrder(Request& request, const bacnet::Apdu& segment);
    static Step OutOfOrder(Request& request, std::uint8_t sequence);

    std::vector<Request> m_requests;
};

} // namespace sim
