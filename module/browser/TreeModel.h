// The browser's tree for the toolkit. Only on the console thread.
#pragma once

#include "module/browser/BrowserTree.h"

#include <QAbstractItemModel>

class CBrowserTreeModel : public QAbstractItemModel, private ITreeObserver {
public:
    // The tree outlives the model, or Detach comes before its end.
    CBrowserTreeModel(CBrowserTree& tree, QObject* parent);
    ~CBrowserTreeModel() override;

    const TreeItem* GetItem(const QModelIndex& index) const; // null for an invalid index
    QModelIndex IndexOf(const TreeItem& item) const;

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    bool hasChildren(const QModelIndex& parent) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    TreeItem& ItemOf(const QModelIndex& index) const;

    void OnTreeChanging() override { beginResetModel(); }
    void OnTreeChanged() override { endResetModel(); }
    void OnItemChanged(const TreeItem& item) override;
    void OnItemAdding(const TreeItem& parent, int row) override;
    void OnItemAdded(const TreeItem& item) override;

    CBrowserTree& m_tree;
};
