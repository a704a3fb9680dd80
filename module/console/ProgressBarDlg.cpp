#include "module/console/ProgressBarDlg.h"

#include "module/console/ConsoleThread.h"
#include "module/console/NarrowText.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Of the text: longer ones are wrapped.
constexpr int COLUMNS = 50;
constexpr int LINES = 2;

QWidget* WindowToDisable(const QWidget* parent) {
    QWidget* const window = parent ? parent->window() : nullptr;
    return window && window->isEnabled() ? window : nullptr;
}

// Of the window, and not of those that belong to it: what stands over it stays usable.
void EnableWindow(QWidget& window, bool isEnabled) {
    std::vector<QWidget*> usable;
    for (QWidget* const child : window.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (child->isWindow() && child->isEnabled())
            usable.push_back(child);
    window.setEnabled(isEnabled);
    for (QWidget* const child : usable)
        child->setEnabled(true);
}

} // namespace

CProgressBarDlg::CProgressBarDlg(QWidget* parent)
    : QDialog(parent ? parent->window() : nullptr), m_disabled(WindowToDisable(parent)),
      m_focus(m_disabled ? m_disabled->focusWidget() : nullptr), m_text(new QLabel(this)),
      m_bar(new QProgressBar(this)) {
    setWindowTitle(QStringLiteral("Please wait...."));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    m_text->setMinimumSize(COLUMNS * fontMetrics().averageCharWidth(), LINES * fontMetrics().lineSpacing());
    m_bar->setRange(0, 100);
    m_bar->setValue(0);
    m_bar->setAccessibleName(QStringLiteral("Progress"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(m_bar);
    if (m_disabled)
        EnableWindow(*m_disabled, false);
    setEnabled(true);
    show();
}

// The focus comes back to where the operator left it, unless something else has taken it meanwhile.
CProgressBarDlg::~CProgressBarDlg() {
    if (!m_disabled)
        return;
    EnableWindow(*m_disabled, true);
    if (m_focus && m_focus->isEnabled() && !m_disabled->focusWidget())
        m_focus->setFocus(Qt::OtherFocusReason);
}

void CProgressBarDlg::SetTitle(const std::string& title) {
    setWindowTitle(FromNarrow(title));
}

void CProgressBarDlg::SetProgress(const std::string& text, unsigned percent) {
    m_text->setText(FromNarrow(text));
    m_bar->setValue(static_cast<int>(std::min(percent, 100U)));
    PumpMessages();
}

bool CProgressBarDlg::IsCancelled() const {
    return m_isCancelled || CBDCThread::IsEnding();
}

void CProgressBarDlg::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_isCancelled = true;
}
