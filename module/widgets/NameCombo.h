// A drop-down list of names into which something else can be typed, such as a number without a name. Nothing is
// completed or added. An item counts only while the text is as it was when the item was chosen; a text that is typed
// stands for the item whose name it is, whatever its case, if there is exactly one.
#pragma once

#include <QComboBox>

class CLimitEdit;

class CNameCombo : public QComboBox {
    Q_OBJECT

public:
    static constexpr int NO_ITEM = -1;

    // limit: UTF-16 units that can be typed. Names of items and texts of the program may be longer.
    CNameCombo(QWidget* parent, int limit);

    int GetItem() const;
    QString GetText() const { return currentText(); }
    void SetItem(int item);
    // No item is chosen then.
    void SetText(const QString& text);

private:
    void OnChosen(int item);

    CLimitEdit* const m_edit;
    int m_chosen = NO_ITEM;
};
