// The progress of one operation on the console thread. It stands as long as the object lives, and its parent's window
// is disabled meanwhile. The close box and Escape only ask the operation to end; nothing but the owner closes it.
#pragma once

#include "module/console/Busy.h"
#include "module/console/Progress.h"

#include <QDialog>
#include <QPointer>

class QLabel;
class QProgressBar;

class CProgressBarDlg : public QDialog, public IProgress {
    Q_OBJECT

public:
    explicit CProgressBarDlg(QWidget* parent);
    ~CProgressBarDlg() override;

    void SetTitle(const std::string& title) override;
    void SetProgress(const std::string& text, unsigned percent) override;
    bool IsCancelled() const override;
    void ClearCancelled() override { m_isCancelled = false; }

    void accept() override {}
    void reject() override { m_isCancelled = true; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    const CBusyScope m_busy;
    const QPointer<QWidget> m_disabled; // by this, so it was enabled before; null when it was not
    const QPointer<QWidget> m_focus;    // had the focus of that window
    QLabel* const m_text;
    QProgressBar* const m_bar;
    bool m_isCancelled = false;
};
