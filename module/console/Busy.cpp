#include "module/console/Busy.h"

#include "module/console/ConsoleThread.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDialog>

namespace {

int g_busyCount = 0; // of the console thread

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
    return dialog.exec();
}

bool PumpMessages() {
    const CBusyScope busy;
    QCoreApplication::processEvents();
    return !CBDCThread::IsEnding();
}
