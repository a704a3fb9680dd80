#include "module/console/ConsoleDialog.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "api/driver/Driver.h"
#include "module/console/AboutDlg.h"
#include "module/console/ConsoleEvent.h"
#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/Globals.h"
#include "module/console/Guarded.h"
#include "module/console/HistoryStarter.h"
#include "module/console/Messages.h"
#include "module/console/ModuleLock.h"
#include "module/console/NarrowText.h"
#include "module/console/Networks.h"
#include "module/console/Operator.h"
#include "module/console/PageTabs.h"
#include "module/icons/Icons.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStyle>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr std::uint32_t TRAY_ICON_ID = 1;
constexpr int BALLOON_TIMEOUT = 10000; // ms
constexpr const char* WARM_START_TEXT = "Warm start is enabled:\n"
                                        "- initial COV subscription is skipped\n"
                                        "- initial event registration is skipped\n"
                                        "- initial alarm list retrieval is skipped";

std::string NameOf(CDriver& driver) {
    const char* name = nullptr;
    RunGuarded("Driver: GetName", [&] { name = driver.GetName(); });
    return name ? name : "";
}

// A handler of this run is on the stack.
class CHandlerScope {
public:
    explicit CHandlerScope(CBDCThread& run) : m_run(run) { m_run.EnterHandler(); }
    ~CHandlerScope() { m_run.LeaveHandler(); }
    CHandlerScope(const CHandlerScope&) = delete;
    CHandlerScope& operator=(const CHandlerScope&) = delete;

private:
    CBDCThread& m_run;
};

} // namespace

const CBACnetConfConsoleDialog::Slot CBACnetConfConsoleDialog::SLOTS[] = {
    {WM_CONSOLE_SHUTDOWN, false, &CBACnetConfConsoleDialog::OnShutdown, "Shutdown"},
    {WM_CONSOLE_SHOW, false, &CBACnetConfConsoleDialog::OnShow, "Show"},
    {WM_CONSOLE_HISTORY, true, &CBACnetConfConsoleDialog::OnHistory, "History transfer"},
    {WM_CONSOLE_BACKUP, true, &CBACnetConfConsoleDialog::OnNotAvailable, "Backup"},
    {WM_CONSOLE_TIMESYNC, true, &CBACnetConfConsoleDialog::OnNotAvailable, "Time synchronization"},
    {WM_CONSOLE_NETWORK, false, &CBACnetConfConsoleDialog::OnNetwork, "Network switch"},
    {WM_CONSOLE_REPORT, true, &CBACnetConfConsoleDialog::OnNotAvailable, "Report"},
    {WM_CONSOLE_RESTORE, true, &CBACnetConfConsoleDialog::OnNotAvailable, "Restore"},
    {WM_CONSOLE_SETUPNETWORKS, true, &CBACnetConfConsoleDialog::OnSetupNetworks, "Network triggers"},
    {WM_CONSOLE_OBJECTCHANGED, false, &CBACnetConfConsoleDialog::OnObjectChanged, "Object change"},
    {WM_CONSOLE_TRAYICON, false, &CBACnetConfConsoleDialog::OnTrayIcon, "Tray icon"},
};

CBACnetConfConsoleDialog::CBACnetConfConsoleDialog(CBDCThread& run, CDriver& driver) : m_run(run), m_driver(driver) {
    setObjectName(QStringLiteral("BACnetConfigurationConsole"));
    setWindowIcon(NewIcon(CONSOLE_ICON));
    setWindowTitle(QStringLiteral("BACnet configuration console - ") + FromNarrow(NameOf(driver)));
    MakeControls();
    MakeKeys();
    AddTrayIcon();
    {
        // The manager does not run yet, so what the pages' triggers post is dropped.
        const CModuleLock lock;
        m_tabs->Create(driver);
        if (consoleWiring.newHistoryStarter)
            RunGuarded("Console: history transfer", [this] { m_history = consoleWiring.newHistoryStarter(); });
        BDCManager.RegisterTriggerTag("FlushAllTrendLog", allPropPages.history.flushTag.c_str(), WM_CONSOLE_HISTORY, 0);
    }
    PlaceControls();
    m_tabs->SelectPage(PAGE_GENERAL);
}

CBACnetConfConsoleDialog::~CBACnetConfConsoleDialog() {
    {
        const CModuleLock lock;
        m_history.reset();
        m_tabs->DestroyPages();
    }
    m_icon.reset();
}

