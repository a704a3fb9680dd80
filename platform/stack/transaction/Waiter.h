// What a thread sleeps on while its call is pending: one for each thread, pooled and never freed, so that whoever wakes
// it may do so without a lock, even when the call has just ended.
//
// A wake may be for a call that the thread has finished meanwhile (calls can nest in an observer): after each return
// look at the call's own state.
#pragma once

#include "platform/stack/transaction/Clock.h"

#include <atomic>
#include <cstdint>
#if !defined(__linux__)
#include <condition_variable>
#include <mutex>
#endif

namespace bacnet {

class Waiter {
public:
    static Waiter& OfThisThread();

    // Ends the present or the next wait. Any thread.
    void Signal();
    // Only the thread it belongs to. Returns after a signal, or after timeout milliseconds.
    void Wait(Millis timeout);

private:
#if defined(__linux__)
    // One word and the system's futex: with many callers at once a condition variable's own lock is met too often.
    std::atomic<std::uint32_t> m_state{0};
#else
    std::mutex m_mutex;
    std::condition_variable m_signal;
    bool m_signalled = false; // m_mutex
#endif
};

} // namespace bacnet
