#include "module/console/ConsoleThread.h"

#include "module/console/Busy.h"
#include "module/console/ConsoleDialog.h"
#include "module/console/ConsoleEvent.h"
#include "module/console/GuiThread.h"

#include <QApplication>
#include <QDialog>
#include <QPixmapCache>

#include <deque>
#include <utility>

namespace {

constexpr int RETRY_MILLISECONDS = 20;

// The runs on the console thread. Never destroyed: the thread may be at work while the process ends.
struct Runs {
    std::shared_ptr<CBDCThread> current;
    std::deque<std::shared_ptr<CBDCThread>> waiting;
};

Runs& AllRuns() {
    static Runs* const runs = new Runs;
    return *runs;
}

bool BelongsTo(const QWidget& owner, const QWidget* widget) {
    while (widget && widget != &owner)
        widget = widget->parentWidget();
    return widget != nullptr;
}

// Ends the loops that menus and modal dialogs of the console run in, the innermost first.
void EndNestedLoops(const QWidget& console) {
    constexpr int LIMIT = 1000; // should a dialog refuse to hide
    for (int i = 0; i < LIMIT; ++i) {
        QWidget* const popup = QApplication::activePopupWidget();
        if (!popup || !BelongsTo(console, popup) || !popup->close())
            break;
    }
    for (int i = 0; i < LIMIT; ++i) {
        QWidget* const modal = QApplication::activeModalWidget();
        if (!modal || !(IsRunModal(modal) || BelongsTo(console, modal)))
            break;
        if (auto* const dialog = qobject_cast<QDialog*>(modal))
            dialog->done(QDialog::Rejected); // not reject: a dialog may ask questions there
        else
            modal->close();
    }
}

} // namespace

CBDCThread::CBDCThread(CDriver& driver) : m_driver(driver) {}

CBDCThread::~CBDCThread() = default;

bool CBDCThread::Begin() {
    m_gui = CGuiThread::Get();
    if (!m_gui)
        return false;
    m_gui->Post([self = shared_from_this()] { self->Enqueue(); });
    return true;
}

bool CBDCThread::WaitStarted(std::uint32_t timeout) {
    return m_gui->WaitFor(m_started, timeout);
}

bool CBDCThread::WaitFinished(std::uint32_t timeout) {
    return m_gui->WaitFor(m_finished, timeout);
}

void CBDCThread::Abandon() {
    {
        const std::lock_guard lock(m_mutex);
        m_isAbandoned = true;
    }
    m_gui->Post([self = shared_from_this()] { self->Shutdown(); });
}

void CBDCThread::Post(CConsoleMessage message) {
    const std::lock_guard lock(m_mutex);
    if (!m_window || m_isAbandoned)
        return;
    m_messages.Push(std::move(message));
    Wake();
}

void CBDCThread::Wake() {
    if (m_messages.Size() != 0 && !std::exchange(m_isWoken, true))
        QCoreApplication::postEvent(m_window, new CConsoleEvent);
}

std::size_t CBDCThread::BeginMessages() {
    const std::lock_guard lock(m_mutex);
    m_isWoken = false;
    return m_messages.Size();
}

std::optional<CConsoleMessage> CBDCThread::TakeMessage() {
    const std::lock_guard lock(m_mutex);
    auto message = m_messages.Pop();
    Wake();
    return message;
}

bool CBDCThread::IsAbandoned() const {
    const std::lock_guard lock(m_mutex);
    return m_isAbandoned;
}

bool CBDCThread::MayHandle() const {
    return !IsAbandoned() && !m_isEnding;
}

bool CBDCThread::IsEnding() {
    const auto& run = AllRuns().current;
    return run && !run->MayHandle();
}

bool CBDCThread::HasConsole() {
    const auto& run = AllRuns().current;
    return run && run->m_dialog && run->MayHandle();
}

void CBDCThread::Enqueue() {
    Runs& runs = AllRuns();
    if (runs.current) {
        runs.waiting.push_back(shared_from_this());
        return;
    }
    runs.current = shared_from_this();
    InitInstance();
}

void CBDCThread::InitInstance() {
    if (IsAbandoned()) {
        Finish();
        return;
    }
    m_dialog = std::make_unique<CBACnetConfConsoleDialog>(*this, m_driver);
    {
        const std::lock_guard lock(m_mutex);
        m_window = m_dialog.get();
    }
    m_started.Set();
}

void CBDCThread::Shutdown() {
    if (m_isEnding || !m_dialog)
        return; // at work on it, or not begun: then InitInstance finds the run abandoned
    m_isEnding = true;
    TryDestroy();
}

// The destruction waits for a turn of the loop at which nothing of the console is on the stack. A nested loop that has
// been told to end serves no further event, so a task that comes while neither a handler nor a pump is active has come
// from outside.
void CBDCThread::TryDestroy() {
    EndNestedLoops(*m_dialog);
    m_gui->Post([self = shared_from_this()] {
        if (self->m_handlers == 0 && !CBusyScope::IsBusy())
            self->Finish();
        else
            self->m_gui->PostDelayed(RETRY_MILLISECONDS, [self] { self->TryDestroy(); });
    });
}

void CBDCThread::Finish() {
    const auto self = shared_from_this();
    {
        const std::lock_guard lock(m_mutex);
        m_window = nullptr;
        m_messages = CMessageQueue();
    }
    m_dialog.reset();
    QPixmapCache::clear(); // has a timer of this thread, which must not outlive it when the process ends
    Runs& runs = AllRuns();
    runs.current.reset();
    m_started.Set(); // nobody need wait for a run that is over
    m_finished.Set();
    if (!runs.waiting.empty()) {
        runs.current = std::move(runs.waiting.front());
        runs.waiting.pop_front();
        const auto next = runs.current;
        m_gui->Post([next] { next->InitInstance(); });
    }
}
