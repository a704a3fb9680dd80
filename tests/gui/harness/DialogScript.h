// Answers modal dialogs and message boxes in the place of the operator, in the order in which a test foretold them.
// Each that opens is noted in the list of events, so that its place among all else is seen:
//
//     Box(TITLE, TEXT, ICON, BUTTON...)   icon: "error", "warning", "information", "question" or "none"
//     Dialog(TITLE)
//
// Buttons are in their order on the screen, without mnemonics.
//
// A dialog that nobody foretold, one of another title, one that its step leaves open, and a step that no dialog came
// for are failures of the test; such a dialog is closed, so that the test goes on. Made and destroyed on the test's
// thread.
#pragma once

#include "tests/gui/harness/Controls.h"
#include "tests/support/EventList.h"

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>
#include <string>

class QDialog;

class CDialogScript {
public:
    // What is done with a dialog, on the thread of the windows. A dialog that this opens in turn is of the next step.
    using Action = std::function<void(const CControls& dialog)>;

    explicit CDialogScript(CEventList& events);
    ~CDialogScript();
    CDialogScript(const CDialogScript&) = delete;
    CDialogScript& operator=(const CDialogScript&) = delete;

    void Press(const std::string& title, const std::string& button);
    void Do(const std::string& title, Action action);
    // The dialog stays open.
    void Leave(const std::string& title);

private:
    class CWatcher;
    std::unique_ptr<CWatcher> m_watcher; // the thread of the windows'
};

// The innermost modal dialog, null when there is none. On the thread of the windows.
QDialog* ModalDialog();
// Waits until one of this title is open.
bool IsModalOpen(const std::string& title);
