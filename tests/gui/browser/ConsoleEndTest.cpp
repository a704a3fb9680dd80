// The end of the console while its browser waits for a device or an operator edits. The sanitizers watch over it.
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/Busy.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/Globals.h"
#include "module/console/GuiOperator.h"
#include "module/console/Messages.h"
#include "module/console/PageTabs.h"
#include "module/console/ProgressBarDlg.h"
#include "tests/gui/browser/BrowserPage.h"

#include <QApplication>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr Milliseconds BOUND(5000);
constexpr BACSTAC_OBJECT_ID ZONE{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_PROPERTY_ID LIST = 5000;

struct Made {
    CBacGeneral* bacnet = nullptr;
    CObjBrowserDlg* page = nullptr;
};
Made g_made;

} // namespace

class BrowserConsole : public BrowserPage {
protected:
    void TearDown() override { EXPECT_TRUE(!BDCManager.IsRunning() || EndsInTime()); }

    // The console with the page on it, the zone's present value selected. It has a list of numbers, too.
    void OpenConsole() {
        AddSite();
        SetValue(10, ZONE, LIST, FakeValue::Of<float>(TYPE_REAL, {1.5F, 2.5F}));
        g_made = {&m_bacnet, nullptr};
        consoleWiring = {};
        consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
            return std::make_shared<CBDCThread>(driver);
        };
        consoleWiring.newPage[PAGE_BROWSER] = [](QWidget* place, CDriver& driver) -> CConsolePage* {
            return g_made.page = new CObjBrowserDlg(place, driver, *g_made.bacnet, *CGuiOperator::Get());
        };
        BDCManager.Start(&m_driver, 30000);
        BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
        m_page = g_made.page;
        ASSERT_TRUE(EventuallyOnGui([this] { return m_page->window()->isVisible(); }));
        OnGui([this] {
            CControls(m_page->window()).Only<CPageTabs>().SelectPage(PAGE_BROWSER);
            Select("zone - 1");
        });
        ASSERT_TRUE(HasRows(4));
        m_events.Take();
    }
    void BeginEdit() {
        PostToGui([this] { Page().Press("&Edit..."); });
    }
    bool EndsInTime() {
        m_page = nullptr; // goes with the console
        const auto start = Clock::now();
        BDCManager.InitiateShutdownW();
        return BDCManager.WaitEnd(30000) && Since(start) < BOUND;
    }
};

TEST_F(BrowserConsole, EndsUnderAnEditorThreeDeep) {
    OpenConsole();
    OnGui([this] { List().setCurrentIndex(List().model()->index(0, 0)); });
    {
        CDialogScript script(m_asked);
        script.Leave("Input list of real");
        script.Leave("Input real");
        script.Leave("Error");
        BeginEdit();
        ASSERT_TRUE(IsModalOpen("Input list of real"));
        PostToGui([] { CControls(ModalDialog()).Press("Edit"); });
        ASSERT_TRUE(IsModalOpen("Input real"));
        PostToGui([] {
            CControls(ModalDialog()).Type("5000", "no number");
            CControls(ModalDialog()).Press("OK");
        });
        ASSERT_TRUE(IsModalOpen("Error"));
    }
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (2, 1), 5000, -1)"));
}

TEST_F(BrowserConsole, EndsUnderAnEditorWhoseValueWasNotWritten) {
    OpenConsole();
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_TIMEOUT);
    {
        CDialogScript script(m_asked);
        script.Press("Input real", "OK");
        script.Leave("Error");
        BeginEdit();
        ASSERT_TRUE(IsModalOpen("Error"));
    }
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(),
                ElementsAre("ReadProperty(10, (2, 1), 85, -1)", "WriteProperty(10, (2, 1), 85, -1, -1, 21.5)"));
}

TEST_F(BrowserConsole, EndsDuringTheWaitForADevice) {
    OpenConsole();
    m_bacnet.SetSilent(true);
    BeginEdit();
    ASSERT_TRUE(EventuallyOnGui([] {
        return std::ranges::any_of(QApplication::topLevelWidgets(),
                                   [](QWidget* widget) { return qobject_cast<CProgressBarDlg*>(widget) != nullptr; });
    }));
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(BrowserConsole, EndsWithWhatWasCopied) {
    OpenConsole();
    OnGui([this] {
        QMenu* const menu = MenuAt(List(), List().model()->index(3, 0));
        ASSERT_NE(menu, nullptr);
        ChooseEntry(*menu, {"&Copy"});
    });
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 85)"));
}
