#include "tests/gui/look/Usability.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include <algorithm>
#include <set>

namespace {

QString NameOf(QWidget& widget) {
    const QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&widget);
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

std::string Describe(QWidget& widget) {
    return std::string(widget.metaObject()->className()) + " \"" + NameOf(widget).toStdString() + '"';
}

std::vector<QWidget*> Visible(const QWidget& window) {
    std::vector<QWidget*> visible;
    for (QWidget* const widget : window.findChildren<QWidget*>())
        if (widget->isVisible() && widget->window() == &window)
            visible.push_back(widget);
    return visible;
}

std::vector<QWidget*> Focusable(const QWidget& window) {
    std::vector<QWidget*> focusable = Visible(window);
    std::erase_if(focusable, [](const QWidget* widget) {
        return !widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy();
    });
    return focusable;
}

bool AreOfOneGroup(const QWidget* one, const QWidget* other) {
    const auto* const a = qobject_cast<const QRadioButton*>(one);
    const auto* const b = qobject_cast<const QRadioButton*>(other);
    return a && b && a->group() == b->group() && a->parentWidget() == b->parentWidget();
}

// The least that shows the whole of a control; nothing for one that has no text of its own to show, or that is part of
// another one.
QSize Needed(const QWidget& widget) {
    if (widget.focusProxy() || qobject_cast<const QLineEdit*>(widget.parentWidget()))
        return {};
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
        return label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
    if (qobject_cast<const QAbstractButton*>(&widget))
        return widget.sizeHint();
    if (qobject_cast<const QTabBar*>(&widget))
        return widget.sizeHint();
    if (qobject_cast<const QGroupBox*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
        qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget))
        return widget.minimumSizeHint();
    return {};
}

std::string Text(const QSize& size) {
    return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

} // namespace

std::vector<std::string> ControlsWithoutName(const QWidget& window) {
    std::vector<std::string> faults;
    for (QWidget* const widget : Focusable(window))
        if (NameOf(*widget).isEmpty())
            faults.push_back(Describe(*widget));
    return faults;
}

std::vector<std::string> ControlsOutOfReach(QWidget& window) {
    const std::vector<QWidget*> controls = Focusable(window);
    if (controls.empty())
        return {};
    controls.front()->setFocus();
    std::set<const QWidget*> reached{window.focusWidget()};
    for (std::size_t i = 0; i < controls.size() && window.focusWidget(); ++i) {
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        reached.insert(window.focusWidget());
    }
    std::vector<std::string> faults;
    for (QWidget* const control : controls)
        if (std::ranges::none_of(
                reached, [control](const QWidget* other) { return other == control || AreOfOneGroup(other, control); }))
            faults.push_back(Describe(*control));
    return faults;
}

std::vector<std::string> CutControls(const QWidget& window) {
    std::vector<std::string> faults;
    const std::vector<QWidget*> controls = Visible(window);
    for (QWidget* const control : controls) {
        const QSize needed = Needed(*control);
        if (!needed.isValid())
            continue;
        if (needed.width() > control->width() || needed.height() > control->height())
            faults.push_back(Describe(*control) + " needs " + Text(needed) + ", has " + Text(control->size()));
        if (!control->parentWidget()->rect().contains(control->geometry()))
            faults.push_back(Describe(*control) + " leaves its place");
        for (QWidget* const other : controls)
            if (control < other && control->parentWidget() == other->parentWidget() && Needed(*other).isValid() &&
                control->geometry().intersects(other->geometry()))
                faults.push_back(Describe(*control) + " meets " + Describe(*other));
    }
    return faults;
}
