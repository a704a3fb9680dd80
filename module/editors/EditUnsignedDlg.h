// The editor of unsigned numbers. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include <cstdint>

class CSpinEdit;

class CEditUnsignedDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditUnsignedDlg(QWidget* parent);

    // Behind the field, such as the unit.
    void SetHint(const char* hint);

    std::uint32_t Value = 0;
    std::uint32_t Low = 0; // both included
    std::uint32_t High = 0xFFFFFFFFU;

protected:
    void Load() override;
    bool Store() override;

private:
    CSpinEdit* const m_edit;
    QLabel* const m_hint;
};
