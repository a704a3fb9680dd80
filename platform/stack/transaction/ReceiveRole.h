// Who receives the directed traffic of a port: one of the callers that wait, or the port's background thread when none
// does.
//
// A caller that finds the role free takes it and reads the socket itself; the others queue as candidates. When the
// leader has its answer it leaves, and the first candidate is woken as the new leader. The background thread holds the
// role only while it handles what it received, not while it waits for something to receive, so a caller never waits for
// it to wake.
#pragma once

#include "platform/stack/transaction/Waiter.h"

#include <cstdint>
#include <mutex>

namespace bacnet {

class ReceiveRole {
public:
    // One caller's part; lives on its stack. Leave must be called before it ends if TryLead was.
    class Candidate {
    public:
        explicit Candidate(Waiter& waiter) : m_waiter(waiter) {}
        Candidate(const Candidate&) = delete;
        Candidate& operator=(const Candidate&) = delete;

    private:
        friend class ReceiveRole;
        Waiter& m_waiter;
        // All under the role's mutex.
        bool m_leading = false;
        bool m_queued = false;
        Candidate* m_previous = nullptr;
        Candidate* m_next = nullptr;
    };

    // True: the candidate leads now (or already). False: it is in the queue, and its waiter is signalled once it leads.
    bool TryLead(Candidate& candidate);
    // Gives the role to the next candidate, or leaves the queue. Harmless when neither applies.
    void Leave(Candidate& candidate);

    // For the background thread: takes the role for one round of receiving; false when somebody has it.
    bool TryTake();
    void Release();
    // Nobody leads, and nobody has since the last call of this function (or force: nobody leads).
    bool Idle(bool force);

private:
    void PassOn(Waiter*& wake);
    void Unlink(Candidate& candidate);

    std::mutex m_mutex;
    // All under m_mutex.
    bool m_held = false;
    std::uint64_t m_leads = 0;
    std::uint64_t m_leadsSeen = 0;
    Candidate* m_first = nullptr;
    Candidate* m_last = nullptr;
};

} // namespace bacnet
