// The console's window: its pages and their orders, its buttons and keys, the tray icon and the gate.
#include "module/console/Busy.h"
#include "module/console/ConsoleDialog.h"
#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "module/console/ModuleLock.h"
#include "module/console/PageTabs.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/FakeOperator.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabBar>
#include <QTreeWidget>

#include <atomic>
#include <thread>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

CEventList* g_events = nullptr;
bool g_reportsAreSaved = true;

template <int Index>
class RecordingPage : public CConsolePage {
public:
    explicit RecordingPage(QWidget* place) : CConsolePage(place), m_edit(new QLineEdit(this)) {
        setFocusProxy(m_edit);
        Add("new");
    }
    ~RecordingPage() override { Add("~"); }
    void Load() override { Add("Load"); }
    bool Save() override {
        Add("Save");
        return Index != PAGE_REPORTS || g_reportsAreSaved;
    }
    void Cancelled() override { Add("Cancelled"); }
    void Shown() override { Add("Shown"); }
    void Hidden() override { Add("Hidden"); }
    void Destroy() override { Add("Destroy"); }

private:
    static void Add(const std::string& what) { g_events->Add(what + " " + PAGE_LABELS[Index]); }
    QLineEdit* m_edit;
};

template <int... Index>
void UseRecordingPages(std::integer_sequence<int, Index...>) {
    ((consoleWiring.newPage[Index] = [](QWidget* place, CDriver&) -> CConsolePage* {
         return new RecordingPage<Index>(place);
     }),
     ...);
}

class RecordingTray : public ITray {
public:
    void Add(std::uint32_t id, const std::string& tooltip) override {
        g_events->Add("Tray(" + std::to_string(id) + ", " + tooltip + ")");
    }
    void ShowBalloon(const TrayBalloon& balloon) override {
        g_events->Add("Balloon(" + balloon.title + ", " + balloon.text + ", " + std::to_string(balloon.timeout) +
                      (balloon.icon == BalloonIcon::Warning ? ", warning)" : ")"));
    }
    void Remove() override { g_events->Add("~Tray"); }
};

CFakeOperator* g_operator = nullptr;

CBACnetConfConsoleDialog& Console() {
    return *qobject_cast<CBACnetConfConsoleDialog*>(ConsoleWindow());
}

class ConsoleWindowOf : public ConsoleFixture {
protected:
    ConsoleWindowOf() {
        g_events = &m_events;
        g_reportsAreSaved = true;
        g_operator = &m_operator;
        consoleWiring.getOperator = []() -> IOperator* { return g_operator; };
        consoleWiring.newTray = []() -> std::unique_ptr<ITray> { return std::make_unique<RecordingTray>(); };
        consoleWiring.showHelp = [](int context) { g_events->Add("Help(" + std::to_string(context) + ")"); };
    }
    void StartWithPages() {
        UseRecordingPages(std::make_integer_sequence<int, PAGE_COUNT>());
        Start();
        m_events.Take();
    }
    void Show() {
        ShowWindow();
        Settled();
    }
    void Press(const char* label) {
        OnGui([&] { CControls(ConsoleWindow()).Press(label); });
    }
    void Type(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        OnGui([&] { PressKey(key, modifiers); });
    }
    CFakeOperator m_operator{m_events};

    int CurrentPage() {
        return OnGui([] { return Console().GetTabs().GetCurrentPage(); });
    }
    void Select(int page) {
        OnGui([&] { Console().GetTabs().SelectPage(page); });
    }
};

