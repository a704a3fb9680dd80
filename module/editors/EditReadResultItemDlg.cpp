#include "module/editors/EditReadResultItemDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/EditPropertyValue.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/LimitEdit.h"

#include <QPushButton>
#include <QRadioButton>

namespace {

constexpr int ERROR_DIGITS = 5;

using Item = CPVReadResultItem;

// The property with its index, as a reference of its own.
std::string PrintProperty(const Item& item) {
    return PROPERTY_REF_EDITOR.print({item.Value.Property, item.Value.ArrayIndex});
}

bool EditProperty(QWidget* parent, const std::string& label, Item& item) {
    BACSTAC_PROPERTY_REF property{item.Value.Property, item.Value.ArrayIndex};
    if (!PROPERTY_REF_EDITOR.edit(parent, label, property))
        return false;
    item.Value.Property = property.Property;
    item.Value.ArrayIndex = property.ArrayIndex;
    return true;
}

constexpr MemberEditor<Item> PROPERTY_EDITOR{PrintProperty, EditProperty};

constexpr FormRow PROPERTY_ROWS[] = {
    Field<Item, std::identity{}, PROPERTY_EDITOR>("&Property", "property"),
};

std::uint32_t NumberIn(const CLimitEdit& field) {
    const auto checked = CheckUnsigned(ToNarrow(field.text()), 0, UINT32_MAX);
    return checked.message ? 0 : checked.value;
}

} // namespace

CEditReadResultItemDlg::CEditReadResultItemDlg(QWidget* parent)
    : CRecordForm(parent, {"Input read-result-item", PROPERTY_ROWS}),
      m_error(new QRadioButton(QStringLiteral("&Error"), this)), m_class(new CLimitEdit(this, ERROR_DIGITS)),
      m_code(new CLimitEdit(this, ERROR_DIGITS)), m_value(new QRadioButton(QStringLiteral("&Value"), this)) {
    AddControl(*m_error);
    AddRow("Error &class", *m_class);
    AddRow("Error c&ode", *m_code);
    AddControl(*m_value);
    QPushButton& edit = AddText(
        "Value &text", [this] { return Value.GetValue().ToText(BACSTAC_NO_INDEX); },
        [this] { return EditPropertyValue(this, Value.GetValue().GetValue()); });
    OnRedraw([this, &edit] {
        m_class->setEnabled(m_error->isChecked());
        m_code->setEnabled(m_error->isChecked());
        edit.setEnabled(m_value->isChecked());
    });
}

void CEditReadResultItemDlg::Load() {
    const BACSTAC_READ_ACCESS_ITEM& item = Value.Value;
    m_error->setChecked(item.Choice == BACSTAC_ITEM_ERROR);
    m_value->setChecked(item.Choice == BACSTAC_ITEM_VALUE);
    if (m_error->isChecked()) {
        m_class->SetWholeText(QString::number(item.Error.Class));
        m_code->SetWholeText(QString::number(item.Error.Code));
    }
    connect(m_error, &QRadioButton::toggled, this, &CEditReadResultItemDlg::OnChosen);
    connect(m_value, &QRadioButton::toggled, this, &CEditReadResultItemDlg::OnChosen);
    connect(m_class, &QLineEdit::textChanged, this, &CEditReadResultItemDlg::OnError);
    connect(m_code, &QLineEdit::textChanged, this, &CEditReadResultItemDlg::OnError);
    CRecordForm::Load();
}

// The value is kept beside the record, which the error has for itself.
void CEditReadResultItemDlg::OnChosen() {
    Value.Value.Choice = m_error->isChecked() ? BACSTAC_ITEM_ERROR : BACSTAC_ITEM_VALUE;
    Value.Value.Value = {};
    if (m_error->isChecked())
        OnError();
    Redraw();
}

void CEditReadResultItemDlg::OnError() {
    Value.Value.Error = {NumberIn(*m_class), NumberIn(*m_code)};
}
