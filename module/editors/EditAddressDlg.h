// The editor of station addresses. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "module/editors/AddressFields.h"

#include <array>

class CLimitEdit;
class CSpinEdit;
class QCheckBox;

class CEditAddressDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditAddressDlg(QWidget* parent);

    BACSTAC_ADDRESS Value{};
    bool IsLocalOnly = false; // the network cannot be changed

protected:
    void Load() override;
    bool Store() override;

private:
    QCheckBox* const m_remote;
    CSpinEdit* const m_network;
    std::array<CLimitEdit*, MAC_FIELDS> m_mac;
};