void CBACnetConfConsoleDialog::MakeControls() {
    m_tabs = new CPageTabs(this);
    m_anchors.push_back({m_tabs, Anchor::Stretch, Anchor::Stretch});
    using Action = void (CBACnetConfConsoleDialog::*)();
    static constexpr std::pair<const char*, Action> BUTTONS[] = {
        {"OK", &CBACnetConfConsoleDialog::accept},
        {"Cancel", &CBACnetConfConsoleDialog::reject},
        {"Save now", &CBACnetConfConsoleDialog::SaveAll},
        {"Help", &CBACnetConfConsoleDialog::ShowHelp},
    };
    for (const auto& [label, action] : BUTTONS) {
        auto* const button = new QPushButton(QString::fromLatin1(label), this);
        button->setAutoDefault(false);
        button->setDefault(m_anchors.size() == 1); // the first: Enter is OK
        connect(button, &QPushButton::clicked, this, action);
        m_anchors.push_back({button, Anchor::None, Anchor::Move});
    }
}

// The first layout, which is also the smallest: the tabs above, the buttons in a row below.
void CBACnetConfConsoleDialog::PlaceControls() {
    const QMargins margins(
        style()->pixelMetric(QStyle::PM_LayoutLeftMargin), style()->pixelMetric(QStyle::PM_LayoutTopMargin),
        style()->pixelMetric(QStyle::PM_LayoutRightMargin), style()->pixelMetric(QStyle::PM_LayoutBottomMargin));
    const int gap = std::max(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing), 6);
    const QSize tabs = m_tabs->sizeHint();
    m_tabs->setGeometry(QRect(QPoint(margins.left(), margins.top()), tabs));
    QPoint at(margins.left(), margins.top() + tabs.height() + gap);
    int height = 0;
    for (std::size_t i = 1; i < m_anchors.size(); ++i) {
        const QSize size = m_anchors[i].widget->sizeHint();
        m_anchors[i].widget->setGeometry(QRect(at, size));
        at.rx() += size.width() + gap;
        height = std::max(height, size.height());
    }
    m_anchoredSize = QSize(margins.left() + tabs.width() + margins.right(), at.y() + height + margins.bottom());
    setMinimumSize(m_anchoredSize);
    resize(m_anchoredSize);
    // Also hidden it stands in the middle of the screen, since its dialogs stand in the middle of it.
    const QRect screen = QDialog::screen()->availableGeometry();
    const QPoint middle = screen.center() - rect().center();
    move(std::max(middle.x(), screen.left()), std::max(middle.y(), screen.top()));
}

void CBACnetConfConsoleDialog::MakeKeys() {
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    add(QKeySequence(Qt::Key_F1), [this] { ShowHelp(); });
    add(QKeySequence(Qt::CTRL | Qt::Key_Tab), [this] { m_tabs->SelectPage(NextPage(m_tabs->GetCurrentPage())); });
    // A keyboard gives one or the other, by its layout.
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab})
        add(QKeySequence(Qt::CTRL | Qt::SHIFT | key),
            [this] { m_tabs->SelectPage(PreviousPage(m_tabs->GetCurrentPage())); });
}

void CBACnetConfConsoleDialog::AddTrayIcon() {
    m_trayMenu = new QMenu(this);
    m_trayMenu->addAction(QStringLiteral("&Open..."), this, &CBACnetConfConsoleDialog::OpenThroughGate);
    m_trayMenu->addAction(QStringLiteral("&About..."), this, &CBACnetConfConsoleDialog::ShowAbout);
    bool isWarmStart = false;
    RunGuarded("Driver: IsWarmStart", [&] { isWarmStart = m_driver.IsWarmStart(); });
    if (isWarmStart)
        LogInf("Warm start is enabled");
    if (!consoleWiring.newTray)
        return;
    m_tray = consoleWiring.newTray();
    m_icon.emplace(*m_tray);
    m_icon->SetTooltip(ToNarrow(windowTitle()));
    if (isWarmStart)
        m_icon->SetBalloon({"BACnet driver", WARM_START_TEXT, BalloonIcon::Warning, BALLOON_TIMEOUT});
    m_icon->Add(TRAY_ICON_ID);
}

void CBACnetConfConsoleDialog::accept() {
    SaveAll();
    HideConsole();
}

void CBACnetConfConsoleDialog::reject() {
    for (int page = 0; page < static_cast<int>(PAGE_COUNT); ++page)
        m_tabs->GetPage(page)->Cancelled();
    HideConsole();
}

void CBACnetConfConsoleDialog::closeEvent(QCloseEvent* event) {
    event->ignore();
    HideConsole();
}

void CBACnetConfConsoleDialog::HideConsole() {
    m_tabs->SelectPage(PAGE_GENERAL);
    hide();
}

void CBACnetConfConsoleDialog::SaveAll() {
    QApplication::setOverrideCursor(Qt::WaitCursor); // the driver may take its time
    for (const CONSOLE_PAGE page : PAGES_IN_SAVE_ORDER) {
        bool isSaved = false;
        RunGuarded(PAGE_LABELS[page], [&] { isSaved = m_tabs->GetPage(page)->Save(); });
        if (!isSaved && page == PAGE_REPORTS)
            LogErr("ReportJobs: Failed to save file");
    }
    std::string failure;
    RunGuarded("Driver: SaveSettings", [&] {
        m_driver.SaveSettings();
        failure = m_driver.GetSaveFailure();
    });
    QApplication::restoreOverrideCursor();
    if (!failure.empty() && consoleWiring.getOperator)
        ShowError(*consoleWiring.getOperator(), failure);
}

