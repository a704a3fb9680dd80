#include "module/editors/EditAnyPrimitiveDlg.h"

#include "api/bacnet/Dir.h"
#include "module/console/NarrowText.h"
#include "module/editors/EditPropertyValue.h"
#include "module/editors/PrimitiveTypes.h"

#include <QComboBox>

CEditAnyPrimitiveDlg::CEditAnyPrimitiveDlg(QWidget* parent)
    : CRecordForm(parent, {"Input any-primitive", {}}), m_type(new QComboBox(this)) {
    AddRow("&Type", *m_type);
    AddText(
        "&Value", [this] { return Value.ToText(BACSTAC_NO_INDEX); },
        [this] { return EditPropertyValue(this, Value.GetValue()); });
}

void CEditAnyPrimitiveDlg::Load() {
    for (const BACSTAC_DATA_TYPE type : PrimitiveTypes(Value.GetObjType(), Value.GetPropId()))
        m_type->addItem(FromNarrow(CBACnetDir::GetDataTypeString(type)), type);
    m_type->setCurrentIndex(m_type->findData(Value.GetValueType()));
    connect(m_type, &QComboBox::currentIndexChanged, this, &CEditAnyPrimitiveDlg::OnTypeChosen);
    CRecordForm::Load();
}

// The old value is gone at once, with its type.
void CEditAnyPrimitiveDlg::OnTypeChosen() {
    const BACSTAC_DATA_TYPE type = m_type->currentData().toInt();
    Value.Assign(NewPrimitive(Value.GetObjType(), Value.GetPropId(), type).release());
    Redraw();
}
