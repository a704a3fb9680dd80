#include "module/console/ConsoleDialog.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "api/driver/Driver.h"
#include "module/console/ConsoleEvent.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/Globals.h"
#include "module/console/HistoryStarter.h"
#include "module/console/Messages.h"
#include "module/console/ModuleLock.h"
#include "module/console/NarrowText.h"
#include "module/console/Networks.h"

#include <algorithm>
#include <iterator>

namespace {

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
    {WM_CONSOLE_TRAYICON, false, &CBACnetConfConsoleDialog::OnNotAvailable, "Tray icon"},
};

CBACnetConfConsoleDialog::CBACnetConfConsoleDialog(CBDCThread& run, CDriver& driver) : m_run(run) {
    setObjectName(QStringLiteral("BACnetConfigurationConsole"));
    setWindowTitle(QStringLiteral("BACnet configuration console - ") + FromNarrow(driver.GetName()));
    if (driver.IsWarmStart())
        LogInf("Warm start is enabled");

    // The manager does not run yet, so what these registrations trigger is dropped.
    const CModuleLock lock;
    if (consoleWiring.newHistoryStarter)
        m_history = consoleWiring.newHistoryStarter();
    BDCManager.RegisterTriggerTag("FlushAllTrendLog", allPropPages.history.flushTag.c_str(), WM_CONSOLE_HISTORY, 0);
}

CBACnetConfConsoleDialog::~CBACnetConfConsoleDialog() {
    const CModuleLock lock;
    m_history.reset();
}

bool CBACnetConfConsoleDialog::event(QEvent* event) {
    if (event->type() != CConsoleEvent::GetType())
        return QDialog::event(event);
    if (m_run.MayHandle()) {
        const CHandlerScope scope(m_run);
        Dispatch(static_cast<CConsoleEvent*>(event)->GetConsoleMessage());
    }
    return true;
}

void CBACnetConfConsoleDialog::Dispatch(CConsoleMessage& message) {
    const auto* const slot = std::ranges::find(SLOTS, message.GetMessage(), &Slot::message);
    if (slot == std::end(SLOTS) || (slot->onlyWhenSet && message.GetWParam() == 0))
        return;
    (this->*slot->handler)(message);
}

void CBACnetConfConsoleDialog::OnShutdown(CConsoleMessage&) {
    m_run.Shutdown();
}

// The driver's own way in: it asks for no login.
void CBACnetConfConsoleDialog::OnShow(CConsoleMessage&) {
    show();
    raise();
    activateWindow();
    setFocus();
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
    LogInf("OnObjectChanged(%u, (%u, %u))", static_cast<unsigned>(message.GetWParam()),
           UnpackObjectType(message.GetLParam()), UnpackObjectInstance(message.GetLParam()));
}

void CBACnetConfConsoleDialog::OnNotAvailable(CConsoleMessage& message) {
    const auto* const slot = std::ranges::find(SLOTS, message.GetMessage(), &Slot::message);
    LogDebugInfo("Console: %s is not available", slot->name);
}
