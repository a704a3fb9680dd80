// An editor that is a form: rows of data over a record (FormRow.h). A class of its own exists for each kind of value;
// what is special to one is built with the protected functions. Only on the console thread.
#pragma once

#include "module/editors/EditorDlg.h"
#include "module/editors/FormRow.h"

#include <functional>
#include <span>
#include <vector>

class QGridLayout;
class QPushButton;

class CFormDlg : public CEditorDlg {
    Q_OBJECT

protected:
    // record outlives the dialog: it is the dialog's copy, a member of the class.
    CFormDlg(QWidget* parent, const FormSpec& spec, void* record);

    // All texts anew, after whatever has changed the record.
    void Redraw();
    void OnRedraw(std::function<void()> redraw) { m_redraws.push_back(std::move(redraw)); }

    // Behind the rows that are there. rows live as long as the dialog.
    void AddRows(std::span<const FormRow> rows);
    // A row with one control; the caption is the control's label.
    void AddRow(const char* caption, QWidget& control);
    // A control that is its own label.
    void AddControl(QWidget& control);
    // A text with a "..." behind it, drawn by print on each Redraw. The button edits; true: something has changed.
    QPushButton& AddText(const char* caption, std::function<std::string()> print, std::function<bool()> edit);

    void Load() override { Redraw(); }
    bool Store() override { return true; }

private:
    void Add(const FormField& field);
    void Add(const FormFlag& flag);
    void Add(const FormList& list);
    void Add(const FormChoice& choice);
    const FormAlternative* Chosen(const FormChoice& choice) const;

    void* const m_record;
    QGridLayout* const m_grid;
    std::vector<std::function<void()>> m_redraws;
};

// A form whose copy is the record itself.
template <class Record>
class CRecordForm : public CFormDlg {
public:
    Record Value{};

protected:
    CRecordForm(QWidget* parent, const FormSpec& spec) : CFormDlg(parent, spec, &Value) {}
};
