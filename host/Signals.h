// SIGINT, SIGTERM and SIGHUP as an event that the main thread waits for.
#pragma once

#include "base/FileDescriptor.h"

#include <chrono>

class CSignals {
public:
    // Blocks the signals in this thread and all that it starts later; so it comes before any thread.
    CSignals();
    // From now on a signal ends the process at once: for the time in which the orderly end is under way.
    void EndAtOnce();

    // True when a signal has come; it stays so. Waits at most the time.
    bool Wait(std::chrono::milliseconds time);
    bool HasCome() { return Wait(std::chrono::milliseconds(0)); }

private:
    CFileDescriptor m_signals;
    bool m_hasCome = false;
};
