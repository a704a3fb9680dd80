// The editor of references to objects and to properties, of this device or of another. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "module/editors/ReferenceFields.h"

class CLimitEdit;
class CNameCombo;

class CEditDevObjPropRefDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditDevObjPropRefDlg(QWidget* parent);

    BACSTAC_DEV_OBJ_PROP_REF Value;
    ReferenceGroups Groups{true, true, true};

protected:
    void Load() override;
    bool Store() override;

private:
    ReferenceTexts Texts() const;
    QWidget& FieldOf(ReferenceField field) const;
    void OnTypeChanged();
    void ListProperties(BACSTAC_OBJECT_TYPE type);

    CNameCombo* const m_type;
    CLimitEdit* const m_instance;
    CNameCombo* const m_property;
    CLimitEdit* const m_index;
    CLimitEdit* const m_device;
};
