// The editor of lists and arrays: their elements in rows, each with the editor of its own type. Only on the console
// thread.
#pragma once

#include "module/editors/EditorDlg.h"
#include "module/editors/ListEdit.h"

#include <QAbstractListModel>

#include <memory>
#include <optional>

class QPushButton;
class QTreeView;

// The rows; texts are made when they are seen.
class CListModel : public QAbstractListModel {
public:
    CListModel(CListEdit& list, QObject* parent) : QAbstractListModel(parent), m_list(list) {}

    void Append(std::unique_ptr<CPropertyValue> element);
    void Delete(std::size_t row);
    void Swap(std::size_t row, std::size_t other);
    void Refresh(std::size_t row);

    int rowCount(const QModelIndex& parent) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    CListEdit& m_list;
};

class CEditListDlg : public CEditorDlg {
    Q_OBJECT

public:
    // Works on a copy of list, which gets it back on OK.
    CEditListDlg(QWidget* parent, CPropertyValueList& list);

protected:
    void Load() override;
    bool Store() override;

private:
    QPushButton* NewButton(const char* text, void (CEditListDlg::*action)());
    std::optional<std::size_t> Selected() const;
    void Select(std::size_t row);
    void OnSelected();
    void AddRow();
    void EditRow();
    void DeleteRow();
    void MoveUp();
    void MoveDown();
    void Swap(std::size_t row, std::size_t other);

    CPropertyValueList& m_list;
    CListEdit m_rows;
    CListModel* const m_model;
    QTreeView* const m_view;
    QPushButton* m_add = nullptr;
    QPushButton* m_edit = nullptr;
    QPushButton* m_delete = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_down = nullptr;
};

// True when the operator has confirmed: the list is the edited one then.
bool EditList(QWidget* parent, CPropertyValueList& list);
