// Shows the text of a value, in lines, to be read, searched and copied. No editor. Only on the console thread; run it
// with RunModal.
#pragma once

#include <QDialog>

#include <string>

class CFindBar;
class QPlainTextEdit;

class CEditProp : public QDialog {
    Q_OBJECT

public:
    // Both narrow; text is as CPropertyValue::ToText gives it.
    CEditProp(QWidget* parent, const std::string& caption, const std::string& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPlainTextEdit* const m_text;
    CFindBar* const m_find;
};