TEST_F(ConsoleWindowOf, NinePagesIsBuiltInTheOrderOfTheTabsAndTornDownInAnother) {
    UseRecordingPages(std::make_integer_sequence<int, PAGE_COUNT>());
    Start();
    CEventList::Lines expected{"Tray(1, BACnet configuration console - Test driver)"};
    for (const char* const label : PAGE_LABELS) {
        expected.push_back(std::string("new ") + label);
        expected.push_back(std::string("Load ") + label);
    }
    EXPECT_EQ(Settled(), expected);
    const auto labels = OnGui([] {
        std::vector<std::string> texts;
        for (int i = 0; i < Console().GetTabs().count(); ++i)
            texts.push_back(Console().GetTabs().tabText(i).toStdString());
        return texts;
    });
    EXPECT_THAT(labels, ElementsAre("General", "Log file", "Time synchronization", "Alarm rules", "Event filters",
                                    "Browser", "History", "Backup", "Reports"));
    EXPECT_EQ(CurrentPage(), PAGE_GENERAL);
    EXPECT_FALSE(IsVisible());
    for (const auto& page : consolePages)
        EXPECT_NE(page, nullptr);

    ASSERT_TRUE(Stop());
    expected = {"~HistoryStarter()"};
    for (const char* const label : {"Alarm rules", "Reports", "Backup", "History", "Browser", "Event filters",
                                    "Time synchronization", "Log file", "General"}) {
        expected.push_back(std::string("Destroy ") + label);
        expected.push_back(std::string("~ ") + label);
    }
    expected.push_back("~Tray");
    EXPECT_EQ(m_events.Take(), expected);
    for (const auto& page : consolePages)
        EXPECT_EQ(page, nullptr);
}

TEST_F(ConsoleWindowOf, PagesIsLockedWhileTheyAreMadeAndDestroyed) {
    struct LockedPage : CConsolePage {
        explicit LockedPage(QWidget* place) : CConsolePage(place) {}
        static void Look(const char* when) {
            const auto isTaken = std::make_shared<std::atomic<bool>>(false);
            std::thread([isTaken] {
                const CModuleLock lock;
                *isTaken = true;
            }).detach();
            std::this_thread::sleep_for(Milliseconds(30));
            g_events->Add(std::string(when) + (*isTaken ? " free" : " locked"));
        }
        void Load() override { Look("Load"); }
        void Destroy() override { Look("Destroy"); }
    };
    consoleWiring.newPage[PAGE_BACKUP] = [](QWidget* place, CDriver&) -> CConsolePage* {
        return new LockedPage(place);
    };
    Start();
    ASSERT_TRUE(Stop());
    const auto events = m_events.Take();
    EXPECT_THAT(events, Contains("Load locked"));
    EXPECT_THAT(events, Contains("Destroy locked"));
}

TEST_F(ConsoleWindowOf, TheWarmStartShowsABalloonAndStaysHidden) {
    m_driver.m_isWarmStart = true;
    Start();
    EXPECT_THAT(Settled(),
                ElementsAre("I: Warm start is enabled", "Tray(1, BACnet configuration console - Test driver)",
                            "Balloon(BACnet driver, Warm start is enabled:\n"
                            "- initial COV subscription is skipped\n"
                            "- initial event registration is skipped\n"
                            "- initial alarm list retrieval is skipped, 10000, warning)"));
    EXPECT_FALSE(IsVisible());
}

TEST_F(ConsoleWindowOf, SaveNowSavesInItsOrderAndTheDriverLast) {
    StartWithPages();
    Show();
    Press("Save now");
    EXPECT_THAT(Settled(),
                ElementsAre("Save Log file", "Save Time synchronization", "Save Browser", "Save Event filters",
                            "Save History", "Save General", "Save Backup", "Save Reports", "SaveSettings()"));
    EXPECT_TRUE(IsVisible());
    g_reportsAreSaved = false;
    Press("Save now");
    const auto events = Settled();
    ASSERT_EQ(events.size(), 10U);
    EXPECT_EQ(events[8], "E: ReportJobs: Failed to save file");
    EXPECT_EQ(events[9], "SaveSettings()");
}

TEST_F(ConsoleWindowOf, OkSavesAndHides) {
    StartWithPages();
    Show();
    Press("OK");
    EXPECT_THAT(Settled(), Contains("SaveSettings()"));
    EXPECT_FALSE(IsVisible());
    Show();
    Type(Qt::Key_Return);
    EXPECT_THAT(Settled(), Contains("SaveSettings()"));
    EXPECT_FALSE(IsVisible());
}

