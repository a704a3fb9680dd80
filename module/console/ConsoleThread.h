// One run of the console on the console thread: it builds the dialog, brings messages to it and tears it down.
//
// One run has the thread at a time. When a run was abandoned while a handler of it hangs, the next one begins as soon
// as the handler has returned and the old dialog is gone.
#pragma once

#include "module/console/ConsoleRun.h"
#include "module/console/ManualResetEvent.h"
#include "module/console/MessageQueue.h"

#include <memory>
#include <mutex>

class CBACnetConfConsoleDialog;
class CDriver;
class CGuiThread;

class CBDCThread : public IConsoleRun, public std::enable_shared_from_this<CBDCThread> {
public:
    explicit CBDCThread(CDriver& driver);
    ~CBDCThread() override;

    // Any thread.
    bool Begin() override;
    bool WaitStarted(std::uint32_t timeout) override;
    bool WaitFinished(std::uint32_t timeout) override;
    void Abandon() override;
    void Post(CConsoleMessage message) override;

    // The rest is for the console thread.

    // How many messages wait, to be called when the dialog hears that there are some; and the next of them. Those that
    // are not taken are told of again, so that a loop in a handler serves them too.
    std::size_t BeginMessages();
    std::optional<CConsoleMessage> TakeMessage();
    // The dialog calls this in front of each message. False when the run is at its end: the message is without effect.
    bool MayHandle() const;
    // A handler of the dialog is on the stack.
    void EnterHandler() { ++m_handlers; }
    void LeaveHandler() { --m_handlers; }
    // Destroys the dialog once nothing of it is on the stack any more. Modal dialogs of the console are rejected, so
    // that this needs no operator.
    void Shutdown();
    // True while the present run waits to be destroyed.
    static bool IsEnding();
    // True while a run has its dialog and is not at its end.
    static bool HasConsole();

private:
    void Enqueue();
    void InitInstance();
    void TryDestroy();
    void Finish();
    bool IsAbandoned() const;
    void Wake(); // needs m_mutex

    CDriver& m_driver;
    CGuiThread* m_gui = nullptr;
    CManualResetEvent m_started;
    CManualResetEvent m_finished;

    // Console thread only.
    std::unique_ptr<CBACnetConfConsoleDialog> m_dialog;
    int m_handlers = 0;
    bool m_isEnding = false;

    mutable std::mutex m_mutex; // held while a message is posted, so that no post meets a dying dialog
    CBACnetConfConsoleDialog* m_window = nullptr; // m_mutex; null before the dialog is built and from its end on
    bool m_isAbandoned = false;                   // m_mutex
    CMessageQueue m_messages;                     // m_mutex
    bool m_isWoken = false;                       // m_mutex; the dialog has been told, and has not begun yet
};
