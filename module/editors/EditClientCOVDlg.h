// The editor of the increment by which a client is told of changes: a number, or empty for the default of the device.
// Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/MoreRecords.h"

class CLimitEdit;

class CEditClientCOVDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditClientCOVDlg(QWidget* parent);

    BACSTAC_CLIENT_COV Value{};

protected:
    void Load() override;
    bool Store() override;

private:
    CLimitEdit* const m_edit;
};
