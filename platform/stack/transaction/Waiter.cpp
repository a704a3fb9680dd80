#include "platform/stack/transaction/Waiter.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#if defined(__linux__)
#include <cerrno>
#include <climits>
#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace bacnet {

namespace {

// Waiters without a thread. Left alive at the end of the process: threads may end after static objects.
struct Pool {
    std::mutex Mutex;
    std::vector<Waiter*> Free;                  // Mutex
    std::vector<std::unique_ptr<Waiter>> Known; // Mutex
};

Pool& ThePool() {
    static Pool* const pool = new Pool;
    return *pool;
}

class Lease {
public:
    Lease() {
        Pool& pool = ThePool();
        const std::lock_guard lock(pool.Mutex);
        if (pool.Free.empty()) {
            pool.Known.push_back(std::make_unique<Waiter>(static_cast<std::uint32_t>(pool.Known.size())));
            pool.Free.reserve(pool.Known.size());
            m_waiter = pool.Known.back().get();
        } else {
            m_waiter = pool.Free.back();
            pool.Free.pop_back();
        }
    }
    ~Lease() {
        Pool& pool = ThePool();
        const std::lock_guard lock(pool.Mutex);
        pool.Free.push_back(m_waiter);
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    Waiter& Get() const { return *m_waiter; }

private:
    Waiter* m_waiter;
};

} // namespace

Waiter& Waiter::OfThisThread() {
    thread_local Lease lease;
    return lease.Get();
}

#if defined(__linux__)

namespace {

constexpr std::uint32_t QUIET = 0;
constexpr std::uint32_t ASLEEP = 1;
constexpr std::uint32_t SIGNALLED = 2;

long Futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value, const timespec* until,
           std::uint32_t mask) {
    static_assert(sizeof(word) == sizeof(std::uint32_t) && std::atomic<std::uint32_t>::is_always_lock_free);
    return ::syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), operation, value, until, nullptr, mask);
}

} // namespace

std::atomic<std::uint32_t>& WakeSet::Word(std::uint32_t group) {
    // Far enough apart not to share a cache line.
    struct alignas(64) Padded {
        std::atomic<std::uint32_t> Value{0};
    };
    static Padded words[GROUPS];
    return words[group].Value;
}

void WakeSet::Add(Waiter& waiter) {
    if (!waiter.Mark())
        return;
    const std::uint32_t group = waiter.m_index / BITS % GROUPS;
    m_used |= 1U << group;
    m_masks[group] |= 1U << waiter.m_index % BITS;
}

void WakeSet::Wake() {
    for (std::uint32_t group = 0; m_used >> group != 0; ++group) {
        if (m_masks[group] == 0)
            continue;
        // Who is about to sleep sees the new value, and looks again whether it was meant.
        Word(group).fetch_add(1);
        Futex(Word(group), FUTEX_WAKE_BITSET_PRIVATE, INT_MAX, nullptr, m_masks[group]);
        m_masks[group] = 0;
    }
    m_used = 0;
}

bool Waiter::Mark() {
    return m_state.exchange(SIGNALLED) == ASLEEP;
}

void Waiter::Signal() {
    WakeSet().Add(*this);
}

void Waiter::Wait(Millis timeout) {
    std::uint32_t state = QUIET;
    if (timeout > 0 && m_state.compare_exchange_strong(state, ASLEEP)) {
        timespec until{};
        ::clock_gettime(CLOCK_MONOTONIC, &until);
        until.tv_sec += static_cast<time_t>(timeout / 1000);
        until.tv_nsec += static_cast<long>(timeout % 1000) * 1000000L;
        if (until.tv_nsec >= 1000000000L) {
            until.tv_nsec -= 1000000000L;
            ++until.tv_sec;
        }
        std::atomic<std::uint32_t>& word = WakeSet::Word(m_index / WakeSet::BITS % WakeSet::GROUPS);
        for (;;) {
            const std::uint32_t seen = word.load();
            if (m_state.load() == SIGNALLED)
                break;
            const long result = Futex(word, FUTEX_WAIT_BITSET_PRIVATE, seen, &until, 1U << m_index % WakeSet::BITS);
            if (result != 0 && errno == ETIMEDOUT)
                break;
        }
    }
    m_state.exchange(QUIET);
}

#else

void WakeSet::Add(Waiter& waiter) {
    waiter.Signal();
}

void WakeSet::Wake() {}

void Waiter::Signal() {
    {
        const std::lock_guard lock(m_mutex);
        m_signalled = true;
    }
    m_signal.notify_one();
}

void Waiter::Wait(Millis timeout) {
    std::unique_lock lock(m_mutex);
    if (!m_signalled && timeout > 0)
        m_signal.wait_for(lock, std::chrono::milliseconds(timeout), [this] { return m_signalled; });
    m_signalled = false;
}

#endif

} // namespace bacnet
