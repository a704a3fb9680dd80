// The controls of a window or of a part of it as an operator finds and uses them: by their labels, with mouse and
// keyboard. Only on the thread of the windows (OnGui). Texts are UTF-8.
//
// A control's label is its own text, that of the label before it, or its accessible name. A wanted label with "&" must
// be the control's to the letter; one without is looked for with the mnemonics left out. What is missing, what is there
// twice, and what an operator could not use because it is hidden, disabled or behind a modal dialog is an exception
// that says so.
#pragma once

#include <QComboBox>
#include <QMenu>
#include <QWidget>

#include <string>
#include <typeinfo>
#include <vector>

class CControls {
public:
    explicit CControls(QWidget& root) : m_root(root) {}
    explicit CControls(QWidget* root);

    QWidget& GetRoot() const { return m_root; }

    template <class T>
    T& Get(const std::string& label) const {
        std::vector<T*> found;
        for (QWidget* const widget : Labelled(label))
            if (auto* const control = qobject_cast<T*>(widget))
                found.push_back(control);
        return One(found, label);
    }
    // The only control of its kind.
    template <class T>
    T& Only() const {
        const auto found = m_root.findChildren<T*>();
        return One(std::vector<T*>(found.begin(), found.end()), T::staticMetaObject.className());
    }
    // What is inside a group box.
    CControls In(const std::string& group) const { return CControls(Get<QWidget>(group)); }

    // Clicks a button, a check box or a radio button.
    void Press(const std::string& label) const;
    // Types into the control in the place of what it holds.
    void Type(const std::string& label, const std::string& text) const;
    // Chooses an item of a drop-down list with the keyboard.
    void Choose(const std::string& label, const std::string& item) const;
    // The static texts, from the top left to the bottom right.
    std::vector<std::string> Texts() const;

private:
    std::vector<QWidget*> Labelled(const std::string& label) const;
    [[noreturn]] void FailToFind(const std::string& what, std::size_t found) const;

    template <class T>
    T& One(const std::vector<T*>& found, const std::string& what) const {
        if (found.size() != 1)
            FailToFind(what, found.size());
        return *found.front();
    }

    QWidget& m_root;
};

void Click(QWidget& control);
void TypeInto(QWidget& control, const std::string& text); // in the place of what it holds
void TypeText(QWidget& control, const std::string& text); // where its cursor is
// To the control that has the focus, or to the window on the screen where none has.
void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void ChooseItem(QComboBox& list, const std::string& item);
std::vector<std::string> ItemsOf(const QComboBox& list);

// The menu that is open, null when there is none; its entries, "-" for a separator; one of them, by the labels on the
// way to it; and a choice of it.
QMenu* OpenMenu();
std::vector<std::string> EntriesOf(const QMenu& menu);
QAction& Entry(const QMenu& menu, const std::vector<std::string>& path);
void ChooseEntry(const QMenu& menu, const std::vector<std::string>& path);
