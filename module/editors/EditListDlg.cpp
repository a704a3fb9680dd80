#include "module/editors/EditListDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/EditPropertyValue.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int COLUMN_WIDTH = 1024;
constexpr QSize VIEW_SIZE{360, 260};

} // namespace

// ---- the rows

void CListModel::Append(std::unique_ptr<CPropertyValue> element) {
    const int row = rowCount({});
    beginInsertRows({}, row, row);
    m_list.Append(std::move(element));
    endInsertRows();
}

// The rows behind it have another number now, which their texts may tell.
void CListModel::Delete(std::size_t row) {
    beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
    m_list.Delete(row);
    endRemoveRows();
    if (row < m_list.GetCount())
        Q_EMIT dataChanged(index(static_cast<int>(row)), index(rowCount({}) - 1));
}

void CListModel::Swap(std::size_t row, std::size_t other) {
    m_list.Swap(row, other);
    Refresh(row);
    Refresh(other);
}

void CListModel::Refresh(std::size_t row) {
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed);
}

int CListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_list.GetCount());
}

QVariant CListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    return FromNarrow(m_list.GetText(static_cast<std::size_t>(index.row())));
}

QVariant CListModel::headerData(int /*section*/, Qt::Orientation orientation, int role) const {
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? QVariant(QStringLiteral("#")) : QVariant();
}

// ---- the dialog

CEditListDlg::CEditListDlg(QWidget* parent, CPropertyValueList& list)
    : CEditorDlg(parent, "Input list of "), m_list(list), m_rows(list), m_model(new CListModel(m_rows, this)),
      m_view(new QTreeView(this)) {
    setWindowTitle(windowTitle() + FromNarrow(list.GetTypeName()));
    SetLabel(list.GetPropName());
    m_view->setModel(m_model);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->header()->setStretchLastSection(false);
    m_view->setColumnWidth(0, COLUMN_WIDTH);
    m_view->setMinimumSize(VIEW_SIZE);
    m_view->setAccessibleName(QStringLiteral("Elements"));
    connect(m_view, &QAbstractItemView::doubleClicked, this, &CEditListDlg::EditRow);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CEditListDlg::OnSelected);

    auto* const buttons = new QVBoxLayout;
    m_add = NewButton("Add", &CEditListDlg::AddRow);
    m_edit = NewButton("Edit", &CEditListDlg::EditRow);
    m_delete = NewButton("Delete", &CEditListDlg::DeleteRow);
    m_up = NewButton("Up", &CEditListDlg::MoveUp);
    m_down = NewButton("Down", &CEditListDlg::MoveDown);
    for (QPushButton* const button : {m_add, m_edit, m_delete, m_up, m_down})
        buttons->addWidget(button);
    buttons->addStretch(1);
    auto* const row = new QHBoxLayout;
    row->addWidget(m_view, 1);
    row->addLayout(buttons);
    GetContent().addLayout(row);
}

QPushButton* CEditListDlg::NewButton(const char* text, void (CEditListDlg::*action)()) {
    auto* const button = new QPushButton(QString::fromLatin1(text), this);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    return button;
}

void CEditListDlg::Load() {
    m_add->setEnabled(!m_rows.IsFixed());
    OnSelected();
    if (m_rows.GetCount() != 0)
        Select(0);
}

bool CEditListDlg::Store() {
    m_rows.MoveTo(m_list);
    return true;
}

std::optional<std::size_t> CEditListDlg::Selected() const {
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    return rows.isEmpty() ? std::nullopt : std::optional(static_cast<std::size_t>(rows.constFirst().row()));
}

void CEditListDlg::Select(std::size_t row) {
    m_view->setCurrentIndex(m_model->index(static_cast<int>(row)));
}

void CEditListDlg::OnSelected() {
    const bool isSelected = Selected().has_value();
    m_edit->setEnabled(isSelected);
    m_up->setEnabled(isSelected);
    m_down->setEnabled(isSelected);
    m_delete->setEnabled(isSelected && !m_rows.IsFixed());
}

void CEditListDlg::AddRow() {
    std::unique_ptr<CPropertyValue> element = m_rows.NewElement(Selected());
    if (EditPropertyValue(this, element.get()))
        m_model->Append(std::move(element));
}

void CEditListDlg::EditRow() {
    const auto row = Selected();
    if (row && EditPropertyValue(this, &m_rows.GetElement(*row)))
        m_model->Refresh(*row);
}

void CEditListDlg::DeleteRow() {
    const auto row = Selected();
    if (!row)
        return;
    m_model->Delete(*row);
    if (*row < m_rows.GetCount())
        Select(*row);
    else
        m_view->selectionModel()->clear(); // the view has chosen the row above
}

void CEditListDlg::MoveUp() {
    if (const auto row = Selected(); row && *row != 0)
        Swap(*row, *row - 1);
}

void CEditListDlg::MoveDown() {
    if (const auto row = Selected(); row && *row + 1 < m_rows.GetCount())
        Swap(*row, *row + 1);
}

// Deliberate: the selection stays on its index, so that the element leaves it.
void CEditListDlg::Swap(std::size_t row, std::size_t other) {
    m_model->Swap(row, other);
}

bool EditList(QWidget* parent, CPropertyValueList& list) {
    return CEditListDlg(parent, list).Run();
}
