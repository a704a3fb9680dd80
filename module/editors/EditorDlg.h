// What all value editors have in common: a label that says what is edited, the buttons OK and Cancel, the error box,
// the focus on the first field, and a size that lasts for the run of the program. A dialog keeps a copy of what it
// edits; whoever opens it gives the copy before Run and takes it when Run returned true. Only on the console thread.
#pragma once

#include <QDialog>

#include <string>
#include <vector>

class QDialogButtonBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

class CEditorDlg : public QDialog {
    Q_OBJECT

public:
    void SetLabel(const std::string& label); // narrow; empty leaves it as it is, "Value" at first
    bool Run();                              // true: OK, and the copy is what the operator wants

    void accept() override;
    void done(int result) override;

protected:
    CEditorDlg(QWidget* parent, const char* title);

    // Between the label and the buttons.
    QVBoxLayout& GetContent() const { return *m_content; }
    QPushButton& GetOkButton() const;
    // The copy to the controls, once, before the dialog opens; the controls to the copy, on OK. False keeps the dialog
    // open. What the operator has not touched stays as it is to the byte, whatever it holds.
    virtual void Load() = 0;
    virtual bool Store() = 0;
    // Shows the error box and puts the focus on the field; false, as Store wants it.
    bool Refuse(const char* message, QWidget& field);

private:
    std::vector<QWidget*> Fields() const; // in the order of Tab
    void PutButtonsLast();
    void Enter(QWidget& field);

    QLabel* const m_label;
    QVBoxLayout* const m_content;
    QDialogButtonBox* const m_buttons;
};

// Runs an editor on a member of something larger, or on a whole value. The member changes when this returns true.
template <class Dialog, class Member>
bool RunEditor(Dialog& dialog, const std::string& label, Member& member) {
    dialog.SetLabel(label);
    if constexpr (requires { dialog.Value.Assign(member); }) {
        dialog.Value.SetPropId(member.GetObjType(), member.GetPropId());
        dialog.Value.Assign(member);
        if (!dialog.Run())
            return false;
        member.Assign(dialog.Value);
    } else {
        dialog.Value = member;
        if (!dialog.Run())
            return false;
        member = dialog.Value;
    }
    return true;
}

// The same with an editor that is made for it.
template <class Dialog, class Member>
bool EditWith(QWidget* parent, const std::string& label, Member& member) {
    Dialog dialog(parent);
    return RunEditor(dialog, label, member);
}
