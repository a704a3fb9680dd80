// CThread, the base of the console's workers, except the console thread and the history transfer. A worker is a
// long-lived member of its owner and is started anew for each run; a worker that is running refuses a second start.
//
// No thread is ever killed, and the destructor does not wait: a worker may hang in a call to a dead device for longer
// than its owner lives. Where a run can outlive the object, the derived class keeps all that the run touches in a
// shared state and overrides GetBody, so that the run holds that state and never the object:
//
//     CThread::Body GetBody() override {
//         return [state = m_state](CThreadRun& run) { state->Work(run); run.Close(); };
//     }
//
// Work drops its results once run.IsAbandoned(). Where the owner is known to outlive the run, overriding Run is enough.
//
// A run may get the thread of one that ended a moment ago, of this or another worker: it leaves the thread as it finds
// it.
//
// All operations may be called from any thread.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

inline constexpr std::uint32_t WAIT_WITHOUT_LIMIT = 0xFFFFFFFF; // as a timeout in milliseconds

// One run of a worker, shared by the thread and the worker that started it.
class CThreadRun {
public:
    // True once the owner goes on as if the thread were gone: the run was terminated, or its worker was destroyed.
    bool IsAbandoned() const;
    // Makes the worker startable again, if this run is still the worker's. A body calls it last.
    void Close();

private:
    friend class CThread;
    struct Slot;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_ended = false;     // m_mutex; the body has returned, or the run was abandoned
    bool m_abandoned = false; // m_mutex
    std::weak_ptr<Slot> m_slot;
};

class CThread {
public:
    using Body = std::function<void(CThreadRun&)>;

    explicit CThread(const char* name = nullptr); // copied; "<?>" when there is none
    virtual ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    // The body of the thread.
    virtual void Run() {}
    // Asks the body to end. Returns at once.
    virtual void RequestStop() {}

    // False when the worker holds a thread, also one that has ended, or when no thread can be created. Only the
    // defaults 0 and 0 are accepted.
    bool Start(unsigned stackSize, unsigned creationFlags);
    // Lets go of the thread, which goes on if it runs; the worker can be started again.
    void CloseThread();
    bool IsAlive() const;
    // True when there is no thread or it ended in time.
    bool Wait(std::uint32_t milliseconds) const;
    // From now on the thread counts as ended, whatever it does. It is held until CloseThread.
    void Terminate(std::uint32_t exitCode);
    // Asks a live thread to end and abandons it when it does not in time. Always true.
    bool StopAndWait(std::uint32_t milliseconds);

    const std::string& GetName() const { return m_name; }
    bool HasThread() const;
    std::thread::id GetThreadId() const; // the default id when there is no thread

protected:
    // The body of the next run, asked for by Start on its caller's thread, which calls no operation of the worker from
    // here. The body may not touch the worker if the worker can be destroyed during the run; this default calls Run and
    // so does.
    virtual Body GetBody();

private:
    std::shared_ptr<CThreadRun> GetRun() const;

    const std::string m_name;
    const std::shared_ptr<CThreadRun::Slot> m_slot;
};
