// The editor of a value of any primitive type: the type, and a value of it. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class QComboBox;

class CEditAnyPrimitiveDlg : public CRecordForm<CPVAnyPrimitive> {
    Q_OBJECT

public:
    explicit CEditAnyPrimitiveDlg(QWidget* parent);

protected:
    void Load() override;

private:
    void OnTypeChosen();

    QComboBox* const m_type;
};
