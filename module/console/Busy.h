// While the console is busy a nested event loop or a message pump of it is on the stack, so the console cannot be
// destroyed and a second one must not be opened by the same click. Only on the console thread.
#pragma once

class QDialog;
class QWidget;

// Held by everything that runs a nested loop or pumps messages.
class CBusyScope {
public:
    CBusyScope();
    ~CBusyScope();
    CBusyScope(const CBusyScope&) = delete;
    CBusyScope& operator=(const CBusyScope&) = delete;

    static bool IsBusy();
};

// Runs a modal dialog of the console; QDialog's result code. The shutdown of the console rejects it, and nothing is
// opened once that has begun.
int RunModal(QDialog& dialog);
// Whether the widget is a dialog that RunModal runs.
bool IsRunModal(const QWidget* widget);

// Serves the queue until it is empty, between two blocking calls of a long job. False once the console shuts down: the
// job ends then. On any other thread, where a job runs unattended, there is nothing to serve: true.
bool PumpMessages();
