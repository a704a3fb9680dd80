#include "platform/stack/transaction/Waiter.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#if defined(__linux__)
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
            pool.Known.push_back(std::make_unique<Waiter>());
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

long Futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value, const timespec* timeout) {
    static_assert(sizeof(word) == sizeof(std::uint32_t) && std::atomic<std::uint32_t>::is_always_lock_free);
    return ::syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), operation, value, timeout, nullptr, 0);
}

} // namespace

void Waiter::Signal() {
    if (m_state.exchange(SIGNALLED) == ASLEEP)
        Futex(m_state, FUTEX_WAKE_PRIVATE, 1, nullptr);
}

void Waiter::Wait(Millis timeout) {
    std::uint32_t state = QUIET;
    if (timeout > 0 && m_state.compare_exchange_strong(state, ASLEEP)) {
        timespec span{};
        span.tv_sec = static_cast<time_t>(timeout / 1000);
        span.tv_nsec = static_cast<long>(timeout % 1000) * 1000000L;
        // Returns at once when a signal came in between; all other reasons to return are good enough too.
        Futex(m_state, FUTEX_WAIT_PRIVATE, ASLEEP, &span);
    }
    m_state.exchange(QUIET);
}

#else

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
