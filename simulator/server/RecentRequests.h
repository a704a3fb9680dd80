// The requests that lately changed something, with what came of them: one that is repeated because its answer was lost
// is not executed a second time (clause 5.4). Only as long as a client may still repeat it, and only while the client
// has not used the invoke id for anything else. One thread.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "simulator/server/Requester.h"
#include "simulator/server/Services.h"

#include <deque>

namespace sim {

class RecentRequests {
public:
    explicit RecentRequests(std::uint32_t keepMs) : m_keepMs(keepMs) {}

    // What came of the same request before; null when it has to be executed. Valid until the next call.
    const Outcome* Find(const Requester& from, const bacnet::Apdu& request, std::int64_t nowMs);
    // The outcome of a request that was executed; its parameters are copied.
    void Keep(const Requester& from, const bacnet::Apdu& request, const Outcome& outcome, std::int64_t nowMs);

private:
    struct Entry {
        Requester From;
        std::uint8_t InvokeId;
        std::uint8_t Service;
        std::vector<std::uint8_t> Request;
        std::vector<std::uint8_t> Answer;
        Outcome Result;
        std::int64_t UntilMs;
    };

    std::uint32_t m_keepMs;
    std::deque<Entry> m_entries; // oldest first
};

} // namespace sim