TEST_F(ConsoleWindowOf, CancelTellsThePagesAndHides) {
    StartWithPages();
    for (const auto leave : {+[] { CControls(ConsoleWindow()).Press("Cancel"); }, +[] { PressKey(Qt::Key_Escape); }}) {
        Show();
        OnGui(leave);
        const auto events = Settled();
        EXPECT_THAT(events, Contains("Cancelled Browser"));
        EXPECT_THAT(events, Not(Contains("SaveSettings()")));
        EXPECT_FALSE(IsVisible());
    }
}

TEST_F(ConsoleWindowOf, TheCloseBoxOnlyHides) {
    StartWithPages();
    Show();
    OnGui([] { ConsoleWindow()->close(); });
    EXPECT_THAT(Settled(), ElementsAre("Hidden General"));
    EXPECT_FALSE(IsVisible());
    EXPECT_TRUE(HasWindow());
}

TEST_F(ConsoleWindowOf, EveryOpeningStartsOnTheFirstPage) {
    StartWithPages();
    for (const char* const leave : {"OK", "Cancel"}) {
        Show();
        Select(PAGE_BROWSER);
        EXPECT_EQ(CurrentPage(), PAGE_BROWSER);
        Press(leave);
        EXPECT_EQ(CurrentPage(), PAGE_GENERAL);
    }
    Show();
    Select(PAGE_BACKUP);
    OnGui([] { ConsoleWindow()->close(); });
    Show();
    EXPECT_EQ(CurrentPage(), PAGE_GENERAL);
}

TEST_F(ConsoleWindowOf, PagesHearWhenTheyComeAndGo) {
    StartWithPages();
    Post(WM_CONSOLE_SHOW);
    EXPECT_THAT(Settled(), ElementsAre("Shown General"));
    Select(PAGE_BROWSER);
    EXPECT_THAT(Settled(), ElementsAre("Hidden General", "Shown Browser"));
    OnGui([] { Console().GetTabs().setCurrentIndex(PAGE_HISTORY); }); // as a click on the tab does
    EXPECT_THAT(Settled(), ElementsAre("Hidden Browser", "Shown History"));
    EXPECT_EQ(CurrentPage(), PAGE_HISTORY);
}

TEST_F(ConsoleWindowOf, SelectionIgnoresWhatIsNoPage) {
    StartWithPages();
    Show();
    for (const int page : {-2, 9, 100, PAGE_GENERAL + 0}) {
        Select(page);
        EXPECT_EQ(CurrentPage(), PAGE_GENERAL) << page;
    }
    EXPECT_THAT(Settled(), IsEmpty());
    Select(NO_PAGE);
    EXPECT_EQ(CurrentPage(), NO_PAGE);
    EXPECT_THAT(Settled(), ElementsAre("Hidden General"));
    Select(PAGE_GENERAL);
    EXPECT_THAT(Settled(), ElementsAre("Shown General"));
}

