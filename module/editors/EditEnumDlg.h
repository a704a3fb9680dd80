// The editor of enumerated values: a name, or a number that is typed, since enumerations are open. Only on the console
// thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/Enums.h"

#include <cstdint>

class CNameCombo;

class CEditEnumDlg : public CEditorDlg {
    Q_OBJECT

public:
    CEditEnumDlg(QWidget* parent, ENUM_TYPE_ID names);

    std::uint32_t Value = 0;

protected:
    void Load() override;
    bool Store() override;

private:
    CNameCombo* const m_combo;
};
