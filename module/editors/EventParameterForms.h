// The forms of the parameters of each event type. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class CEditEPChangeOfBitString : public CRecordForm<CPVEPChangeOfBitString> {
    Q_OBJECT

public:
    explicit CEditEPChangeOfBitString(QWidget* parent);
};

class CEditEPChangeOfState : public CRecordForm<CPVEPChangeOfState> {
    Q_OBJECT

public:
    explicit CEditEPChangeOfState(QWidget* parent);
};

class CEditEPChangeOfValue : public CRecordForm<BACSTAC_EP_CHANGE_OF_VALUE> {
    Q_OBJECT

public:
    explicit CEditEPChangeOfValue(QWidget* parent);
};

class CEditEPCommandFailure : public CRecordForm<BACSTAC_EP_COMMAND_FAILURE> {
    Q_OBJECT

public:
    explicit CEditEPCommandFailure(QWidget* parent);
};

class CEditEPFloatingLimit : public CRecordForm<BACSTAC_EP_FLOATING_LIMIT> {
    Q_OBJECT

public:
    explicit CEditEPFloatingLimit(QWidget* parent);
};

class CEditEPChangeOfLifeSafety : public CRecordForm<CPVEPChangeOfLifeSafety> {
    Q_OBJECT

public:
    explicit CEditEPChangeOfLifeSafety(QWidget* parent);

protected:
    void Load() override;
};

class CEditEPExtended : public CRecordForm<CPVEPExtended> {
    Q_OBJECT

public:
    explicit CEditEPExtended(QWidget* parent);
};

class CEditEPBufferReady : public CRecordForm<BACSTAC_EP_BUFFER_READY> {
    Q_OBJECT

public:
    explicit CEditEPBufferReady(QWidget* parent);
};

class CEditEPUnsignedRange : public CRecordForm<BACSTAC_EP_UNSIGNED_RANGE> {
    Q_OBJECT

public:
    explicit CEditEPUnsignedRange(QWidget* parent);
};
