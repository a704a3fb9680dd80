#include "module/browser/TreeModel.h"

#include "module/browser/Images.h"
#include "module/console/NarrowText.h"

CBrowserTreeModel::CBrowserTreeModel(CBrowserTree& tree, QObject* parent) : QAbstractItemModel(parent), m_tree(tree) {
    m_tree.SetObserver(this);
}

CBrowserTreeModel::~CBrowserTreeModel() {
    m_tree.SetObserver(nullptr);
}

TreeItem& CBrowserTreeModel::ItemOf(const QModelIndex& index) const {
    return index.isValid() ? *static_cast<TreeItem*>(index.internalPointer()) : m_tree.GetRoot();
}

const TreeItem* CBrowserTreeModel::GetItem(const QModelIndex& index) const {
    return index.isValid() ? &ItemOf(index) : nullptr;
}

QModelIndex CBrowserTreeModel::IndexOf(const TreeItem& item) const {
    return item.kind == TreeKind::Root ? QModelIndex() : createIndex(item.row, 0, &item);
}

QModelIndex CBrowserTreeModel::index(int row, int column, const QModelIndex& parent) const {
    const auto& children = m_tree.GetChildren(ItemOf(parent));
    const auto place = static_cast<std::size_t>(row);
    return row < 0 || place >= children.size() || column != 0 ? QModelIndex()
                                                              : createIndex(row, 0, children[place].get());
}

QModelIndex CBrowserTreeModel::parent(const QModelIndex& child) const {
    return child.isValid() ? IndexOf(*ItemOf(child).parent) : QModelIndex();
}

int CBrowserTreeModel::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(m_tree.GetChildren(ItemOf(parent)).size());
}

int CBrowserTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

// Without making the children: the button to open an item shows before anybody knows them.
bool CBrowserTreeModel::hasChildren(const QModelIndex& parent) const {
    return parent.isValid() ? CBrowserTree::HasChildren(ItemOf(parent)) : rowCount(parent) != 0;
}

QVariant CBrowserTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const TreeItem& item = ItemOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return FromNarrow(item.label);
    case Qt::DecorationRole:
        return BrowserImage(item.image, item.state);
    case Qt::ToolTipRole:
        return FromNarrow(CBrowserTree::GetTooltip(item)).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
    default:
        return {};
    }
}

void CBrowserTreeModel::OnItemChanged(const TreeItem& item) {
    const QModelIndex index = IndexOf(item);
    Q_EMIT dataChanged(index, index, {Qt::DecorationRole});
}

void CBrowserTreeModel::OnItemAdding(const TreeItem& parent, int row) {
    beginInsertRows(IndexOf(parent), row, row);
}

void CBrowserTreeModel::OnItemAdded(const TreeItem&) {
    endInsertRows();
}
