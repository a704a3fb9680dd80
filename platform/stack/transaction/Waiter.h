// What a thread sleeps on while its call is pending: one for each thread, pooled and never freed, so that whoever wakes
// it may do so without a lock, even when the call has just ended.
//
// A wake may be for a call that the thread has finished meanwhile (calls can nest in an observer): after each return
// look at the call's own state.
#pragma once

#include "platform/stack/transaction/Clock.h"

#include <condition_variable>
#include <mutex>

namespace bacnet {

class Waiter {
public:
    static Waiter& OfThisThread();

    // Ends the present or the next wait. Any thread.
    void Signal();
    // Only the thread it belongs to. Returns after a signal, or after timeout milliseconds.
    void Wait(Millis timeout);

private:
    std::mutex m_mutex;
    std::condition_variable m_signal;
    bool m_signalled = false; // m_mutex
};

} // namespace bacnet
