// The forms of what names devices and objects. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class CEditRecipientDlg : public CRecordForm<BACSTAC_RECIPIENT> {
    Q_OBJECT

public:
    explicit CEditRecipientDlg(QWidget* parent);
};

class CEditAddressBindindDlg : public CRecordForm<BACSTAC_ADDRESS_BINDING> {
    Q_OBJECT

public:
    explicit CEditAddressBindindDlg(QWidget* parent);
};

class CEditSetpointRefDlg : public CRecordForm<BACSTAC_SETPOINT_REF> {
    Q_OBJECT

public:
    explicit CEditSetpointRefDlg(QWidget* parent);
};

class CEditReadAccessSpecDlg : public CRecordForm<CPVReadAccessSpec> {
    Q_OBJECT

public:
    explicit CEditReadAccessSpecDlg(QWidget* parent);
};

class CEditReadAccessResultDlg : public CRecordForm<CPVReadAccessResult> {
    Q_OBJECT

public:
    explicit CEditReadAccessResultDlg(QWidget* parent);
};
