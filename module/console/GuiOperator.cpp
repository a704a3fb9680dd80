#include "module/console/GuiOperator.h"

#include "module/console/Busy.h"
#include "module/console/ConsoleThread.h"
#include "module/console/GuiThread.h"
#include "module/console/ManualResetEvent.h"
#include "module/console/NarrowText.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QUrl>

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

// The toolkit's own way knows no folder to start in, and a Java archive is a file to unpack for most desktops.
bool StartProgramFor(const QString& file, const QString& folder) {
    const bool isJava = file.endsWith(QStringLiteral(".jar"), Qt::CaseInsensitive);
    const QString program =
        QStandardPaths::findExecutable(isJava ? QStringLiteral("java") : QStringLiteral("xdg-open"));
    const QStringList arguments = isJava ? QStringList{QStringLiteral("-jar"), file} : QStringList{file};
    return !program.isEmpty() && QProcess::startDetached(program, arguments, folder);
}

} // namespace

BoxAnswer CGuiOperator::ShowBox(const OperatorBox& box) {
    const BoxAnswer unseen = box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Cancel;
    BoxAnswer answer = unseen;
    const bool isWorker = !IsGuiThread();
    const auto show = [&] {
        if (isWorker && (!HasScreen() || !CBDCThread::HasConsole()))
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

void CGuiOperator::OpenFile(const std::string& path, const std::string& folder) {
    const QString file = QFileInfo(QString::fromStdString(path)).absoluteFilePath();
    const QString place = QString::fromStdString(folder);
    RunOnGuiThread([&] {
        if (!StartProgramFor(file, place))
            QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    });
}

bool CGuiOperator::HasScreen() const {
    return QGuiApplication::platformName() != QStringLiteral("offscreen");
}

IOperator* CGuiOperator::Get() {
    static CGuiOperator* const op = new CGuiOperator; // outlives workers that were let go of
    return op;
}
