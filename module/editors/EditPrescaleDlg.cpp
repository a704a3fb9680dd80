#include "module/editors/EditPrescaleDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/SpinEdit.h"

namespace {

constexpr std::uint32_t LAST_STEP = 2147483647; // of the arrows
constexpr int DIGITS = 10;

// Deliberate: a bad number gets the focus without a message, an empty field not even that.
bool StoreNumber(CSpinEdit& field, std::uint32_t& number) {
    const std::string text = ToNarrow(field.GetText());
    if (text.empty())
        return false;
    const auto checked = CheckUnsigned(text, 0, UINT32_MAX);
    if (checked.message)
        field.setFocus();
    else
        number = checked.value;
    return !checked.message;
}

} // namespace

CEditPrescaleDlg::CEditPrescaleDlg(QWidget* parent)
    : CRecordForm(parent, {"Input prescale", {}}), m_multiplier(new CSpinEdit(this, 0, LAST_STEP, DIGITS)),
      m_divide(new CSpinEdit(this, 0, LAST_STEP, DIGITS)) {
    AddRow("&Multiplier", *m_multiplier);
    AddRow("Modulo &divide", *m_divide);
}

void CEditPrescaleDlg::Load() {
    m_multiplier->SetText(QString::number(Value.Multiplier));
    m_divide->SetText(QString::number(Value.ModuloDivide));
}

bool CEditPrescaleDlg::Store() {
    return StoreNumber(*m_multiplier, Value.Multiplier) && StoreNumber(*m_divide, Value.ModuloDivide);
}
