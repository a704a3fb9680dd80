#include "module/console/Thread.h"

#include <chrono>
#include <system_error>
#include <utility>

#if defined(__linux__)
#include <pthread.h>
#endif

namespace {

void NameThisThread(const std::string& name) {
#if defined(__linux__)
    constexpr std::size_t LIMIT = 15; // of the kernel, without the NUL
    pthread_setname_np(pthread_self(), name.substr(0, LIMIT).c_str());
#else
    (void)name;
#endif
}

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
    const auto main = [run, body = GetBody(), name = m_name] {
        NameThisThread(name);
        body(*run);
        const std::lock_guard end(run->m_mutex);
        run->m_ended = true;
        run->m_wake.notify_all();
    };
    try {
        std::thread thread(main);
        m_slot->id = thread.get_id();
        thread.detach();
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
