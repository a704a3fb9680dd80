#include "tests/gui/harness/DialogScript.h"

#include "tests/gui/harness/GuiAccess.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QShowEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace {

const char* const ICON_NAMES[] = {"none", "information", "warning", "error", "question"}; // by QMessageBox::Icon

std::string Describe(const QDialog& dialog) {
    const std::string title = dialog.windowTitle().toStdString();
    const auto* const box = qobject_cast<const QMessageBox*>(&dialog);
    if (!box)
        return "Dialog(" + title + ")";
    std::string text = "Box(" + title + ", " + box->text().toStdString() + ", " + ICON_NAMES[box->icon()];
    auto buttons = box->buttons();
    std::ranges::sort(buttons, {}, &QAbstractButton::x);
    for (const QAbstractButton* const button : buttons)
        text += ", " + button->text().remove(QLatin1Char('&')).toStdString();
    return text + ")";
}

} // namespace

class CDialogScript::CWatcher : public QObject {
public:
    struct Step {
        std::string title;
        Action action; // empty leaves the dialog open
    };

    explicit CWatcher(CEventList& events) : m_events(events) { qApp->installEventFilter(this); }
    ~CWatcher() override {
        for (const Step& step : m_steps)
            ADD_FAILURE() << "no dialog \"" << step.title << "\" came";
    }

    void Add(Step step) { m_steps.push_back(std::move(step)); }

    // The dialog is served from its own loop, where it stands as the operator sees it.
    bool eventFilter(QObject* object, QEvent* event) override {
        auto* const dialog = event->type() == QEvent::Show ? qobject_cast<QDialog*>(object) : nullptr;
        if (dialog && dialog->isModal() && !event->spontaneous())
            QMetaObject::invokeMethod(
                this, [this, dialog = QPointer(dialog)] { Serve(dialog); }, Qt::QueuedConnection);
        return QObject::eventFilter(object, event);
    }

private:
    void Serve(const QPointer<QDialog>& dialog) {
        if (!dialog || !dialog->isVisible())
            return;
        const std::string name = Describe(*dialog);
        m_events.Add(name);
        if (m_steps.empty() || m_steps.front().title != dialog->windowTitle().toStdString()) {
            Refuse(*dialog, "not foretold: " + name);
            return;
        }
        const Step step = std::move(m_steps.front());
        m_steps.pop_front();
        if (!step.action)
            return;
        try {
            step.action(CControls(*dialog));
            if (dialog && dialog->isVisible())
                Refuse(*dialog, "left open: " + name);
        } catch (const std::exception& error) {
            if (dialog)
                Refuse(*dialog, name + ": " + error.what());
        }
    }

    static void Refuse(QDialog& dialog, const std::string& why) {
        ADD_FAILURE() << why;
        dialog.done(QDialog::Rejected);
    }

    CEventList& m_events;
    std::deque<Step> m_steps;
};

CDialogScript::CDialogScript(CEventList& events) {
    OnGui([&] { m_watcher = std::make_unique<CWatcher>(events); });
}

CDialogScript::~CDialogScript() {
    OnGui([&] { m_watcher.reset(); });
}

void CDialogScript::Press(const std::string& title, const std::string& button) {
    Do(title, [button](const CControls& dialog) { dialog.Press(button); });
}

void CDialogScript::Do(const std::string& title, Action action) {
    OnGui([&] { m_watcher->Add({title, std::move(action)}); });
}

void CDialogScript::Leave(const std::string& title) {
    Do(title, nullptr);
}

QDialog* ModalDialog() {
    return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

bool IsModalOpen(const std::string& title) {
    return EventuallyOnGui([&] {
        const QDialog* const dialog = ModalDialog();
        return dialog && dialog->windowTitle().toStdString() == title;
    });
}
