// The editor of texts of any length, in one line. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"

#include <QString>

#include <string>

class QLineEdit;

class CEditStringDlg : public CEditorDlg {
    Q_OBJECT

public:
    explicit CEditStringDlg(QWidget* parent);

    std::string Value; // narrow

protected:
    void Load() override;
    bool Store() override;

private:
    QLineEdit* const m_edit;
    QString m_shown; // of Value, which may hold what a line cannot show
};
