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
    // Number of the waiter, from 0 in the order of their making.
    explicit Waiter(std::uint32_t index = 0) : m_index(index) {}

    // Ends the present or the next wait. Any thread.
    void Signal();
    // Only the thread it belongs to. Returns after a signal, after timeout milliseconds, or now and then for no reason.
    void Wait(Millis timeout);

private:
    friend class WakeSet;
    // True: the thread sleeps, and must be woken.
    bool Mark();

    const std::uint32_t m_index;
#if defined(__linux__)
    std::atomic<std::uint32_t> m_state{0};
#else
    std::mutex m_mutex;
    std::condition_variable m_signal;
    bool m_signalled = false; // m_mutex
#endif
};

// Waiters that are signalled together. On Linux they are woken with one system call, so that the waker runs on until
// all of them are, instead of being pushed aside by each: with many callers that halves the switches between threads.
class WakeSet {
public:
    WakeSet() = default;
    ~WakeSet() { Wake(); }
    WakeSet(const WakeSet&) = delete;
    WakeSet& operator=(const WakeSet&) = delete;

    void Add(Waiter& waiter);
    void Wake();

private:
#if defined(__linux__)
    static constexpr std::uint32_t GROUPS = 8;
    static constexpr std::uint32_t BITS = 32;
    friend class Waiter;
    // One word for each group of waiters; each waiter has a bit of its group, which it may share with others.
    static std::atomic<std::uint32_t>& Word(std::uint32_t group);

    std::uint32_t m_used = 0; // bit of each group that has something in m_masks
    std::uint32_t m_masks[GROUPS] = {};
#endif
};

} // namespace bacnet
