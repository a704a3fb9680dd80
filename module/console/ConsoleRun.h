// One run of the console, from a Start to its WaitEnd: the console thread with its dialog as the manager sees it.
// CBDCThread is the real one.
#pragma once

#include "module/console/ConsoleMessage.h"

#include <cstdint>

class IConsoleRun {
public:
    virtual ~IConsoleRun() = default;

    // Sets the run going on the console thread. False when there is no such thread and none can be made.
    virtual bool Begin() = 0;
    // Waits until the dialog exists, or until it is gone. False after the timeout, in milliseconds; 0xFFFFFFFF has
    // none. On the console thread itself events are served meanwhile.
    virtual bool WaitStarted(std::uint32_t timeout) = 0;
    virtual bool WaitFinished(std::uint32_t timeout) = 0;
    // The owner goes on as if the run were gone. It ends by itself as soon as it can; what it still does is without
    // effect.
    virtual void Abandon() = 0;
    // Queues a message for the dialog and returns at once. Dropped while there is no dialog. Any thread.
    virtual void Post(CConsoleMessage message) = 0;
};
