#include "module/browser/ProgressDlg.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int COLUMNS = 40; // of the text

} // namespace

CProgressDlg::CProgressDlg(QWidget* parent)
    : QFrame(parent), m_title(new QLabel(this)), m_text(new QLabel(this)), m_bar(new QProgressBar(this)),
      m_cancel(new QPushButton(QStringLiteral("Cancel"), this)) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_title->setTextFormat(Qt::PlainText);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setMinimumWidth(COLUMNS * fontMetrics().averageCharWidth());
    m_bar->setAccessibleName(QStringLiteral("Progress"));
    m_cancel->setAutoDefault(false);
    connect(m_cancel, &QPushButton::clicked, this, &CProgressDlg::Cancel);
    auto* const layout = new QVBoxLayout(this);
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_title, m_text, m_bar})
        layout->addWidget(widget);
    layout->addWidget(m_cancel, 0, Qt::AlignHCenter);
    hide();
}

void CProgressDlg::Reset(const QString& title, unsigned range) {
    m_isCancelled = false;
    m_cancel->setEnabled(true);
    SetTitle(title);
    SetText({});
    SetRange(range);
    SetPos(0);
}

void CProgressDlg::SetTitle(const QString& title) {
    m_title->setText(title);
}

void CProgressDlg::SetText(const QString& text) {
    m_text->setText(text);
}

void CProgressDlg::SetRange(unsigned range) {
    m_bar->setRange(0, std::max(1, static_cast<int>(range))); // 0 to 0 would be a bar that never ends
}

void CProgressDlg::SetPos(unsigned position) {
    m_bar->setValue(static_cast<int>(position));
}

// Closes nothing: who reads takes the strip away.
void CProgressDlg::Cancel() {
    m_isCancelled = true;
    m_cancel->setEnabled(false);
    Q_EMIT Cancelled();
}
