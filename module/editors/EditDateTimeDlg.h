// The editor of dates, times, and both. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/Types.h"
#include "module/editors/ListedFields.h"

#include <cstdint>

class CLimitEdit;
class QGroupBox;

class CEditDateTimeDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditDateTimeDlg(QWidget* parent);

    BACSTAC_DATE_TIME Value{};
    // Which halves there are; the other one is neither shown nor changed.
    bool HasDate = true;
    bool HasTime = true;

protected:
    void Load() override;
    bool Store() override;

private:
    struct Group {
        QGroupBox* box;
        QGridLayout* grid; // the box's
    };
    Group NewGroup(const char* title);

    const Group m_dateGroup;
    CListedFields<BACSTAC_DATE, std::uint32_t> m_date;
    CLimitEdit* const m_year;
    const Group m_timeGroup;
    CListedFields<BACSTAC_TIME, std::uint8_t> m_time;
};
