// The editor of bit strings: a check box for each bit. Bits that have names are as many as there are names, others as
// many as the operator says. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/Enums.h"

class QComboBox;
class QTreeWidget;

class CEditBitStringDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditBitStringDlg(QWidget* parent, ENUM_TYPE_ID names = ENUM_NONE);

    BACSTAC_BIT_STRING Value{};

protected:
    void Load() override;
    bool Store() override;

private:
    void ShowBits(unsigned count);

    const ENUM_TYPE_ID m_names;
    const unsigned m_nameCount; // 0: the bits have none
    QTreeWidget* const m_bits;
    QComboBox* const m_sizes;
};
