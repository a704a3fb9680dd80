#include "tests/gui/browser/BrowserConsole.h"

#include "module/browser/ObjBrowserDlg.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/Globals.h"
#include "module/console/GuiOperator.h"
#include "module/console/Messages.h"
#include "module/console/PageTabs.h"

#include <QApplication>

namespace {

QWidget* ConsoleWindow() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QStringLiteral("BACnetConfigurationConsole"))
            return widget;
    return nullptr;
}

} // namespace

BrowserConsole::BrowserConsole() {
    consoleWiring = {};
    consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
        return std::make_shared<CBDCThread>(driver);
    };
    consoleWiring.newPage[PAGE_BROWSER] = [](QWidget* place, CDriver& driver) -> CConsolePage* {
        return new CObjBrowserDlg(place, driver, *BACnet, *CGuiOperator::Get());
    };
}

BrowserConsole::~BrowserConsole() {
    LetGo();
    EXPECT_TRUE(End());
    consoleWiring = {};
}

void BrowserConsole::OpenConsole() {
    PutSite();
    BDCManager.Start(&m_driver, 30000);
    BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
    ASSERT_TRUE(EventuallyOnGui([] { return ConsoleWindow() && ConsoleWindow()->isVisible(); }));
    OnGui([this] {
        Window().Only<CPageTabs>().SelectPage(PAGE_BROWSER);
        m_page = dynamic_cast<CObjBrowserDlg*>(consolePages[PAGE_BROWSER].load());
        ASSERT_NE(m_page, nullptr);
    });
    m_events.Take();
}

bool BrowserConsole::End() {
    m_page = nullptr; // goes with the console
    if (!BDCManager.IsRunning())
        return true;
    const auto begin = Clock::now();
    BDCManager.InitiateShutdownW();
    return BDCManager.WaitEnd(30000) && Since(begin) < Milliseconds(3000);
}

CControls BrowserConsole::Window() {
    return CControls(ConsoleWindow());
}
