// The editor of signed numbers. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include <cstdint>
#include <limits>

class CSpinEdit;

class CEditSignedDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditSignedDlg(QWidget* parent);

    std::int32_t Value = 0;
    std::int32_t Low = std::numeric_limits<std::int32_t>::min(); // both included
    std::int32_t High = std::numeric_limits<std::int32_t>::max();

protected:
    void Load() override;
    bool Store() override;

private:
    CSpinEdit* const m_edit;
};
