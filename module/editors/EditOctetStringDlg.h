// The editor of octet strings, as hexadecimal digits. It cannot be left by OK while these make no octets. Only on the
// console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include "api/bacnet/PropertyValues.h"

#include <vector>

class QLineEdit;

class CEditOctetStringDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditOctetStringDlg(QWidget* parent);

    CPVOctetString Value;

protected:
    void Load() override;
    bool Store() override;

private:
    void OnText();

    QLineEdit* const m_edit;
    std::vector<unsigned char> m_octets;
};
