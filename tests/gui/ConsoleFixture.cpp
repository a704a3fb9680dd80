#include "tests/gui/ConsoleFixture.h"

#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/GuiThread.h"

#include <QApplication>

#include <memory>
#include <thread>
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

Milliseconds Since(Clock::time_point start) {
    return std::chrono::duration_cast<Milliseconds>(Clock::now() - start);
}

bool Eventually(const std::function<bool()>& condition) {
    const auto start = Clock::now();
    while (!condition()) {
        if (Since(start) > Milliseconds(10000))
            return false;
        std::this_thread::sleep_for(Milliseconds(5));
    }
    return true;
}

void PostToGui(std::function<void()> f) {
    CGuiThread::Get()->Post(std::move(f));
}

void OnGui(const std::function<void()>& f) {
    CManualResetEvent done;
    PostToGui([&] {
        f();
        done.Set();
    });
    done.Wait(WAIT_WITHOUT_LIMIT);
}

QDialog* ConsoleWindow() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QStringLiteral("BACnetConfigurationConsole"))
            return qobject_cast<QDialog*>(widget);
    return nullptr;
}

ConsoleFixture::ConsoleFixture() {
    g_transfers = {&m_events, &m_onTransfer};
    consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
        return std::make_shared<CBDCThread>(driver);
    };
    consoleWiring.newHistoryStarter = []() -> std::unique_ptr<IHistoryStarter> {
        return std::make_unique<FakeHistoryStarter>();
    };
    allPropPages = {};
}

ConsoleFixture::~ConsoleFixture() {
    EXPECT_TRUE(!BDCManager.IsRunning() || Stop());
}

bool ConsoleFixture::Stop() {
    BDCManager.InitiateShutdownW();
    return BDCManager.WaitEnd(30000);
}

CEventList::Lines ConsoleFixture::Settled() {
    OnGui([] {});
    OnGui([] {}); // for what a handler posted
    return m_events.Take();
}

bool ConsoleFixture::HasWindow() {
    bool has = false;
    OnGui([&] { has = ConsoleWindow() != nullptr; });
    return has;
}

bool ConsoleFixture::IsVisible() {
    bool isVisible = false;
    OnGui([&] { isVisible = ConsoleWindow() && ConsoleWindow()->isVisible(); });
    return isVisible;
}

std::string ConsoleFixture::Title() {
    std::string title;
    OnGui([&] {
        if (const QDialog* const window = ConsoleWindow())
            title = window->windowTitle().toStdString();
    });
    return title;
}
