// The editor of recurring days: a month, a week of it and a day of that. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/MoreRecords.h"
#include "module/editors/ListedFields.h"

#include <cstdint>

class CEditWeekAndDayDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditWeekAndDayDlg(QWidget* parent);

    BACSTAC_WEEK_N_DAY Value{};

protected:
    void Load() override { m_fields.Load(Value); }
    bool Store() override;

private:
    QGridLayout* const m_grid;
    CListedFields<BACSTAC_WEEK_N_DAY, std::uint32_t> m_fields;
};
