#include "module/console/GuiOperator.h"

#include "api/bacnet/Log.h"
#include "module/console/Busy.h"
#include "module/console/ConsoleState.h"
#include "module/console/GuiThread.h"
#include "module/console/ManualResetEvent.h"
#include "module/console/NarrowText.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QThread>

#include <utility>

namespace {

bool IsGuiThread() {
    return qApp && QThread::currentThread() == qApp->thread();
}

// Runs f on the console thread and waits for it. False: there is no such thread.
template <class F>
bool RunOnGuiThread(F f) {
    if (IsGuiThread()) {
        f();
        return true;
    }
    CGuiThread* const gui = CGuiThread::Get();
    if (!gui)
        return false;
    CManualResetEvent done;
    gui->Post([&] {
        f();
        done.Set();
    });
    done.Wait(WAIT_WITHOUT_LIMIT);
    return true;
}

// A window that is on the screen; a box over a hidden one might not be seen.
QWidget* ParentOfBox() {
    if (QWidget* const modal = QApplication::activeModalWidget())
        return modal;
    QWidget* const active = QApplication::activeWindow();
    return active && active->isVisible() ? active : nullptr;
}

QString ToBoxText(const std::string& text) {
    return FromNarrow(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

BoxAnswer ToAnswer(int button) {
    switch (button) {
    case QMessageBox::Ok:
        return BoxAnswer::Ok;
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    default:
        return BoxAnswer::Cancel;
    }
}

BoxAnswer RunBox(const OperatorBox& box) {
    static constexpr QMessageBox::Icon ICONS[] = {QMessageBox::Critical, QMessageBox::Information,
                                                  QMessageBox::Question};
    QMessageBox dialog(ParentOfBox());
    dialog.setWindowTitle(FromNarrow(box.title));
    dialog.setTextFormat(Qt::PlainText);
    dialog.setText(ToBoxText(box.text));
    dialog.setIcon(ICONS[static_cast<int>(box.icon)]);
    dialog.setStandardButtons(box.buttons == BoxButtons::Ok ? QMessageBox::StandardButtons(QMessageBox::Ok)
                                                            : QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    return ToAnswer(RunModal(dialog));
}

std::optional<std::string> RunPicker(QFileDialog& dialog) {
    if (RunModal(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QDir::toNativeSeparators(dialog.selectedFiles().constFirst()).toStdString();
}

void LogBox(const OperatorBox& box) {
    std::string line = box.text;
    for (std::size_t at = 0; (at = line.find("\r\n", at)) != std::string::npos;)
        line.replace(at, 2, " - ");
    if (box.icon == BoxIcon::Error)
        LogErr("%s", line.c_str());
    else
        LogInf("%s", line.c_str());
}

} // namespace

BoxAnswer CGuiOperator::ShowBox(const OperatorBox& box) {
    const BoxAnswer unseen = box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Cancel;
    BoxAnswer answer = unseen;
    const bool isWorker = !IsGuiThread();
    const auto show = [&] {
        if (isWorker && QGuiApplication::platformName() == QStringLiteral("offscreen"))
            LogBox(box);
        else
            answer = RunBox(box);
    };
    if (!RunOnGuiThread(show))
        LogBox(box);
    return answer;
}

std::optional<std::string> CGuiOperator::PickFile(const FilePick& pick) {
    std::optional<std::string> path;
    RunOnGuiThread([&] {
        QFileDialog dialog(ParentOfBox());
        const QString extension = QString::fromStdString(pick.extension);
        dialog.setAcceptMode(pick.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        dialog.setFileMode(pick.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
        dialog.setNameFilter(QStringLiteral("%1 files (*.%1)").arg(extension));
        dialog.setDefaultSuffix(extension);
        const QFileInfo proposal(QString::fromStdString(pick.path));
        dialog.setDirectory(proposal.absolutePath());
        dialog.selectFile(proposal.fileName());
        path = RunPicker(dialog);
    });
    return path;
}

std::optional<std::string> CGuiOperator::PickFolder(const std::string& title, const std::string& folder) {
    std::optional<std::string> path;
    RunOnGuiThread([&] {
        QFileDialog dialog(ParentOfBox(), FromNarrow(title), QString::fromStdString(folder));
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly);
        path = RunPicker(dialog);
    });
    return path;
}

IOperator* CGuiOperator::Get() {
    static CGuiOperator* const op = new CGuiOperator; // outlives workers that were let go of
    return op;
}
