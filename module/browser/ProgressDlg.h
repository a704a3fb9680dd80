// The strip that lies over the property list while it loads. Only on the console thread.
#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

class CProgressDlg : public QFrame {
    Q_OBJECT

public:
    explicit CProgressDlg(QWidget* parent);

    // Not cancelled, with the title, no text, and the bar at the beginning of 0 to range.
    void Reset(const QString& title, unsigned range);
    void SetTitle(const QString& title);
    void SetText(const QString& text);
    void SetRange(unsigned range);
    void SetPos(unsigned position);
    bool IsCancelled() const { return m_isCancelled; }

Q_SIGNALS:
    void Cancelled();

private:
    void Cancel();

    QLabel* const m_title;
    QLabel* const m_text;
    QProgressBar* const m_bar;
    QPushButton* const m_cancel;
    bool m_isCancelled = false;
};
