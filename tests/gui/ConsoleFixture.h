// The real console thread and dialog around fakes, on the offscreen platform. The tests run on a driver's thread and
// look at windows through OnGui.
#pragma once

#include "module/console/Globals.h"
#include "module/console/HistoryStarter.h"
#include "module/console/Messages.h"
#include "tests/support/FakeBacGeneral.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"

#include <QDialog>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

Milliseconds Since(Clock::time_point start);
// Waits until the condition holds; false after 10 seconds.
bool Eventually(const std::function<bool()>& condition);
// Runs f on the console thread, behind all that was posted before, and waits for it.
void OnGui(const std::function<void()>& f);
void PostToGui(std::function<void()> f); // does not wait
// The console's window, null when there is none. On the console thread.
QDialog* ConsoleWindow();

// What the fixture's history transfer does with a request. On the console thread.
using TransferHook = std::function<void(const BACSTAC_DEV_OBJ_REF* request)>;

class ConsoleFixture : public ::testing::Test {
protected:
    ConsoleFixture();
    ~ConsoleFixture() override; // ends the console if a test left it running

    void Start() { BDCManager.Start(&m_driver, 30000); }
    // True when the console ended in time.
    bool Stop();
    void Post(unsigned message, std::uintptr_t wParam = 0, std::intptr_t lParam = 0) {
        BDCManager.PostMessageW(message, wParam, lParam);
    }
    // The events up to now, with all that was posted handled.
    CEventList::Lines Settled();
    bool HasWindow();
    bool IsVisible();
    std::string Title();

    CEventList m_events;
    CFakeLog m_log{m_events};
    CFakeBacGeneral m_bacnet{m_events};
    CFakeKernel m_kernel{m_events};
    CFakeDriver m_driver{m_events, m_kernel};
    TransferHook m_onTransfer;
};
