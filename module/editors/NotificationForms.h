// The forms of who is told what and when. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

class CEditDestinationDlg : public CRecordForm<BACSTAC_DESTINATION> {
    Q_OBJECT

public:
    explicit CEditDestinationDlg(QWidget* parent);
};

class CEditTimeStampDlg : public CRecordForm<BACSTAC_TIME_STAMP> {
    Q_OBJECT

public:
    explicit CEditTimeStampDlg(QWidget* parent);
};

class CEditCOVSubscriptionDlg : public CRecordForm<BACSTAC_COV_SUBSCRIPTION> {
    Q_OBJECT

public:
    explicit CEditCOVSubscriptionDlg(QWidget* parent);
};
