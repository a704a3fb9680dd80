// The console's one top-level window and the dispatcher of its private messages. It is built hidden and lives for one
// run of the console, whether or not it is on the screen; closing it only hides it. Only on the console thread.
#pragma once

#include <QDialog>

#include <memory>

class CBDCThread;
class CConsoleMessage;
class CDriver;
struct IHistoryStarter;

class CBACnetConfConsoleDialog : public QDialog {
    Q_OBJECT

public:
    // Builds the console's parts, which register their triggers. driver outlives the dialog.
    CBACnetConfConsoleDialog(CBDCThread& run, CDriver& driver);
    ~CBACnetConfConsoleDialog() override;

    bool event(QEvent* event) override;

private:
    using Handler = void (CBACnetConfConsoleDialog::*)(CConsoleMessage&);
    struct Slot {
        unsigned message;
        bool onlyWhenSet; // a job: it runs on the rising edge only
        Handler handler;
        const char* name;
    };
    static const Slot SLOTS[];

    void Dispatch(CConsoleMessage& message);
    void OnShutdown(CConsoleMessage&);
    void OnShow(CConsoleMessage&);
    void OnHistory(CConsoleMessage&);
    void OnNetwork(CConsoleMessage&);
    void OnSetupNetworks(CConsoleMessage&);
    void OnObjectChanged(CConsoleMessage&);
    void OnNotAvailable(CConsoleMessage&);

    CBDCThread& m_run;
    std::unique_ptr<IHistoryStarter> m_history;
};
