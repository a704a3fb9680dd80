// The editor of date ranges. Their order is not looked at. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/MoreRecords.h"

class CEditDateRangeDlg : public CRecordForm<BACSTAC_DATE_RANGE> {
    Q_OBJECT

public:
    explicit CEditDateRangeDlg(QWidget* parent);
};
