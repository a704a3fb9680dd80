// The editor of one command of an action list. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class CLimitEdit;
class QComboBox;

class CEditActionCommandDlg : public CRecordForm<CPVActionCommand> {
    Q_OBJECT

public:
    explicit CEditActionCommandDlg(QWidget* parent);

protected:
    void Load() override;

private:
    void OnPostDelay(const QString& text);

    QComboBox* const m_priority;
    CLimitEdit* const m_postDelay;
};
