// The real console thread and dialog around fakes, on the offscreen platform. The tests run on a driver's thread and
// look at windows through OnGui.
#pragma once

#include "module/console/Globals.h"
#include "module/console/GuiOperator.h"
#include "module/console/HistoryStarter.h"
#include "module/console/Messages.h"
#include "tests/gui/harness/Controls.h"
#include "tests/gui/harness/DialogScript.h"
#include "tests/gui/harness/GuiAccess.h"
#include "tests/support/FakeBacGeneral.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"

#include <QDialog>

#include <gmock/gmock.h>

#include <functional>

// The console's window, null when there is none. On the console thread.
QDialog* ConsoleWindow();

// As if somebody sat at a screen.
class CScreenOperator : public CGuiOperator {
protected:
    bool HasScreen() const override { return true; }
};

// What the fixture's history transfer does with a request. On the console thread.
using TransferHook = std::function<void(const BACSTAC_DEV_OBJ_REF* request)>;

class ConsoleFixture : public ::testing::Test {
protected:
    ConsoleFixture();
    void TearDown() override; // ends the console if a test left it running

    void Start() { BDCManager.Start(&m_driver, 30000); }
    // True when the console ended in time.
    bool Stop();
    void Post(unsigned message, std::uintptr_t wParam = 0, std::intptr_t lParam = 0) {
        BDCManager.PostMessageW(message, wParam, lParam);
    }
    void ShowWindow();
    // The events up to now, with all that was posted handled.
    CEventList::Lines Settled();
    // The events once all jobs and dialogs of the console are over, too.
    CEventList::Lines Finished();
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
