// The forms of scaling and of load shedding. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

class CEditScaleDlg : public CRecordForm<BACSTAC_SCALE> {
    Q_OBJECT

public:
    explicit CEditScaleDlg(QWidget* parent);
};

class CEditShedLevelDlg : public CRecordForm<BACSTAC_SHED_LEVEL> {
    Q_OBJECT

public:
    explicit CEditShedLevelDlg(QWidget* parent);
};
