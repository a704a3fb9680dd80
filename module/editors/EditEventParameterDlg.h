// The editor of event parameters: the event type, and the parameters that go with it. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class QComboBox;

class CEditEventParameterDlg : public CRecordForm<CPVEventParameter> {
    Q_OBJECT

public:
    explicit CEditEventParameterDlg(QWidget* parent);

protected:
    void Load() override;

private:
    QComboBox* const m_type;
};
