#include "module/console/Busy.h"

#include "module/console/ConsoleThread.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDialog>
#include <QThread>

#include <algorithm>
#include <vector>

namespace {

// Of the console thread.
int g_busyCount = 0;
std::vector<const QWidget*> g_modals; // the innermost last

} // namespace

CBusyScope::CBusyScope() {
    ++g_busyCount;
    // Messages that stand in the queue behind the one being handled are no news to the dispatcher: without this a
    // nested loop would not serve them before another one is posted.
    if (auto* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
}

CBusyScope::~CBusyScope() {
    --g_busyCount;
}

bool CBusyScope::IsBusy() {
    return g_busyCount != 0;
}

int RunModal(QDialog& dialog) {
    if (CBDCThread::IsEnding())
        return QDialog::Rejected;
    const CBusyScope busy;
    g_modals.push_back(&dialog);
    const int result = dialog.exec();
    g_modals.pop_back();
    return result;
}

bool IsRunModal(const QWidget* widget) {
    return std::ranges::find(g_modals, widget) != g_modals.end();
}

bool PumpMessages() {
    constexpr int LIMIT = 200; // ms; a window that always has something to do must not hold the job up
    if (!qApp || QThread::currentThread() != qApp->thread())
        return true;
    const CBusyScope busy;
    QCoreApplication::processEvents(QEventLoop::AllEvents, LIMIT);
    return !CBDCThread::IsEnding();
}
