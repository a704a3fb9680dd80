// The console's one top-level window and the dispatcher of its private messages. It is built hidden and lives for one
// run of the console, whether or not it is on the screen; closing it only hides it. Only on the console thread.
#pragma once

#include "module/console/Anchors.h"
#include "module/console/Busy.h"
#include "module/console/LoginGate.h"
#include "module/console/NotifyIcon.h"

#include <QDialog>

#include <memory>
#include <optional>
#include <vector>

class CBDCThread;
class CConsoleMessage;
class CDriver;
class CPageTabs;
class QMenu;
struct IHistoryStarter;

class CBACnetConfConsoleDialog : public QDialog, private IGatedWindow {
    Q_OBJECT

public:
    // Builds the console's pages, which load their settings and register their triggers. driver outlives the dialog.
    CBACnetConfConsoleDialog(CBDCThread& run, CDriver& driver);
    ~CBACnetConfConsoleDialog() override;

    CPageTabs& GetTabs() { return *m_tabs; }
    // The save steps of "Save now". The operator is told what the driver could not store; it stays as it is here, and
    // the next save tries again.
    void SaveAll();
    // What a left click on the tray icon does.
    void OpenThroughGate();
    void ShowAbout();
    void ShowHelp();

    bool event(QEvent* event) override;
    void accept() override; // "OK", Enter
    void reject() override; // "Cancel", Esc

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Handler = void (CBACnetConfConsoleDialog::*)(CConsoleMessage&);
    struct Slot {
        unsigned message;
        bool onlyWhenSet; // a job: it runs on the rising edge only
        Handler handler;
        const char* name;
    };
    static const Slot SLOTS[];

    struct Anchored {
        QWidget* widget;
        Anchor horizontal;
        Anchor vertical;
    };

    void MakeControls();
    void PlaceControls();
    void MakeKeys();
    void AddTrayIcon();
    void HideConsole(); // with the first tab selected, so that every opening starts there

    QWidget* GetWidget() override { return this; }
    bool IsOnScreen() const override { return isVisible(); }
    bool IsDisabled() const override { return CBusyScope::IsBusy(); }
    void SetGateOpen(bool isOpen) override;
    void ShowInFront() override;

    void Dispatch(CConsoleMessage& message);
    void OnShutdown(CConsoleMessage&);
    void OnShow(CConsoleMessage&);
    void OnHistory(CConsoleMessage&);
    void OnNetwork(CConsoleMessage&);
    void OnSetupNetworks(CConsoleMessage&);
    void OnObjectChanged(CConsoleMessage&);
    void OnTrayIcon(CConsoleMessage&);
    void OnNotAvailable(CConsoleMessage&);

    CBDCThread& m_run;
    CDriver& m_driver;
    CPageTabs* m_tabs = nullptr; // the toolkit's, like all controls
    QMenu* m_trayMenu = nullptr;
    std::vector<Anchored> m_anchors;
    QSize m_anchoredSize; // that the controls stand for; not valid until they have their places
    std::optional<CBusyScope> m_login;
    std::unique_ptr<IHistoryStarter> m_history;
    std::unique_ptr<ITray> m_tray;
    std::optional<CNotifyIcon> m_icon; // behind the tray
};
