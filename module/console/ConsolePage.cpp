#include "module/console/ConsolePage.h"

#include <QHideEvent>
#include <QShowEvent>

#include <utility>

CConsolePage::CConsolePage(QWidget* parent) : QWidget(parent) {}

// Spontaneous events come from the window system, when the window is minimized or restored. A page that goes with its
// place is hidden once more by itself.
void CConsolePage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous() && !std::exchange(m_isOnScreen, true))
        Shown();
}

void CConsolePage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous() && std::exchange(m_isOnScreen, false))
        Hidden();
}
