#include "module/widgets/NameCombo.h"

#include "module/widgets/LimitEdit.h"

CNameCombo::CNameCombo(QWidget* parent, int limit) : QComboBox(parent), m_edit(new CLimitEdit(this, limit)) {
    setLineEdit(m_edit);
    setCompleter(nullptr);
    setInsertPolicy(NoInsert);
    // When an edit ends, the base class would choose the first of several items of one name.
    disconnect(m_edit, &QLineEdit::editingFinished, this, nullptr);
    disconnect(m_edit, &QLineEdit::returnPressed, this, nullptr);
    connect(this, &QComboBox::currentIndexChanged, this, &CNameCombo::OnChosen);
    connect(this, &QComboBox::activated, this, &CNameCombo::OnChosen); // also the item that was chosen before
    connect(m_edit, &QLineEdit::textEdited, this, [this] { m_chosen = NO_ITEM; });
}

// The base class sets the text of the item, which the limit has cut.
void CNameCombo::OnChosen(int item) {
    m_chosen = item;
    m_edit->SetWholeText(itemText(item));
}

int CNameCombo::GetItem() const {
    if (m_chosen != NO_ITEM)
        return m_chosen;
    const QModelIndex first = model()->index(0, modelColumn(), rootModelIndex());
    const auto named = model()->match(first, Qt::DisplayRole, GetText(), 2, Qt::MatchFixedString);
    return named.size() == 1 ? named.constFirst().row() : NO_ITEM;
}

void CNameCombo::SetItem(int item) {
    setCurrentIndex(item);
    OnChosen(item);
}

void CNameCombo::SetText(const QString& text) {
    setCurrentIndex(NO_ITEM);
    m_edit->SetWholeText(text);
}
