#include "module/editors/EditPropertyStateDlg.h"

#include "module/editors/EditPropertyValue.h"
#include "module/editors/PropertyStates.h"

#include <QComboBox>

CEditPropertyStateDlg::CEditPropertyStateDlg(QWidget* parent)
    : CRecordForm(parent, {"Input property-state", {}}), m_form(new QComboBox(this)) {
    for (const PropertyStateForm& form : PropertyStateForms())
        m_form->addItem(QString::fromLatin1(form.name));
    AddRow("&Type", *m_form);
    AddText(
        "&Value", [this] { return Print(); }, [this] { return Edit(); });
}

void CEditPropertyStateDlg::Load() {
    m_form->setCurrentIndex(Value.Type < PropertyStateForms().size() ? static_cast<int>(Value.Type) : -1);
    connect(m_form, &QComboBox::currentIndexChanged, this, &CEditPropertyStateDlg::OnFormChosen);
    CRecordForm::Load();
}

std::string CEditPropertyStateDlg::Print() const {
    const auto state = ReadState(Value);
    return state ? state->ToText(BACSTAC_NO_INDEX) : std::string();
}

bool CEditPropertyStateDlg::Edit() {
    const auto state = ReadState(Value);
    if (!EditPropertyValue(this, state.get()))
        return false;
    WriteState(*state, Value);
    return true;
}

// The number stays, and means something else now.
void CEditPropertyStateDlg::OnFormChosen(int form) {
    Value.Type = static_cast<std::uint32_t>(form);
    if (const auto state = ReadState(Value))
        WriteState(*state, Value);
    Redraw();
}
