#include "module/console/GuiThread.h"

#include "api/bacnet/Log.h"
#include "module/console/ManualResetEvent.h"
#include "module/console/TaskRunner.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QEventLoop>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <limits>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace {

// Serves the thread's events until the event is set, which only this thread does.
bool ServeEventsUntil(const CManualResetEvent& event, std::uint32_t timeout) {
    const bool isLimited = timeout != WAIT_WITHOUT_LIMIT;
    const QDeadlineTimer deadline(isLimited ? qint64{timeout} : qint64{-1}, Qt::PreciseTimer);
    QTimer wake;
    wake.setTimerType(Qt::PreciseTimer);
    if (isLimited)
        wake.start(static_cast<int>(std::min<std::uint32_t>(timeout, std::numeric_limits<int>::max())));
    QEventLoop loop;
    while (!event.IsSet()) {
        if (deadline.hasExpired())
            return false;
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// The toolkit takes the user's locale for everything, also for numbers in files and in the protocol.
void PrepareApplication() {
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false); // the console is hidden most of the time
}

class CHostThread : public CGuiThread {
public:
    explicit CHostThread(QThread* thread) : m_thread(thread) {
        m_runner.moveToThread(thread);
        m_runner.Post(PrepareApplication);
    }
    void Post(Task task) override { m_runner.Post(std::move(task)); }
    void PostDelayed(int milliseconds, Task task) override {
        QTimer::singleShot(milliseconds, &m_runner, std::move(task));
    }
    bool WaitFor(CManualResetEvent& event, std::uint32_t timeout) override {
        return QThread::currentThread() == m_thread ? ServeEventsUntil(event, timeout) : event.Wait(timeout);
    }

private:
    CTaskRunner m_runner;
    QThread* const m_thread;
};

bool HasVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value && *value;
}

// The platforms to try, in their order. Without a display the toolkit would end the process, but unattended work needs
// none; the same goes for a display that is named and cannot be reached. Empty leaves the choice to the toolkit.
std::string PlatformNames() {
#if defined(__linux__)
    if (HasVariable("QT_QPA_PLATFORM"))
        return {};
    std::string names;
    if (HasVariable("WAYLAND_DISPLAY"))
        names += "wayland;";
    if (HasVariable("DISPLAY"))
        names += "xcb;";
    return names + "offscreen";
#else
    return {};
#endif
}

// Failures of the toolkit go to the log. Its warnings are for whoever sits before the display; without one they tell of
// nothing but its absence.
void TakeToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        LogErr("Toolkit: %s", text.toUtf8().constData());
    else if (HasVariable("DISPLAY") || HasVariable("WAYLAND_DISPLAY"))
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

// The thread of the windows that the module made. Any thread.
std::atomic<std::thread::id> g_ownThread;

// The toolkit ends the process from the thread of the windows when it loses the display; nobody else calls exit there.
// The other threads are at work, so nothing is taken apart: what is stored is stored.
void EndWithoutDisplay() {
    if (std::this_thread::get_id() != g_ownThread)
        return;
    static constexpr const char* TEXT = "Console: the display is lost; the program ends and has to be started again";
    LogErr("%s", TEXT);
    std::fprintf(stderr, "%s\n", TEXT);
    std::fflush(nullptr);
    std::_Exit(EXIT_DISPLAY_LOST);
}

class COwnThread : public CGuiThread {
public:
    // Throws std::system_error when there is no thread to be had.
    COwnThread() {
        std::thread thread([this] { Main(); });
        m_id = thread.get_id();
        thread.detach();
    }

    void Post(Task task) override {
        const std::lock_guard lock(m_mutex);
        if (m_runner)
            m_runner->Post(std::move(task));
        else
            m_early.push_back(std::move(task));
    }
    void PostDelayed(int milliseconds, Task task) override {
        QTimer::singleShot(milliseconds, m_runner, std::move(task));
    }
    bool WaitFor(CManualResetEvent& event, std::uint32_t timeout) override {
        return std::this_thread::get_id() == m_id ? ServeEventsUntil(event, timeout) : event.Wait(timeout);
    }

private:
    // The application and all that belongs to it is made on this thread and never destroyed.
    void Main() {
        static char program[] = "bdc";
        static char option[] = "-platform";
        static std::string platforms = PlatformNames();
        static char* arguments[] = {program, option, platforms.data(), nullptr};
        static int count = platforms.empty() ? 1 : 3;
        qInstallMessageHandler(TakeToolkitMessage);
        g_ownThread = std::this_thread::get_id();
        std::atexit(EndWithoutDisplay);
        [[maybe_unused]] static const auto* const application = new QApplication(count, arguments);
        PrepareApplication();
        {
            const std::lock_guard lock(m_mutex);
            m_runner = new CTaskRunner;
            for (Task& task : m_early)
                m_runner->Post(std::move(task));
            m_early.clear();
        }
        QApplication::exec();
    }

    std::thread::id m_id;
    std::mutex m_mutex;
    CTaskRunner* m_runner = nullptr; // m_mutex
    std::deque<Task> m_early;        // m_mutex; posted before the application was ready
};

CGuiThread* MakeGuiThread() {
    if (QCoreApplication* const application = QCoreApplication::instance()) {
        if (qobject_cast<QApplication*>(application))
            return new CHostThread(application->thread());
        LogErr("Console: the host's application object cannot have windows");
        return nullptr;
    }
    try {
        return new COwnThread;
    } catch (const std::system_error& error) {
        LogErr("Console: no thread for the windows: %s", error.what());
        return nullptr;
    }
}

} // namespace

CGuiThread* CGuiThread::Get() {
    static std::mutex mutex;
    static CGuiThread* thread = nullptr; // mutex
    const std::lock_guard lock(mutex);
    if (!thread)
        thread = MakeGuiThread();
    return thread;
}
