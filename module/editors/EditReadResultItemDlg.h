// The editor of what a device gave for one property: its value, or an error. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class CLimitEdit;
class QRadioButton;

class CEditReadResultItemDlg : public CRecordForm<CPVReadResultItem> {
    Q_OBJECT

public:
    explicit CEditReadResultItemDlg(QWidget* parent);

protected:
    void Load() override;

private:
    void OnChosen();
    void OnError();

    QRadioButton* const m_error;
    CLimitEdit* const m_class;
    CLimitEdit* const m_code;
    QRadioButton* const m_value;
};