void CBACnetConfConsoleDialog::ShowHelp() {
    if (consoleWiring.showHelp)
        consoleWiring.showHelp(m_tabs->GetCurrentPage() + 1);
}

void CBACnetConfConsoleDialog::ShowAbout() {
    if (IsDisabled())
        return;
    CAboutDlg dialog(this);
    RunModal(dialog);
}

void CBACnetConfConsoleDialog::OpenThroughGate() {
    if (!consoleWiring.getOperator)
        return;
    RunGuarded("Console: login", [this] {
        PassLoginGate(
            {m_driver.GetKernel(), m_driver.GetGateId(), m_driver.GetUserManagement(), *consoleWiring.getOperator()},
            *this);
    });
}

void CBACnetConfConsoleDialog::SetGateOpen(bool isOpen) {
    if (isOpen)
        m_login.emplace();
    else
        m_login.reset();
}

void CBACnetConfConsoleDialog::ShowInFront() {
    if (!m_run.MayHandle())
        return;
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    setFocus();
}

// A minimized window keeps its size, so that nothing moves then.
void CBACnetConfConsoleDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (!m_anchoredSize.isValid())
        return;
    const QSize change = size() - m_anchoredSize;
    m_anchoredSize = size();
    for (const Anchored& anchored : m_anchors) {
        const QRect now = anchored.widget->geometry();
        const Extent x = ::Anchored(anchored.horizontal, {now.x(), now.width()}, change.width());
        const Extent y = ::Anchored(anchored.vertical, {now.y(), now.height()}, change.height());
        anchored.widget->setGeometry(x.position, y.position, x.size, y.size);
    }
}

bool CBACnetConfConsoleDialog::event(QEvent* event) {
    if (event->type() != CConsoleEvent::GetType())
        return QDialog::event(event);
    // Not those that are posted meanwhile: other events have their turn too. A loop in a handler may take some.
    for (std::size_t count = m_run.BeginMessages(); count != 0 && m_run.MayHandle(); --count) {
        auto message = m_run.TakeMessage();
        if (!message)
            break;
        const CHandlerScope scope(m_run);
        Dispatch(*message);
    }
    return true;
}

void CBACnetConfConsoleDialog::Dispatch(CConsoleMessage& message) {
    const auto* const slot = std::ranges::find(SLOTS, message.GetMessage(), &Slot::message);
    if (slot == std::end(SLOTS) || (slot->onlyWhenSet && message.GetWParam() == 0))
        return;
    RunGuarded(slot->name, [&] { (this->*slot->handler)(message); });
}

void CBACnetConfConsoleDialog::OnShutdown(CConsoleMessage&) {
    m_run.Shutdown();
}

// The driver's own way in: it asks for no login.
void CBACnetConfConsoleDialog::OnShow(CConsoleMessage&) {
    ShowInFront();
}

void CBACnetConfConsoleDialog::OnHistory(CConsoleMessage& message) {
    if (m_history)
        m_history->StartTransfer(false, message.TakeRequest());
    else
        OnNotAvailable(message);
}

void CBACnetConfConsoleDialog::OnNetwork(CConsoleMessage& message) {
    if (BACnet)
        SwitchNetwork(*BACnet, message.GetWParam() == TRIGGER_UP, static_cast<std::uint16_t>(message.GetLParam()));
}

void CBACnetConfConsoleDialog::OnSetupNetworks(CConsoleMessage&) {
    const auto networkTags = [] {
        const CModuleLock lock;
        return allPropPages.general.networkTags;
    }();
    RegisterNetworkTriggers(BDCManager, networkTags);
}

void CBACnetConfConsoleDialog::OnObjectChanged(CConsoleMessage& message) {
    const auto device = static_cast<unsigned>(message.GetWParam());
    const BACSTAC_OBJECT_ID object{UnpackObjectType(message.GetLParam()), UnpackObjectInstance(message.GetLParam())};
    LogInf("OnObjectChanged(%u, (%u, %u))", device, object.Type, object.Instance);
    m_tabs->GetPage(PAGE_BROWSER)->ObjectChanged(device, object);
}

void CBACnetConfConsoleDialog::OnTrayIcon(CConsoleMessage& message) {
    if (message.GetLParam() == TRAY_LEFT_BUTTON_UP)
        OpenThroughGate();
    else if (message.GetLParam() == TRAY_RIGHT_BUTTON_UP)
        m_trayMenu->popup(QCursor::pos());
}

void CBACnetConfConsoleDialog::OnNotAvailable(CConsoleMessage& message) {
    const auto* const slot = std::ranges::find(SLOTS, message.GetMessage(), &Slot::message);
    LogDebugInfo("Console: %s is not available", slot->name);
}
