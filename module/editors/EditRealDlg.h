// The editor of floating point numbers. What its text says is the value, also when nobody has touched it. Only on the
// console thread.
#pragma once

#include "module/editors/EditorDlg.h"

class CLimitEdit;

class CEditRealDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditRealDlg(QWidget* parent);

    double Value = 0;
    bool IsDouble = true;   // false: a 32-bit number, in its range and with its digits
    bool MayBeNull = false; // whether the field may stay empty
    bool IsNull = false;    // the field is empty; Value does not count then

protected:
    void Load() override;
    bool Store() override;

private:
    CLimitEdit* const m_edit;
};
