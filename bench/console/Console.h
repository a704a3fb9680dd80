// The console as a driver that does nothing runs it, on the offscreen platform.
#pragma once

#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"

#include <QApplication>
#include <QWidget>

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
    static void SelectPage(const char* page);
    // On the console thread.
    template <class F>
    static void Do(F f) {
        QMetaObject::invokeMethod(qApp, std::move(f), Qt::BlockingQueuedConnection);
    }

    // ---- on the console thread

    // The window with the pages.
    static QWidget& GetWindow();
    // A control of it by its accessible name or its text.
    template <class Widget>
    static Widget& Find(const char* name) {
        for (auto* const widget : GetWindow().findChildren<Widget*>())
            if (widget->accessibleName() == QLatin1String(name) || widget->property("text") == QLatin1String(name))
                return *widget;
        Fail("a control of the console is missing");
    }
};

} // namespace bench
