// The one thread of the process on which windows live: the thread of the host's own QApplication when it has one,
// otherwise a thread that the first call makes, with a QApplication that lasts as long as the process. The console runs
// on it, one run after another.
#pragma once

#include <cstdint>
#include <functional>

class CManualResetEvent;

// What the process ends with when the display goes away, which the toolkit does not survive: temporary, so that whoever
// watches over it starts it again. Without a display it then runs on unseen.
inline constexpr int EXIT_DISPLAY_LOST = 75;

class CGuiThread {
public:
    using Task = std::function<void()>;

    virtual ~CGuiThread() = default;

    // Null when no thread can be created, or the host's application object is one without windows. Does not wait for
    // the application to be ready. Any thread.
    static CGuiThread* Get();

    // Runs the task on the thread, behind those that were posted before. It may run in a nested event loop. Any thread.
    virtual void Post(Task task) = 0;
    // Runs the task on the thread after this many milliseconds. Only on the thread itself.
    virtual void PostDelayed(int milliseconds, Task task) = 0;
    // Waits for an event that tasks of this thread set. False after the timeout in milliseconds, 0xFFFFFFFF for none.
    // On the thread itself it serves events meanwhile.
    virtual bool WaitFor(CManualResetEvent& event, std::uint32_t timeout) = 0;
};
