#include "platform/stack/transaction/Waiter.h"

#include <chrono>
#include <memory>
#include <vector>

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

} // namespace bacnet
