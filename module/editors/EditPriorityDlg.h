// Asks for the priority of a write. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

class QComboBox;

class CEditPriorityDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditPriorityDlg(QWidget* parent);

    int Value = 0; // the priority less one, 0 to 15

protected:
    void Load() override;
    bool Store() override;

private:
    QComboBox* const m_combo;
};
