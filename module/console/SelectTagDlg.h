// The console's one picker of a trigger tag for a row of a list. Only on the console thread; run it with RunModal.
#pragma once

#include <QDialog>

#include <string>

class QComboBox;

class CSelectTagDlg : public QDialog {
    Q_OBJECT

public:
    // Opens on this tag, or on no tag when the name is empty or unknown.
    CSelectTagDlg(QWidget* parent, const std::string& tag);

    // The chosen tag's name, empty for none. As it was given unless the dialog was accepted.
    const std::string& GetTag() const { return m_tag; }

    void accept() override;

private:
    QComboBox* m_combo;
    std::string m_tag;
};
