// The console as a driver that does nothing runs it, on the offscreen platform.
#pragma once

#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"

#include <QApplication>

#include <utility>

namespace bench {

// Ends the program with the reason: a figure that cannot be measured is none.
[[noreturn]] void Fail(const char* reason);

struct Driver {
    CEventList events;
    CFakeKernel kernel{events};
    CFakeDriver driver{events, kernel};
};

// Runs while the object lives; the process-wide BACnet is there before.
class Console {
public:
    explicit Console(Driver& driver);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Otherwise a figure would tell of something else.
    static void Check();
    // On the console thread.
    template <class F>
    static void Do(F f) {
        QMetaObject::invokeMethod(qApp, std::move(f), Qt::BlockingQueuedConnection);
    }
};

} // namespace bench