TEST_F(ConsoleWindowOf, KeysWalkThroughThePagesWhereverTheFocusIs) {
    StartWithPages();
    Show();
    for (int page = 1; page <= static_cast<int>(PAGE_COUNT); ++page) {
        Type(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(CurrentPage(), page % static_cast<int>(PAGE_COUNT));
    }
    Type(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(CurrentPage(), PAGE_REPORTS);
    Type(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(CurrentPage(), PAGE_BACKUP);
    OnGui([] { Console().GetTabs().tabBar()->setFocus(); });
    Type(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(CurrentPage(), PAGE_REPORTS);
    OnGui([] { CControls(ConsoleWindow()).Get<QPushButton>("Help").setFocus(); });
    Type(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(CurrentPage(), PAGE_GENERAL);
}

// Fields that have a use of their own for keys.
class FieldsPage : public CConsolePage {
public:
    explicit FieldsPage(QWidget* place) : CConsolePage(place) {
        auto* const list = new QComboBox(this);
        list->addItems({QStringLiteral("one"), QStringLiteral("two")});
        auto* const editable = new QComboBox(this);
        editable->setEditable(true);
        auto* const text = new QPlainTextEdit(this); // takes Tab for itself
        for (QWidget* const field : std::initializer_list<QWidget*>{new QLineEdit(this), list, editable, text,
                                                                    new QTreeWidget(this), new QSpinBox(this)})
            m_fields.push_back(field);
    }
    std::vector<QWidget*> m_fields;
};

TEST_F(ConsoleWindowOf, KeysWalkThroughThePagesFromInsideAnyField) {
    consoleWiring.newPage[PAGE_HISTORY] = [](QWidget* place, CDriver&) -> CConsolePage* {
        return new FieldsPage(place);
    };
    Start();
    Show();
    const auto count =
        OnGui([] { return static_cast<FieldsPage*>(consolePages[PAGE_HISTORY].load())->m_fields.size(); });
    for (std::size_t i = 0; i < count; ++i) {
        const auto focus = [i] {
            Console().GetTabs().SelectPage(PAGE_HISTORY);
            QWidget* const field = static_cast<FieldsPage*>(consolePages[PAGE_HISTORY].load())->m_fields[i];
            field->setFocus();
            EXPECT_TRUE(field->hasFocus() || field->isAncestorOf(QApplication::focusWidget())) << i;
        };
        OnGui(focus);
        Type(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(CurrentPage(), PAGE_BACKUP) << i;
        OnGui(focus);
        Type(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(CurrentPage(), PAGE_BROWSER) << i;
    }
}

TEST_F(ConsoleWindowOf, AMinimizedWindowStillShowsItsPage) {
    StartWithPages();
    Show();
    OnGui([] { ConsoleWindow()->showMinimized(); });
    EXPECT_THAT(Settled(), IsEmpty());
    EXPECT_TRUE(IsVisible());
    OnGui([] { ConsoleWindow()->showNormal(); });
    EXPECT_THAT(Settled(), IsEmpty());
}

TEST_F(ConsoleWindowOf, TheConsoleLivesWithoutAnyWindowOnTheScreen) {
    StartWithPages();
    Show();
    auto* const other = OnGui([] {
        auto* const window = new QWidget;
        window->show();
        return window;
    });
    OnGui([] { ConsoleWindow()->close(); });
    OnGui([other] {
        other->close(); // the last one
        delete other;
    });
    Settled();
    BDCManager.ObjectChanged(1, {8, 1});
    EXPECT_THAT(Settled(), ElementsAre("I: OnObjectChanged(1, (8, 1))"));
    EXPECT_TRUE(HasWindow());
}

TEST_F(ConsoleWindowOf, HelpIsAskedForThePageThatIsShown) {
    StartWithPages();
    Show();
    Press("Help");
    Select(PAGE_REPORTS);
    Settled();
    Type(Qt::Key_F1);
    EXPECT_THAT(Settled(), ElementsAre("Help(9)"));
    Select(PAGE_GENERAL);
    Settled();
    Press("Help");
    EXPECT_THAT(Settled(), ElementsAre("Help(1)"));
}

TEST_F(ConsoleWindowOf, ControlsFollowTheSizeOfTheWindow) {
    StartWithPages();
    Show();
    struct Layout {
        QRect tabs, ok, browser, general, help;
        QSize window, least;
    };
    const auto look = [] {
        return OnGui([]() -> Layout {
            const CControls window(ConsoleWindow());
            CPageTabs& tabs = Console().GetTabs();
            for (int page = 0; page < static_cast<int>(PAGE_COUNT); ++page)
                tabs.SelectPage(page); // each page is laid out
            return {tabs.geometry(),
                    window.Get<QPushButton>("OK").geometry(),
                    tabs.GetPage(PAGE_BROWSER)->geometry(),
                    tabs.GetPage(PAGE_GENERAL)->geometry(),
                    window.Get<QPushButton>("Help").geometry(),
                    window.GetRoot().size(),
                    window.GetRoot().minimumSize()};
        });
    };
    const Layout before = look();
    EXPECT_EQ(before.window, before.least);
    OnGui([] { ConsoleWindow()->resize(ConsoleWindow()->size() + QSize(100, 50)); });
    const Layout after = look();
    EXPECT_EQ(after.tabs, before.tabs.adjusted(0, 0, 100, 50));
    EXPECT_EQ(after.browser, before.browser.adjusted(0, 0, 100, 50));
    EXPECT_EQ(after.general, before.general);
    EXPECT_EQ(after.ok, before.ok.translated(0, 50));
    EXPECT_EQ(after.help, before.help.translated(0, 50));
    OnGui([] { ConsoleWindow()->showMinimized(); });
    OnGui([] { ConsoleWindow()->showNormal(); });
    const Layout restored = look();
    EXPECT_EQ(restored.tabs, after.tabs);
    EXPECT_EQ(restored.ok, after.ok);
    OnGui([] { ConsoleWindow()->resize(10, 10); });
    EXPECT_EQ(look().window, before.least);
}

TEST_F(ConsoleWindowOf, DialogsOfTheHiddenConsoleStandInTheMiddleOfTheScreen) {
    StartWithPages();
    OnGui([] {
        QDialog dialog(ConsoleWindow());
        dialog.resize(300, 200);
        dialog.show();
        const QPoint offset = dialog.geometry().center() - dialog.screen()->availableGeometry().center();
        EXPECT_LT(offset.manhattanLength(), 50); // but for frames
    });
}

TEST_F(ConsoleWindowOf, ALeftClickOpensThroughTheGate) {
    StartWithPages();
    m_driver.m_users.m_logins = {{UM_LOGIN_OK, "admin"}};
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Settled(),
                ElementsAre("GetCurrentUserName(7)", "Login(operator)", "IsAdministrator(admin)", "Shown General"));
    EXPECT_TRUE(IsVisible());
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Settled(), IsEmpty()) << "it is on the screen: no second login";
    OnGui([] { ConsoleWindow()->close(); });
    m_events.Take();
    m_driver.m_users.m_logins = {{UM_LOGIN_REFUSED, ""}};
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Settled(),
                ElementsAre("GetCurrentUserName(7)", "Login(operator)", "Box(Error, Login failed, error, OK)"));
    EXPECT_FALSE(IsVisible());
}

TEST_F(ConsoleWindowOf, ASecondClickDoesNotReachTheLogin) {
    StartWithPages();
    m_driver.m_users.m_logins = {{UM_LOGIN_OK, "admin"}};
    m_driver.m_users.m_onLogin = [&](QWidget* window) {
        EXPECT_EQ(window, ConsoleWindow());
        Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
        PumpMessages(); // the second click comes while the login is open
    };
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Finished(),
                ElementsAre("GetCurrentUserName(7)", "Login(operator)", "IsAdministrator(admin)", "Shown General"));
}

TEST_F(ConsoleWindowOf, AModalDialogKeepsTheGateAndTheAboutBoxShut) {
    StartWithPages();
    Show();
    OnGui([&] {
        const CBusyScope busy; // as an editor's
        Console().OpenThroughGate();
        Console().ShowAbout(); // would not return
    });
    EXPECT_THAT(Settled(), IsEmpty());
}

TEST_F(ConsoleWindowOf, ARightClickOffersTheMenu) {
    StartWithPages();
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_RIGHT_BUTTON_UP);
    const auto entries = OnGui([] { return EntriesOf(*OpenMenu()); });
    EXPECT_THAT(entries, ElementsAre("&Open...", "&About..."));
    OnGui([] { OpenMenu()->close(); });
}

TEST_F(ConsoleWindowOf, TheAboutBoxNeedsNoLogin) {
    StartWithPages();
    CDialogScript script(m_events);
    script.Do("About", [](const CControls& box) {
        EXPECT_THAT(box.Texts(), ElementsAre("BACnet driver", "4.2.0.27"));
        box.Press("OK");
    });
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_RIGHT_BUTTON_UP);
    OnGui([] { ChooseEntry(*OpenMenu(), {"&About..."}); });
    EXPECT_THAT(Settled(), ElementsAre("Dialog(About)"));
}

TEST_F(ConsoleWindowOf, AShutdownDuringALoginEndsIt) {
    StartWithPages();
    m_driver.m_users.m_onLogin = [](QWidget* window) {
        QDialog dialog(window);
        dialog.setWindowTitle(QStringLiteral("Login"));
        dialog.exec(); // nobody answers
    };
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    ASSERT_TRUE(IsModalOpen("Login"));
    EXPECT_TRUE(Stop());
    EXPECT_FALSE(HasWindow());
}

} // namespace
