#include "module/editors/EditEnumDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/EnumNames.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/NameCombo.h"

#include <QVBoxLayout>

namespace {

constexpr int MOST_CHARACTERS = 5;

} // namespace

CEditEnumDlg::CEditEnumDlg(QWidget* parent, ENUM_TYPE_ID names)
    : CEditorDlg(parent, "Input enumerated"), m_combo(new CNameCombo(this, MOST_CHARACTERS)) {
    for (const std::string& name : EnumNames(names))
        m_combo->addItem(FromNarrow(name));
    GetContent().addWidget(m_combo);
    GetContent().addStretch(1);
}

void CEditEnumDlg::Load() {
    if (Value < static_cast<std::uint32_t>(m_combo->count()))
        m_combo->SetItem(static_cast<int>(Value));
    else
        m_combo->SetText(FromNarrow(NumberOfEnum(Value)));
}

bool CEditEnumDlg::Store() {
    const int item = m_combo->GetItem();
    const std::string text = ToNarrow(m_combo->GetText());
    if (item != CNameCombo::NO_ITEM) {
        Value = static_cast<std::uint32_t>(item);
    } else if (text != NumberOfEnum(Value)) { // the value's own number may be larger than what can be typed
        const auto number = CheckEnumerated(text);
        if (number.message)
            return Refuse(number.message, *m_combo);
        Value = number.value;
    }
    return true;
}
