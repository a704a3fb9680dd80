#include "tests/gui/harness/Controls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <stdexcept>

namespace {

[[noreturn]] void Fail(const std::string& text) {
    throw std::runtime_error(text);
}

QString WithoutMnemonics(const QString& label) {
    QString plain;
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (label[i] == QLatin1Char('&') && ++i == label.size())
            break;
        plain += label[i];
    }
    return plain;
}

class CWantedLabel {
public:
    explicit CWantedLabel(const std::string& label)
        : m_label(QString::fromStdString(label)), m_isExact(label.find('&') != std::string::npos) {}
    bool operator==(const QString& label) const { return (m_isExact ? label : WithoutMnemonics(label)) == m_label; }

private:
    const QString m_label;
    const bool m_isExact;
};

QString OwnLabel(const QWidget& control) {
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&control))
        return button->text();
    if (const auto* const group = qobject_cast<const QGroupBox*>(&control))
        return group->title();
    return {};
}

QWidget& Present(QWidget* window) {
    if (!window)
        Fail("there is no such window");
    return *window;
}

std::string NameOf(const QWidget& control) {
    const QString own = OwnLabel(control).isEmpty() ? control.accessibleName() : OwnLabel(control);
    return std::string(control.metaObject()->className()) + " \"" + own.toStdString() + "\"";
}

void CheckUsable(const QWidget& control) {
    if (!control.isVisible())
        Fail(NameOf(control) + " is not on the screen");
    if (!control.isEnabled())
        Fail(NameOf(control) + " is disabled");
    const QWidget* const modal = QApplication::activeModalWidget();
    if (modal && control.window() != modal)
        Fail(NameOf(control) + " is behind \"" + modal->windowTitle().toStdString() + "\"");
}

// Without a window manager a window that comes back to the screen is not told that it is active.
QWidget& TargetOfKeys() {
    QWidget* window = QApplication::activeModalWidget();
    if (!window)
        window = QApplication::activeWindow();
    if (!window) {
        const auto windows = QApplication::topLevelWidgets();
        const auto it = std::ranges::find_if(windows, &QWidget::isVisible);
        if (it == windows.end())
            Fail("no window takes keys");
        window = *it;
    }
    return window->focusWidget() ? *window->focusWidget() : *window;
}

// A check box may be wider than what takes the click.
QPoint PlaceToClick(const QWidget& control) {
    constexpr int INDICATOR = 8;
    const bool hasIndicator = qobject_cast<const QCheckBox*>(&control) || qobject_cast<const QRadioButton*>(&control);
    return hasIndicator ? QPoint(INDICATOR, control.height() / 2) : control.rect().center();
}

} // namespace

CControls::CControls(QWidget* root) : m_root(Present(root)) {}

std::vector<QWidget*> CControls::Labelled(const std::string& label) const {
    const CWantedLabel wanted(label);
    std::vector<QWidget*> found;
    for (QWidget* const widget : m_root.findChildren<QWidget*>()) {
        if (wanted == OwnLabel(*widget) || wanted == widget->accessibleName())
            found.push_back(widget);
        const auto* const text = qobject_cast<const QLabel*>(widget);
        if (text && text->buddy() && wanted == text->text())
            found.push_back(text->buddy());
    }
    std::ranges::sort(found);
    const auto rest = std::ranges::unique(found);
    found.erase(rest.begin(), rest.end());
    return found;
}

void CControls::FailToFind(const std::string& what, std::size_t found) const {
    std::string text = std::to_string(found) + " controls \"" + what + "\" among";
    for (const QWidget* const widget : m_root.findChildren<QWidget*>())
        if (!OwnLabel(*widget).isEmpty() || !widget->accessibleName().isEmpty())
            text += " " + NameOf(*widget);
    Fail(text);
}

void CControls::Press(const std::string& label) const {
    Click(Get<QAbstractButton>(label));
}

void CControls::Type(const std::string& label, const std::string& text) const {
    TypeInto(Get<QWidget>(label), text);
}

void CControls::Choose(const std::string& label, const std::string& item) const {
    ChooseItem(Get<QComboBox>(label), item);
}

std::vector<std::string> CControls::Texts() const {
    struct Placed {
        QPoint place;
        std::string text;
    };
    std::vector<Placed> labels;
    for (const QLabel* const label : m_root.findChildren<QLabel*>())
        if (label->isVisibleTo(&m_root) && !label->text().isEmpty())
            labels.push_back({label->mapTo(&m_root, QPoint()), label->text().toStdString()});
    std::ranges::sort(labels, {}, [](const Placed& label) { return std::pair(label.place.y(), label.place.x()); });
    std::vector<std::string> texts;
    for (Placed& label : labels)
        texts.push_back(std::move(label.text));
    return texts;
}

void Click(QWidget& control) {
    CheckUsable(control);
    QTest::mouseClick(&control, Qt::LeftButton, Qt::NoModifier, PlaceToClick(control));
}

void TypeInto(QWidget& control, const std::string& text) {
    CheckUsable(control);
    control.setFocus(Qt::MouseFocusReason);
    QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
    if (text.empty())
        QTest::keyClick(&control, Qt::Key_Delete);
    else
        TypeText(control, text);
}

void TypeText(QWidget& control, const std::string& text) {
    for (const QChar character : QString::fromStdString(text)) // the toolkit's own keyClicks knows but ASCII
        QTest::sendKeyEvent(QTest::Click, &control, static_cast<Qt::Key>(character.toUpper().unicode()),
                            QString(character), Qt::NoModifier);
}

void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&TargetOfKeys(), key, modifiers);
}

void ChooseItem(QComboBox& list, const std::string& item) {
    CheckUsable(list);
    const int wanted = list.findText(QString::fromStdString(item), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (wanted < 0)
        Fail(NameOf(list) + " has no item \"" + item + "\"");
    list.setFocus(Qt::MouseFocusReason);
    while (list.currentIndex() != wanted) {
        const int before = list.currentIndex();
        QTest::keyClick(&list, before < wanted ? Qt::Key_Down : Qt::Key_Up);
        if (list.currentIndex() == before)
            Fail(NameOf(list) + " cannot be moved to \"" + item + "\"");
    }
}

std::vector<std::string> ItemsOf(const QComboBox& list) {
    std::vector<std::string> items;
    for (int row = 0; row < list.count(); ++row)
        items.push_back(list.itemText(row).toStdString());
    return items;
}

QMenu* OpenMenu() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

std::vector<std::string> EntriesOf(const QMenu& menu) {
    std::vector<std::string> entries;
    for (const QAction* const action : menu.actions())
        entries.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    return entries;
}

QAction& Entry(const QMenu& menu, const std::vector<std::string>& path) {
    const QMenu* level = &menu;
    QAction* entry = nullptr;
    for (const std::string& label : path) {
        const CWantedLabel wanted(label);
        const auto actions = level ? level->actions() : QList<QAction*>();
        const auto it = std::ranges::find_if(actions, [&](const QAction* action) { return wanted == action->text(); });
        if (it == actions.end())
            Fail("no menu entry \"" + label + "\"");
        entry = *it;
        level = entry->menu();
    }
    return *entry;
}

void ChooseEntry(const QMenu& menu, const std::vector<std::string>& path) {
    QAction& entry = Entry(menu, path);
    if (!entry.isVisible() || !entry.isEnabled())
        Fail("the menu entry \"" + entry.text().toStdString() + "\" cannot be chosen");
    entry.trigger();
}
