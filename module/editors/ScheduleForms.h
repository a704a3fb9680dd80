// The forms of calendars and schedules. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/PropertyValues.h"

class QComboBox;

class CEditCalendarEntryDlg : public CRecordForm<BACSTAC_CALENDAR_ENTRY> {
    Q_OBJECT

public:
    explicit CEditCalendarEntryDlg(QWidget* parent);
};

class CEditTimeValueDlg : public CRecordForm<CPVTimeValue> {
    Q_OBJECT

public:
    explicit CEditTimeValueDlg(QWidget* parent);
};

class CEditSpecialEventDlg : public CRecordForm<CPVSpecialEvent> {
    Q_OBJECT

public:
    explicit CEditSpecialEventDlg(QWidget* parent);

protected:
    void Load() override;
    bool Store() override;

private:
    QComboBox* const m_priority;
};
