// The editor of property states: the kind of state, and the state. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

class QComboBox;

class CEditPropertyStateDlg : public CRecordForm<BACSTAC_PROPERTY_STATE> {
    Q_OBJECT

public:
    explicit CEditPropertyStateDlg(QWidget* parent);

protected:
    void Load() override;

private:
    std::string Print() const;
    bool Edit();
    void OnFormChosen(int form);

    QComboBox* const m_form;
};
