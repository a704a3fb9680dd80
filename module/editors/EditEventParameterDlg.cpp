#include "module/editors/EditEventParameterDlg.h"

#include "api/bacnet/BacGeneral.h"
#include "module/console/NarrowText.h"
#include "module/editors/EditPropertyValue.h"

#include <QComboBox>

namespace {

constexpr BACSTAC_PROPERTY_ID PROP_EVENT_TYPE = 37;

void AddEventTypes(QComboBox& combo) {
    const ENUM_TYPE_ID type = CBacGeneral::GetEnumTypeId(PROP_EVENT_TYPE, OBJ_EVENT_ENROLLMENT);
    for (unsigned number = 0; number < CBacGeneral::GetEnumCount(type); ++number)
        combo.addItem(FromNarrow(CBacGeneral::GetEnumString(type, number)), number);
}

} // namespace

CEditEventParameterDlg::CEditEventParameterDlg(QWidget* parent)
    : CRecordForm(parent, {"Input event-parameter", {}}), m_type(new QComboBox(this)) {
    AddEventTypes(*m_type);
    AddRow("&Type", *m_type);
    AddText(
        "&Value", [this] { return Value.ToText(BACSTAC_NO_INDEX); },
        [this] { return EditPropertyValue(this, Value.GetParameters()); });
}

// The old parameters are gone with the old type; a choice of the present one is no change.
void CEditEventParameterDlg::Load() {
    m_type->setCurrentIndex(m_type->findData(Value.GetEventType()));
    connect(m_type, &QComboBox::currentIndexChanged, this, [this] {
        Value.SetEventType(m_type->currentData().toUInt());
        Redraw();
    });
    CRecordForm::Load();
}
