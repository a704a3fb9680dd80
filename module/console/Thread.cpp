#include "module/console/Thread.h"

#include <chrono>
#include <system_error>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <pthread.h>
#endif

namespace {

constexpr std::chrono::seconds SPARE_TIME(1);

void NameThisThread(const std::string& name) {
#if defined(__linux__)
    constexpr std::size_t LIMIT = 15; // of the kernel, without the NUL
    pthread_setname_np(pthread_self(), name.substr(0, LIMIT).c_str());
#else
    (void)name;
#endif
}

// Threads that have ended their run wait a moment for another one: to make a thread takes longer than many a run. Never
// destroyed: a thread may wait here while the process ends.
class CSpareThreads {
public:
    static CSpareThreads& Get() {
        static auto& spares = *new CSpareThreads;
        return spares;
    }

    // Runs main on a spare thread or on a new one, detached. Throws std::system_error when there can be none.
    std::thread::id Run(std::function<void()> main) {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_waiting.empty()) {
                Spare& spare = *m_waiting.back();
                m_waiting.pop_back();
                spare.main = std::move(main);
                spare.wake.notify_one();
                return spare.id;
            }
        }
        std::thread thread([this, main = std::move(main)]() mutable {
            do
                std::exchange(main, nullptr)();
            while (WaitForMain(main));
        });
        const std::thread::id id = thread.get_id();
        thread.detach();
        return id;
    }

private:
    struct Spare {
        std::thread::id id = std::this_thread::get_id();
        std::function<void()> main;
        std::condition_variable wake;
    };

    bool WaitForMain(std::function<void()>& main) {
        Spare spare;
        std::unique_lock lock(m_mutex);
        m_waiting.push_back(&spare);
        spare.wake.wait_for(lock, SPARE_TIME, [&] { return spare.main != nullptr; });
        std::erase(m_waiting, &spare); // not there any more when it got something
        main = std::move(spare.main);
        return main != nullptr;
    }

    std::mutex m_mutex; // of all below, and of the spares
    std::vector<Spare*> m_waiting;
};

} // namespace

// What a worker holds of its thread. The runs know it too, so that a run that ends after its worker finds no dead
// memory.
struct CThreadRun::Slot {
    std::mutex mutex;
    std::shared_ptr<CThreadRun> run; // mutex
    std::thread::id id;              // mutex
};

bool CThreadRun::IsAbandoned() const {
    const std::lock_guard lock(m_mutex);
    return m_abandoned;
}

void CThreadRun::Close() {
    const auto slot = m_slot.lock();
    if (!slot)
        return;
    const std::lock_guard lock(slot->mutex);
    if (slot->run.get() == this) {
        slot->run.reset();
        slot->id = {};
    }
}

CThread::CThread(const char* name) : m_name(name ? name : "<?>"), m_slot(std::make_shared<CThreadRun::Slot>()) {}

CThread::~CThread() {
    if (const auto run = GetRun()) {
        const std::lock_guard lock(run->m_mutex);
        run->m_abandoned = true;
    }
    CloseThread();
}

CThread::Body CThread::GetBody() {
    return [this](CThreadRun&) { Run(); };
}

bool CThread::Start(unsigned stackSize, unsigned creationFlags) {
    if (stackSize != 0 || creationFlags != 0)
        return false;
    const std::lock_guard lock(m_slot->mutex);
    if (m_slot->run)
        return false;
    const auto run = std::make_shared<CThreadRun>();
    run->m_slot = m_slot;
    auto main = [run, body = GetBody(), name = m_name] {
        NameThisThread(name);
        body(*run);
        const std::lock_guard end(run->m_mutex);
        run->m_ended = true;
        run->m_wake.notify_all();
    };
    try {
        m_slot->id = CSpareThreads::Get().Run(std::move(main));
    } catch (const std::system_error&) {
        return false;
    }
    m_slot->run = run;
    return true;
}

void CThread::CloseThread() {
    const std::lock_guard lock(m_slot->mutex);
    m_slot->run.reset();
    m_slot->id = {};
}

bool CThread::IsAlive() const {
    const auto run = GetRun();
    if (!run)
        return false;
    const std::lock_guard lock(run->m_mutex);
    return !run->m_ended;
}

bool CThread::Wait(std::uint32_t milliseconds) const {
    const auto run = GetRun();
    if (!run)
        return true;
    std::unique_lock lock(run->m_mutex);
    const auto ended = [&run] { return run->m_ended; };
    if (milliseconds != WAIT_WITHOUT_LIMIT)
        return run->m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds), ended);
    run->m_wake.wait(lock, ended);
    return true;
}

void CThread::Terminate(std::uint32_t /*exitCode*/) {
    const auto run = GetRun();
    if (!run)
        return;
    const std::lock_guard lock(run->m_mutex);
    if (run->m_ended)
        return;
    run->m_abandoned = true;
    run->m_ended = true;
    run->m_wake.notify_all();
}

bool CThread::StopAndWait(std::uint32_t milliseconds) {
    if (IsAlive()) {
        RequestStop();
        if (!Wait(milliseconds))
            Terminate(0);
    }
    return true;
}

bool CThread::HasThread() const {
    return GetRun() != nullptr;
}

std::thread::id CThread::GetThreadId() const {
    const std::lock_guard lock(m_slot->mutex);
    return m_slot->id;
}

std::shared_ptr<CThreadRun> CThread::GetRun() const {
    const std::lock_guard lock(m_slot->mutex);
    return m_slot->run;
}
