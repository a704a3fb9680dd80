// The editor of prescales. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

class CSpinEdit;

class CEditPrescaleDlg : public CRecordForm<BACSTAC_PRESCALE> {
    Q_OBJECT

public:
    explicit CEditPrescaleDlg(QWidget* parent);

protected:
    void Load() override;
    bool Store() override;

private:
    CSpinEdit* const m_multiplier;
    CSpinEdit* const m_divide;
};
