#include "tests/gui/harness/GuiAccess.h"

#include "module/console/GuiThread.h"
#include "module/console/ManualResetEvent.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>

#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr Milliseconds PATIENCE(10000);

bool IsGuiThread() {
    return qApp && QThread::currentThread() == qApp->thread();
}

// A condition that the thread of the windows looks at. Whoever waits may give up and be gone, with all that the
// condition refers to.
struct Watch {
    std::mutex mutex;
    const std::function<bool()>* condition; // mutex; null when nobody waits any more
    CManualResetEvent isMet;

    void Look() {
        const std::lock_guard lock(mutex);
        if (condition && (*condition)())
            isMet.Set();
    }
    void End() {
        const std::lock_guard lock(mutex);
        condition = nullptr;
    }
};

} // namespace

Milliseconds Since(Clock::time_point start) {
    return std::chrono::duration_cast<Milliseconds>(Clock::now() - start);
}

void PostToGui(std::function<void()> f) {
    CGuiThread::Get()->Post(std::move(f));
}

void RunOnGui(const std::function<void()>& f) {
    if (IsGuiThread()) {
        f();
        return;
    }
    CManualResetEvent done;
    std::exception_ptr failure;
    PostToGui([&] {
        try {
            f();
        } catch (...) {
            failure = std::current_exception();
        }
        done.Set();
    });
    done.Wait(WAIT_WITHOUT_LIMIT);
    if (failure)
        std::rethrow_exception(failure);
}

bool Eventually(const std::function<bool()>& condition) {
    const auto start = Clock::now();
    while (!condition()) {
        if (Since(start) > PATIENCE)
            return false;
        std::this_thread::sleep_for(Milliseconds(5));
    }
    return true;
}

bool EventuallyOnGui(const std::function<bool()>& condition) {
    const auto watch = std::make_shared<Watch>();
    watch->condition = &condition;
    const auto receiver = std::make_shared<std::unique_ptr<QObject>>(); // the thread of the windows'
    PostToGui([=] {
        using Dispatcher = QAbstractEventDispatcher;
        *receiver = std::make_unique<QObject>();
        for (const auto signal : {&Dispatcher::aboutToBlock, &Dispatcher::awake})
            QObject::connect(Dispatcher::instance(), signal, receiver->get(), [watch] { watch->Look(); });
        watch->Look();
    });
    const bool isMet = watch->isMet.Wait(static_cast<std::uint32_t>(PATIENCE.count()));
    watch->End();
    PostToGui([=] { receiver->reset(); });
    return isMet;
}
