// The editor of false and true. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include <cstdint>

class QComboBox;

class CEditBooleanDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditBooleanDlg(QWidget* parent);

    std::uint8_t Value = 0; // any number but 0 is true, and stays while true stays chosen

protected:
    void Load() override;
    bool Store() override;

private:
    QComboBox* const m_combo;
};
