#include "tests/gui/ConsoleFixture.h"

#include "module/console/Busy.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/GuiThread.h"

#include <QApplication>

#include <memory>
#include <utility>

namespace {

struct Transfers {
    CEventList* events = nullptr;
    TransferHook* hook = nullptr;
};
Transfers g_transfers;

// Records requests; it owns them as the real one does.
class FakeHistoryStarter : public IHistoryStarter {
public:
    ~FakeHistoryStarter() override { g_transfers.events->Add("~HistoryStarter()"); }
    bool StartTransfer(bool manual, BACSTAC_DEV_OBJ_REF* request) override {
        const std::unique_ptr<BACSTAC_DEV_OBJ_REF> owned(request);
        g_transfers.events->Add(std::string("StartTransfer(") + (manual ? "manual" : "unattended") + ", " +
                                (request ? std::to_string(request->DeviceId.Instance) + " " +
                                               std::to_string(request->ObjectId.Type) + " " +
                                               std::to_string(request->ObjectId.Instance)
                                         : "all") +
                                ")");
        if (const TransferHook hook = *g_transfers.hook) // a copy: the test may set another one meanwhile
            hook(request);
        return true;
    }
};

} // namespace

QDialog* ConsoleWindow() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QStringLiteral("BACnetConfigurationConsole"))
            return qobject_cast<QDialog*>(widget);
    return nullptr;
}

ConsoleFixture::ConsoleFixture() {
    g_transfers = {&m_events, &m_onTransfer};
    consoleWiring = {};
    consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
        return std::make_shared<CBDCThread>(driver);
    };
    consoleWiring.newHistoryStarter = []() -> std::unique_ptr<IHistoryStarter> {
        return std::make_unique<FakeHistoryStarter>();
    };
    allPropPages = {};
}

void ConsoleFixture::TearDown() {
    EXPECT_TRUE(!BDCManager.IsRunning() || Stop());
}

bool ConsoleFixture::Stop() {
    BDCManager.InitiateShutdownW();
    return BDCManager.WaitEnd(30000);
}

void ConsoleFixture::ShowWindow() {
    Post(WM_CONSOLE_SHOW);
    EXPECT_TRUE(EventuallyOnGui([] { return ConsoleWindow() && ConsoleWindow()->isVisible(); }));
}

CEventList::Lines ConsoleFixture::Settled() {
    OnGui([] {});
    OnGui([] {}); // for what a handler posted
    return m_events.Take();
}

CEventList::Lines ConsoleFixture::Finished() {
    OnGui([] {}); // what was posted has begun
    EXPECT_TRUE(EventuallyOnGui([] { return !CBusyScope::IsBusy(); }));
    return Settled();
}

bool ConsoleFixture::HasWindow() {
    return OnGui([] { return ConsoleWindow() != nullptr; });
}

bool ConsoleFixture::IsVisible() {
    return OnGui([] { return ConsoleWindow() && ConsoleWindow()->isVisible(); });
}

std::string ConsoleFixture::Title() {
    return OnGui([] {
        const QDialog* const window = ConsoleWindow();
        return window ? window->windowTitle().toStdString() : std::string();
    });
}
